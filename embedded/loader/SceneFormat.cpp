#include "loader/SceneFormat.h"

#include "base/Graph.h"
#include "base/SceneLoader.h"
#include "loader/ClassicReader.h"
#include "loader/ClassicWriter.h"
#include "loader/ImportedNodes.h"
#include "loader/LoadMessages.h"
#include "loader/LoadSession.h"
#include "loader/MovedAddresses.h"
#include "loader/OutputFile.h"
#include "loader/VersionNotes.h"
#include "loader/XmlReader.h"
#include "loader/XmlWriter.h"
#include <Orvane/GraphLoader.h>
#include <Orvane/LoadReport.h>
#include <Orvane/Node.h>
#include <Relayne/URL.h>
#include <algorithm>

namespace Orvane {

namespace {

constexpr unsigned int vrml97Version = 20;

bool startsWith(std::string_view text, std::string_view start)
{
    return text.substr(0, start.size()) == start;
}

/// Runs a load. Memory that does not suffice throws; anything else is told by the readers themselves.
template <class Load>
bool guarded(LoadReport& report, const std::string& file, Load load)
{
    try {
        return load();
    } catch (const std::exception& exception) {
        report.messages.push_back({LoadMessage::ERROR_LM, file, 0, 0,
                                   std::string("expected room for the scene, found: ") + exception.what()});
        return false;
    }
}

bool readScene(Context& context, const Relayne::URL& url, const std::string* text, LoadedScene& scene,
               LoadReport& report)
{
    return guarded(report, url.toString(),
                   [&] { return LoadSession(context, report).readScene(url, text, scene); });
}

bool readInline(Node& inlineNode, LoadReport& report)
{
    return guarded(report, inlineNode.getIDStr(),
                   [&] { return LoadSession(contextOf(inlineNode), report).reloadInline(inlineNode); });
}

bool readNodes(Node& scene, const std::string& text, const std::string& origin, std::vector<NodeRef>& nodes,
               LoadReport& report)
{
    return guarded(report, {}, [&] {
        return LoadSession(contextOf(scene), report).readNodes(scene, text, origin, nodes);
    });
}

/// True for the suffixes of files that are packed.
bool isPacked(const std::string& path)
{
    return path.back() == 'z' || path.back() == 'Z';
}

bool writeScene(const Node& root, const std::string& path, const SaveOptions& options,
                std::vector<std::string>& notes, std::string& error)
{
    const SceneFormat* format = formatOfSuffix(path);
    if (format && format->write) {
        try {
            if (!writeOutputFile(path, format->write(root, options, notes), isPacked(path), error))
                return false;
            noteMovedAddresses(root, path, notes);
            noteVersion(root, format->writtenVersion, notes);
            return true;
        } catch (const std::exception& exception) {
            error = path + ": expected room for the text of the scene, found: " + exception.what();
            return false;
        }
    }
    error = path + ": expected a suffix of an encoding that can be written (";
    const char* divider = "";
    for (const SceneFormat& each : sceneFormats()) {
        if (!each.write)
            continue;
        for (const char* suffix : each.suffixes) {
            error += std::string(divider) + "." + suffix;
            divider = ", ";
        }
    }
    error += ")";
    return false;
}

Node* findImported(const NodeNameSpace& names, const std::string& name)
{
    const std::unordered_map<std::string, Node*> imported = importedNodes(names);
    const auto found = imported.find(name);
    return found == imported.end() ? nullptr : found->second;
}

const SceneLoaderRegistration registration(readScene, readInline, writeScene, readNodes, findImported);

} // namespace

const std::vector<SceneFormat>& sceneFormats()
{
    static const std::vector<SceneFormat> formats = {
        {"X3D XML", {"x3d", "x3dz"}, isXml, readXml, xmlText},
        {"X3D Classic", {"x3dv", "x3dvz"}, isClassic, readClassic, classicText, true},
        {"VRML97", {"wrl", "wrz", "vrml"}, isVrml97, readVrml97, vrml97Text, true, vrml97Version},
    };
    return formats;
}

const SceneFormat* findFormat(std::string_view text)
{
    for (const SceneFormat& format : sceneFormats())
        if (format.recognizes(text))
            return &format;
    return nullptr;
}

const SceneFormat* formatOfSuffix(const std::string& path)
{
    const std::size_t dot = path.find_last_of("./");
    if (dot == std::string::npos || path[dot] != '.')
        return nullptr;
    std::string suffix = path.substr(dot + 1);
    std::transform(suffix.begin(), suffix.end(), suffix.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    for (const SceneFormat& format : sceneFormats())
        for (const char* each : format.suffixes)
            if (suffix == each)
                return &format;
    return nullptr;
}

const SceneFormat* findFormatWithoutHeader(std::string_view text, const std::string& path)
{
    const SceneFormat* format = formatOfSuffix(path);
    const bool isOther = startsWith(text, "#VRML V1.0") || startsWith(text, "#Inventor");
    return format && format->mayLackHeader && !isOther && !text.empty() ? format : nullptr;
}

std::string readableFormats()
{
    std::string names;
    for (const SceneFormat& format : sceneFormats())
        names += (names.empty() ? "" : " or ") + std::string(format.name);
    return names;
}

std::string foundFormat(std::string_view text)
{
    if (text.empty())
        return "an empty file";
    if (startsWith(text, "#VRML V1.0"))
        return "VRML 1.0";
    if (startsWith(text, "#Inventor"))
        return "Open Inventor";
    return quoted(text.substr(0, text.find_first_of("\r\n")));
}

int GraphLoader::getFormatList(std::list<std::string>& formats, FormatStyle style)
{
    for (const SceneFormat& format : sceneFormats()) {
        std::string text = format.name;
        if (style == FILTER_FS) {
            const char* divider = " (";
            for (const char* suffix : format.suffixes) {
                text += std::string(divider) + "*." + suffix;
                divider = " ";
            }
            text += ")";
        }
        formats.push_back(std::move(text));
    }
    return static_cast<int>(sceneFormats().size());
}

int GraphLoader::getSuffixList(std::list<std::string>& suffixes)
{
    int count = 0;
    for (const SceneFormat& format : sceneFormats()) {
        for (const char* suffix : format.suffixes) {
            suffixes.emplace_back(suffix);
            ++count;
        }
    }
    return count;
}

} // namespace Orvane
