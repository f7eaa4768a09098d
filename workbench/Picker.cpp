#include "Picker.h"

#include "Icons.h"
#include "Selection.h"
#include <QAction>
#include <QChildEvent>
#include <QorRenderView.h>
#include <QorViewManager.h>

using namespace Orvane::Qt4;

Picker::Picker(QorViewManager* manager, Selection* selection, QObject* parent)
    : QObject(parent)
    , _manager(manager)
    , _selection(selection)
    , _action(new QAction(tr("&Pick nodes"), this))
{
    _action->setCheckable(true);
    _action->setIcon(drawnIcon(Drawing::Pick));
    _action->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_P));
    connect(_action, &QAction::toggled, this, &Picker::setPicking);

    _manager->installEventFilter(this);
    const auto views = _manager->findChildren<QorRenderView*>();
    for (QorRenderView* view : views)
        follow(view);
}

bool Picker::eventFilter(QObject* watched, QEvent* event)
{
    // A child is polished when it is a finished view.
    if (watched == _manager && event->type() == QEvent::ChildPolished) {
        if (auto* view = qobject_cast<QorRenderView*>(static_cast<QChildEvent*>(event)->child()))
            follow(view);
    }
    return QObject::eventFilter(watched, event);
}

void Picker::follow(QorRenderView* view)
{
    view->setMouseMode(_action->isChecked() ? QorRenderView::PickMode : QorRenderView::NavigationMode);
    connect(view, &QorRenderView::nodePickedHierachy, _selection, &Selection::selectChain);
}

void Picker::setPicking(bool picking)
{
    const auto views = _manager->findChildren<QorRenderView*>();
    for (QorRenderView* view : views)
        view->setMouseMode(picking ? QorRenderView::PickMode : QorRenderView::NavigationMode);
}
