// The bridge from the runtime's window subjects to the render views.

#include "OSCQGLWidget.h"
#include "QorLog.h"
#include "QorRenderView.h"
#include "QorWindowPipe.h"
#include <Orvane/ViewareaProc.h>
#include <Orvane/Window.h>
#include <Orvane/WindowProc.h>
#include <QtGui/QGuiApplication>
#include <QtGui/QScreen>
#include <cstdint>

namespace Orvane::Qt4 {

namespace {

/// A pair of numbers of the window node in whole pixels; negative means unset.
struct Pixels
{
    explicit Pixels(const osg::Vec2f& pair)
        : x(truncated(pair[0]))
        , y(truncated(pair[1]))
    {
    }

    bool isSet() const { return x >= 0 && y >= 0; }

    int x;
    int y;

private:
    static int truncated(float value)
    {
        const float limit = 2147483648.0F;
        return value > -limit && value < limit ? static_cast<int>(value) : -1;
    }
};

/// A pointer as the log lines print it.
int pointerNumber(const void* pointer)
{
    return static_cast<int>(reinterpret_cast<std::intptr_t>(pointer));
}

} // namespace

QList<QorRenderView*>* QorRenderView::WindowObserver::_viewList = nullptr;

QorRenderView::WindowObserver::WindowObserver(ObserverType type)
    : Orvane::Observer(nullptr)
    , _type(type)
{
}

QorRenderView::WindowObserver::~WindowObserver() = default;

void QorRenderView::WindowObserver::notify(const double&, Orvane::BaseObject* a, Orvane::BaseObject* b,
                                           Orvane::BaseObject*)
{
    auto* windowProc = dynamic_cast<Orvane::WindowProc*>(a);
    if (!windowProc) {
        QOR_FATAL("Invalid WindowObserver::notify() call, (no window)\n");
        return;
    }
    const Orvane::Window* window = windowProc->window();

    QorRenderView* view = nullptr;
    if (!_viewList) {
        _viewList = new QList<QorRenderView*>;
    } else {
        for (QorRenderView* candidate : qAsConst(*_viewList)) {
            if (candidate->_winPtr == windowProc->winPtr()) {
                view = candidate;
                break;
            }
        }
    }

    switch (_type) {
    case NEW_OT:
        newView(windowProc);
        break;
    case DELETE_OT:
        deleteView(windowProc, view);
        break;
    case BEGINFRAME_OT:
        beginFrame(view);
        break;
    case ENDFRAME_OT:
        endFrame(view);
        break;
    case SHOW_OT:
        showView(window, view);
        break;
    case HIDE_OT:
        hideView(view);
        break;
    case RESIZE_OT:
        resizeView(window, view);
        break;
    case REPOSITION_OT:
        repositionView(window, view);
        break;
    case FULLSCREEN_OT:
        QOR_INFO("WindowObserver::notify() FULLSCREEN_OT call\n");
        toggleFullScreen(view);
        break;
    case CURSOR_OT:
        setViewCursor(b, view);
        break;
    default:
        QOR_FATAL("Invalid WindowObserver::_type\n");
        break;
    }
}

void QorRenderView::WindowObserver::newView(Orvane::WindowProc* windowProc)
{
    QOR_NOTICE("WindowObserver::notify() NEW call\n");
    if (windowProc->winPtr())
        QOR_FATAL("NEW_OT: windowProc->winPtr() already set\n");

    QorRenderView* view = _newCallback ? _newCallback(windowProc)
                                       : new QorRenderView(windowProc, _parentWidget, Qt::WindowFlags());
    if (view)
        _viewList->append(view);
}

void QorRenderView::WindowObserver::deleteView(Orvane::WindowProc* windowProc, QorRenderView* view)
{
    QOR_NOTICE("WindowObserver::notify() DELETE call\n");
    const QPointer<QorRenderView> survivor(view);
    if (_deleteCallback)
        _deleteCallback(view);
    else
        delete view;

    osg::WindowPtr none;
    windowProc->setWinPtr(none, true);
    // A view that its host keeps must not call a window that is gone.
    if (survivor) {
        survivor->forgetWindowProc();
        _viewList->removeOne(view);
    }
}

// The message names SHOW_OT at both ends of a frame too.
void QorRenderView::WindowObserver::beginFrame(QorRenderView* view)
{
    if (!view) {
        QOR_FATAL("Invalid viewList entry for SHOW_OT \n");
        return;
    }
    if (view->_glWidget)
        view->_glWidget->makeCurrent();
}

void QorRenderView::WindowObserver::endFrame(QorRenderView* view)
{
    if (!view) {
        QOR_FATAL("Invalid viewList entry for SHOW_OT \n");
        return;
    }
    if (view->_glWidget) {
        view->_glWidget->swapBuffers();
        view->_glWidget->doneCurrent();
    }
}

void QorRenderView::WindowObserver::showView(const Orvane::Window* window, QorRenderView* view)
{
    QOR_NOTICE("WindowObserver::notify() SHOW call\n");
    if (!view) {
        QOR_FATAL("Invalid viewList entry for SHOW_OT \n");
        return;
    }
    if (!window) {
        QOR_FATAL("Invalid window\n");
        return;
    }

    const Pixels size(window->size());
    const Pixels position(window->position());
    const bool unplacedFullScreen = window->fullScreen() && position.x < 0 && position.y < 0;
    if (!unplacedFullScreen && size.isSet())
        view->resize(size.x, size.y);
    if (position.isSet())
        view->move(position.x, position.y);
    if (window->fullScreen())
        enterFullScreen(window, view, position.isSet());
    if (!window->cursorVisible())
        view->setCursor(QCursor(Qt::BlankCursor));
    view->show();
}

void QorRenderView::WindowObserver::enterFullScreen(const Orvane::Window* window, QorRenderView* view,
                                                    bool placed)
{
    const QList<QScreen*> screens = QGuiApplication::screens();
    QorWindowPipe pipe;
    if (window->pipe().empty() || !pipe.parse(window->pipe()) || pipe.screen < 0 ||
        pipe.screen >= screens.size()) {
        QOR_FATAL("Invalid value for Window.pipe and %d screens!\n", screens.size());
    } else if (pipe.screen > 0 && !placed) {
        int x = 0;
        for (int i = 0; i < pipe.screen; ++i)
            x += screens.at(i)->geometry().width();
        view->move(x, 0);
    }
    toggleFullScreen(view);
}

void QorRenderView::WindowObserver::hideView(QorRenderView* view)
{
    QOR_NOTICE("WindowObserver::notify() HIDE call\n");
    if (!view) {
        QOR_FATAL("Invalid viewList entry for HIDE_OT \n");
        return;
    }
    view->hide();
}

// The runtime fires what follows only for a window that has a view; a call without one does nothing.

void QorRenderView::WindowObserver::resizeView(const Orvane::Window* window, QorRenderView* view)
{
    QOR_NOTICE("WindowObserver::notify() RESIZE call (%d)\n", pointerNumber(window));
    if (!window || !view)
        return;
    if (window->fullScreen()) {
        QOR_INFO("Ignore window resize; window is fullscreen\n");
        return;
    }
    const Pixels size(window->size());
    // A resize to the present size is reported as an invalid one.
    if (size.isSet() && (size.x != view->width() || size.y != view->height())) {
        QOR_NOTICE("Reshape window: %d/%d\n", size.x, size.y);
        view->resize(size.x, size.y);
        return;
    }
    QOR_FATAL("Invalid window reshape: %d/%d\n", size.x, size.y);
}

void QorRenderView::WindowObserver::repositionView(const Orvane::Window* window, QorRenderView* view)
{
    QOR_INFO("WindowObserver::notify() REPOSITION call (%d)\n", pointerNumber(window));
    if (!window || !view)
        return;
    const Pixels position(window->position());
    if (!position.isSet())
        return;
    QOR_LOG("Reposition window: %d/%d\n", position.x, position.y);
    view->move(position.x, position.y);
}

void QorRenderView::WindowObserver::toggleFullScreen(QorRenderView* view)
{
    if (view)
        view->setWindowState(view->windowState() ^ Qt::WindowFullScreen);
}

void QorRenderView::WindowObserver::setViewCursor(const Orvane::BaseObject* viewarea, QorRenderView* view)
{
    QOR_INFO("WindowObserver::notify() CURSOR call\n");
    const auto* viewareaProc = dynamic_cast<const Orvane::ViewareaProc*>(viewarea);
    if (!viewareaProc) {
        QOR_FATAL("Invalid Viewarea\n");
        return;
    }
    if (!view)
        return;
    const int arrow = 1;
    const int pointingHand = 2;
    const int cursorType = viewareaProc->overSensor() ? pointingHand : arrow;
    switch (cursorType) {
    case arrow:
        view->setCursor(QCursor(Qt::ArrowCursor));
        break;
    case pointingHand:
        view->setCursor(QCursor(Qt::PointingHandCursor));
        break;
    default:
        QOR_FATAL("Invalid cursor type: %d\n", cursorType);
        break;
    }
}

} // namespace Orvane::Qt4
