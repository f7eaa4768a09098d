#include "loader/KeptStatements.h"

#include "base/Graph.h"
#include <Orvane/MFNode.h>
#include <Orvane/MFString.h>
#include <Orvane/Node.h>
#include <charconv>
#include <initializer_list>

namespace Orvane {

namespace {

constexpr char headPart[] = "headStatements";
constexpr char exportPart[] = "exportStatements";
constexpr char importPart[] = "importStatements";
constexpr char strayImportPart[] = "strayImports";
constexpr char routePart[] = "waitingRoutes";
constexpr char instancePart[] = "isPrototypeInstance";
constexpr char contentPart[] = "inlineContent";

void append(Node& node, const char* part, std::initializer_list<std::string_view> texts)
{
    Field* field = node.findField(part, Node::EXACT_FSO);
    if (!field)
        field = addPrivateField(node, part, MFSTRING_DT);
    auto& strings = static_cast<MFString&>(*field);
    for (const std::string_view text : texts)
        strings.addValue(std::string(text));
}

/// A part that was added to the node; most nodes have none.
Field* addedPart(const Node& node, const char* part)
{
    const bool hasOwn = node.partDescCount() > partCount(*node.type());
    return hasOwn ? node.findField(part, Node::EXACT_FSO) : nullptr;
}

const MFString* kept(const Node& node, const char* part)
{
    return static_cast<const MFString*>(addedPart(node, part));
}

void drop(const Node& node, const char* part)
{
    if (Field* field = addedPart(node, part))
        field->clear();
}

NamePairs pairs(const Node& node, const char* part)
{
    NamePairs result;
    const MFString* strings = kept(node, part);
    const int count = strings ? static_cast<int>(strings->size()) : 0;
    for (int i = 0; i + 1 < count; i += 2)
        result.emplace_back((*strings)[i], (*strings)[i + 1]);
    return result;
}

} // namespace

void keepHead(Node& scene, const HeadStatement& statement)
{
    char factor[32];
    const char* const end = std::to_chars(factor, factor + sizeof factor, statement.factor).ptr;
    append(scene, headPart,
           {std::to_string(statement.kind), statement.name, statement.content,
            std::string_view(factor, static_cast<std::size_t>(end - factor))});
}

std::vector<KeptHead> keptHead(const Node& scene)
{
    std::vector<KeptHead> result;
    const MFString* strings = kept(scene, headPart);
    const int count = strings ? static_cast<int>(strings->size()) : 0;
    for (int i = 0; i + 3 < count; i += 4)
        result.push_back({static_cast<HeadStatement::Kind>(std::stoi((*strings)[i])), (*strings)[i + 1],
                          (*strings)[i + 2], (*strings)[i + 3]});
    return result;
}

void keepExport(Node& root, std::string_view localName, std::string_view exportedName)
{
    append(root, exportPart, {localName, exportedName});
}

NamePairs keptExports(const Node& root)
{
    return pairs(root, exportPart);
}

void keepImport(Node& inlineNode, std::string_view exportedName, std::string_view name)
{
    append(inlineNode, importPart, {exportedName, name});
}

NamePairs keptImports(const Node& inlineNode)
{
    return pairs(inlineNode, importPart);
}

void keepStrayImport(Node& root, const StrayImport& statement)
{
    append(root, strayImportPart, {statement.inlineName, statement.exportedName, statement.name});
}

std::vector<StrayImport> keptStrayImports(const Node& root)
{
    std::vector<StrayImport> result;
    const MFString* strings = kept(root, strayImportPart);
    const int count = strings ? static_cast<int>(strings->size()) : 0;
    for (int i = 0; i + 2 < count; i += 3)
        result.push_back({(*strings)[i], (*strings)[i + 1], (*strings)[i + 2]});
    return result;
}

void dropExports(Node& inlineNode)
{
    drop(inlineNode, exportPart);
}

NamePairs takeImports(Node& inlineNode)
{
    NamePairs result = keptImports(inlineNode);
    drop(inlineNode, importPart);
    return result;
}

void keepRoute(Node& root, const KeptRoute& route)
{
    append(root, routePart, {route.fromNode, route.fromField, route.toNode, route.toField});
}

std::vector<KeptRoute> keptRoutes(const Node& root)
{
    std::vector<KeptRoute> result;
    const MFString* strings = kept(root, routePart);
    const int count = strings ? static_cast<int>(strings->size()) : 0;
    for (int i = 0; i + 3 < count; i += 4)
        result.push_back({(*strings)[i], (*strings)[i + 1], (*strings)[i + 2], (*strings)[i + 3]});
    return result;
}

std::vector<KeptRoute> takeRoutes(Node& root)
{
    std::vector<KeptRoute> result = keptRoutes(root);
    drop(root, routePart);
    return result;
}

void markInstance(Node& node)
{
    addPrivateField(node, instancePart, SFBOOL_DT);
}

bool isMarkedInstance(const Node& node)
{
    return addedPart(node, instancePart);
}

MFNode& inlineContent(Node& inlineNode)
{
    Field* field = inlineNode.findField(contentPart, Node::EXACT_FSO);
    if (!field)
        field = addPrivateField(inlineNode, contentPart, MFNODE_DT);
    return static_cast<MFNode&>(*field);
}

const MFNode* findInlineContent(const Node& inlineNode)
{
    return static_cast<const MFNode*>(addedPart(inlineNode, contentPart));
}

} // namespace Orvane
