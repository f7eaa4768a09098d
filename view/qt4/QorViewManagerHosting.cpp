// How a manager takes in the views of its windows and lets them go again.

#include "QorLog.h"
#include "QorRenderView.h"
#include "QorViewManager.h"
#include <Orvane/Window.h>
#include <Orvane/WindowProc.h>
#include <QtCore/QChildEvent>
#include <QtWidgets/QGridLayout>

namespace Orvane::Qt4 {

namespace {

const int ColumnCount = 2;

} // namespace

QorRenderView* QorViewManager::newRenderView(Orvane::WindowProc* windowProc)
{
    QOR_NOTICE("QorViewManager::newRenderView\n");

    Qt::WindowFlags flags;
    QWidget* parent = nullptr;
    if (Orvane::Window* window = windowProc->window()) {
        if (!window->fullScreen() && !window->decoration())
            flags = Qt::FramelessWindowHint;
        const Orvane::Context* context = window->context();
        for (const auto& [id, entry] : _contexts) {
            if (entry.context.get() == context) {
                parent = entry.manager;
                break;
            }
        }
    }

    auto* view = new QorRenderView(windowProc, parent, flags);
    view->setToolbar(false);
    view->setTimerEnabled(false);
    return view;
}

void QorViewManager::deleteRenderView(QorRenderView* view)
{
    QOR_NOTICE("QorViewManager::deleteRenderView\n");
    if (view) {
        if (auto* manager = qobject_cast<QorViewManager*>(view->parentWidget()))
            manager->removeRenderView(view);
        else
            delete view;
    }
    QOR_NOTICE("QorViewManager::deleteRenderView: leaving\n");
}

void QorViewManager::childEvent(QChildEvent* event)
{
    QFrame::childEvent(event);

    // The polish event is the one that comes when the view is fully made.
    if (event->type() != QEvent::ChildPolished)
        return;
    auto* view = qobject_cast<QorRenderView*>(event->child());
    if (!view || view->parent() != this || _renderViews.contains(view))
        return;

    if (!_layout) {
        _layout = new QGridLayout(this);
        _layout->setContentsMargins(0, 0, 0, 0);
        _layout->setSpacing(2);
    }
    _renderViews.append(view);
    connect(view, &QObject::destroyed, this, [this, view] { _renderViews.removeOne(view); });

    const int place = _layout->count();
    _layout->addWidget(view, place / ColumnCount, place % ColumnCount);
    if (auto* parent = qobject_cast<QWidget*>(view->parent()))
        parent->show();
}

void QorViewManager::removeRenderView(QorRenderView* view)
{
    if (_layout) {
        for (int i = _layout->count(); i >= 0; --i) {
            if (QLayoutItem* item = _layout->itemAt(i)) {
                _layout->removeItem(item);
                _releasedItems.emplace_back(item);
            }
        }
    }

    view->setTimerEnabled(false);
    if (_renderViews.removeOne(view))
        delete view;
    else
        QOR_FATAL("QorViewManager::removeRenderView: view=%p not in _renderViews container. Cleanup bug?\n",
                  static_cast<const void*>(view));

    // The bound is the layout's count, which is 0 by now: the views that remain keep the geometry they have,
    // outside the grid, and the next one that comes starts again at row 0, column 0.
    for (int i = 0; _layout && i < _layout->count(); ++i)
        _layout->addWidget(_renderViews[i], i / ColumnCount, i % ColumnCount);
}

} // namespace Orvane::Qt4
