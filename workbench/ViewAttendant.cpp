#include "ViewAttendant.h"

#include <Orvane/MFNode.h>
#include <Orvane/Viewarea.h>
#include <Orvane/ViewareaProc.h>
#include <Orvane/Window.h>
#include <Orvane/WindowProc.h>
#include <QAction>
#include <QApplication>
#include <QChildEvent>
#include <QEvent>
#include <QGLWidget>
#include <QHelpEvent>
#include <QStyle>
#include <QToolTip>
#include <QorRenderView.h>
#include <QorTools.h>
#include <QorViewManager.h>
#include <QorWindowToolbar.h>

using namespace Orvane::Qt4;

namespace {

/// The view that a GL widget belongs to; null for any other object.
QorRenderView* viewOf(QObject* widget)
{
    return qobject_cast<QGLWidget*>(widget) ? qobject_cast<QorRenderView*>(widget->parent()) : nullptr;
}

QString sensorDescription(const Orvane::WindowProc& proc)
{
    const Orvane::MFNode* const areas = proc.window() ? proc.window()->viewareas() : nullptr;
    if (!areas)
        return {};
    for (Orvane::NodeLink& link : *areas) {
        auto* const area = dynamic_cast<Orvane::Viewarea*>(link.node());
        const Orvane::ViewareaProc* const areaProc = area ? area->getViewareaProc() : nullptr;
        if (areaProc && areaProc->overSensor())
            return fromRuntime(areaProc->sensorDescription());
    }
    return {};
}

} // namespace

ViewAttendant::ViewAttendant(QorViewManager* manager, QObject* parent)
    : QObject(parent)
    , _manager(manager)
    , _buttonsAction(new QAction(tr("&Buttons in the views"), this))
{
    _buttonsAction->setCheckable(true);
    _buttonsAction->setChecked(true);
    _buttonsAction->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_B));
    connect(_buttonsAction, &QAction::toggled, this, &ViewAttendant::showButtons);

    _manager->installEventFilter(this);
    const auto views = _manager->findChildren<QorRenderView*>();
    for (QorRenderView* view : views)
        follow(view);
}

bool ViewAttendant::eventFilter(QObject* watched, QEvent* event)
{
    // A child is polished when it is a finished view.
    if (watched == _manager && event->type() == QEvent::ChildPolished) {
        if (auto* view = qobject_cast<QorRenderView*>(static_cast<QChildEvent*>(event)->child()))
            follow(view);
    }
    const QorRenderView* const view = viewOf(watched);
    Orvane::WindowProc* const proc = view ? view->windowProc() : nullptr;
    // A drag goes on outside.
    const bool points = proc && view->mouseMode() == QorRenderView::NavigationMode &&
                        QApplication::mouseButtons() == Qt::NoButton;
    if (points && event->type() == QEvent::Enter) {
        // The pointer need not move any more.
        const QPoint place = static_cast<QEnterEvent*>(event)->pos();
        proc->mouseMove(place.x(), place.y());
    } else if (points && event->type() == QEvent::Leave) {
        // A place outside of the picture, where no sensor can be.
        proc->mouseMove(-1, -1);
    } else if (proc && event->type() == QEvent::ToolTip) {
        QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), sensorDescription(*proc));
        return true;
    }
    return QObject::eventFilter(watched, event);
}

void ViewAttendant::follow(QorRenderView* view)
{
    // A manager hides the buttons of its views.
    view->setToolbar(_buttonsAction->isChecked());
    if (auto* widget = view->findChild<QGLWidget*>())
        widget->installEventFilter(this);
    // Its pictures are drawn for a light ground.
    if (auto* strip = view->findChild<QorWindowToolbar*>())
        strip->setPalette(QApplication::style()->standardPalette());
}

void ViewAttendant::showButtons(bool visible)
{
    const auto views = _manager->findChildren<QorRenderView*>();
    for (QorRenderView* view : views)
        view->setToolbar(visible);
}
