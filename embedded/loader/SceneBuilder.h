#pragma once

#include "base/NodeRef.h"
#include "loader/FileScope.h"
#include "loader/SceneSink.h"
#include <memory>
#include <string>
#include <unordered_set>
#include <vector>

namespace Orvane {

class Field;
class LoadSession;
struct PartDeclaration;
class Node;
class NodeType;

/// Makes the graph of one file from what its reader tells, and all messages about what the graph does not
/// take. Nodes are linked as they begin, so the first node of the stack holds all that follow.
class SceneBuilder : public SceneSink
{
public:
    /// Nodes without another place go into \a content, a field of the scope's root.
    SceneBuilder(LoadSession& session, FileScope& scope, Field& content);

    void version(std::string_view version) override;
    void head(const HeadStatement& statement) override;
    bool beginNode(const NodeStart& start) override;
    void endNode() override;
    void useNode(const NodeUse& use) override;
    NodePartDataType fieldType(std::string_view field) override;
    void fieldValue(std::string_view field, std::string_view text, SourcePlace place) override;
    void beginFieldNodes(std::string_view field, SourcePlace place) override;
    void endFieldNodes() override;
    void sourceText(std::string_view text, SourcePlace place) override;
    void beginDeclaration(const FieldDeclaration& declaration) override;
    void endDeclaration() override;
    void isConnection(std::string_view nodeField, std::string_view protoField, SourcePlace place) override;
    void route(const RouteStatement& statement) override;
    void importNode(const ExchangeStatement& statement) override;
    void exportNode(const ExchangeStatement& statement) override;
    void beginProto(std::string_view name, SourcePlace place) override;
    void beginProtoBody() override;
    void endProto() override;
    void beginExternProto(std::string_view name, std::string_view urls, SourcePlace place) override;
    void endExternProto() override;

private:
    /// An open node, or an open field of the node below it that takes the nodes that follow.
    struct Level
    {
        NodeRef node;
        Field* field = nullptr; ///< null: nodes go where their type asks
        bool isNode = false;
        bool isAuthorField = false; ///< declared by the author, so that a cycle through it is allowed
        bool namesFiles = false;    ///< has a field whose files must be looked for
        std::vector<unsigned int> given = {}; ///< parts of an instance that the text sets
    };

    /// A prototype whose statement is being read: first its interface, then its body.
    struct OpenPrototype
    {
        std::string name;
        SourcePlace place;
        bool isExtern = false;
        std::string urls;
        NodeRef interface;              ///< stands for the declarations: has the fields that they add
        std::shared_ptr<NodeType> type; ///< null while the interface is read
        FileScope* outerScope = nullptr;
        std::vector<Level> outerLevels;
        unsigned int outerDepth = 0;
        std::unique_ptr<OpenPrototype> outer;
    };

    Node& node() const { return *_levels.back().node; }
    bool isTopLevel() const { return _levels.size() == 1; }
    /// False in inlined files and in prototypes.
    bool isScene() const { return !_scope->parent && !_open; }
    bool isInterface() const { return _open && !_open->type; }
    void warn(SourcePlace place, std::string text);

    NodeType* typeOf(const NodeStart& start);
    NodeType* findPrototype(const std::string& name, const NodeType* known, SourcePlace at);
    NodeRef makeNode(const NodeStart& start);
    void name(Node& node, const NodeStart& start);
    void markGiven(const Field& field);
    bool placeRoot(Node& node);
    bool place(Node& child, std::string_view containerField, SourcePlace at);
    Field* fieldForChild(const Node& child, std::string_view containerField, SourcePlace at);
    bool link(Field& field, Node& child, SourcePlace at);
    bool wouldContainItself(const Node& child, const Field& field) const;
    Field* findField(std::string_view name, SourcePlace at);
    Field* metadataOf(Node& owner, std::string_view name);
    void setValue(Field& field, std::string_view text, SourcePlace at);
    void keepUnknownValue(std::string_view name, std::string_view text, SourcePlace at);
    Field* addToNode(Node& owner, std::string_view name, NodePartDataType dataType, NodePartType access,
                     SourcePlace at);

    bool mayExchange(const ExchangeStatement& statement);

    void openPrototype(std::string_view name, std::string_view urls, bool isExtern, SourcePlace at);
    void closePrototype();
    std::vector<PartDeclaration> declaredParts() const;
    void moveDefaults(Node& model);
    void declare(std::shared_ptr<NodeType> type, const OpenPrototype& closed);
    Field* findIsEnd(std::string_view name, const Field& outer, SourcePlace at);

    LoadSession& _session;
    FileScope* _scope;
    std::vector<Level> _levels;
    unsigned int _depth;
    std::unique_ptr<OpenPrototype> _open; ///< the innermost one
    unsigned int _skipped = 0;            ///< open elements whose events are not taken
    std::unordered_set<std::string> _warnedTypes;
};

/// True for a node of the catalogue's type; prototypes and unknown types may bear any name.
bool isOf(const Node& node, const char* typeName);
/// "Type.field" for messages.
std::string fieldLabel(const Node& node, std::string_view field);

} // namespace Orvane
