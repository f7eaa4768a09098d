#include "script/ScriptHeap.h"

#include "base/ContextId.h"
#include "base/Log.h"
#include "base/TextCoding.h"
#include "script/ScriptBrowser.h"
#include "script/ScriptLimits.h"
#include "script/ScriptLists.h"
#include "script/ScriptNodes.h"
#include "script/ScriptPrelude.h"
#include "script/ScriptScenes.h"
#include "script/ScriptValues.h"
#include <OpenSG/OSGLog.h>
#include <Orvane/Context.h>
#include <Orvane/FieldType.h>
#include <Orvane/Node.h>
#include <chrono>
#include <cstdlib>
#include <ctime>
#include <malloc.h>
#include <utility>

namespace Orvane {

namespace {

using Heaps = std::unordered_map<UInt64, std::weak_ptr<ScriptHeap>>;

/// By context. Never destroyed, so that contexts may end in the last destructors of the process.
Heaps& heaps()
{
    static auto* const the = new Heaps;
    return *the;
}

double wallSeconds()
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

/// Of this thread, so that a busy machine stops nothing.
double processorSeconds()
{
    std::timespec time = {};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

duk_ret_t tick(duk_context* engine)
{
    ScriptHeap::of(engine).checkTime(engine);
    duk_push_int(engine, 1);
    return 1;
}

/// Only reached where the engine finds itself broken: what it holds cannot be used any more.
[[noreturn]] void giveUp(void*, const char* message)
{
    ORVANE_LOG(osg::LOG_LOG, "The engine of scripts has failed: %s.\n", message ? message : "");
    std::abort();
}

/// Keeps the object on top of the stack under its own address, and pops it.
void keepTop(duk_context* engine)
{
    duk_push_heap_stash(engine);
    duk_push_sprintf(engine, "%p", duk_get_heapptr(engine, -2));
    duk_pull(engine, -3);
    duk_put_prop(engine, -3);
    duk_pop(engine);
}

} // namespace

ScriptLimits& scriptLimits()
{
    static ScriptLimits the;
    return the;
}

void addFunction(duk_context* engine, const char* name, duk_c_function function, duk_idx_t arguments,
                 int magic)
{
    duk_push_c_function(engine, function, arguments);
    duk_set_magic(engine, -1, magic);
    duk_put_prop_string(engine, -2, name);
}

void pushProxyHandler(duk_context* engine, const ProxyTraps& traps)
{
    duk_push_object(engine);
    addFunction(engine, "get", traps.get, 3);
    addFunction(engine, "set", traps.set, 4);
    addFunction(engine, "has", traps.has, 2);
    addFunction(engine, "deleteProperty", traps.remove, 2);
    addFunction(engine, "ownKeys", traps.list, 1);
}

// ---- Life

std::shared_ptr<ScriptHeap> ScriptHeap::of(Context& context)
{
    std::weak_ptr<ScriptHeap>& known = heaps()[contextId(context)];
    if (std::shared_ptr<ScriptHeap> heap = known.lock())
        return heap;
    std::shared_ptr<ScriptHeap> heap(new ScriptHeap(context));
    if (!heap->setUp())
        return nullptr;
    known = heap;
    return heap;
}

ScriptHeap& ScriptHeap::of(duk_context* engine)
{
    duk_memory_functions functions;
    duk_get_memory_functions(engine, &functions);
    return *static_cast<ScriptHeap*>(functions.udata);
}

ScriptHeap::ScriptHeap(Context& context)
    : _context(context)
    , _contextId(contextId(context))
{
}

ScriptHeap::~ScriptHeap()
{
    const auto known = heaps().find(_contextId);
    if (known != heaps().end() && known->second.expired())
        heaps().erase(known);
    if (_engine)
        duk_destroy_heap(_engine);
}

bool ScriptHeap::setUp()
{
    _engine = duk_create_heap(allocate, reallocate, release, this, giveUp);
    if (!_engine)
        return false;
    const bool ok = duk_safe_call(_engine, setUpSafely, this, 0, 1) == DUK_EXEC_SUCCESS;
    if (!ok)
        ORVANE_LOG(osg::LOG_FATAL, "Scripts cannot run: %s.\n", duk_safe_to_string(_engine, -1));
    duk_pop(_engine);
    return ok;
}

void* ScriptHeap::keep(duk_context* engine)
{
    void* const object = duk_get_heapptr(engine, -1);
    keepTop(engine);
    return object;
}

duk_ret_t ScriptHeap::setUpSafely(duk_context* engine, void* data)
{
    ScriptHeap& heap = *static_cast<ScriptHeap*>(data);
    duk_push_global_object(engine);
    addFunction(engine, "__tick__", tick, 0);
    addListClasses(engine);
    addNodeClass(engine);
    duk_push_object(engine);
    addBrowserFunctions(engine);
    addSceneFunctions(engine);
    for (const auto& part : scriptPrelude) {
        duk_push_string(engine, part.code);
        duk_push_string(engine, part.name);
        duk_compile(engine, DUK_COMPILE_EVAL);
        duk_call(engine, 0);
        duk_dup(engine, 0);
        duk_dup(engine, 1);
        duk_call(engine, 2);
        duk_pop(engine);
    }
    duk_pop(engine);
    heap.addClasses(engine);
    return 0;
}

/// Remembers the classes on the global object that stands on top of the stack.
void ScriptHeap::addClasses(duk_context* engine)
{
    const auto keepPrototype = [this, engine](const char* name) {
        duk_get_prop_string(engine, 0, name);
        duk_get_prop_string(engine, -1, "prototype");
        duk_remove(engine, -2);
        return keep(engine);
    };
    for (int i = SFBOOL_DT; i <= MFVEC4F_DT; ++i) {
        const auto type = static_cast<NodePartDataType>(i);
        _prototypes[type] = keepPrototype(FieldType::dataTypeName(type).c_str());
        if (isList(type) || !tupleShape(type).keys)
            continue;
        pushViewPrototypeOf(engine, type);
        _viewPrototypes[type] = keep(engine);
    }
    _nodePrototype = keepPrototype("SFNode");
    _scenePrototype = keepPrototype("X3DScene");
    makeListHandler(engine);
    _listHandler = keep(engine);
    makeNodeHandler(engine);
    _nodeHandler = keep(engine);
}

// ---- Threads

duk_ret_t ScriptHeap::makeThreadSafely(duk_context* engine, void* result)
{
    duk_push_thread(engine);
    duk_context* const thread = duk_get_context(engine, -1);
    duk_push_object(thread);
    duk_push_global_object(thread);
    duk_set_prototype(thread, -2);
    duk_set_global_object(thread);
    keepTop(engine);
    *static_cast<duk_context**>(result) = thread;
    return 0;
}

duk_context* ScriptHeap::makeThread()
{
    duk_context* thread = nullptr;
    const bool ok = duk_safe_call(_engine, makeThreadSafely, &thread, 0, 1) == DUK_EXEC_SUCCESS;
    duk_pop(_engine);
    return ok ? thread : nullptr;
}

duk_ret_t ScriptHeap::dropThreadSafely(duk_context* engine, void* thread)
{
    duk_push_heap_stash(engine);
    duk_push_sprintf(engine, "%p", thread); // its address is that of its object
    duk_del_prop(engine, -2);
    return 0;
}

void ScriptHeap::dropThread(duk_context* thread)
{
    duk_safe_call(_engine, dropThreadSafely, thread, 0, 1);
    duk_pop(_engine);
}

// ---- Limits

ScriptHeap::Run::Run(ScriptHeap& heap, double time, Node& script)
    : _heap(heap)
    , _outerTime(std::exchange(heap._time, time))
    , _outerScript(std::exchange(heap._script, script.ID()))
{
    if (heap._depth++ > 0)
        return;
    heap._isExpired = false;
    heap._isShort = false;
    heap._wallEnd = wallSeconds() + scriptLimits().seconds;
    heap._processorEnd = -1.0;
}

ScriptHeap::Run::~Run()
{
    --_heap._depth;
    _heap._time = _outerTime;
    _heap._script = _outerScript;
}

Node* ScriptHeap::script() const
{
    return Node::findNode(_script);
}

/// The clock of the wall is the cheaper one to ask, so the processor's is asked when that one says so.
void ScriptHeap::lookAtClock()
{
    const double now = wallSeconds();
    if (_depth == 0 || _isExpired || now < _wallEnd)
        return;
    const double processor = processorSeconds();
    // Whatever went before, so much is left from here on at least once.
    if (_processorEnd < 0.0) {
        _processorEnd = processor + scriptLimits().seconds / 2.0;
        _wallEnd = now + scriptLimits().seconds / 2.0;
        return;
    }
    _isExpired = processor >= _processorEnd;
    if (!_isExpired)
        _wallEnd = now + (_processorEnd - processor);
}

void ScriptHeap::checkTime(duk_context* engine)
{
    lookAtClock();
    if (_isExpired)
        (void)duk_range_error(engine, "the call takes too long");
}

bool ScriptHeap::charge(std::size_t bytes)
{
    if (bytes > scriptLimits().bytes || _used > scriptLimits().bytes - bytes) {
        refuseMemory();
        return false;
    }
    _used += bytes;
    return true;
}

void ScriptHeap::refuseMemory()
{
    _isShort = true;
    wrappers.clear();
}

void* ScriptHeap::allocate(void* data, duk_size_t size)
{
    return reallocate(data, nullptr, size);
}

void* ScriptHeap::reallocate(void* data, void* block, duk_size_t size)
{
    ScriptHeap& heap = *static_cast<ScriptHeap*>(data);
    if (size == 0) {
        release(data, block);
        return nullptr;
    }
    // What the engine does by itself, without a turn of a loop in a script, mostly needs memory.
    if (++heap._allocations % 1024 == 0)
        heap.lookAtClock();
    const std::size_t old = block ? ::malloc_usable_size(block) : 0;
    const bool grows = size > old;
    if (grows && heap._depth > 0 && (heap._isExpired || heap._used - old + size > scriptLimits().bytes)) {
        heap.refuseMemory();
        return nullptr;
    }
    void* const result = std::realloc(block, size);
    if (!result) {
        heap.refuseMemory();
        return nullptr;
    }
    heap._used += ::malloc_usable_size(result) - old;
    return result;
}

void ScriptHeap::release(void* data, void* block)
{
    if (!block)
        return;
    static_cast<ScriptHeap*>(data)->_used -= ::malloc_usable_size(block);
    std::free(block);
}

Node& runningScript(duk_context* engine)
{
    Node* const script = ScriptHeap::of(engine).script();
    if (!script)
        (void)duk_error(engine, DUK_ERR_REFERENCE_ERROR, "the script has gone");
    return *script;
}

void pushKeptText(duk_context* engine)
{
    const std::string& text = ScriptHeap::of(engine).text;
    duk_push_lstring(engine, text.data(), text.size());
}

std::string& keepText(duk_context* engine, duk_idx_t index)
{
    duk_size_t length = 0;
    const char* const text = duk_to_lstring(engine, index, &length);
    return ScriptHeap::of(engine).text = coding::toGraph(std::string_view(text, length));
}

} // namespace Orvane
