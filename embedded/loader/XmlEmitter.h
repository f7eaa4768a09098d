#pragma once

#include "loader/ChildPlacement.h"
#include "loader/TextEmitter.h"
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace Orvane {

class NodePartDesc;

/// Writes X3D in XML encoding.
class XmlEmitter : public TextEmitter
{
public:
    using TextEmitter::TextEmitter;

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

private:
    struct Element
    {
        std::string name;
        bool isInstance = false;
        bool hasContent = false;
        std::string source = {};                       ///< text that follows the other content
        std::vector<const Field*> instanceValues = {}; ///< which become elements of their own
        std::vector<std::pair<const Field*, const Field*>> connections = {};
    };

    void attribute(std::string_view name, std::string_view value);
    void fieldAttribute(std::string_view name, const Field& field, int stringCount);
    void container(const Node& node, const Field* holder);
    void beginElement(const Node& node);
    std::string tagName(std::string_view name, const char* what);
    void writeConnections(Element& element);
    bool hasValueByIs(const Field& field) const;
    void openTag(std::string_view name);
    void closeTag(std::string_view name);
    void beginDeclarationTag(const NodePartDesc& desc);
    void stringsAttribute(std::string_view name, int count,
                          const std::function<const std::string&(int)>& textAt);
    void headElement(const KeptHead& statement);

    ChildPlacement _placement;
    std::vector<Element> _open;
    bool _isUnseen = false; ///< nodes at the top stand in a node that is not drawn
};

} // namespace Orvane
