#pragma once

#include "QorExport.h"
#include <QtOpenGL/QGLWidget>

class QTouchEvent;

namespace Orvane {
class WindowProc;
}

namespace Orvane::Qt4 {

class QorRenderView;

/// The widget that holds the GL context of a render view. Qt paints nothing here: all drawing happens inside
/// the frames of the runtime. It passes touch events on to the runtime's window. Owned by its view.
class QOR_EXPORT OSCQGLWidget : public QGLWidget
{
    Q_OBJECT

public:
    /// \a windowProc is borrowed. With \a autoSwap Qt swaps the buffers after painting.
    OSCQGLWidget(Orvane::WindowProc* windowProc, const QGLFormat& format, bool autoSwap,
                 QorRenderView* parent);

    /// True from the begin to the end of a touch.
    bool isTouchActive() const { return _touchActive; }

    /// Lets go of the runtime's window, which is about to end.
    void forgetWindowProc() { _windowProc = nullptr; }

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void paintGL() override;
    void resizeGL(int width, int height) override;

private:
    void dispatchTouch(QTouchEvent* event, int state);
    void keepPlace();

    Orvane::WindowProc* _windowProc;
    double _lastTouchTime = -1.0;
    bool _touchActive = false;
    int _primaryTouchId = -1;
};

} // namespace Orvane::Qt4
