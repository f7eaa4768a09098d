#include <OpenSG/OSGViewport.h>

#include <OpenSG/OSGBackground.h>
#include <OpenSG/OSGCamera.h>
#include <OpenSG/OSGLog.h>
#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGRenderActionBase.h>
#include <OpenSG/OSGWindow.h>

#include "OSGContainerType.h"
#include "OSGGLContext.h"

namespace osg {

OSG_CREATABLE_CONTAINER_TYPE(Viewport, AttachmentContainer)
OSG_CONTAINER_TYPE(Foreground, AttachmentContainer)

ViewportPtr Viewport::createEmpty()
{
    return create();
}

Viewport::~Viewport()
{
    if (_parent)
        _parent->subPort(ViewportPtr(this));
    clearForegrounds();
}

void Viewport::setSize(Real32 left, Real32 bottom, Real32 right, Real32 top)
{
    _left = left;
    _bottom = bottom;
    _right = right;
    _top = top;
}

Int32 Viewport::toPixel(Real32 value, bool horizontal, Int32 inclusive) const
{
    // No window is wider than this, and the conversion of larger numbers is not defined.
    const Real64 limit = 1 << 24;
    if (value > 1)
        return static_cast<Int32>(osgMin<Real64>(value, limit));
    if (!_parent) {
        SWARNING << "Viewport: a fraction of no window" << std::endl;
        return 0;
    }
    const Real32 size = horizontal ? _parent->getWidth() : _parent->getHeight();
    return static_cast<Int32>(osgClamp<Real64>(-limit, size * value - static_cast<Real32>(inclusive), limit));
}

Int32 Viewport::getPixelLeft() const
{
    return toPixel(_left, true, 0);
}

Int32 Viewport::getPixelRight() const
{
    return toPixel(_right, true, 1);
}

Int32 Viewport::getPixelBottom() const
{
    return toPixel(_bottom, false, 0);
}

Int32 Viewport::getPixelTop() const
{
    return toPixel(_top, false, 1);
}

bool Viewport::isFullWindow() const
{
    return _parent && getPixelLeft() == 0 && getPixelBottom() == 0 &&
           getPixelRight() == _parent->getWidth() - 1 && getPixelTop() == _parent->getHeight() - 1;
}

void Viewport::addForeground(const ForegroundPtr& foreground)
{
    if (!foreground)
        return;
    addRefCP(foreground);
    _foregrounds.push_back(foreground);
}

void Viewport::clearForegrounds()
{
    MFForegroundPtr dropped;
    dropped.swap(_foregrounds);
    for (ForegroundPtr& foreground : dropped)
        clearRefCP(foreground);
}

void Viewport::render(RenderActionBase* action)
{
    if (!action || !_camera || !_background || !_root) {
        SWARNING << "Viewport: action, camera, background or root missing, nothing is drawn" << std::endl;
        return;
    }
    if (!hasCurrentGLContext() || getPixelWidth() <= 0 || getPixelHeight() <= 0)
        return;

    const GLViewportScope scope(*this);
    action->setViewport(this);
    _background->clear(*action, *this);
    const UInt32 mask = action->getTravMask();
    action->setTravMask(mask & _travMask);
    action->apply(_root);
    action->setTravMask(mask);
    for (const ForegroundPtr& foreground : _foregrounds)
        foreground->draw(*action, *this);
    action->setViewport(nullptr);
}

} // namespace osg
