// Contexts and their roots, the system, and the test's control over them.

#include "Runtime.h"
#include <Orvane/GraphLoader.h>
#include <Orvane/LogModule.h>
#include <Orvane/SAIBrowserRef.h>
#include <Orvane/System.h>
#include <algorithm>

namespace Tiny {

std::vector<std::string>& trace()
{
    static std::vector<std::string> lines;
    return lines;
}

std::vector<FieldWrite>& fieldWrites()
{
    static std::vector<FieldWrite> writes;
    return writes;
}

Switches& switches()
{
    static Switches values;
    return values;
}

void reset()
{
    trace().clear();
    fieldWrites().clear();
    switches() = Switches();
    pick() = Pick();
}

int livingContexts()
{
    return static_cast<int>(Orvane::Context::Data::living().size());
}

int framesOf(const Orvane::Context* context)
{
    return context->data()->frames;
}

Orvane::NodeState stateOf(const Orvane::Context* context)
{
    return context->data()->state;
}

void setTime(Orvane::Context* context, double time)
{
    Orvane::Context::Data::setTime(*context, time);
}

Orvane::Context* lastContext()
{
    const auto& living = Orvane::Context::Data::living();
    return living.empty() ? nullptr : living.back();
}

} // namespace Tiny

namespace Orvane {

const char LogModuleName[] = "Tiny";

// The system.

System& System::the()
{
    static System system;
    return system;
}

void System::init(int argc, char** argv, int version)
{
    Tiny::trace().push_back("System::init " + std::to_string(argc) + (argv ? " set " : " null ") +
                            std::to_string(version));
    _initialised = true;
}

void System::exit()
{
    Tiny::trace().push_back("System::exit");
    _initialised = false;
}

// Contexts.

std::vector<Context*>& Context::Data::living()
{
    static std::vector<Context*> contexts;
    return contexts;
}

Context::Context()
    : _data(new Data)
{
    _data->names = NodeNameSpace::Data::create();
    Data::living().push_back(this);
}

Context::~Context()
{
    // Whoever is told may take a reference and let it go again.
    ++_refCount;
    if (Tiny::switches().onEnd)
        Tiny::switches().onEnd(this);
    Tiny::trace().push_back("~Context");
    while (!_data->nodes.empty()) {
        Node* node = *_data->nodes.begin();
        if (node->data()->isKept && !node->data()->isRoot)
            NodeAccess::orphan(node);
        else
            delete node;
        _data->nodes.erase(node);
    }
    auto& living = Data::living();
    living.erase(std::find(living.begin(), living.end(), this));
    delete _data;
}

void NodeAccess::orphan(Node* node)
{
    node->_data->context = nullptr;
    node->_nameSpace = nullptr;
}

Context* Context::create()
{
    Tiny::trace().push_back("Context::create");
    if (Tiny::switches().refuseContext)
        return nullptr;
    auto* context = new Context;
    context->_refCount = 1;
    return context;
}

bool Context::load(const std::string& url, LoadType type, std::string options)
{
    Tiny::trace().push_back("Context::load " + url + " " + std::to_string(type) + " '" + options + "'");
    if (Tiny::switches().refuseLoad)
        return false;
    NodeNameSpace::Data::setBase(*_data->names, url);
    if (Tiny::switches().onLoad)
        Tiny::switches().onLoad(this);
    return true;
}

bool Context::load(const std::string& url, const std::string& text, LoadType type, std::string options)
{
    Tiny::trace().push_back("Context::load " + url + " [" + text + "] " + std::to_string(type) + " '" +
                            options + "'");
    if (Tiny::switches().refuseLoad)
        return false;
    NodeNameSpace::Data::setBase(*_data->names, url);
    if (Tiny::switches().onLoad)
        Tiny::switches().onLoad(this);
    return true;
}

Node* Context::findRoot(const NodeType& type)
{
    Tiny::trace().push_back("Context::findRoot " + type.name);
    for (Node* root : _data->roots) {
        if (root->type() == &type)
            return root;
    }
    return nullptr;
}

bool Context::removeRoot(NodeType& type)
{
    Tiny::trace().push_back("Context::removeRoot " + type.name);
    auto& roots = _data->roots;
    const auto place =
        std::find_if(roots.begin(), roots.end(), [&](Node* root) { return root->type() == &type; });
    if (place == roots.end())
        return false;
    Node* root = *place;
    roots.erase(place);
    if (_data->names->rootNode() == root)
        NodeNameSpace::Data::setRoot(*_data->names, nullptr);
    delete root;
    return true;
}

bool Context::setRootState(const double& time, NodeState state)
{
    Tiny::trace().push_back("Context::setRootState " + std::to_string(static_cast<int>(time)) + " " +
                            std::to_string(state));
    _data->state = state;
    for (Node* node : _data->nodes)
        NodeAccess::setState(node, state);
    return true;
}

double Context::runFrame()
{
    if (_data->inFrame)
        return 0.0;
    Tiny::trace().push_back("Context::runFrame");
    _data->inFrame = true;
    ++_data->frames;
    if (Tiny::switches().onFrame)
        Tiny::switches().onFrame(this);
    _data->inFrame = false;

    std::vector<double>& waits = Tiny::switches().waits;
    if (waits.empty())
        return Tiny::switches().wait;
    const double wait = waits.front();
    waits.erase(waits.begin());
    return wait;
}

void Context::holdTime(double seconds)
{
    _timeStamp = std::max(_timeStamp, seconds);
}

const LoadReport& Context::loadReport() const
{
    return _data->report;
}

FrameStatistics Context::frameStatistics() const
{
    FrameStatistics statistics;
    statistics.framesRun = static_cast<std::size_t>(_data->frames);
    return statistics;
}

bool Context::save(const std::string&, const SaveOptions&, std::string& error)
{
    error = "the tiny runtime writes no files";
    return false;
}

std::string LoadMessage::toString() const
{
    return file + ":" + std::to_string(line) + ":" + std::to_string(column) + ": " + text;
}

// Roots.

bool Context::Data::addRoot(BaseObject* owner, Node* root, const char* name, NodeCreator creator)
{
    auto* context = dynamic_cast<Context*>(owner);
    if (!context || !root)
        return false;
    NodeAccess::setUp(root, root->type(), name, context, true);
    root->data()->isRoot = true;
    context->_data->roots.push_back(root);
    Tiny::trace().push_back(root->type()->name + "::create " + (name ? name : "null") + " " +
                            std::to_string(creator));
    return true;
}

namespace {

Tiny::Part childrenPart()
{
    Tiny::Part part;
    part.name = "children";
    part.dataType = MFNODE_DT;
    return part;
}

/// A type that is filled when the first node of it is made, since it may be used before this source is set
/// up.
NodeType* filledRootType(NodeType& type)
{
    NodeType::Data::mark(type, false, true);
    if (type.data()->parts.empty())
        type.data()->parts.push_back(makeDesc(childrenPart()));
    return &type;
}

bool isContextWithout(BaseObject* owner, const NodeType& type)
{
    const auto* context = dynamic_cast<Context*>(owner);
    return context && std::none_of(context->data()->roots.begin(), context->data()->roots.end(),
                                   [&](const Node* root) { return root->type() == &type; });
}

} // namespace

NodeType ContextSetup::_type("ContextSetup");
NodeType Engine::_type("Engine");
NodeType Scene::_type("Scene");

ContextSetup::ContextSetup()
{
    Node::_type = filledRootType(_type);
}
ContextSetup::~ContextSetup() = default;

ContextSetup* ContextSetup::create(BaseObject* owner, const char* name, NodeCreator creator)
{
    if (!isContextWithout(owner, _type))
        return nullptr;
    auto* root = new ContextSetup;
    Context::Data::addRoot(owner, root, name, creator);
    return root;
}

Engine::Engine()
{
    Node::_type = filledRootType(_type);
}
Engine::~Engine() = default;

Engine* Engine::create(BaseObject* owner, const char* name, NodeCreator creator)
{
    if (!isContextWithout(owner, _type))
        return nullptr;
    auto* root = new Engine;
    Context::Data::addRoot(owner, root, name, creator);
    return root;
}

Scene::Scene()
{
    Node::_type = filledRootType(_type);
}
Scene::~Scene() = default;

Scene* Scene::create(BaseObject* owner, const char* name, NodeCreator creator)
{
    if (!isContextWithout(owner, _type))
        return nullptr;
    auto* root = new Scene;
    Context::Data::addRoot(owner, root, name, creator);
    NodeNameSpace::Data::setRoot(*static_cast<Context*>(owner)->data()->names, root);
    return root;
}

// The scene access interface.

struct SAIBrowserRef::Data
{
    Context* context = nullptr;

    Context* living() const
    {
        const auto& all = Context::Data::living();
        return std::find(all.begin(), all.end(), context) == all.end() ? nullptr : context;
    }
};

SAIBrowserRef::SAIBrowserRef(Context* context)
    : _data(new Data{context})
{
}

SAIBrowserRef::~SAIBrowserRef()
{
    Tiny::trace().push_back("~SAIBrowserRef");
    delete _data;
}

std::string SAIBrowserRef::getName() const
{
    return _data->living() ? "Tiny" : "";
}

std::string SAIBrowserRef::getVersion() const
{
    return _data->living() ? "1" : "";
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
    return _data->living();
}

bool SAIBrowserRef::loadURL(const std::vector<std::string>& urls)
{
    Context* context = _data->living();
    return context && std::any_of(urls.begin(), urls.end(), [&](const std::string& url) {
               return context->load(url, Context::REPLACE_LT, "");
           });
}

void SAIBrowserRef::setDescription(const std::string& description)
{
    Tiny::trace().push_back("SAIBrowserRef::setDescription " + description);
}

void SAIBrowserRef::print(const std::string& text)
{
    Tiny::trace().push_back("SAIBrowserRef::print " + text);
}

void SAIBrowserRef::dispose()
{
    _data->context = nullptr;
}

// Formats.

int GraphLoader::getFormatList(std::list<std::string>& formats, FormatStyle style)
{
    if (Tiny::switches().noFormats)
        return 0;
    const bool filters = style == FILTER_FS;
    formats.push_back(filters ? "Tiny one (*.one)" : "Tiny one");
    formats.push_back(filters ? "Tiny two (*.two *.zwei)" : "Tiny two");
    return 2;
}

int GraphLoader::getSuffixList(std::list<std::string>& suffixes)
{
    if (Tiny::switches().noFormats)
        return 0;
    suffixes.insert(suffixes.end(), {"one", "two", "zwei"});
    return 3;
}

} // namespace Orvane

SAI::Base::SAIBrowserRef::~SAIBrowserRef() = default;
