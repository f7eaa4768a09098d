#pragma once

#include <Orvane/Field.h>
#include <Orvane/NodeLink.h>

namespace Orvane {

/// One link to a node.
class ORVANE_API SFNode : public Field
{
public:
    /// Made by the node, which is borrowed as its description is.
    SFNode(Node* node, NodePartDesc* desc);
    ~SFNode() override;

    NodePartDataType dataType() const override;
    std::string valueToString() const override;
    int cardinality() const override;
    unsigned int size() const override;
    void clear() override;
    bool parseValue(std::string_view text, std::string& error) override;
    void assignValue(const Field& other) override;
    bool hasValueOf(const Field& other) const override;

    /// The link, at an address that stays the same; empty when the field holds no node.
    NodeLink& link() { return *_link; }
    const NodeLink& link() const { return *_link; }

    /// Links \a value, or nothing when it is null, as of the time stamp. False when the node is of another
    /// context. A node that loses its last link dies.
    bool setNode(const double& time, Node* value, CallerType caller);

private:
    friend class FieldAccess;

    NodeLink* _link = nullptr; ///< never null once the runtime has made the field
};

} // namespace Orvane
