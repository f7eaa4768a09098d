#include <OpenSG/OSGWindow.h>

#include <OpenSG/OSGBaseFunctions.h>
#include <OpenSG/OSGLog.h>
#include <OpenSG/OSGPassiveWindow.h>
#include <OpenSG/OSGViewport.h>

#include "OSGContainerType.h"
#include "OSGGLContext.h"
#include "OSGGLObjects.h"

#include <algorithm>
#include <epoxy/gl.h>

namespace osg {

OSG_CONTAINER_TYPE(Window, AttachmentContainer)

Window::Window()
    : _glObjects(std::make_unique<GLObjects>())
{
}

Window::~Window()
{
    for (const ViewportPtr& port : _ports)
        port->_parent = NullFC;
}

void Window::setSize(UInt16 width, UInt16 height)
{
    _width = width;
    _height = height;
}

void Window::resize(int width, int height)
{
    setSize(static_cast<UInt16>(osgClamp(0, width, 0xffff)),
            static_cast<UInt16>(osgClamp(0, height, 0xffff)));
    _resizePending = true;
}

void Window::resizeGL()
{
    if (!_resizePending || !hasCurrentGLContext())
        return;
    glViewport(0, 0, _width, _height);
    _resizePending = false;
}

ViewportPtr Window::getPort(UInt32 index) const
{
    return index < _ports.size() ? _ports[index] : ViewportPtr();
}

void Window::adopt(const ViewportPtr& port)
{
    if (port->_parent)
        port->_parent->subPort(port);
    port->_parent = WindowPtr(this);
}

void Window::addPort(const ViewportPtr& port)
{
    insertPort(static_cast<UInt32>(_ports.size()), port);
}

void Window::insertPort(UInt32 index, const ViewportPtr& port)
{
    if (!port)
        return;
    const ViewportPtr added = port;
    adopt(added);
    _ports.insert(_ports.begin() + std::min<std::size_t>(index, _ports.size()), added);
}

void Window::replacePort(UInt32 index, const ViewportPtr& port)
{
    if (index < _ports.size())
        replacePortBy(_ports[index], port);
}

void Window::replacePortBy(const ViewportPtr& present, const ViewportPtr& next)
{
    if (!present || !next || present == next || present->_parent != WindowPtr(this))
        return;
    const ViewportPtr dropped = present;
    const ViewportPtr added = next;
    adopt(added);
    *std::find(_ports.begin(), _ports.end(), dropped) = added;
    dropped->_parent = NullFC;
}

void Window::subPort(const ViewportPtr& port)
{
    const auto found = std::find(_ports.begin(), _ports.end(), port);
    if (found == _ports.end())
        return;
    (*found)->_parent = NullFC;
    _ports.erase(found);
}

void Window::subPort(UInt32 index)
{
    if (index < _ports.size())
        subPort(ViewportPtr(_ports[index]));
}

void Window::clearPorts()
{
    MFViewportPtr dropped;
    dropped.swap(_ports);
    for (ViewportPtr& port : dropped) {
        port->_parent = NullFC;
        clearRefCP(port);
    }
}

void Window::init()
{
    if (hasCurrentGLContext())
        _glObjects->enterContext();
}

void Window::render(RenderActionBase* action)
{
    renderFrame(action, false);
}

void Window::draw(DrawAction* action)
{
    renderFrame(action, true);
}

void Window::renderFrame(RenderActionBase* action, bool withResize)
{
    activate();
    if (!hasCurrentGLContext()) {
        deactivate();
        return;
    }
    frameInit();
    if (withResize) {
        resizeGL();
        drawAllViewports(action);
    } else {
        renderAllViewports(action);
    }
    swap();
    frameExit();
}

void Window::renderAllViewports(RenderActionBase* action)
{
    if (!action) {
        SWARNING << "Window: no action to draw with" << std::endl;
        return;
    }
    for (const ViewportPtr& port : _ports)
        port->render(action);
}

void Window::frameInit()
{
    if (hasCurrentGLContext())
        _glObjects->enterContext();
}

void Window::frameExit()
{
    if (!hasCurrentGLContext())
        return;
    _glObjects->freeRetired();
    reportGLErrors();
}

PassiveWindowPtr PassiveWindowBase::create()
{
    return PassiveWindowPtr(new PassiveWindow);
}

PassiveWindowPtr PassiveWindowBase::createEmpty()
{
    return create();
}

FieldContainerType& PassiveWindowBase::getClassType()
{
    static FieldContainerType type("PassiveWindow", &Window::getClassType());
    return type;
}

FieldContainerType& PassiveWindowBase::getType() const
{
    return getClassType();
}

} // namespace osg
