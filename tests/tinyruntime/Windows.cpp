// Windows, viewareas, processing objects, navigator messages, images.

#include "Runtime.h"
#include <Orvane/Image.h>

namespace Tiny {

using namespace Orvane;

namespace {

NodeType* windowType()
{
    static NodeType* type = [] {
        Part viewareas;
        viewareas.name = "viewareas";
        viewareas.dataType = MFNODE_DT;
        return makeType("Window", {viewareas});
    }();
    return type;
}

NodeType* viewareaType()
{
    static NodeType* type = makeType("Viewarea");
    return type;
}

} // namespace

Pick& pick()
{
    static Pick value;
    return value;
}

TinyWindow::TinyWindow(Context* context)
{
    NodeAccess::setUp(this, windowType(), nullptr, context, true);
}
TinyWindow::~TinyWindow() = default;

TinyViewarea::TinyViewarea(Context* context)
    : proc(this)
{
    NodeAccess::setUp(this, viewareaType(), nullptr, context, true);
}
TinyViewarea::~TinyViewarea() = default;

TinyViewareaProc::TinyViewareaProc(Node* viewarea)
    : ViewareaProc(viewarea)
{
}
TinyViewareaProc::~TinyViewareaProc() = default;

TinyWindowProc::TinyWindowProc(Window* window)
    : WindowProc(window)
{
}
TinyWindowProc::~TinyWindowProc() = default;

void TinyWindowProc::render()
{
    note("render");
}
void TinyWindowProc::resize(int width, int height)
{
    note("resize " + std::to_string(width) + " " + std::to_string(height));
}
void TinyWindowProc::keyPress(int key)
{
    note("keyPress " + std::to_string(key));
}
void TinyWindowProc::keyRelease(int key)
{
    note("keyRelease " + std::to_string(key));
}
void TinyWindowProc::buttonPress(int button, int x, int y)
{
    note("buttonPress " + std::to_string(button) + " " + std::to_string(x) + " " + std::to_string(y));
}
void TinyWindowProc::buttonRelease(int button, int x, int y)
{
    note("buttonRelease " + std::to_string(button) + " " + std::to_string(x) + " " + std::to_string(y));
}
void TinyWindowProc::mouseMove(int x, int y)
{
    note("mouseMove " + std::to_string(x) + " " + std::to_string(y));
}
void TinyWindowProc::touchEvent(std::vector<TouchPointRecord>& points)
{
    note("touchEvent " + std::to_string(points.size()));
    touches.push_back(points);
}
void TinyWindowProc::message(const std::string& name)
{
    note("message " + name);
}

} // namespace Tiny

namespace Orvane {

NodeProc::~NodeProc() = default;

double NodeProc::contextTimeStamp()
{
    const Context* context = _node ? _node->context() : nullptr;
    return context ? context->timeStamp() : 0.0;
}

Window::Window() = default;
Window::~Window() = default;

const osg::Vec2f& Window::size() const
{
    return static_cast<const Tiny::TinyWindow*>(this)->sizeValue;
}
const osg::Vec2f& Window::position() const
{
    return static_cast<const Tiny::TinyWindow*>(this)->positionValue;
}
bool Window::fullScreen() const
{
    return static_cast<const Tiny::TinyWindow*>(this)->fullScreenValue;
}
bool Window::decoration() const
{
    return static_cast<const Tiny::TinyWindow*>(this)->decorationValue;
}
bool Window::cursorVisible() const
{
    return static_cast<const Tiny::TinyWindow*>(this)->cursorVisibleValue;
}
int Window::samples() const
{
    return static_cast<const Tiny::TinyWindow*>(this)->samplesValue;
}
const std::string& Window::pipe() const
{
    return static_cast<const Tiny::TinyWindow*>(this)->pipeValue;
}
MFNode* Window::viewareas() const
{
    return static_cast<MFNode*>(findField("viewareas", EXACT_FSO));
}

Subject WindowProc::_newWidget;
Subject WindowProc::_deleteWidget;
Subject WindowProc::_showWidget;
Subject WindowProc::_hideWidget;
Subject WindowProc::_resizeWidget;
Subject WindowProc::_repositionWidget;
Subject WindowProc::_cursorWidget;
Subject WindowProc::_fullScreenWidget;
Subject WindowProc::_beginFrameWidget;
Subject WindowProc::_endFrameWidget;

WindowProc::WindowProc(Window* window)
    : NodeProc(window)
    , _window(window)
{
}

WindowProc::~WindowProc()
{
    if (_winPtrCounted)
        osg::subRefCP(_winPtr);
}

std::string WindowProc::title()
{
    const auto* window = static_cast<const Tiny::TinyWindow*>(_window);
    return window ? window->titleValue : std::string();
}

void WindowProc::setWinPtr(osg::WindowPtr& window, bool counted)
{
    ++static_cast<Tiny::TinyWindowProc*>(this)->setWinPtrCount;
    if (counted)
        osg::addRefCP(window);
    if (_winPtrCounted)
        osg::subRefCP(_winPtr);
    _winPtr = window;
    _winPtrCounted = counted;
}

void WindowProc::browsePickedNode(int x, int y)
{
    static_cast<Tiny::TinyWindowProc*>(this)->note("browsePickedNode " + std::to_string(x) + " " +
                                                   std::to_string(y));
}

Viewarea::Viewarea() = default;
Viewarea::~Viewarea() = default;

ViewareaProc* Viewarea::getViewareaProc()
{
    return &static_cast<Tiny::TinyViewarea*>(this)->proc;
}

ViewareaProc::ViewareaProc(Node* viewarea)
    : NodeProc(viewarea)
{
}
ViewareaProc::~ViewareaProc() = default;

osg::ViewportPtr ViewareaProc::vptPtr()
{
    return _viewport;
}

SceneBaseNode::SceneBaseNode() = default;
SceneBaseNode::~SceneBaseNode() = default;

SceneBaseNodeProc* SceneBaseNode::getSceneBaseNodeProc()
{
    // What a scene does is scripted by the test, so one object serves them all.
    struct Proc : SceneBaseNodeProc
    {
        Proc()
            : SceneBaseNodeProc(nullptr)
        {
        }
    };
    static Proc proc;
    return &proc;
}

SceneBaseNodeProc::SceneBaseNodeProc(Node* scene)
    : NodeProc(scene)
{
}
SceneBaseNodeProc::~SceneBaseNodeProc() = default;

bool SceneBaseNodeProc::pick(const osg::Line& ray, std::vector<Node*>& nodes, osg::Pnt3f* point,
                             osg::Vec3f* normal, osg::NodePtr* osgNode, unsigned int* triangle,
                             float* distance)
{
    Tiny::Pick& answer = Tiny::pick();
    answer.ray = ray;
    if (!answer.hit)
        return false;
    nodes = answer.nodes;
    if (point)
        *point = answer.point;
    if (normal)
        *normal = answer.normal;
    if (osgNode)
        *osgNode = answer.osgNode;
    if (triangle)
        *triangle = answer.triangle;
    if (distance)
        *distance = (answer.point - ray.getPosition()).length();
    return true;
}

NavigatorProc::NavigatorProc(Node* node)
    : NodeProc(node)
{
}
NavigatorProc::~NavigatorProc() = default;

unsigned int NavigatorProc::getMessageCount()
{
    return static_cast<unsigned int>(Tiny::switches().messages.size());
}

NavigatorProc::Message* NavigatorProc::getMessage(unsigned int index)
{
    auto& messages = Tiny::switches().messages;
    return index < messages.size() ? &messages[index] : nullptr;
}

Image::Image() = default;

Image::Image(const osg::ImagePtr& image)
    : _image(image)
{
    osg::addRefCP(_image);
}

Image::Image(const Image& other)
    : Image(other._image)
{
}

Image& Image::operator=(const Image& other)
{
    osg::setRefdCP(_image, other._image);
    return *this;
}

Image::~Image()
{
    osg::subRefCP(_image);
}

int Image::width() const
{
    return _image ? _image->getWidth() : 0;
}
int Image::height() const
{
    return _image ? _image->getHeight() : 0;
}
int Image::depth() const
{
    return _image ? _image->getDepth() : 0;
}

} // namespace Orvane
