#include "loader/AdoptedNodes.h"

#include "base/Graph.h"
#include "base/PrototypeData.h"
#include "loader/ClassicWriter.h"
#include "loader/KeptStatements.h"
#include <Orvane/Authoring.h>
#include <Orvane/MFNode.h>
#include <Orvane/Node.h>
#include <Orvane/NodeNameSpace.h>
#include <unordered_set>

namespace Orvane {

namespace {

/// All nodes at and below some, each once.
std::vector<Node*> nodesBelow(std::vector<Node*> open)
{
    std::vector<Node*> nodes;
    std::unordered_set<const Node*> met;
    std::vector<Node*> children;
    while (!open.empty()) {
        Node* const node = open.back();
        open.pop_back();
        if (!met.insert(node).second)
            continue;
        nodes.push_back(node);
        node->collectAllChildren(children, 0);
        open.insert(open.end(), children.rbegin(), children.rend());
    }
    return nodes;
}

} // namespace

std::vector<std::shared_ptr<NodeType>> usablePrototypes(const Node& scene)
{
    std::vector<std::shared_ptr<NodeType>> types = declaredPrototypes(scene);
    std::unordered_set<const NodeType*> met;
    for (const auto& type : types)
        met.insert(type.get());
    for (const Node* node : nodesBelow({const_cast<Node*>(&scene)})) {
        const NodeType& type = *node->type();
        if (type.isProto() && node->nameSpace() == scene.nameSpace() && met.insert(&type).second)
            types.push_back(type.data()->prototype->kept);
    }
    return types;
}

bool isSameDeclaration(const NodeType& a, const NodeType& b)
{
    const ProtoDeclaration& first = *protoDeclaration(a);
    const ProtoDeclaration& second = *protoDeclaration(b);
    if (first.isExtern || second.isExtern || !first.model || !second.model)
        return first.isExtern == second.isExtern && first.urls == second.urls;
    std::vector<std::string> notes;
    return classicText(*first.model, {}, notes) == classicText(*second.model, {}, notes);
}

void adoptContent(Node& textRoot, NodeNameSpace& textNames, Node& scene, std::vector<NodeRef>& content)
{
    MFNode& links = inlineContent(textRoot);
    std::vector<Node*> tops;
    for (NodeLink& link : links) {
        content.emplace_back(link.directNode());
        tops.push_back(link.directNode());
    }
    links.clear();
    for (Node* node : nodesBelow(tops)) {
        if (node->nameSpace() != &textNames)
            continue;
        const std::string name = node->name() ? Authoring::freeName(scene, *node->name()) : std::string();
        setName(*node, scene.nameSpace(), name);
        setSourcePlace(*node, 0, 0); // which would be one of the scene's file
    }
}

} // namespace Orvane
