#include "loader/ImportedNodes.h"

#include "base/NameSpace.h"
#include "base/ProtoDeclaration.h"
#include "loader/KeptStatements.h"
#include <Orvane/Node.h>
#include <utility>

namespace Orvane {

std::vector<std::pair<std::string, Node*>> importedNodes(const Node& inlineNode)
{
    std::vector<std::pair<std::string, Node*>> result;
    const NamePairs imports = keptImports(inlineNode);
    NodeNameSpace* const names = imports.empty() ? nullptr : rootNames(inlineNode);
    if (!names)
        return result;
    std::unordered_map<std::string, std::string> exports;
    for (const auto& [local, exported] : keptExports(inlineNode))
        exports[exported] = local;
    std::unordered_map<std::string, Node*> handedOn; // what the file imports itself
    bool knowsHandedOn = false;
    for (const auto& [exported, name] : imports) {
        const auto local = exports.find(exported);
        if (local == exports.end())
            continue;
        Node* node = NodeNameSpace::findNode(names, local->second);
        if (!node) {
            if (!std::exchange(knowsHandedOn, true))
                handedOn = importedNodes(*names);
            const auto found = handedOn.find(local->second);
            node = found == handedOn.end() ? nullptr : found->second;
        }
        if (node)
            result.emplace_back(name, node);
    }
    return result;
}

std::unordered_map<std::string, Node*> importedNodes(const NodeNameSpace& names, const Node* exceptInline)
{
    std::unordered_map<std::string, Node*> result;
    for (const auto& named : names.data()->nodes)
        if (named.second != exceptInline)
            for (const auto& [name, node] : importedNodes(*named.second))
                result.emplace(name, node);
    return result;
}

} // namespace Orvane
