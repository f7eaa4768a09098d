#pragma once

#include "loader/TextEmitter.h"
#include <Orvane/NodePartType.h>
#include <string>
#include <unordered_map>
#include <vector>

namespace Orvane {

class NodePartDesc;

/// Writes X3D in classic encoding. What its elder VRML97 says in other words can be overridden.
class ClassicEmitter : public TextEmitter
{
public:
    using TextEmitter::TextEmitter;

    std::string sayableName(std::string_view name) const override;
    bool saysEmpty() const override { return true; }

    void beginScene(const std::vector<KeptHead>& head, const Node* root, std::string_view rootName) override;
    void endScene() override;
    void beginNode(const Node& node, std::string_view name, const Field* holder) override;
    void value(const Field& field) override;
    void endValues(bool hasContent) override;
    void endNode() override;
    void use(const Node& node, std::string_view name, const Field* holder) override;
    void isConnection(const Field& field, const Field& protoField) override;
    void beginDeclaration(const Field& field, bool hasNodes) override;
    void endDeclaration(const Field& field, bool hasNodes) override;
    void beginNodes(const Field& field, bool hasNodes) override;
    void endNodes(const Field& field, bool hasNodes) override;
    void beginProto(const NodeType& type, bool hasInterface) override;
    void beginProtoBody(bool hasInterface) override;
    void endProto() override;
    void externProto(const NodeType& type, const std::vector<std::string>& urls) override;
    void beginUnseen() override;
    void endUnseen() override;
    void route(std::string_view fromNode, const EventOutSlot& from, std::string_view toNode,
               const EventInSlot& to) override;
    void waitingRoute(const KeptRoute& route) override;
    void importStatement(std::string_view inlineName, std::string_view exportedName,
                         std::string_view name) override;
    void exportStatement(std::string_view localName, std::string_view exportedName) override;
    void comment(std::string_view text) override;

protected:
    virtual void writeHead(const std::vector<KeptHead>& head);
    virtual std::string_view accessWord(NodePartType access) const;
    /// Tells of a declaration in other words than the encoding has.
    virtual void checkDeclaration(const NodePartDesc& desc, const NodeType& type);
    /// The children of a Switch.
    virtual std::string_view switchField() const { return "children"; }
    /// The name of a field, or of an event of it, that today is called \a name.
    virtual std::string fieldName(const NodeType& type, const NodePartDesc& desc, std::string_view name);

    /// Tells the host, and the reader of the file the first time.
    void note(const std::string& text);
    std::string routeText(std::string_view fromNode, const EventOutSlot& from, std::string_view toNode,
                          const EventInSlot& to);
    static std::string routeText(const KeptRoute& route);

private:
    std::string sayable(std::string_view name, const char* what);
    /// The type whose fields are being written. They may be defaults, which belong to no node.
    const NodeType& owner() const { return _open.empty() ? *_proto : *_open.back().type; }
    std::string nameOf(const Field& field);
    void startNode();
    void declare(const NodePartDesc& desc, const NodeType& type);
    template <class TextAt>
    void writeTexts(int count, bool asList, TextAt textAt);
    void beginValueNodes(const Field& field, bool hasNodes);
    void writeType(const Node& node, std::string_view name);
    void writeValue(const Field& field);
    void writeStrings(const Field& field);

    /// An open node.
    struct Level
    {
        const NodeType* type;
        bool isEmpty = true;
        const Field* source = nullptr;             ///< source code, which goes last
        std::vector<std::string> connections = {}; ///< of fields that are declared in the node
    };

    std::vector<Level> _open;
    std::unordered_map<const Field*, std::string> _connected; ///< declared fields, and what they stand for
    const NodeType* _proto = nullptr;                         ///< whose interface is being written
    bool _isBehindField = false; ///< the node that follows stands on the line of its field
};

} // namespace Orvane
