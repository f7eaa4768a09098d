#include "NodeDock.h"

#include <QAction>
#include <QChildEvent>
#include <QHeaderView>
#include <QorNodeEditorTreeView.h>
#include <QorObservingNodeEditor.h>
#include <QorRenderView.h>
#include <QorViewManager.h>

using namespace Orvane::Qt4;

NodeDock::NodeDock(QorViewManager* manager, QWidget* parent)
    : QDockWidget(tr("Node"), parent)
    , _manager(manager)
    , _delegate(nullptr)
    , _editor(new QorObservingNodeEditor(this))
    , _pickAction(new QAction(tr("&Pick nodes"), this))
{
    setObjectName(QStringLiteral("NodeDock"));
    setWidget(_editor);
    _editor->setItemDelegate(&_delegate);
    _editor->setDescriptionVisible(true);
    _editor->treeView()->header()->setDefaultSectionSize(150);

    _pickAction->setCheckable(true);
    _pickAction->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_P));
    connect(_pickAction, &QAction::toggled, this, &NodeDock::setPicking);

    _manager->installEventFilter(this);
    const auto views = _manager->findChildren<QorRenderView*>();
    for (QorRenderView* view : views)
        follow(view);
}

NodeDock::~NodeDock()
{
    // The editor deletes neither its model nor a delegate.
    _editor->setNode(nullptr);
}

void NodeDock::setNode(Orvane::Node* node)
{
    _editor->setNode(node);
}

bool NodeDock::eventFilter(QObject* watched, QEvent* event)
{
    // A child is polished when it is a finished view.
    if (watched == _manager && event->type() == QEvent::ChildPolished) {
        if (auto* view = qobject_cast<QorRenderView*>(static_cast<QChildEvent*>(event)->child()))
            follow(view);
    }
    return QDockWidget::eventFilter(watched, event);
}

void NodeDock::follow(QorRenderView* view)
{
    view->setMouseMode(_pickAction->isChecked() ? QorRenderView::PickMode : QorRenderView::NavigationMode);
    connect(view, &QorRenderView::nodePickedHierachy, this, [this](const std::vector<Orvane::Node*>& nodes) {
        if (!nodes.empty())
            setNode(nodes.back());
    });
}

void NodeDock::setPicking(bool picking)
{
    const auto views = _manager->findChildren<QorRenderView*>();
    for (QorRenderView* view : views)
        view->setMouseMode(picking ? QorRenderView::PickMode : QorRenderView::NavigationMode);
}
