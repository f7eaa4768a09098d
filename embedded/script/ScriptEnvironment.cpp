#include "script/ScriptEnvironment.h"

#include "base/ContextData.h"
#include "base/Graph.h"
#include "base/TextCoding.h"
#include "base/TypeData.h"
#include "script/LoopGuard.h"
#include "script/ScriptLimits.h"
#include "script/ScriptNodes.h"
#include "script/ScriptValues.h"
#include <Orvane/Field.h>
#include <Orvane/Node.h>
#include <Orvane/NodePartDesc.h>
#include <algorithm>
#include <charconv>
#include <cstdlib>

namespace Orvane {

namespace {

constexpr const char* environmentKey = DUK_HIDDEN_SYMBOL("environment");
/// What the engine calls the code of a script.
constexpr char codeName[] = "script";

ScriptEnvironment* environmentOfThis(duk_context* engine)
{
    duk_push_this(engine);
    duk_get_prop_string(engine, -1, environmentKey);
    auto* const environment = static_cast<ScriptEnvironment*>(duk_get_pointer(engine, -1));
    duk_pop_2(engine);
    return environment;
}

Field* variableOfThis(duk_context* engine)
{
    const ScriptEnvironment* const environment = environmentOfThis(engine);
    return environment ? environment->variable(static_cast<unsigned int>(duk_get_current_magic(engine)))
                       : nullptr;
}

duk_ret_t getVariable(duk_context* engine)
{
    Field* const field = variableOfThis(engine);
    if (!field)
        return 0;
    pushLive(engine, *field);
    return 1;
}

duk_ret_t setVariable(duk_context* engine)
{
    if (Field* const field = variableOfThis(engine))
        assignField(engine, 0, *field);
    return 0;
}

/// The line in the script at which a trace of calls begins; 0 when it has none.
int lineOf(const std::string& trace)
{
    const std::string mark = std::string("(") + codeName + ":";
    const std::size_t found = trace.find(mark);
    return found == std::string::npos ? 0 : std::atoi(trace.c_str() + found + mark.size());
}

/// Takes the engine's own "(line 5)" off the text.
int takeLine(std::string& text)
{
    const std::size_t found = text.rfind(" (line ");
    if (found == std::string::npos)
        return 0;
    const int line = std::atoi(text.c_str() + found + 7);
    text.erase(found, text.find(')', found) + 1 - found);
    return line;
}

} // namespace

struct ScriptEnvironment::Request
{
    ScriptEnvironment& environment;
    std::string_view code;     ///< to be run, or
    const char* function;      ///< to be called
    const char* otherFunction; ///< when the script has not got the first
    const Field* field;        ///< whose value is the argument
    double time;
    bool found;
};

std::shared_ptr<ScriptEnvironment> ScriptEnvironment::make(Node& script)
{
    const std::shared_ptr<ScriptHeap> heap = ScriptHeap::of(contextOf(script));
    duk_context* const thread = heap ? heap->makeThread() : nullptr;
    if (!thread)
        return nullptr;
    return std::shared_ptr<ScriptEnvironment>(new ScriptEnvironment(script, heap, thread));
}

ScriptEnvironment::ScriptEnvironment(Node& script, std::shared_ptr<ScriptHeap> heap, duk_context* thread)
    : _node(&script)
    , _heap(std::move(heap))
    , _thread(thread)
{
}

ScriptEnvironment::~ScriptEnvironment()
{
    const BusyScope busy(_heap->context());
    _node = nullptr;
    updateVariables();
    _heap->dropThread(_thread);
}

// ---- Calls

/// The values on the stack of the thread live in a frame of this call alone.
duk_ret_t ScriptEnvironment::runSafely(duk_context* engine, void* data)
{
    Request& request = *static_cast<Request*>(data);
    if (!request.function) {
        duk_push_lstring(engine, request.code.data(), request.code.size());
        duk_push_string(engine, codeName);
        duk_compile(engine, 0);
        duk_call(engine, 0);
        return 0;
    }
    duk_push_global_object(engine);
    for (const char* name : {request.function, request.otherFunction}) {
        if (!name)
            continue;
        duk_get_prop_string(engine, -1, name);
        if (duk_is_function(engine, -1)) {
            request.found = true;
            break;
        }
        duk_pop(engine);
    }
    if (!request.found)
        return 0;
    if (request.environment._mentionsThis)
        pushNode(engine, request.environment._node);
    else
        duk_push_undefined(engine);
    if (request.field) {
        pushCopy(engine, *request.field);
        duk_push_number(engine, request.time);
        duk_call_method(engine, 2);
    } else {
        duk_call_method(engine, 0);
    }
    return 0;
}

namespace {

struct Description
{
    std::string text;
    std::string trace;
};

/// Of the error on top of the stack.
duk_ret_t describeSafely(duk_context* engine, void* data)
{
    auto& description = *static_cast<Description*>(data);
    if (duk_is_object(engine, -1)) {
        duk_get_prop_string(engine, -1, "stack");
        if (duk_is_string(engine, -1))
            description.trace = duk_get_string(engine, -1);
        duk_pop(engine);
    }
    description.text = coding::toGraph(duk_safe_to_string(engine, -1));
    return 0;
}

std::string rounded(double seconds)
{
    char text[32];
    return {text, std::to_chars(text, text + sizeof text, seconds, std::chars_format::general, 6).ptr};
}

} // namespace

ScriptFault ScriptEnvironment::run(Request& request, double time)
{
    if (!_node)
        return {};
    const BusyScope busy(_heap->context());
    bool ok = false;
    {
        const ScriptHeap::Run limits(*_heap, time, *_node);
        ++_depth;
        ok = duk_safe_call(_thread, runSafely, &request, 0, 1) == DUK_EXEC_SUCCESS;
        --_depth;
    }
    ScriptFault fault;
    if (!ok) {
        Description description;
        duk_dup_top(_thread);
        duk_safe_call(_thread, describeSafely, &description, 1, 1);
        duk_pop(_thread);
        fault.text = description.text.empty() ? "an error without a text" : description.text;
        fault.line = takeLine(fault.text);
        if (fault.line == 0)
            fault.line = lineOf(description.trace);
    }
    duk_pop(_thread);
    if (_heap->isExpired()) {
        fault.text = "expected to come to an end within " + rounded(scriptLimits().seconds) +
                     " seconds; the script is stopped";
        fault.isFatal = true;
    } else if (!ok && _heap->isShort()) {
        fault.text = "expected to get along with " +
                     rounded(static_cast<double>(scriptLimits().bytes) / (1 << 20)) +
                     " MB; the script is stopped";
        fault.isFatal = true;
    }
    return fault;
}

ScriptFault ScriptEnvironment::load(std::string_view code, double time)
{
    updateVariables();
    const std::string text = coding::toFile(code);
    const std::string guarded = guardLoops(text);
    _mentionsThis = text.find("this") != std::string::npos;
    _mentionsEventsProcessed = text.find("eventsProcessed") != std::string::npos;
    Request request{*this, guarded, nullptr, nullptr, nullptr, time, false};
    return run(request, time);
}

ScriptFault ScriptEnvironment::call(const char* function, double time)
{
    Request request{*this, {}, function, nullptr, nullptr, time, false};
    return run(request, time);
}

ScriptFault ScriptEnvironment::receive(const Field& field, double time)
{
    const bool isBoth = field.partType() == EXPOSEDFIELDP;
    const std::string setter = isBoth ? std::string("set_") + field.name() : field.name();
    Request request{*this, {}, setter.c_str(), isBoth ? field.name() : nullptr, &field, time, false};
    return run(request, time);
}

duk_ret_t ScriptEnvironment::hasSafely(duk_context* engine, void* data)
{
    Request& request = *static_cast<Request*>(data);
    duk_push_global_object(engine);
    duk_get_prop_string(engine, -1, request.function);
    request.found = duk_is_function(engine, -1);
    return 0;
}

bool ScriptEnvironment::has(const char* function)
{
    Request request{*this, {}, function, nullptr, nullptr, 0.0, false};
    duk_safe_call(_thread, hasSafely, &request, 0, 1);
    duk_pop(_thread);
    return request.found;
}

// ---- Variables

void ScriptEnvironment::updateVariables()
{
    const BusyScope busy(_heap->context());
    duk_safe_call(_thread, updateSafely, this, 0, 1);
    duk_pop(_thread);
}

duk_ret_t ScriptEnvironment::updateSafely(duk_context* engine, void* data)
{
    ScriptEnvironment& environment = *static_cast<ScriptEnvironment*>(data);
    std::vector<Field*>& variables = environment._variables;
    Node* const node = environment._node;
    duk_push_global_object(engine);
    duk_push_pointer(engine, node ? &environment : nullptr);
    duk_put_prop_string(engine, -2, environmentKey);
    if (!node)
        return 0;
    for (Field*& field : variables) {
        if (!field || field->_desc->id != removedPart)
            continue;
        duk_del_prop_string(engine, -1, field->name());
        field = nullptr;
    }
    for (unsigned int part = partCount(*node->type()); part < node->partDescCount(); ++part) {
        Field* const field = node->findField(part);
        if (field->_desc->privateAccess() || field->partType() == EVENTINP ||
            std::find(variables.begin(), variables.end(), field) != variables.end() ||
            variables.size() > 32767)
            continue;
        const auto index = static_cast<duk_int_t>(variables.size());
        variables.push_back(field);
        duk_push_string(engine, field->name());
        duk_push_c_function(engine, getVariable, 0);
        duk_set_magic(engine, -1, index);
        duk_push_c_function(engine, setVariable, 1);
        duk_set_magic(engine, -1, index);
        duk_def_prop(engine, -4,
                     DUK_DEFPROP_HAVE_GETTER | DUK_DEFPROP_HAVE_SETTER | DUK_DEFPROP_SET_ENUMERABLE |
                         DUK_DEFPROP_SET_CONFIGURABLE);
    }
    return 0;
}

void assignField(duk_context* engine, duk_idx_t index, Field& field)
{
    Node* const node = field.node();
    const UInt64 id = node->ID();
    takeValue(engine, index, field);
    // Who looks on may have ended the node.
    if (Node::findNode(id) == node)
        field.processValueChange(ScriptHeap::of(engine).time(), Field::EVENT_CT);
}

} // namespace Orvane
