#include "GraphDock.h"

#include "RouteCanvas.h"
#include "Selection.h"
#include "Steps.h"
#include <Orvane/Node.h>
#include <QAction>
#include <QMenu>
#include <QTimer>
#include <QToolBar>
#include <QVBoxLayout>
#include <QorGraphNodeView.h>

using namespace Orvane::Qt4;

GraphDock::GraphDock(Selection* selection, Steps* steps, QWidget* parent)
    : QDockWidget(tr("Routes"), parent)
    , _selection(selection)
    , _canvas(new RouteCanvas(steps))
{
    setObjectName(QStringLiteral("GraphDock"));
    auto* bar = new QToolBar;
    _commands = {bar->addAction(tr("&All routes"), this, &GraphDock::showAllRoutes),
                 bar->addAction(tr("Add &selected"), this, &GraphDock::addSelected),
                 bar->addAction(tr("&Lay out"), _canvas, &RouteCanvas::layOut),
                 bar->addAction(tr("&Clear"), _canvas, &QorGraphView::clear)};
    _commands.at(0)->setShortcut(Qt::CTRL | Qt::Key_R);
    _commands.at(0)->setToolTip(tr("Shows every node of the scene that has routes"));
    _commands.at(1)->setToolTip(tr("Shows the selected node and those at the other ends of its routes"));
    _commands.at(2)->setToolTip(tr("Spreads the boxes from left to right"));

    auto* content = new QWidget(this);
    auto* layout = new QVBoxLayout(content);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(bar);
    layout->addWidget(_canvas, 1);
    _canvas->setMinimumHeight(fontMetrics().lineSpacing() * 10);
    content->setFocusProxy(_canvas);
    setWidget(content);

    connect(_canvas, &QorGraphView::nodeSelected, _selection, &Selection::selectNode);
    connect(_canvas, &RouteCanvas::nodeDropped, _selection, &Selection::selectPath);
    connect(_selection, &Selection::changed, this, &GraphDock::showSelected);
    connect(steps, &Steps::nodeLeft, _canvas, [this](Orvane::Node* node) { _canvas->remove(node); });
}

GraphDock::~GraphDock() = default;

void GraphDock::addTo(QMenu* menu)
{
    menu->addActions(_commands);
}

void GraphDock::setRootNode(Orvane::Node* root)
{
    _rootId = root ? root->ID() : 0;
}

void GraphDock::showAllRoutes()
{
    const bool wasHidden = !_canvas->isVisible();
    show();
    raise();
    _canvas->showRoutesBelow(Orvane::Node::findNode(_rootId));
    showSelected(_selection->path());
    // The window gives the canvas its size only now.
    if (wasHidden)
        QTimer::singleShot(0, _canvas, &RouteCanvas::layOut);
}

void GraphDock::addSelected()
{
    Orvane::Node* const node = _selection->node();
    if (!node)
        return;
    show();
    raise();
    if (!_canvas->viewOf(node))
        _canvas->add(node, QPoint(0, 0));
    _canvas->importDirectNeighboursOf(node);
    _canvas->layOut();
    showSelected(_selection->path());
}

void GraphDock::showSelected(const Orvane::NodePath& path)
{
    Orvane::Node* const node = path.node();
    const QorGraphNodeView* const box = _canvas->viewOf(node);
    // One of a group that the user has selected here leaves the group as it is.
    if (box && box->isSelected())
        return;
    _canvas->deselectAll();
    if (box)
        _canvas->select(node);
}
