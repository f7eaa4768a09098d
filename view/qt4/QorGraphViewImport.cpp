#include "QorGraphNodeView.h"
#include "QorGraphView.h"
#include "QorLog.h"
#include <Orvane/EventInSlot.h>
#include <Orvane/EventOutSlot.h>
#include <Orvane/Field.h>
#include <Orvane/MFNode.h>
#include <Orvane/SFNode.h>
#include <QtCore/QSet>

namespace Orvane::Qt4 {

namespace {

/// The nodes that the node fields lead to, in order of field and element; one behind two links stands twice.
std::vector<Node*> childrenOf(const Node& node)
{
    std::vector<Node*> children;
    const auto append = [&](NodeLink& link) {
        if (Node* const child = link.node())
            children.push_back(child);
    };
    for (unsigned int i = 0; Field* const field = node.findField(i); ++i) {
        if (auto* const single = dynamic_cast<SFNode*>(field)) {
            append(single->link());
        } else if (auto* const many = dynamic_cast<MFNode*>(field)) {
            for (unsigned int j = 0; j < many->size(); ++j)
                append(many->elem(static_cast<int>(j)));
        }
    }
    return children;
}

bool isImported(const Route& route)
{
    return route.type() == Route::SCENE_RT || route.type() == Route::SCRIPT_RT;
}

} // namespace

void QorGraphView::importChildrenOf(Orvane::Node* node)
{
    if (!node)
        return;
    for (Node* const child : childrenOf(*node))
        add(child, QPoint(0, 0));
}

void QorGraphView::importChildrenRecursive(Orvane::Node* node)
{
    if (!node)
        return;
    struct Step
    {
        Node* node;
        std::vector<Node*> children;
        std::size_t next;
    };
    // A stack of its own, since scenes may be deeper than the call stack, and what lies on the way down,
    // since they may contain themselves.
    std::vector<Step> way;
    QSet<const Node*> onWay;
    const auto descend = [&](Node* to) {
        onWay.insert(to);
        way.push_back({to, childrenOf(*to), 0});
    };
    descend(node);
    while (!way.empty()) {
        Step& step = way.back();
        if (step.next < step.children.size()) {
            Node* const child = step.children[step.next++];
            if (onWay.contains(child))
                add(child, QPoint(0, 0));
            else
                descend(child);
            continue;
        }
        Node* const finished = step.node;
        way.pop_back();
        onWay.remove(finished);
        if (!way.empty())
            add(finished, QPoint(0, 0));
    }
}

void QorGraphView::importDirectNeighboursOf(Orvane::Node* node)
{
    QOR_NOTICE("QorGraphView::importDirectNeighboursOf:\n");
    if (!node)
        return;
    std::vector<Node*> neighbours;
    for (unsigned int i = 0; Field* const field = node->findField(i); ++i) {
        if (field->_inSlot) {
            for (const Route* const route : *field->_inSlot) {
                if (isImported(*route))
                    neighbours.push_back(route->outSlot()->field()->node());
            }
        }
        if (const EventOutSlot* const slot = field->getOutSlot(false, false)) {
            for (const Route* const route : *slot) {
                if (isImported(*route))
                    neighbours.push_back(route->inSlot()->field()->node());
            }
        }
    }
    for (Node* const neighbour : neighbours)
        add(neighbour, QPoint(0, 0));
}

void QorGraphView::forSelectedNodes(void (QorGraphView::*operation)(Orvane::Node*))
{
    const QList<QorGraphNodeView*> views = _selectedNodes;
    for (const QorGraphNodeView* const view : views) {
        if (view->node())
            (this->*operation)(view->node());
    }
}

void QorGraphView::onImportConnectedActivated()
{
    forSelectedNodes(&QorGraphView::importDirectNeighboursOf);
}

void QorGraphView::onImportChildrenActivated()
{
    forSelectedNodes(&QorGraphView::importChildrenOf);
}

void QorGraphView::onImportChildrenRecursivelyActivated()
{
    forSelectedNodes(&QorGraphView::importChildrenRecursive);
}

void QorGraphView::onRemoveActivated()
{
    const QList<QorGraphNodeView*> views = _selectedNodes;
    for (const QorGraphNodeView* const view : views)
        remove(view->node());
}

} // namespace Orvane::Qt4
