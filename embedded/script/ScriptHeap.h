#pragma once

#include "base/NodeRef.h"
#include "script/FieldTuples.h"
#include <Orvane/Image.h>
#include <Orvane/Types.h>
#include <cstddef>
#include <duktape.h>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace Orvane {

class Context;
class Node;

/// The ECMAScript heap of a context, which all its scripts share; lives as long as one of them. It knows the
/// classes of values, the wrapper of each node, and stops what runs too long or takes too much.
///
/// Errors of the engine jump over C++ frames without unwinding them. So what is called by it keeps nothing on
/// the stack that needs a destructor while it may raise one: what must live on is kept by script objects.
class ScriptHeap
{
public:
    /// The heap of the context, made when it has none. Null when there is no memory for one.
    static std::shared_ptr<ScriptHeap> of(Context& context);
    /// The heap to which an engine context belongs.
    static ScriptHeap& of(duk_context* engine);

    ScriptHeap(const ScriptHeap&) = delete;
    ScriptHeap& operator=(const ScriptHeap&) = delete;
    ~ScriptHeap();

    Context& context() const { return _context; }

    /// An engine thread with a global object of its own, which inherits from the common one; null when there
    /// is no memory. It is kept until `dropThread`.
    duk_context* makeThread();
    void dropThread(duk_context* thread);

    /// Limits one call into the engine. Calls nest; time counts for the outermost.
    class Run
    {
    public:
        /// Events of the call have the stamp \a time; \a script is the node at work.
        Run(ScriptHeap& heap, double time, Node& script);
        Run(const Run&) = delete;
        Run& operator=(const Run&) = delete;
        ~Run();

    private:
        ScriptHeap& _heap;
        double _outerTime;
        UInt64 _outerScript;
    };

    /// Time stamp of what the running script writes.
    double time() const { return _time; }
    /// The node of the running script; null when it has died meanwhile.
    Node* script() const;

    /// True when the present call has used up its time.
    bool isExpired() const { return _isExpired; }
    /// True when memory was refused in the present call.
    bool isShort() const { return _isShort; }

    /// Called by running code; raises an error when the time is up.
    void checkTime(duk_context* engine);

    /// Pushes the prototype of the class of a data type, or that of objects that show such a value of a
    /// field.
    void pushPrototype(duk_context* engine, NodePartDataType type) const
    {
        duk_push_heapptr(engine, _prototypes[type]);
    }
    void pushViewPrototype(duk_context* engine, NodePartDataType type) const
    {
        duk_push_heapptr(engine, _viewPrototypes[type]);
    }
    /// Pushes the traps of lists and of nodes.
    void pushListHandler(duk_context* engine) const { duk_push_heapptr(engine, _listHandler); }
    void pushNodeHandler(duk_context* engine) const { duk_push_heapptr(engine, _nodeHandler); }
    void pushNodePrototype(duk_context* engine) const { duk_push_heapptr(engine, _nodePrototype); }
    void pushScenePrototype(duk_context* engine) const { duk_push_heapptr(engine, _scenePrototype); }

    /// Counts memory that objects of scripts take outside the engine; false when there is not so much left.
    bool charge(std::size_t bytes);
    void discharge(std::size_t bytes) { _used -= bytes; }

    /// The objects of the nodes that scripts hold, by the nodes' ids. Emptied when memory runs short, as the
    /// engine then takes objects away before it says so; who asks for one of them gets a new one.
    std::unordered_map<UInt64, void*> wrappers;
    /// A text, a node and an image that outlive an error of the engine.
    std::string text;
    NodeRef node;
    Image image;

private:
    explicit ScriptHeap(Context& context);
    bool setUp();
    void addClasses(duk_context* engine);
    static duk_ret_t setUpSafely(duk_context* engine, void* heap);
    static duk_ret_t makeThreadSafely(duk_context* engine, void* result);
    static duk_ret_t dropThreadSafely(duk_context* engine, void* thread);
    /// Keeps the object on top of the stack for the life of the heap, and pops it.
    void* keep(duk_context* engine);

    static void* allocate(void* heap, duk_size_t size);
    static void* reallocate(void* heap, void* block, duk_size_t size);
    static void release(void* heap, void* block);
    void refuseMemory();
    void lookAtClock();

    Context& _context;
    const UInt64 _contextId;
    duk_context* _engine = nullptr;
    void* _prototypes[MFVEC4F_DT + 1] = {};
    void* _viewPrototypes[MFVEC4F_DT + 1] = {};
    void* _listHandler = nullptr;
    void* _nodeHandler = nullptr;
    void* _nodePrototype = nullptr;
    void* _scenePrototype = nullptr;

    std::size_t _used = 0;
    unsigned int _depth = 0; ///< calls under way
    unsigned int _allocations = 0;
    bool _isExpired = false;
    bool _isShort = false;
    double _wallEnd = 0.0;
    double _processorEnd = 0.0;

    double _time = 0.0;
    UInt64 _script = 0;
};

/// Adds a function to the object on top of the stack.
void addFunction(duk_context* engine, const char* name, duk_c_function function, duk_idx_t arguments,
                 int magic = 0);

/// What a proxy answers with.
struct ProxyTraps
{
    duk_c_function get;
    duk_c_function set;
    duk_c_function has;
    duk_c_function remove;
    duk_c_function list;
};

/// Pushes the handler of proxies with those traps.
void pushProxyHandler(duk_context* engine, const ProxyTraps& traps);

/// The node at work; raises an error when it has gone.
Node& runningScript(duk_context* engine);

/// The text at \a index in the form of the graph, in the heap's place for a text.
std::string& keepText(duk_context* engine, duk_idx_t index);
/// Pushes the text in that place.
void pushKeptText(duk_context* engine);

} // namespace Orvane
