#pragma once

#include <Orvane/Observer.h>
#include <QHash>
#include <QImage>

class QGLWidget;

/// Keeps the pictures of the GL widgets as they are between drawing and swapping, when their pixels can be
/// read safely. Make it before the first view manager: subjects call in order of attachment, and the
/// library's own observer of the end of a frame swaps the buffers.
class FrameGrabber : public Orvane::Observer
{
public:
    FrameGrabber();

    /// Keeps pictures from now on, or no longer.
    void setActive(bool active) { _active = active; }

    /// The last picture of a GL widget; null when none was drawn while active.
    QImage picture(QGLWidget* widget) const { return _pictures.value(widget); }

    void notify(const double& time, Orvane::BaseObject* window, Orvane::BaseObject* second,
                Orvane::BaseObject* third) override;

private:
    bool _active = false;
    QHash<QGLWidget*, QImage> _pictures;
};
