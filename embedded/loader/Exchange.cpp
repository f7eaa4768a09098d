#include "loader/Exchange.h"

#include "base/Graph.h"
#include "loader/FileScope.h"
#include "loader/ImportedNodes.h"
#include "loader/KeptStatements.h"
#include <Orvane/EventInSlot.h>
#include <Orvane/EventOutSlot.h>
#include <Orvane/Field.h>
#include <Orvane/Node.h>
#include <Orvane/NodeNameSpace.h>
#include <Orvane/NodeType.h>
#include <Orvane/Route.h>
#include <unordered_map>

namespace Orvane {

namespace {

/// The nodes of the file itself keep their names, and of several imports the last one counts.
void takeImport(FileScope& scope, const PendingImport& import, Node& node)
{
    const Node* const own = NodeNameSpace::findNode(scope.names, import.name);
    NodeRef& imported = scope.imported[import.name];
    if (own || imported)
        scope.messages.warn(import.place, "IMPORT: expected a name of its own, found " + quoted(import.name) +
                                              ", which " +
                                              (own ? "the node at " + std::to_string(sourceLine(*own)) + ":" +
                                                         std::to_string(sourceColumn(*own))
                                                   : "another import") +
                                              " bears");
    imported = NodeRef(&node);
}

/// The name by which the file around an inline calls a node; empty when it has none for it.
std::string nameInFile(const Node& node, NodeNameSpace& names,
                       const std::unordered_map<const Node*, std::string>& imported)
{
    const auto found = imported.find(&node);
    if (found != imported.end())
        return found->second;
    return node.name() && NodeNameSpace::findNode(&names, *node.name()) == &node ? *node.name()
                                                                                 : std::string();
}

} // namespace

void checkExports(const FileScope& scope)
{
    LoadMessages messages = scope.messages;
    for (const auto& entry : scope.exports) {
        const std::string& local = entry.second.local;
        // Of an import that failed has been told.
        if (!scope.findNode(local) && scope.importNames.count(local) == 0)
            messages.warn(entry.second.place, "EXPORT: expected the name of a node, found " + quoted(local));
    }
}

void resolveImports(FileScope& scope, const FileScopes& files)
{
    if (scope.imports.empty())
        return;
    std::unordered_map<const Node*, const FileScope*> contents;
    for (const auto& file : files)
        if (file->parent && !file->isBody())
            contents[file->root.get()] = file.get();
    for (const PendingImport& import : scope.imports) {
        Node* inlineNode = scope.findNode(import.inlineName);
        if (!inlineNode || inlineNode->type() != findType("Inline")) {
            scope.messages.warn(import.place,
                                "IMPORT: expected the name of an Inline, found " + quoted(import.inlineName));
            // What an inlined file says is never written.
            if (!scope.parent)
                keepStrayImport(*scope.root, {import.inlineName, import.exportedName, import.name});
            continue;
        }
        keepImport(*inlineNode, import.exportedName, import.name);
        const auto content = contents.find(inlineNode);
        if (content == contents.end())
            continue; // the inline has said why it holds nothing
        const FileScope* const inner = content->second;
        const auto exported = inner->exports.find(import.exportedName);
        Node* node = exported == inner->exports.end() ? nullptr : inner->findNode(exported->second.local);
        if (node)
            takeImport(scope, import, *node);
        else
            scope.messages.warn(import.place, "IMPORT: expected a name that " + inner->messages.file() +
                                                  " exports, found " + quoted(import.exportedName));
    }
}

void awaitImports(Node& inlineNode, FileScope& outer)
{
    NodeNameSpace& names = *outer.names;
    const SourcePlace place{sourceLine(inlineNode), sourceColumn(inlineNode)};
    for (const auto& [name, node] : importedNodes(names, &inlineNode))
        outer.imported[name] = NodeRef(node);
    std::unordered_map<const Node*, std::string> leaving;
    std::vector<const Field*> fields;
    for (const auto& [name, node] : importedNodes(inlineNode))
        if (leaving.emplace(node, name).second)
            madeFields(*node, fields);
    const auto add = [&](const EventSlot* slot) {
        if (!slot)
            return;
        for (const Route* route : *slot) {
            const Node& from = *route->outSlot()->field()->node();
            const Node& to = *route->inSlot()->field()->node();
            const bool isOfInline = leaving.count(&from) && leaving.count(&to);
            const std::string fromName = nameInFile(from, names, leaving);
            const std::string toName = nameInFile(to, names, leaving);
            if (route->type() == Route::SCENE_RT && !isOfInline && !fromName.empty() && !toName.empty())
                outer.routes.push_back({{{}, fromName, route->outSlot()->name()},
                                        {{}, toName, route->inSlot()->name()},
                                        place,
                                        true});
        }
    };
    for (const Field* field : fields) {
        add(field->_inSlot);
        add(field->_outSlot);
    }
    for (const KeptRoute& route : takeRoutes(*outer.root))
        outer.routes.push_back(
            {{{}, route.fromNode, route.fromField}, {{}, route.toNode, route.toField}, place, true});
    if (inlineNode.name())
        for (const auto& [exported, name] : takeImports(inlineNode))
            outer.imports.push_back({*inlineNode.name(), exported, name, place});
}

} // namespace Orvane
