#include "FrameGrabber.h"

#include <Orvane/WindowProc.h>
#include <QApplication>
#include <QGLWidget>
#include <QorRenderView.h>

FrameGrabber::FrameGrabber()
    : Orvane::Observer("FrameGrabber")
{
    Orvane::WindowProc::_endFrameWidget.attach(*this);
}

void FrameGrabber::notify(const double&, Orvane::BaseObject* window, Orvane::BaseObject*, Orvane::BaseObject*)
{
    const auto* proc = dynamic_cast<Orvane::WindowProc*>(window);
    if (!_active || !proc)
        return;
    const QWidgetList widgets = QApplication::allWidgets();
    for (QWidget* widget : widgets) {
        const auto* view = qobject_cast<Orvane::Qt4::QorRenderView*>(widget);
        if (!view || view->winPtr() != proc->winPtr())
            continue;
        auto* gl = view->findChild<QGLWidget*>();
        if (gl && gl->isValid())
            _pictures[gl] = gl->grabFrameBuffer();
    }
}
