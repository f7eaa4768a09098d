#include "base/ContextData.h"
#include "base/ContextId.h"
#include "base/Graph.h"
#include "base/NameSpace.h"
#include "base/NodeClass.h"
#include "base/NodeData.h"
#include "base/NodeDeath.h"
#include "base/NodeRunning.h"
#include <Relayne/URL.h>
#include <algorithm>

namespace Orvane {

namespace {

/// Never destroyed, so that contexts may die in the last destructors of the process.
std::vector<Context*>& contexts()
{
    static auto* const the = new std::vector<Context*>;
    return *the;
}

UInt64 newContextId()
{
    static UInt64 last = 0;
    return ++last;
}

} // namespace

UInt64 contextId(const Context& context)
{
    return context.data()->id;
}

Context* findContext(UInt64 id)
{
    for (Context* const context : contexts()) {
        if (context->data()->id == id)
            return context;
    }
    return nullptr;
}

const std::vector<Context*>& livingContexts()
{
    return contexts();
}

BusyScope::BusyScope(Context& context)
    : _data(*context.data())
{
    ++_data.busy;
}

BusyScope::~BusyScope()
{
    if (--_data.busy == 0 && (!_data.released.empty() || _data.mayHaveCycles))
        endReleasedNodes(_data.context);
}

Context::Context()
    : _data(new Data(*this, newContextId()))
{
    contexts().push_back(this);
}

Context::~Context()
{
    _refCount = 1; // who takes a reference while the nodes end does not end the context again
    // What observers of the end do must not find it any more, or they load into it.
    contexts().erase(std::find(contexts().begin(), contexts().end(), this));
    endAllNodes(*this);
    endNameSpaces(*this);
    delete _data;
}

Context* Context::create()
{
    Context* const context = new Context; // lives as long as its references
    context->_refCount = 1;
    return context;
}

Node* Context::findRoot(const NodeType& type)
{
    for (const NodeRef& root : _data->roots)
        if (root->type()->name == type.name)
            return root.get();
    return nullptr;
}

bool Context::removeRoot(NodeType& type)
{
    const auto root =
        std::find_if(_data->roots.begin(), _data->roots.end(),
                     [&type](const NodeRef& candidate) { return candidate->type()->name == type.name; });
    if (root == _data->roots.end())
        return false;
    const RefGuard guard(*this);
    {
        BusyScope busy(*this);
        const NodeRef removed = std::move(*root);
        _data->roots.erase(root);
        _data->mayHaveCycles = true;
    }
    settleWindows(*this);
    return true;
}

bool Context::setRootState(const double&, NodeState state)
{
    if (state < CREATED_NS || state > RUNNING_NS)
        return false;
    const RefGuard guard(*this);
    {
        BusyScope busy(*this);
        _data->isRunning = _data->isRunning || state == RUNNING_NS;
        const std::vector<NodeRef> roots = _data->roots;
        for (const NodeRef& root : roots) {
            if (!root)
                continue;
            if (state == RUNNING_NS)
                startNode(*root);
            else
                raiseState(*root, std::min(state, LOADED_NS));
        }
    }
    settleWindows(*this);
    return true;
}

void Context::holdTime(double seconds)
{
    _data->clock.hold(seconds, _timeStamp);
}

const LoadReport& Context::loadReport() const
{
    return _data->report;
}

void addRoot(Context& context, const NodeRef& root)
{
    Context::Data& data = *context.data();
    data.roots.push_back(root);
    if (root->type()->name == "Scene" && !root->nameSpace())
        createNameSpace(context, nullptr, "scene", root.get(), Relayne::URL());
}

Node* createRoot(BaseObject* owner, const char* typeName, const char* name, NodeCreator creator)
{
    auto* const context = dynamic_cast<Context*>(owner);
    NodeType* const type = typeName ? findType(typeName) : nullptr;
    if (!context || !type || !type->isContextRoot() || context->findRoot(*type))
        return nullptr;
    const NodeRef root = createNode(*context, *type, creator);
    addRoot(*context, root);
    if (name && *name)
        setName(*root, root->nameSpace(), name);
    if (context->data()->isRunning)
        startNode(*root);
    return root.get();
}

} // namespace Orvane
