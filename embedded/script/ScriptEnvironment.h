#pragma once

#include "script/ScriptHeap.h"
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace Orvane {

class Field;
class Node;

/// What went wrong in a script.
struct ScriptFault
{
    std::string text;     ///< empty when nothing did
    int line = 0;         ///< of the code, from 1; 0 when not known
    bool isFatal = false; ///< the script used up what it may
    explicit operator bool() const { return !text.empty(); }
};

/// The world of one script: its code, its global object, on which its fields are variables, and the functions
/// that it has for events. Shared by its behaviour and by the call under way.
class ScriptEnvironment
{
public:
    /// For the script node; null when there is no memory.
    static std::shared_ptr<ScriptEnvironment> make(Node& script);

    ScriptEnvironment(const ScriptEnvironment&) = delete;
    ScriptEnvironment& operator=(const ScriptEnvironment&) = delete;
    ~ScriptEnvironment();

    /// Runs the code, which declares functions.
    ScriptFault load(std::string_view code, double time);
    /// True when the script has such a function.
    bool has(const char* function);
    /// Calls a function without arguments, if the script has it.
    ScriptFault call(const char* function, double time);
    /// Calls the function for events of the field with its value and the time.
    ScriptFault receive(const Field& field, double time);

    /// Brings the variables in step with the fields of the node.
    void updateVariables();

    /// False when the word of a function does not stand in the code at all.
    bool mentionsEventsProcessed() const { return _mentionsEventsProcessed; }

    /// The node dies: the variables are no more.
    void leaveNode() { _node = nullptr; }
    bool hasLeft() const { return !_node; }
    bool isRunning() const { return _depth > 0; }

    /// The field of a variable; null when it is no more.
    Field* variable(unsigned int index) const { return _node ? _variables[index] : nullptr; }

private:
    ScriptEnvironment(Node& script, std::shared_ptr<ScriptHeap> heap, duk_context* thread);

    struct Request;
    ScriptFault run(Request& request, double time);
    static duk_ret_t runSafely(duk_context* engine, void* request);
    static duk_ret_t updateSafely(duk_context* engine, void* environment);
    static duk_ret_t hasSafely(duk_context* engine, void* request);

    Node* _node;
    const std::shared_ptr<ScriptHeap> _heap;
    duk_context* const _thread;
    std::vector<Field*> _variables; ///< null where one has gone
    unsigned int _depth = 0;
    bool _mentionsThis = false; ///< so that the object of the node is made for calls
    bool _mentionsEventsProcessed = false;
};

/// Writes the value at \a index to a field, and sends it as an event of the running script.
void assignField(duk_context* engine, duk_idx_t index, Field& field);

} // namespace Orvane
