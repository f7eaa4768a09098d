#include "Selection.h"

Selection::Selection(QObject* parent)
    : QObject(parent)
{
}

void Selection::selectPath(Orvane::NodePath path)
{
    const bool same = path == _path;
    _path = path;
    if (!same)
        emit changed(path);
}

void Selection::selectNode(Orvane::Node* node)
{
    // The place that is selected already may be another one of the same node.
    if (!node || node != _path.node())
        selectPath(Orvane::NodePath(node));
}

void Selection::selectChain(const std::vector<Orvane::Node*>& nodes)
{
    if (nodes.empty())
        return;
    Orvane::NodePath path(nodes.front());
    for (std::size_t i = 1; i < nodes.size(); ++i)
        path.addNode(nodes[i]);
    // A chain may leave out what lies between.
    selectPath(path.node() == nodes.back() ? path : Orvane::NodePath(nodes.back()));
}
