#include "QorRenderView.h"

#include "OSCQGLWidget.h"
#include "QorTools.h"
#include "QorWindowToolbar.h"
#include <OpenSG/OSGPassiveWindow.h>
#include <Orvane/Window.h>
#include <Orvane/WindowProc.h>
#include <QtGui/QResizeEvent>
#include <QtWidgets/QVBoxLayout>

namespace Orvane::Qt4 {

QorRenderView::NewCallback QorRenderView::_newCallback = nullptr;
QorRenderView::DeleteCallback QorRenderView::_deleteCallback = nullptr;
QPointer<QWidget> QorRenderView::_parentWidget;

QorRenderView::WindowObserver QorRenderView::_newObserver(NEW_OT);
QorRenderView::WindowObserver QorRenderView::_deleteObserver(DELETE_OT);
QorRenderView::WindowObserver QorRenderView::_beginFrameObserver(BEGINFRAME_OT);
QorRenderView::WindowObserver QorRenderView::_endFrameObserver(ENDFRAME_OT);
QorRenderView::WindowObserver QorRenderView::_showObserver(SHOW_OT);
QorRenderView::WindowObserver QorRenderView::_hideObserver(HIDE_OT);
QorRenderView::WindowObserver QorRenderView::_resizeObserver(RESIZE_OT);
QorRenderView::WindowObserver QorRenderView::_repositionObserver(REPOSITION_OT);
QorRenderView::WindowObserver QorRenderView::_fullScreenObserver(FULLSCREEN_OT);
QorRenderView::WindowObserver QorRenderView::_cursorObserver(CURSOR_OT);

QorRenderView::QorRenderView(Orvane::WindowProc* windowProc, QWidget* parent, Qt::WindowFlags flags)
    : QFrame(parent, flags)
    , _windowProc(windowProc)
{
    setObjectName(QStringLiteral("QorRenderView"));

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);

    QGLFormat format(QGL::AlphaChannel | QGL::StencilBuffer, 0);
    const Orvane::Window* window = _windowProc->window();
    if (window && window->samples() > 1) {
        format.setSampleBuffers(true);
        format.setSamples(window->samples());
    }

    _glWidget = new OSCQGLWidget(_windowProc, format, false, this);
    layout->addWidget(_glWidget, 0);

    _toolbar = new QorWindowToolbar(this, _windowProc);
    _toolbar->show();

    _winPtr = osg::PassiveWindowBase::create();
    osg::addRefCP(_winPtr);
    _windowProc->setWinPtr(_winPtr, true);

    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    _glWidget->setMouseTracking(true);

    if (_timerEnabled)
        restartTimer();
    if (!parent)
        setWindowTitle(fromRuntime(_windowProc->title()));
}

QorRenderView::QorRenderView(QorRenderView&)
    : QFrame(nullptr)
{
}

QorRenderView::~QorRenderView()
{
    if (WindowObserver::_viewList)
        WindowObserver::_viewList->removeAll(this);
    if (_windowProc && _windowProc->winPtr() == _winPtr) {
        osg::WindowPtr none;
        _windowProc->setWinPtr(none, true);
    }
    osg::subRefCP(_winPtr);
}

void QorRenderView::connectObserver(QWidget* parent)
{
    Orvane::WindowProc::_newWidget.attach(_newObserver);
    Orvane::WindowProc::_deleteWidget.attach(_deleteObserver);
    Orvane::WindowProc::_showWidget.attach(_showObserver);
    Orvane::WindowProc::_beginFrameWidget.attach(_beginFrameObserver);
    Orvane::WindowProc::_endFrameWidget.attach(_endFrameObserver);
    Orvane::WindowProc::_hideWidget.attach(_hideObserver);
    Orvane::WindowProc::_resizeWidget.attach(_resizeObserver);
    Orvane::WindowProc::_repositionWidget.attach(_repositionObserver);
    Orvane::WindowProc::_fullScreenWidget.attach(_fullScreenObserver);
    Orvane::WindowProc::_cursorWidget.attach(_cursorObserver);

    _parentWidget = parent;
    _newCallback = nullptr;
    _deleteCallback = nullptr;
}

void QorRenderView::connectObserver(NewCallback newCallback, DeleteCallback deleteCallback)
{
    connectObserver(nullptr);
    _newCallback = newCallback;
    _deleteCallback = deleteCallback;
}

void QorRenderView::forgetWindowProc()
{
    _windowProc = nullptr;
    if (_glWidget)
        _glWidget->forgetWindowProc();
    if (_toolbar)
        _toolbar->forgetWindowProc();
}

void QorRenderView::stopTimer()
{
    if (_timerId != -1)
        killTimer(_timerId);
    _timerId = -1;
}

void QorRenderView::restartTimer()
{
    stopTimer();
    _timerId = startTimer(_desiredFps);
}

void QorRenderView::setDesiredFps(int fps)
{
    _desiredFps = 1000 / fps;
    if (_timerEnabled)
        restartTimer();
}

void QorRenderView::setTimerEnabled(bool enabled)
{
    if (!enabled) {
        stopTimer();
        _timerEnabled = false;
        return;
    }
    // Hosts rely on the word turning from rate to interval and back, and on a timer that was off staying off
    // until `setDesiredFps`.
    if (_desiredFps != 0) {
        _desiredFps = 1000 / _desiredFps;
        if (_timerEnabled)
            restartTimer();
    }
    _timerEnabled = true;
}

void QorRenderView::timerEvent(QTimerEvent*)
{
    if (_timerEnabled && _glWidget)
        _glWidget->updateGL();
}

void QorRenderView::updateGL()
{
    if (_glWidget)
        _glWidget->updateGL();
}

void QorRenderView::initializeGL()
{
}

void QorRenderView::paintGL()
{
    if (isEnabled() && _windowProc)
        _windowProc->render();
}

void QorRenderView::resizeGL(int width, int height)
{
    if (!_winPtr)
        return;
    if (_windowProc && !_winPtr->isResizePending())
        _windowProc->resize(width, height);
    _winPtr->resizeGL();
}

void QorRenderView::setToolbar(bool visible)
{
    if (_toolbar)
        _toolbar->setVisible(visible);
}

QSize QorRenderView::sizeHint() const
{
    return QSize(400, 400);
}

void QorRenderView::childEvent(QChildEvent* event)
{
    QFrame::childEvent(event);
}

void QorRenderView::resizeEvent(QResizeEvent* event)
{
    QFrame::resizeEvent(event);
    if (_toolbar)
        _toolbar->move(event->size().width() - _toolbar->width(), _toolbar->y());
}

} // namespace Orvane::Qt4
