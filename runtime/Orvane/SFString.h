#pragma once

#include <Orvane/Field.h>

namespace Orvane {

/// One text.
class ORVANE_API SFString : public Field
{
public:
    /// Made by the node, which is borrowed as its description is.
    SFString(Node* node, NodePartDesc* desc);
    ~SFString() override;

    NodePartDataType dataType() const override;
    std::string valueToString() const override;
    int cardinality() const override;
    unsigned int size() const override;
    void clear() override;
    bool parseValue(std::string_view text, std::string& error) override;
    void assignValue(const Field& other) override;
    bool hasValueOf(const Field& other) const override;

    /// The value, valid until the field changes.
    const std::string& value() const { return _value; }

    /// Sets the value as of the time stamp and tells the runtime (see `processValueChange`).
    void setValue(const double& time, const std::string& value, CallerType caller);

private:
    std::string _value;
};

} // namespace Orvane
