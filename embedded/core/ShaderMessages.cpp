#include "core/ShaderMessages.h"
#include "base/Graph.h"
#include "base/Log.h"
#include "base/SceneLoader.h"
#include "core/CompilerLog.h"
#include "core/ShaderTextProc.h"
#include <OpenSG/OSGLog.h>
#include <Orvane/Node.h>
#include <Orvane/NodeNameSpace.h>
#include <Orvane/NodeType.h>
#include <Relayne/URL.h>
#include <algorithm>

namespace Orvane {

namespace {

/// So many lines of one text are told; compilers often find a hundred faults where there is one.
constexpr std::size_t mostLines = 10;

/// So many faults of one shader go into the report of its scene; the log has all of them.
constexpr unsigned int mostReported = 100;

LoadMessage messageAt(const Node& node)
{
    LoadMessage message;
    if (const NodeNameSpace* const names = node.nameSpace()) {
        const Relayne::URL& url = names->baseURL();
        message.file = url.isLocalFile() ? url.localFile() : url.toString();
    }
    message.line = static_cast<int>(sourceLine(node));
    message.column = static_cast<int>(sourceColumn(node));
    return message;
}

std::string labelOf(const Node& node)
{
    std::string label = node.type()->name;
    if (node.name())
        label.append(" ").append(*node.name());
    return label;
}

} // namespace

void ShaderMessages::setPlaces(const std::vector<ShaderTextProc*>& parts)
{
    _places.clear();
    for (ShaderTextProc* part : parts) {
        Place place{messageAt(part->node()), part->codeLabel(), !part->code().file.empty()};
        if (&part->node() != &_node)
            place.label.append(" in ").append(labelOf(_node));
        if (place.isFile) {
            place.message = LoadMessage();
            place.message.file = part->code().file;
        }
        _places.push_back(std::move(place));
    }
}

void ShaderMessages::tell(const Node& node, LoadMessage::Severity severity, const std::string& text)
{
    LoadMessage message = messageAt(node);
    message.severity = severity;
    message.text = text;
    say(std::move(message));
}

void ShaderMessages::tellLog(const osg::SHLProgram& program)
{
    const bool isFaulty = program.getStatus() == osg::SHLProgram::FAULTY;
    for (const osg::SHLProgram::Message& message : program.getMessages()) {
        if (message.source < _places.size())
            tellLine(_places[message.source], message, isFaulty);
        else
            tellLine({messageAt(_node), labelOf(_node), false}, message, isFaulty);
    }
    if (isFaulty && program.getMessages().empty())
        tell(_node, LoadMessage::ERROR_LM, labelOf(_node) + ": the program does not link");
}

void ShaderMessages::tellLine(const Place& place, const osg::SHLProgram::Message& message, bool isFaulty)
{
    const std::vector<CompilerLine> lines = readCompilerLog(message.text);
    for (std::size_t i = 0; i < std::min(lines.size(), mostLines); ++i) {
        LoadMessage told = place.message;
        told.severity = isFaulty && !lines[i].isWarning ? LoadMessage::ERROR_LM : LoadMessage::WARNING_LM;
        told.text = place.label;
        if (place.isFile) {
            told.line = lines[i].line;
            told.column = lines[i].column;
        } else if (lines[i].line > 0) {
            told.text.append(": line ").append(std::to_string(lines[i].line));
        }
        told.text.append(": ").append(lines[i].text);
        say(std::move(told));
    }
    if (lines.size() > mostLines) {
        LoadMessage told = place.message;
        told.text = place.label + ": and " + std::to_string(lines.size() - mostLines) + " lines more";
        say(std::move(told));
    }
}

void ShaderMessages::say(LoadMessage message)
{
    std::string key = message.toString();
    if (std::find(_said.begin(), _said.end(), key) != _said.end())
        return;
    if (_reported < mostReported)
        reportMessage(contextOf(_node), message);
    else
        ORVANE_LOG(osg::LOG_WARNING, "%s: %s\n",
                   message.severity == LoadMessage::ERROR_LM ? "ERROR" : "WARNING", key.c_str());
    ++_reported;
    if (_said.size() == mostReported)
        _said.clear();
    _said.push_back(std::move(key));
}

} // namespace Orvane
