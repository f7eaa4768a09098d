// Loading, saving, and what is told about them.
#include "base/ContextData.h"
#include "base/Graph.h"
#include "base/LocalFile.h"
#include "base/Log.h"
#include "base/NameSpace.h"
#include "base/NodeData.h"
#include "base/NodeRunning.h"
#include "base/SceneLoader.h"
#include "base/TextCoding.h"
#include <OpenSG/OSGLog.h>
#include <Orvane/Authoring.h>
#include <Orvane/LoadWatcher.h>
#include <Relayne/URL.h>
#include <algorithm>
#include <chrono>
#include <sys/stat.h>
#include <utility>

namespace Orvane {

namespace {

struct Loader
{
    SceneReader reader = nullptr;
    InlineReader inlineReader = nullptr;
    SceneWriter writer = nullptr;
    NodeReader nodeReader = nullptr;
    ImportFinder importFinder = nullptr;
};

Loader& loader()
{
    static Loader the;
    return the;
}

void logMessage(const LoadMessage& message)
{
    const char* const word = message.severity == LoadMessage::ERROR_LM ? "ERROR" : "WARNING";
    ORVANE_LOG(osg::LOG_WARNING, "%s: %s\n", word, message.toString().c_str());
}

/// A text that names a file is that file, whatever its characters mean in addresses.
Relayne::URL addressOf(const std::string& text)
{
    struct ::stat status;
    for (const std::string& name : {text, coding::toFile(text)})
        if (name.find('\0') == std::string::npos && ::stat(name.c_str(), &status) == 0)
            return Relayne::URL::fromLocalFile(name);
    const LocalFile file = findLocalFile(Relayne::URL(), text);
    return file.path.empty() ? Relayne::URL(text) : file.url;
}

/// The new roots take the places of those of the same type.
void replaceRoots(Context& context, const LoadedScene& scene)
{
    Context::Data& data = *context.data();
    for (const NodeRef& root : scene.roots) {
        if (!root || !root->type()->isContextRoot())
            continue;
        const auto old =
            std::find_if(data.roots.begin(), data.roots.end(), [&root](const NodeRef& candidate) {
                return candidate->type()->name == root->type()->name;
            });
        if (old != data.roots.end()) {
            data.roots.erase(old);
            data.mayHaveCycles = true;
        }
        addRoot(context, root);
    }
    if (data.isRunning)
        for (const NodeRef& root : scene.roots)
            if (root)
                startNode(*root);
}

void logReport(const Context::Data& data, const Relayne::URL& url)
{
    if (data.isLoadGivenUp) {
        ORVANE_LOG(osg::LOG_NOTICE, "The load of the scene \"%s\" was given up.\n", url.toString().c_str());
        return;
    }
    for (const LoadMessage& message : data.report.messages)
        logMessage(message);
    if (!data.report.ok)
        ORVANE_LOG(osg::LOG_FATAL, "The scene \"%s\" could not be loaded.\n", url.toString().c_str());
}

bool loadScene(Context& context, const Relayne::URL& url, const std::string* text)
{
    Context::Data& data = *context.data();
    const RefGuard guard(context);
    const auto start = std::chrono::steady_clock::now();
    {
        BusyScope busy(context);
        LoadedScene scene;
        LoadReport report;
        ++data.loads;
        data.isLoadGivenUp = false;
        if (loader().reader)
            report.ok = loader().reader(context, url, text, scene, report);
        else
            report.messages.push_back(
                {LoadMessage::ERROR_LM, url.toString(), 0, 0, "expected a loader of scenes, found none"});
        --data.loads;
        const std::chrono::duration<double, std::milli> duration = std::chrono::steady_clock::now() - start;
        report.milliseconds = duration.count();
        data.report = std::move(report);
        data.toldTypes.clear();
        logReport(data, url);
        if (data.report.ok)
            replaceRoots(context, scene);
        if (data.loads == 0)
            startJoinedNodes(context);
    }
    const bool ok = data.report.ok;
    settleWindows(context);
    return ok;
}

bool saveScene(const Node& scene, const std::string& path, const SaveOptions& options, std::string& error)
{
    std::vector<std::string>& notes = contextData(scene).saveNotes;
    const bool ok = loader().writer(scene, path, options, notes, error);
    for (const std::string& note : notes)
        ORVANE_LOG(osg::LOG_NOTICE, "%s: %s\n", path.c_str(), note.c_str());
    return ok;
}

} // namespace

SceneLoaderRegistration::SceneLoaderRegistration(SceneReader reader, InlineReader inlineReader,
                                                 SceneWriter writer, NodeReader nodeReader,
                                                 ImportFinder importFinder)
{
    loader() = {reader, inlineReader, writer, nodeReader, importFinder};
}

bool Authoring::read(Node& scene, const std::string& text, std::vector<HeldNode>& nodes, std::string& error,
                     const std::string& origin)
{
    nodes.clear();
    if (!loader().nodeReader || !scene.nameSpace()) {
        error = "there is no reader of nodes, or no scene for them";
        return false;
    }
    Context& context = contextOf(scene);
    const RefGuard guard(context);
    BusyScope busy(context);
    std::vector<NodeRef> read;
    LoadReport report;
    ++context.data()->loads;
    const bool ok = loader().nodeReader(scene, text, origin, read, report);
    --context.data()->loads;
    for (const LoadMessage& message : report.messages) {
        logMessage(message);
        if (error.empty() && message.severity == LoadMessage::ERROR_LM)
            error = message.toString();
    }
    if (context.data()->loads == 0)
        startJoinedNodes(context);
    for (const NodeRef& node : read)
        nodes.emplace_back(node.get());
    return ok;
}

bool readScene(Context& context, const Relayne::URL& url, const std::string* text, LoadedScene& scene)
{
    if (!loader().reader)
        return false;
    const RefGuard guard(context);
    const BusyScope busy(context);
    LoadReport report;
    ++context.data()->loads;
    const bool ok = loader().reader(context, url, text, scene, report);
    --context.data()->loads;
    for (const LoadMessage& message : report.messages)
        logMessage(message);
    if (context.data()->loads == 0)
        startJoinedNodes(context);
    return ok;
}

Node* findImportedNode(const NodeNameSpace& names, const std::string& name)
{
    return loader().importFinder ? loader().importFinder(names, name) : nullptr;
}

void installScene(Context& context, const LoadedScene& scene)
{
    const RefGuard guard(context);
    {
        const BusyScope busy(context);
        replaceRoots(context, scene);
    }
    settleWindows(context);
}

bool reloadInline(Node& inlineNode)
{
    if (!loader().inlineReader)
        return false;
    Context& context = contextOf(inlineNode);
    const RefGuard guard(context);
    BusyScope busy(context);
    LoadReport report;
    ++context.data()->loads;
    const bool ok = loader().inlineReader(inlineNode, report);
    --context.data()->loads;
    for (const LoadMessage& message : report.messages)
        reportMessage(context, message);
    if (context.data()->loads == 0)
        startJoinedNodes(context);
    return ok;
}

LoadWatcher::LoadWatcher(Context& context)
    : _context(context)
    , _outer(std::exchange(context.data()->loadWatcher, this))
{
    ++_context._refCount;
}

LoadWatcher::~LoadWatcher()
{
    _context.data()->loadWatcher = _outer;
    _context.subRef();
}

std::string LoadMessage::toString() const
{
    std::string result = file;
    if (line > 0) {
        result.append(":").append(std::to_string(line));
        if (column > 0)
            result.append(":").append(std::to_string(column));
    }
    if (!result.empty())
        result += ": ";
    return result + text;
}

bool Context::load(const std::string& url, LoadType, std::string)
{
    return loadScene(*this, addressOf(url), nullptr);
}

bool Context::load(const std::string& url, const std::string& text, LoadType, std::string)
{
    return loadScene(*this, addressOf(url), &text);
}

const std::vector<std::string>& Context::saveNotes() const
{
    return _data->saveNotes;
}

bool Context::save(const std::string& path, const SaveOptions& options, std::string& error)
{
    _data->saveNotes.clear();
    const auto scene = std::find_if(_data->roots.begin(), _data->roots.end(),
                                    [](const NodeRef& root) { return root->type()->name == "Scene"; });
    if (scene == _data->roots.end())
        error = "there is no scene";
    else if (!loader().writer)
        error = "there is no writer of scenes";
    else
        return saveScene(**scene, path, options, error);
    return false;
}

void reportMessage(Context& context, const LoadMessage& message)
{
    context.data()->report.messages.push_back(message);
    logMessage(message);
}

void reportMessage(const Node& node, LoadMessage::Severity severity, const std::string& text)
{
    LoadMessage message;
    message.severity = severity;
    if (const NodeNameSpace* names = node.nameSpace()) {
        const Relayne::URL& url = names->baseURL();
        message.file = url.isLocalFile() ? url.localFile() : url.toString();
    }
    message.line = static_cast<int>(sourceLine(node));
    message.column = static_cast<int>(sourceColumn(node));
    message.text = text;
    reportMessage(contextOf(node), message);
}

} // namespace Orvane
