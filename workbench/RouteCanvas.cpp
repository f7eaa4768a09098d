#include "RouteCanvas.h"

#include "GraphLayout.h"
#include "RouteCommands.h"
#include <Orvane/EventInSlot.h>
#include <Orvane/EventOutSlot.h>
#include <Orvane/Field.h>
#include <Orvane/Node.h>
#include <Orvane/NodeType.h>
#include <QDropEvent>
#include <QFontMetricsF>
#include <QHelpEvent>
#include <QSet>
#include <QToolTip>
#include <QUndoStack>
#include <QorGraphEdge.h>
#include <QorGraphNodeView.h>
#include <QorNodePathMimeData.h>
#include <QorTools.h>
#include <algorithm>
#include <cmath>

using namespace Orvane::Qt4;

namespace {

/// Room for a box of scale 1 with what separates it from the next.
constexpr QSizeF cell(120, 34);
constexpr QSizeF boxSize(80, 20);

const QorNodePathMimeData* draggedNode(const QDropEvent* event)
{
    return qobject_cast<const QorNodePathMimeData*>(event->mimeData());
}

/// What the name on a box asks for, beside the strips at both ends.
double nameWidth(const QorGraphNodeView& box)
{
    constexpr double strips = 0.16;
    const QString name = fromRuntime(box.node()->getIDStr());
    return (QFontMetricsF(box.font()).horizontalAdvance(name) + 4.0) / (1.0 - strips);
}

bool hasLine(const Orvane::Route& route)
{
    return route.type() == Orvane::Route::SCENE_RT || route.type() == Orvane::Route::SCRIPT_RT;
}

/// The nodes at the sources of a node's routes.
std::vector<const Orvane::Node*> sourcesOf(const Orvane::Node& node)
{
    std::vector<const Orvane::Node*> sources;
    for (unsigned int i = 0; const Orvane::Field* const field = node.findField(i); ++i) {
        if (!field->_inSlot)
            continue;
        for (const Orvane::Route* const route : *field->_inSlot) {
            if (hasLine(*route))
                sources.push_back(route->outSlot()->field()->node());
        }
    }
    return sources;
}

bool sends(const Orvane::Node& node)
{
    for (unsigned int i = 0; const Orvane::Field* const field = node.findField(i); ++i) {
        if (!field->_outSlot)
            continue;
        if (std::any_of(field->_outSlot->begin(), field->_outSlot->end(),
                        [](const Orvane::Route* route) { return hasLine(*route); }))
            return true;
    }
    return false;
}

/// All nodes of a graph, each once; graphs may be deeper than the call stack.
std::vector<Orvane::Node*> nodesBelow(Orvane::Node* root)
{
    std::vector<Orvane::Node*> nodes;
    QSet<Orvane::Node*> seen;
    std::vector<Orvane::Node*> open{root};
    while (!open.empty()) {
        Orvane::Node* const node = open.back();
        open.pop_back();
        if (seen.contains(node))
            continue;
        seen.insert(node);
        nodes.push_back(node);
        std::vector<Orvane::Node*> children;
        node->collectAllChildren(children, 0);
        open.insert(open.end(), children.rbegin(), children.rend());
    }
    return nodes;
}

} // namespace

RouteCanvas::RouteCanvas(QUndoStack* steps, QWidget* parent)
    : QorGraphView(parent)
    , _steps(steps)
{
    setAcceptDrops(true);
    setManageRoutes(false);
    connect(this, &QorGraphView::wantsCreateRoute, this, &RouteCanvas::createRoute);
    connect(this, &QorGraphView::wantsDeleteRoute, this, [this](Orvane::Route* route) {
        // A canvas remembers lines that were selected once: a route that came back is not meant again.
        const QorGraphEdge* const line = _lines.value(route);
        if (line && line->isSelected())
            _unwanted.push_back(route);
    });
}

RouteCanvas::~RouteCanvas() = default;

std::vector<QorGraphNodeView*> RouteCanvas::boxes() const
{
    std::vector<QorGraphNodeView*> boxes;
    const auto all = findChildren<QorGraphNodeView*>(QString(), Qt::FindDirectChildrenOnly);
    for (QorGraphNodeView* const box : all) {
        if (box->node() && viewOf(box->node()) == box)
            boxes.push_back(box);
    }
    return boxes;
}

void RouteCanvas::createRoute(Orvane::UInt64 fromNode, unsigned int fromField, Orvane::UInt64 toNode,
                              unsigned int toField)
{
    const int before = _steps->index();
    _steps->push(new CreateRouteCommand({fromNode, fromField, toNode, toField}));
    if (_steps->index() == before)
        emit told(tr("There cannot be a route between these fields."));
}

QorGraphEdge* RouteCanvas::addRoute(Orvane::Route* route)
{
    QorGraphEdge* const line = QorGraphView::addRoute(route);
    _lines.insert(route, line);
    return line;
}

void RouteCanvas::deleteSelectedRoutesEvent()
{
    QorGraphView::deleteSelectedRoutesEvent();
    const std::vector<Orvane::Route*> routes = std::exchange(_unwanted, {});
    if (routes.size() == 1) {
        _steps->push(new DeleteRouteCommand(*routes.front()));
    } else if (!routes.empty()) {
        auto* const step =
            new QUndoCommand(tr("delete %n route(s)", nullptr, static_cast<int>(routes.size())));
        for (const Orvane::Route* const route : routes)
            new DeleteRouteCommand(*route, step); // which owns it
        _steps->push(step);
    }
}

void RouteCanvas::showRoutesBelow(Orvane::Node* root)
{
    if (!root)
        return;
    for (Orvane::Node* const node : nodesBelow(root)) {
        if (!viewOf(node) && (!sourcesOf(*node).empty() || sends(*node)))
            add(node, QPoint(0, 0));
    }
    layOut();
}

void RouteCanvas::layOut()
{
    const std::vector<QorGraphNodeView*> all = boxes();
    if (all.empty())
        return;
    QHash<const Orvane::Node*, int> numbers;
    for (QorGraphNodeView* const box : all)
        numbers.insert(box->node(), numbers.size());
    std::vector<std::pair<int, int>> lines;
    for (QorGraphNodeView* const box : all) {
        for (const Orvane::Node* const source : sourcesOf(*box->node())) {
            if (numbers.contains(source))
                lines.emplace_back(numbers.value(source), numbers.value(box->node()));
        }
    }
    const std::vector<QPointF> corners = layeredLayout(static_cast<int>(all.size()), lines, cell);

    QSizeF extent;
    for (const QPointF& corner : corners)
        extent = extent.expandedTo(QSizeF(corner.x(), corner.y()) + boxSize);
    constexpr double margin = 16.0;
    constexpr double statusLine = 24.0;
    const QSizeF room(width() - 2.0 * margin, height() - 2.0 * margin - statusLine);
    setScale(std::clamp(std::min(room.width() / extent.width(), room.height() / extent.height()), 0.6, 1.0));

    // Names have the room that is left beside each other.
    const double columns = std::round((extent.width() - boxSize.width()) / cell.width()) + 1.0;
    const double gap = (cell.width() - boxSize.width()) * scale();
    const double widest = (room.width() + gap) / columns - gap;
    double boxWidth = boxSize.width() * scale();
    for (const QorGraphNodeView* const box : all)
        boxWidth = std::max(boxWidth, std::min(widest, nameWidth(*box)));
    const double tallest = 0.78 * cell.height() * scale();
    const double nameHeight = QFontMetricsF(all.front()->font()).height();
    const double boxHeight = std::max(boxSize.height() * scale(), std::min(tallest, nameHeight));
    const double step = boxWidth + gap;

    const QSizeF used(columns * step - gap, extent.height() * scale());
    const QPointF origin(margin + std::max(0.0, (room.width() - used.width()) / 2.0),
                         margin + std::max(0.0, (room.height() - used.height()) / 2.0));
    for (std::size_t i = 0; i < all.size(); ++i) {
        all[i]->resize(QSizeF(boxWidth, boxHeight));
        all[i]->move(origin + QPointF(corners[i].x() / cell.width() * step, corners[i].y() * scale()));
    }
    update();
}

bool RouteCanvas::event(QEvent* event)
{
    if (event->type() != QEvent::ToolTip)
        return QorGraphView::event(event);
    const auto* const help = static_cast<QHelpEvent*>(event);
    const std::vector<QorGraphNodeView*> all = boxes();
    const auto box = std::find_if(all.begin(), all.end(), [&](const QorGraphNodeView* each) {
        return each->rect().contains(help->pos());
    });
    if (box == all.end()) {
        QToolTip::hideText();
        return true;
    }
    const Orvane::Node& node = *(*box)->node();
    QToolTip::showText(help->globalPos(), fromRuntime(node.type()->name + ' ' + node.getIDStr()), this,
                       (*box)->rect().toAlignedRect());
    return true;
}

void RouteCanvas::dragEnterEvent(QDragEnterEvent* event)
{
    if (draggedNode(event))
        event->acceptProposedAction();
}

void RouteCanvas::dragMoveEvent(QDragMoveEvent* event)
{
    if (draggedNode(event))
        event->acceptProposedAction();
}

void RouteCanvas::dropEvent(QDropEvent* event)
{
    const QorNodePathMimeData* const dragged = draggedNode(event);
    if (!dragged || !dragged->nodePath().node())
        return;
    event->acceptProposedAction();
    // The node may die of what listeners do, so its path goes last.
    const Orvane::NodePath path = dragged->nodePath();
    if (!viewOf(path.node())) {
        const QSizeF size = boxSize * scale();
        add(path.node(), event->pos() - QPoint(qRound(size.width() / 2), qRound(size.height() / 2)));
    }
    emit nodeDropped(path);
}
