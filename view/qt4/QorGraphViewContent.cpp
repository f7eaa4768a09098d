#include "QorGraphEdge.h"
#include "QorGraphNodeView.h"
#include "QorGraphView.h"
#include "QorLog.h"
#include "QorTools.h"
#include <Orvane/EventInSlot.h>
#include <Orvane/EventOutSlot.h>
#include <Orvane/Field.h>
#include <Orvane/NodePartDesc.h>
#include <QtCore/QPointer>
#include <set>
#include <utility>

namespace Orvane::Qt4 {

namespace {

bool hasLine(const Route& route)
{
    return route.type() == Route::SCENE_RT || route.type() == Route::SCRIPT_RT;
}

/// Number of the field that goes by a name; 0 when it cannot be told.
unsigned int fieldId(const Node& node, const QString& name)
{
    const Field* const field = node.findField(toRuntime(name), Node::DECLARED_FSO);
    return field && field->_desc ? field->_desc->id : 0;
}

} // namespace

QorGraphView::RouteObserver::RouteObserver(QorGraphView* view, int mode)
    : Orvane::Observer(nullptr)
    , _view(view)
    , _mode(mode)
{
}

QorGraphView::RouteObserver::~RouteObserver() = default;

void QorGraphView::RouteObserver::notify(const double&, Orvane::BaseObject* subject, Orvane::BaseObject*,
                                         Orvane::BaseObject*)
{
    Route* const deleted = _mode == 1 ? dynamic_cast<Route*>(subject) : nullptr;
    QOR_NOTICE("QorGraphView::RouteObserver::notify: mode=%d, deletedRoute=%p\n", _mode,
               static_cast<const void*>(deleted));
    _view->updateEdges(deleted);
}

QorGraphView::NodeObserver::NodeObserver(QorGraphView* view, int mode)
    : Orvane::Observer(nullptr)
    , _view(view)
    , _mode(mode)
{
}

QorGraphView::NodeObserver::~NodeObserver() = default;

void QorGraphView::NodeObserver::notify(const double&, Orvane::BaseObject* subject, Orvane::BaseObject*,
                                        Orvane::BaseObject*)
{
    if (_mode == 1) {
        if (const auto* node = dynamic_cast<Node*>(subject))
            _view->forget(node);
    } else if (_mode == 2) {
        _view->update();
    }
}

QorGraphNodeView* QorGraphView::add(Orvane::Node* node, QPoint pos)
{
    if (!node)
        return nullptr;
    if (viewOf(node)) {
        QOR_NOTICE("QorGraphView::add: graph canvas already contains view for node [%s].\n",
                   node->getIDStr().c_str());
        return nullptr;
    }
    auto* view = new QorGraphNodeView(this, node);
    view->move(pos);
    view->setPalette(_nodePalette);
    view->setFont(_nodeFont);
    view->resize(view->size() * _scale);
    _nodeViews.prepend(view);
    _viewOfNode.insert(node, view);
    _allViews.insert(node, view);
    connect(view, &QorGraphNodeView::outputSlotClicked, this, &QorGraphView::onOutputSlotClicked);
    connect(view, &QorGraphNodeView::inputSlotClicked, this, &QorGraphView::onInputSlotClicked);
    updateEdges();
    return view;
}

void QorGraphView::remove(const Orvane::Node* node)
{
    QorGraphNodeView* const view = viewOf(node);
    if (!view)
        return;
    _viewOfNode.remove(node);
    _nodeViews.removeOne(view);
    updateEdges();
    update();
}

void QorGraphView::clear()
{
    const QList<QorGraphNodeView*> views = _nodeViews;
    for (const QorGraphNodeView* const view : views)
        remove(view->node());
    _nodeViews.clear();
    _viewOfNode.clear();
    _selectedNodes.clear();
    dropEdges();
    _selectedEdges.clear();
}

/// The node dies: no box may show it any more, also none that has left the canvas.
void QorGraphView::forget(const Orvane::Node* node)
{
    remove(node);
    const QList<QorGraphNodeView*> views = _allViews.values(node);
    for (QorGraphNodeView* const view : views)
        view->_node = nullptr;
    _allViews.remove(node);
}

QorGraphNodeView* QorGraphView::viewOf(const Orvane::Node* node) const
{
    return _viewOfNode.value(node);
}

void QorGraphView::updateEdges()
{
    updateEdges(nullptr);
}

void QorGraphView::updateEdges(Orvane::Route* deletedRoute)
{
    if (!isVisible())
        return;
    QOR_NOTICE("QorGraphView::updateEdges:\n");
    // Each route is met once, at its destination.
    std::vector<Route*> routes;
    for (const QorGraphNodeView* const view : qAsConst(_nodeViews)) {
        const Node& node = *view->node();
        for (unsigned int i = 0; const Field* const field = node.findField(i); ++i) {
            if (!field->_inSlot)
                continue;
            for (Route* const route : *field->_inSlot) {
                if (route != deletedRoute)
                    routes.push_back(route);
            }
        }
    }
    QOR_NOTICE("QorGraphView::updateEdges(): found %d routes. isVisible=%d\n",
               static_cast<int>(routes.size()), isVisible() ? 1 : 0);
    dropEdges();
    for (Route* const route : routes) {
        if (hasLine(*route))
            addRoute(route);
    }
    update();
}

void QorGraphView::dropEdges()
{
    for (QorGraphEdge* const edge : qAsConst(_edges))
        edge->_listed = false;
    _edges.clear();
}

/// A line that was dropped and that nobody has selected, or null.
QorGraphEdge* QorGraphView::unusedEdge(const EdgeKey& key)
{
    for (auto it = _allEdges.constFind(key); it != _allEdges.constEnd() && it.key() == key; ++it) {
        QorGraphEdge* const edge = it.value();
        if (!edge->_listed && !_selectedEdges.contains(edge))
            return edge;
    }
    return nullptr;
}

QorGraphEdge* QorGraphView::addRoute(Orvane::Route* route)
{
    const EventOutSlot* const out = route ? route->outSlot() : nullptr;
    const EventInSlot* const in = route ? route->inSlot() : nullptr;
    const Node* const source = out ? out->field()->node() : nullptr;
    const Node* const destination = in ? in->field()->node() : nullptr;
    QorGraphNodeView* const from = viewOf(source);
    QorGraphNodeView* const to = viewOf(destination);
    QorGraphEdge* edge = nullptr;
    if (!from || !to) {
        QOR_NOTICE("QorGraphView::addRoute: no view found for source  or destination node. Omitting route "
                   "(needs both)!\n");
    } else {
        const EdgeKey key{from, to, static_cast<unsigned int>(source->findEventOutSlotID(out->name())),
                          static_cast<unsigned int>(destination->findEventInSlotID(in->name()))};
        edge = unusedEdge(key);
        if (!edge) {
            edge = new QorGraphEdge(this, from, to, key.outSlotId, key.inSlotId);
            _allEdges.insert(key, edge);
        }
        edge->deselect();
        edge->setPalette(_edgePalette);
        edge->_listed = true;
        _edges.append(edge);
    }
    setMode(DEFAULT_M);
    return edge;
}

void QorGraphView::onOutputSlotClicked(const QString& name)
{
    auto* view = qobject_cast<QorGraphNodeView*>(sender());
    if (!view) {
        QOR_WARNING("QorGraphView::onOutputSlotClicked: sender is 0.\n");
        return;
    }
    if (!view->node())
        return;
    setMode(CREATEROUTE_M);
    const QPoint start = outSlotPos(view, name);
    _routeLine.setPoints(start, start);
    _routeSource = view;
    _routeSourceField = fieldId(*view->node(), name);
}

void QorGraphView::onInputSlotClicked(const QString& name)
{
    const auto* view = qobject_cast<QorGraphNodeView*>(sender());
    if (!view || _mode != CREATEROUTE_M || !_routeSource) {
        QOR_WARNING("QorGraphView::onInputSlotClicked: sender is 0.\n");
        return;
    }
    if (!view->node() || !_routeSource->node())
        return;
    createRouteEvent(_routeSource->node()->ID(), _routeSourceField, view->node()->ID(),
                     fieldId(*view->node(), name));
}

void QorGraphView::createRouteEvent(UInt64 fromNodeId, unsigned int fromFieldId, UInt64 toNodeId,
                                    unsigned int toFieldId)
{
    QOR_NOTICE("QorGraphView::createRouteEvent:\n");
    const Node* const from = Node::findNode(fromNodeId);
    const Node* const to = Node::findNode(toNodeId);
    if (!from || !to)
        return;
    Field* const fromField = from->findField(fromFieldId);
    Field* const toField = to->findField(toFieldId);
    if (!fromField || !toField)
        return;
    if (!fromField->_outSlot)
        fromField->createOutSlot(false);
    if (!toField->_inSlot)
        toField->createInSlot(false);
    if (!_manageRoutes) {
        emit wantsCreateRoute(fromNodeId, fromFieldId, toNodeId, toFieldId);
        return;
    }
    const bool haveSlots = fromField->_outSlot && toField->_inSlot;
    if (!haveSlots || !Route::create(*fromField->_outSlot, *toField->_inSlot, Route::SCENE_RT))
        QOR_FATAL("QorGraphView::createRouteEvent: failed to create route %s.%s->%s.%s\n",
                  from->getIDStr().c_str(), fromField->name(), to->getIDStr().c_str(), toField->name());
}

void QorGraphView::deleteSelectedRoutesEvent()
{
    QOR_NOTICE("QorGraphView::deleteSelectedRoutes: #=%d\n", _selectedEdges.size());
    const QPointer<QorGraphView> living(this);
    // A route may stand behind several lines: one of today, and one that was selected before a rebuild.
    std::set<std::pair<const Field*, const Field*>> done;
    const QList<QorGraphEdge*> edges = _selectedEdges;
    for (QorGraphEdge* const edge : edges) {
        if (!edge || !edge->srcNode() || !edge->destNode())
            continue;
        const Node* const source = edge->srcNode()->node();
        const Node* const destination = edge->destNode()->node();
        if (!source || !destination)
            continue;
        const Field* const out = source->findField(edge->outSlotId());
        const Field* const in = destination->findField(edge->inSlotId());
        Route* const route =
            out && in && out->_outSlot && in->_inSlot ? out->_outSlot->findRoute(in->_inSlot) : nullptr;
        if (!route || !done.emplace(out, in).second)
            continue;
        if (_manageRoutes)
            delete route;
        else
            emit wantsDeleteRoute(route);
        if (!living)
            return;
    }
    updateEdges();
}

} // namespace Orvane::Qt4
