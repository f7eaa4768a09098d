#include "loader/ImportedNodes.h"

#include "base/Graph.h"
#include "loader/KeptStatements.h"
#include "loader/NodeFields.h"
#include <Orvane/MFNode.h>
#include <Orvane/Node.h>
#include <Orvane/NodeNameSpace.h>
#include <unordered_map>
#include <unordered_set>

namespace Orvane {

namespace {

/// The nodes below a field that bear a name in the file of the inline.
std::unordered_map<std::string, const Node*> namedNodes(const Field& content, const Node& inlineNode)
{
    std::unordered_map<std::string, const Node*> names;
    std::vector<const Node*> waiting;
    std::unordered_set<const Node*> met;
    const auto add = [&](const Field& field) {
        for (int link = 0; link < linkCount(field); ++link) {
            const Node* node = linkedNode(field, link);
            if (node && met.insert(node).second)
                waiting.push_back(node);
        }
    };
    add(content);
    while (!waiting.empty()) {
        const Node* node = waiting.back();
        waiting.pop_back();
        if (node->name() && node->nameSpace() && node->nameSpace()->rootNode() == &inlineNode)
            names.emplace(*node->name(), node);
        const unsigned int count = node->partDescCount();
        for (unsigned int part = 0; part < count; ++part)
            if (const Field& field = readField(*node, part); holdsNodes(field))
                add(field);
    }
    return names;
}

} // namespace

std::vector<std::pair<std::string, const Node*>> importedNodes(const Node& inlineNode)
{
    std::vector<std::pair<std::string, const Node*>> result;
    const MFNode* content = findInlineContent(inlineNode);
    const NamePairs exports = keptExports(inlineNode);
    if (!content || exports.empty())
        return result;
    const std::unordered_map<std::string, const Node*> names = namedNodes(*content, inlineNode);
    for (const auto& [exported, name] : keptImports(inlineNode)) {
        for (const auto& [local, as] : exports) {
            const auto found = as == exported ? names.find(local) : names.end();
            if (found != names.end())
                result.emplace_back(name, found->second);
        }
    }
    return result;
}

} // namespace Orvane
