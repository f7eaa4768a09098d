#pragma once

#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGPassiveWindow.h>
#include <OpenSG/OSGPerspectiveCamera.h>
#include <OpenSG/OSGRefPtr.h>
#include <OpenSG/OSGRenderAction.h>
#include <OpenSG/OSGSolidBackground.h>
#include <OpenSG/OSGTransform.h>
#include <OpenSG/OSGViewport.h>

#include <QImage>
#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLFramebufferObject>
#include <memory>

/// A GL context without a widget that draws into a picture of `width` x `height`.
class GLContext
{
public:
    explicit GLContext(int width = 200, int height = 200)
        : _size(width, height)
    {
        QSurfaceFormat format;
        format.setVersion(2, 1);
        format.setDepthBufferSize(24);
        _context.setFormat(format);
        _context.create();
        _surface.setFormat(_context.format());
        _surface.create();
        makeCurrent();
        _target =
            std::make_unique<QOpenGLFramebufferObject>(_size, QOpenGLFramebufferObject::CombinedDepthStencil);
        _target->bind();
    }
    ~GLContext()
    {
        makeCurrent();
        _target.reset();
    }

    bool isValid() const { return _context.isValid() && _target->isValid(); }
    void makeCurrent()
    {
        _context.makeCurrent(&_surface);
        if (_target)
            _target->bind();
    }
    void doneCurrent() { _context.doneCurrent(); }
    QImage picture() const { return _target->toImage(); }

private:
    QSize _size;
    QOpenGLContext _context;
    QOffscreenSurface _surface;
    std::unique_ptr<QOpenGLFramebufferObject> _target;
};

/// A window with one viewport that looks from (0, 0, 10) along -z; at z = 0 the picture is 10 high.
class GLPicture
{
public:
    explicit GLPicture(int width = 200, int height = 200)
        : context(width, height)
    {
        osg::Matrix place;
        place.setTranslate(0, 0, 10);
        const osg::TransformPtr transform = osg::Transform::create();
        transform->setMatrix(place);
        eye = osg::makeNodeFor(transform);
        camera->setBeacon(eye.get());
        camera->setNear(0.1F);
        camera->setFar(100);
        camera->setFov(2 * 0.4636476F); // the half has a tangent of 1/2
        window->resize(width, height);
        window->addPort(port.get());
        port->setSize(0, 0, 1, 1);
        port->setCamera(camera.get());
        port->setBackground(background.get());
        window->init();
    }

    /// Draws a frame of the tree and reads it back; row 0 is the top.
    QImage draw(const osg::NodePtr& root)
    {
        context.makeCurrent();
        port->setRoot(root);
        action->resetStatistics();
        window->draw(action.get());
        return context.picture();
    }

    GLContext context;
    osg::RefPtr<osg::PassiveWindowPtr> window = osg::PassiveWindow::create();
    osg::RefPtr<osg::ViewportPtr> port = osg::Viewport::create();
    osg::RefPtr<osg::PerspectiveCameraPtr> camera = osg::PerspectiveCamera::create();
    osg::RefPtr<osg::SolidBackgroundPtr> background = osg::SolidBackground::create();
    osg::RefPtr<osg::NodePtr> eye;
    std::unique_ptr<osg::RenderAction> action{osg::RenderAction::create()};
};
