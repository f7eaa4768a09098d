#include "base/Graph.h"
#include "base/NodeClass.h"
#include "base/ValueFields.h"
#include <Orvane/MFNode.h>
#include <Orvane/SFBool.h>
#include <Orvane/SFInt32.h>
#include <Orvane/SFString.h>
#include <Orvane/Window.h>

namespace Orvane {

namespace {

class WindowNode : public Window
{
};

const NodeClassRegistration registration("Window", makeNodeClass<WindowNode>);

template <class F>
const F& attribute(const Window& window, std::string_view name)
{
    return read<F>(window, static_cast<unsigned int>(partIndex(*window.type(), name)));
}

} // namespace

Window::Window() = default;

Window::~Window() = default;

const osg::Vec2f& Window::size() const
{
    return attribute<SFVec2f>(*this, "size").value();
}

const osg::Vec2f& Window::position() const
{
    return attribute<SFVec2f>(*this, "position").value();
}

bool Window::fullScreen() const
{
    return attribute<SFBool>(*this, "fullScreen").value();
}

bool Window::decoration() const
{
    return attribute<SFBool>(*this, "decoration").value();
}

bool Window::cursorVisible() const
{
    return attribute<SFBool>(*this, "cursorVisible").value();
}

int Window::samples() const
{
    return attribute<SFInt32>(*this, "samples").value();
}

const std::string& Window::pipe() const
{
    return attribute<SFString>(*this, "pipe").value();
}

MFNode* Window::viewareas() const
{
    return dynamic_cast<MFNode*>(findField("viewareas", EXACT_FSO));
}

} // namespace Orvane
