#include "Inspection.h"

#include <Orvane/Context.h>
#include <Orvane/Engine.h>
#include <cstdio>

namespace {

/// Text as a JSON string. What is no UTF-8 is taken for Latin-1, byte by byte.
std::string jsonString(const std::string& text)
{
    const auto byte = [&](std::size_t at) {
        return at < text.size() ? static_cast<unsigned char>(text[at]) : 0U;
    };
    std::string out = "\"";
    const auto escape = [&](unsigned int code) {
        char buffer[8];
        std::snprintf(buffer, sizeof buffer, "\\u%04x", code);
        out += buffer;
    };
    for (std::size_t at = 0; at < text.size();) {
        const unsigned int first = byte(at);
        if (first < 0x80) {
            if (first == '"' || first == '\\')
                out += '\\';
            if (first < 0x20 || first == 0x7F)
                escape(first);
            else
                out += static_cast<char>(first);
            ++at;
            continue;
        }
        const std::size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
        bool isCharacter = first >= 0xC2 && first <= 0xF4;
        for (std::size_t i = 1; i < length; ++i)
            isCharacter = isCharacter && (byte(at + i) & 0xC0) == 0x80;
        // Forms that are too long, surrogates and what lies beyond the last character.
        const unsigned int second = byte(at + 1);
        isCharacter = isCharacter && !(first == 0xE0 && second < 0xA0) && !(first == 0xED && second > 0x9F) &&
                      !(first == 0xF0 && second < 0x90) && !(first == 0xF4 && second > 0x8F);
        if (isCharacter)
            out.append(text, at, length);
        else
            escape(first);
        at += isCharacter ? length : 1;
    }
    return out + "\"";
}

std::string milliseconds(double value)
{
    char buffer[32];
    std::snprintf(buffer, sizeof buffer, "%.3f", value);
    return buffer;
}

/// A context that lives as long as the scope.
class ContextHolder
{
public:
    ContextHolder()
        : _context(Orvane::Context::create())
    {
    }
    ContextHolder(const ContextHolder&) = delete;
    ContextHolder& operator=(const ContextHolder&) = delete;
    ~ContextHolder()
    {
        if (_context)
            _context->subRef();
    }
    Orvane::Context* operator->() const { return _context; }

private:
    Orvane::Context* _context;
};

} // namespace

Inspection inspectScene(const std::string& scene, const InspectOptions& options)
{
    Inspection result;
    result.scene = scene;
    const ContextHolder context;
    result.ok = context->load(scene, Orvane::Context::REPLACE_LT, std::string());
    if (result.ok && options.frames > 0) {
        // An engine would open windows.
        context->removeRoot(Orvane::Engine::_type);
        if (options.time >= 0.0)
            context->holdTime(options.time);
        context->setRootState(0.0, Orvane::RUNNING_NS);
        for (int frame = 0; frame < options.frames; ++frame)
            context->runFrame();
    }
    result.report = context->loadReport();
    if (result.ok && !options.convert.empty()) {
        result.ok = context->save(options.convert, options.save, result.writeError);
        result.written = options.convert;
        result.writeNotes = context->saveNotes();
    }
    return result;
}

std::string plainText(const Inspection& inspection)
{
    const Orvane::LoadReport& report = inspection.report;
    std::string text;
    for (const Orvane::LoadMessage& message : report.messages)
        text += message.toString() + "\n";
    for (const std::string& note : inspection.writeNotes)
        text += inspection.written + ": " + note + "\n";
    if (!inspection.writeError.empty())
        text += inspection.writeError + "\n";
    text += inspection.scene + ": " + (inspection.ok ? "ok" : "failed");
    const auto number = [&](std::size_t count, const char* what) {
        text += ", " + std::to_string(count) + " " + what;
    };
    number(report.nodes, "nodes");
    number(report.namedNodes, "named");
    number(report.uses, "USEs");
    number(report.routes, "routes");
    number(report.protos, "protos");
    number(report.scripts, "scripts");
    number(report.messages.size(), "messages");
    text += ", " + milliseconds(report.milliseconds) + " ms, " + std::to_string(report.bytes) + " bytes\n";
    return text;
}

std::string jsonText(const Inspection& inspection)
{
    const Orvane::LoadReport& report = inspection.report;
    std::string text = "{\"scene\": " + jsonString(inspection.scene);
    text += std::string(", \"ok\": ") + (inspection.ok ? "true" : "false");
    const auto number = [&](const char* name, std::size_t count) {
        text += std::string(", \"") + name + "\": " + std::to_string(count);
    };
    number("nodes", report.nodes);
    number("namedNodes", report.namedNodes);
    number("uses", report.uses);
    number("routes", report.routes);
    number("protos", report.protos);
    number("scripts", report.scripts);
    text += ", \"milliseconds\": " + milliseconds(report.milliseconds);
    number("bytes", report.bytes);
    text += ", \"messages\": [";
    const char* divider = "";
    for (const Orvane::LoadMessage& message : report.messages) {
        const bool isError = message.severity == Orvane::LoadMessage::ERROR_LM;
        text += std::string(divider) + "{\"severity\": \"" + (isError ? "error" : "warning") +
                "\", \"file\": " + jsonString(message.file) + ", \"line\": " + std::to_string(message.line) +
                ", \"column\": " + std::to_string(message.column) +
                ", \"text\": " + jsonString(message.text) + "}";
        divider = ", ";
    }
    text += "]";
    if (!inspection.written.empty()) {
        text += ", \"written\": " + jsonString(inspection.written) + ", \"writeNotes\": [";
        divider = "";
        for (const std::string& note : inspection.writeNotes) {
            text += divider + jsonString(note);
            divider = ", ";
        }
        text += "]";
    }
    if (!inspection.writeError.empty())
        text += ", \"writeError\": " + jsonString(inspection.writeError);
    return text + "}";
}
