#include "GraphReach.h"

#include <Orvane/Context.h>
#include <Orvane/ContextSetup.h>
#include <Orvane/Engine.h>
#include <Orvane/Field.h>
#include <Orvane/Node.h>
#include <Orvane/NodeLink.h>
#include <Orvane/NodePartDesc.h>
#include <Orvane/NodePath.h>
#include <Orvane/Scene.h>
#include <QSet>
#include <algorithm>
#include <list>

std::vector<Orvane::Node*> nodesBelow(const std::vector<Orvane::Node*>& roots)
{
    std::vector<Orvane::Node*> nodes;
    QSet<Orvane::Node*> met;
    std::vector<Orvane::Node*> open(roots.rbegin(), roots.rend());
    std::vector<Orvane::Node*> children;
    while (!open.empty()) {
        Orvane::Node* const node = open.back();
        open.pop_back();
        if (!node || met.contains(node))
            continue;
        met.insert(node);
        nodes.push_back(node);
        node->collectAllChildren(children, 0);
        open.insert(open.end(), children.rbegin(), children.rend());
    }
    return nodes;
}

std::vector<Orvane::Node*> strandedNodes(Orvane::Node& node)
{
    Orvane::Context& context = *node.context();
    const std::vector<Orvane::Node*> reached =
        nodesBelow({context.findRoot(Orvane::ContextSetup::_type), context.findRoot(Orvane::Engine::_type),
                    context.findRoot(Orvane::Scene::_type)});
    const QSet<Orvane::Node*> isReached(reached.begin(), reached.end());
    std::vector<Orvane::Node*> stranded;
    for (Orvane::Node* const below : nodesBelow({&node})) {
        if (!isReached.contains(below))
            stranded.push_back(below);
    }
    return stranded;
}

bool isForeign(const Orvane::NodePath& path)
{
    std::list<Orvane::NodeLink*> links;
    path.nodeLinks(links);
    return std::any_of(links.begin(), links.end(),
                       [](const Orvane::NodeLink* link) { return link->field()->_desc->privateAccess(); });
}
