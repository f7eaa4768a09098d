#include "OSCQGLWidget.h"

#include "QorRenderView.h"
#include <Orvane/WindowProc.h>
#include <QtGui/QTouchEvent>
#include <QtWidgets/QLayout>
#include <cmath>

namespace Orvane::Qt4 {

namespace {

// What `TouchPointRecord::state` tells.
const int TouchBegins = 0;
const int TouchEnds = 1;
const int TouchMoves = 2;

} // namespace

OSCQGLWidget::OSCQGLWidget(Orvane::WindowProc* windowProc, const QGLFormat& format, bool autoSwap,
                           QorRenderView* parent)
    : QGLWidget(format, parent)
    , _windowProc(windowProc)
{
    setAutoBufferSwap(autoSwap);
    setAttribute(Qt::WA_AcceptTouchEvents);
}

bool OSCQGLWidget::event(QEvent* event)
{
    if (!_windowProc)
        return QGLWidget::event(event);

    switch (event->type()) {
    case QEvent::TouchBegin:
        dispatchTouch(static_cast<QTouchEvent*>(event), TouchBegins);
        return true;
    case QEvent::TouchUpdate:
        // One update per frame is enough: the runtime looks at it once.
        if (_windowProc->contextTimeStamp() != _lastTouchTime)
            dispatchTouch(static_cast<QTouchEvent*>(event), TouchMoves);
        return true;
    case QEvent::TouchEnd:
    case QEvent::TouchCancel:
        dispatchTouch(static_cast<QTouchEvent*>(event), TouchEnds);
        return true;
    default:
        break;
    }

    // While a touch runs, and until the frame has moved on after it, ordinary events are swallowed: among
    // them are the mouse events that the system makes out of touches.
    if (_windowProc->contextTimeStamp() > _lastTouchTime && !_touchActive)
        return QGLWidget::event(event);
    return true;
}

void OSCQGLWidget::dispatchTouch(QTouchEvent* event, int state)
{
    event->accept();
    const QList<QTouchEvent::TouchPoint>& points = event->touchPoints();
    if (state == TouchBegins) {
        _touchActive = true;
        _primaryTouchId = points.isEmpty() ? -1 : points.first().id();
    } else if (state == TouchEnds) {
        _touchActive = false;
    }

    std::vector<Orvane::TouchPointRecord> records;
    std::vector<Orvane::TouchPointRecord> others;
    for (const QTouchEvent::TouchPoint& point : points) {
        const bool primary = point.id() == _primaryTouchId;
        const QPointF place = point.pos();
        const Orvane::TouchPointRecord record = {point.id(),
                                                 state,
                                                 primary,
                                                 static_cast<float>(std::floor(place.x() + 0.5)),
                                                 static_cast<float>(std::floor(place.y() + 0.5)),
                                                 static_cast<float>(point.pressure())};
        (primary ? records : others).push_back(record);
    }
    records.insert(records.end(), others.begin(), others.end());

    _windowProc->touchEvent(records);
    _lastTouchTime = _windowProc->contextTimeStamp();
}

void OSCQGLWidget::paintEvent(QPaintEvent*)
{
}

void OSCQGLWidget::paintGL()
{
}

void OSCQGLWidget::resizeGL(int width, int height)
{
    keepPlace();
    if (!_windowProc || !_windowProc->winPtr())
        return;
    const osg::WindowPtr window = _windowProc->winPtr();
    if (!window->isResizePending())
        _windowProc->resize(width, height);
    window->resizeGL();
}

// Qt makes the native window on the desktop and puts it into the view at once. The window manager, asked for
// the first size in between, may give it when the view has long given another.
void OSCQGLWidget::keepPlace()
{
    QLayout* const layout = parentWidget() ? parentWidget()->layout() : nullptr;
    if (layout && layout->contentsRect() != geometry())
        layout->invalidate();
}

} // namespace Orvane::Qt4
