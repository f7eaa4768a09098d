#include "script/ScriptProc.h"

#include "base/ContextData.h"
#include "base/Graph.h"
#include "base/Log.h"
#include "base/SceneLoader.h"
#include "core/Part.h"
#include "script/ScriptCode.h"
#include <OpenSG/OSGLog.h>
#include <Orvane/Context.h>
#include <Orvane/NodeNameSpace.h>
#include <Orvane/SFBool.h>

namespace Orvane {

namespace {

const Part urlPart("url");
const Part loadPart("load");

const ProcRegistration script("Script", makeProc<ScriptProc>);

/// So many faults of one script go into the report of its world; the log has all of them.
constexpr unsigned int mostReported = 100;

LoadMessage messageAt(const Node& node)
{
    LoadMessage message;
    message.severity = LoadMessage::ERROR_LM;
    if (const NodeNameSpace* const names = node.nameSpace()) {
        const Relayne::URL& url = names->baseURL();
        message.file = url.isLocalFile() ? url.localFile() : url.toString();
    }
    message.line = static_cast<int>(sourceLine(node));
    message.column = static_cast<int>(sourceColumn(node));
    return message;
}

} // namespace

ScriptProc::ScriptProc(Node& node)
    : Proc(node)
{
}

ScriptProc::~ScriptProc()
{
    ending();
}

void ScriptProc::start(double)
{
    setTicking(true);
}

void ScriptProc::tick(double time)
{
    if (!_isLoaded) {
        load(time);
        return;
    }
    const Environment environment = _environment;
    if (environment)
        survives(environment, environment->call("prepareEvents", time));
}

void ScriptProc::fieldChanged(Field& field, double time)
{
    if (urlPart.is(field) || loadPart.is(field)) {
        if (_isLoaded && !_hasEnded) {
            unload(time);
            load(time);
        }
        return;
    }
    if (!(field.partType() & EVENTINP) || !field._desc->objExt())
        return;
    if (!_isLoaded)
        load(time);
    const Environment environment = _environment;
    if (environment && survives(environment, environment->receive(field, time)) &&
        environment->mentionsEventsProcessed())
        requestSettle();
}

void ScriptProc::settle(double time)
{
    const Environment environment = _environment;
    if (environment)
        survives(environment, environment->call("eventsProcessed", time));
}

void ScriptProc::fieldsChanged()
{
    if (_environment)
        _environment->updateVariables();
}

void ScriptProc::resume(double)
{
    setTicking(!_isLoaded || (_environment && _environment->has("prepareEvents")));
}

void ScriptProc::leaveWorld()
{
    ending();
}

void ScriptProc::ending()
{
    unload(context().timeStamp());
    _isLoaded = true;
    _hasEnded = true;
}

// ---- The code

void ScriptProc::load(double time)
{
    _isLoaded = true;
    setTicking(false);
    if (!loadPart.read<SFBool>(node()).value())
        return;
    const ScriptCode code = findScriptCode(node());
    if (!code.isFound) {
        if (!code.fault.empty())
            report({"expected code or a file of it, but " + code.fault, 0, false});
        return;
    }
    _file = code.file;
    _environment = ScriptEnvironment::make(node());
    const Environment environment = _environment;
    if (!environment) {
        report({"there is no memory for scripts", 0, false});
        return;
    }
    if (!survives(environment, environment->load(code.text, time)) ||
        !survives(environment, environment->call("initialize", time)))
        return;
    setTicking(environment->has("prepareEvents"));
}

/// What is running goes on to its end, but reaches the node no more.
void ScriptProc::unload(double time)
{
    reportRepeats();
    const Environment environment = std::move(_environment);
    _environment.reset();
    setTicking(false);
    if (!environment)
        return;
    if (!environment->isRunning())
        if (const ScriptFault fault = environment->call("shutdown", time))
            report(fault);
    environment->leaveNode();
    reportRepeats();
}

bool ScriptProc::survives(const Environment& environment, const ScriptFault& fault)
{
    if (environment->hasLeft())
        return false;
    if (fault)
        report(fault);
    if (fault.isFatal && environment == _environment) {
        _environment.reset();
        setTicking(false);
        environment->leaveNode();
    }
    return environment == _environment;
}

// ---- Messages

std::string ScriptProc::nameText() const
{
    return "Script \"" + node().getIDStr() + "\"";
}

void ScriptProc::report(const ScriptFault& fault)
{
    const std::string key = std::to_string(fault.line) + fault.text;
    if (key == _lastFault) {
        ++_repeats;
        return;
    }
    reportRepeats();
    _lastFault = key;

    LoadMessage message = messageAt(node());
    if (!_file.empty() && fault.line > 0) {
        message.text = nameText() + ": " + fault.text;
        message.file = _file;
        message.line = fault.line;
        message.column = 0;
    } else if (fault.line > 0) {
        message.text = nameText() + ", line " + std::to_string(fault.line) + " of its code: " + fault.text;
    } else {
        message.text = nameText() + ": " + fault.text;
    }
    ORVANE_LOG(osg::LOG_FATAL, "ERROR: %s\n", message.toString().c_str());
    if (_reported > mostReported)
        return;
    if (_reported++ == mostReported)
        message.text = nameText() + ": has more faults than these " + std::to_string(mostReported);
    contextData(node()).report.messages.push_back(std::move(message));
}

/// The same fault over and over, as of each frame, is told once, and how often it came when that is over.
void ScriptProc::reportRepeats()
{
    if (_repeats > 0)
        ORVANE_LOG(osg::LOG_FATAL, "ERROR: %s: the last fault came %u more times\n", nameText().c_str(),
                   _repeats);
    _repeats = 0;
    _lastFault.clear();
}

} // namespace Orvane
