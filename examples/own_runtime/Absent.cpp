// What a plant has not: scenes in files, windows, pictures. The library asks for these too, and takes "there
// is none" for an answer. A runtime with pictures fires the subjects of WindowProc.

#include <Orvane/Context.h>
#include <Orvane/ContextSetup.h>
#include <Orvane/Engine.h>
#include <Orvane/GraphLoader.h>
#include <Orvane/Image.h>
#include <Orvane/NavigatorProc.h>
#include <Orvane/NodeNameSpace.h>
#include <Orvane/NodeProc.h>
#include <Orvane/SAIBrowserRef.h>
#include <Orvane/SFImage.h>
#include <Orvane/SFNode.h>
#include <Orvane/Scene.h>
#include <Orvane/SceneBaseNodeProc.h>
#include <Orvane/System.h>
#include <Orvane/Viewarea.h>
#include <Orvane/ViewareaProc.h>
#include <Orvane/Window.h>
#include <Orvane/WindowProc.h>

namespace Orvane {

// Scenes and contexts.

System& System::the()
{
    static System system;
    return system;
}

void System::init(int, char**, int)
{
    _initialised = true;
}

void System::exit()
{
    _initialised = false;
}

Context::Context() = default;
Context::~Context() = default;

Context* Context::create()
{
    return nullptr;
}

bool Context::load(const std::string&, LoadType, std::string)
{
    return false;
}

bool Context::load(const std::string&, const std::string&, LoadType, std::string)
{
    return false;
}

Node* Context::findRoot(const NodeType&)
{
    return nullptr;
}

bool Context::removeRoot(NodeType&)
{
    return false;
}

bool Context::setRootState(const double&, NodeState)
{
    return false;
}

double Context::runFrame()
{
    return 1.0;
}

NodeType ContextSetup::_type("ContextSetup");
NodeType Engine::_type("Engine");
NodeType Scene::_type("Scene");

ContextSetup* ContextSetup::create(BaseObject*, const char*, NodeCreator)
{
    return nullptr;
}

Engine* Engine::create(BaseObject*, const char*, NodeCreator)
{
    return nullptr;
}

Scene* Scene::create(BaseObject*, const char*, NodeCreator)
{
    return nullptr;
}

ContextSetup::~ContextSetup() = default;
Engine::~Engine() = default;
Scene::~Scene() = default;
SceneBaseNode::~SceneBaseNode() = default;

SceneBaseNodeProc* SceneBaseNode::getSceneBaseNodeProc()
{
    return nullptr;
}

NodeProc::~NodeProc() = default;
SceneBaseNodeProc::~SceneBaseNodeProc() = default;

double NodeProc::contextTimeStamp()
{
    return 0.0;
}

bool SceneBaseNodeProc::pick(const osg::Line&, std::vector<Node*>&, osg::Pnt3f*, osg::Vec3f*, osg::NodePtr*,
                             unsigned int*, float*)
{
    return false;
}

NodeNameSpace::~NodeNameSpace() = default;

Node* NodeNameSpace::findNode(NodeNameSpace*, const std::string&)
{
    return nullptr;
}

NodeNameSpace* NodeNameSpace::findNameSpace(NodeNameSpace*, const std::string&, Context*, bool)
{
    return nullptr;
}

int GraphLoader::getFormatList(std::list<std::string>&, FormatStyle)
{
    return 0;
}

int GraphLoader::getSuffixList(std::list<std::string>&)
{
    return 0;
}

// The browser object.

SAIBrowserRef::SAIBrowserRef(Context*)
{
}
SAIBrowserRef::~SAIBrowserRef() = default;

std::string SAIBrowserRef::getName() const
{
    return "Plant";
}

std::string SAIBrowserRef::getVersion() const
{
    return "1";
}

double SAIBrowserRef::getCurrentSpeed() const
{
    return 0.0;
}

double SAIBrowserRef::getCurrentFrameRate() const
{
    return 0.0;
}

Context* SAIBrowserRef::getExecutionContext() const
{
    return nullptr;
}

bool SAIBrowserRef::loadURL(const std::vector<std::string>&)
{
    return false;
}

void SAIBrowserRef::setDescription(const std::string&)
{
}
void SAIBrowserRef::print(const std::string&)
{
}
void SAIBrowserRef::dispose()
{
}

// Fields of one node and of one image: no device has such a reading.

SFNode::SFNode(Node* node, NodePartDesc* desc)
    : Field(node, desc)
{
}

SFNode::~SFNode() = default;

NodePartDataType SFNode::dataType() const
{
    return SFNODE_DT;
}

std::string SFNode::valueToString() const
{
    return {};
}

int SFNode::cardinality() const
{
    return 0;
}

unsigned int SFNode::size() const
{
    return 1;
}

void SFNode::clear()
{
}

bool SFNode::parseValue(std::string_view, std::string&)
{
    return false;
}

void SFNode::assignValue(const Field&)
{
}

bool SFNode::hasValueOf(const Field&) const
{
    return false;
}

SFImage::SFImage(Node* node, NodePartDesc* desc)
    : Field(node, desc)
{
}

SFImage::~SFImage() = default;

NodePartDataType SFImage::dataType() const
{
    return SFIMAGE_DT;
}

std::string SFImage::valueToString() const
{
    return {};
}

int SFImage::cardinality() const
{
    return 0;
}

unsigned int SFImage::size() const
{
    return 1;
}

void SFImage::clear()
{
}

bool SFImage::parseValue(std::string_view, std::string&)
{
    return false;
}

void SFImage::assignValue(const Field&)
{
}

bool SFImage::hasValueOf(const Field&) const
{
    return false;
}

Image::Image() = default;
Image::Image(const Image&) = default;
Image::~Image() = default;

int Image::width() const
{
    return 0;
}

int Image::height() const
{
    return 0;
}

int Image::depth() const
{
    return 0;
}

// Windows.

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

WindowProc::~WindowProc() = default;

std::string WindowProc::title()
{
    return {};
}

void WindowProc::setWinPtr(osg::WindowPtr&, bool)
{
}
void WindowProc::browsePickedNode(int, int)
{
}

namespace {
const osg::Vec2f unset(-1.0F, -1.0F);
}

Window::~Window() = default;

const osg::Vec2f& Window::size() const
{
    return unset;
}

const osg::Vec2f& Window::position() const
{
    return unset;
}

bool Window::fullScreen() const
{
    return false;
}

bool Window::decoration() const
{
    return true;
}

bool Window::cursorVisible() const
{
    return true;
}

int Window::samples() const
{
    return 1;
}

const std::string& Window::pipe() const
{
    static const std::string none;
    return none;
}

MFNode* Window::viewareas() const
{
    return nullptr;
}

Viewarea::~Viewarea() = default;

ViewareaProc* Viewarea::getViewareaProc()
{
    return nullptr;
}

ViewareaProc::~ViewareaProc() = default;

osg::ViewportPtr ViewareaProc::vptPtr()
{
    return _viewport;
}

unsigned int NavigatorProc::getMessageCount()
{
    return 0;
}

NavigatorProc::Message* NavigatorProc::getMessage(unsigned int)
{
    return nullptr;
}

} // namespace Orvane

Relayne::URL::~URL() = default;

std::string Relayne::URL::toString() const
{
    return {};
}

SAI::Base::SAIBrowserRef::~SAIBrowserRef() = default;
