#pragma once

#include "base/NodeRef.h"
#include <Orvane/Export.h>
#include <Orvane/LoadReport.h>
#include <Orvane/SaveOptions.h>
#include <string>
#include <vector>

namespace Relayne {
class URL;
}

namespace Orvane {

class Context;
class NodeNameSpace;
class NodeType;

/// What a loader made of a scene file: root nodes that stand in no context root list yet. At most one of each
/// type.
struct LoadedScene
{
    std::vector<NodeRef> roots;
};

/// Reads a scene from \a url, or from \a text when that is not null. False when nothing could be made of it;
/// `report` then says why. Never throws. The nodes are made in \a context but nothing of the context's
/// present scene changes.
using SceneReader = bool (*)(Context& context, const Relayne::URL& url, const std::string* text,
                             LoadedScene& scene, LoadReport& report);

/// Writes a root node and what hangs below it to a file; \a notes tells what its encoding cannot say. False,
/// with the reason in \a error, when that fails. Never throws.
using SceneWriter = bool (*)(const Node& root, const std::string& path, const SaveOptions& options,
                             std::vector<std::string>& notes, std::string& error);

/// Reads what an `Inline` names now into it, in place of what it held; empties it when it is not to load.
/// False when nothing could be read; `report` then says why. Never throws.
using InlineReader = bool (*)(Node& inlineNode, LoadReport& report);

/// Makes the nodes of a text as `Authoring::read` tells; they stand nowhere yet. False when the text could
/// not be read; `report` then says why. Never throws.
using NodeReader = bool (*)(Node& scene, const std::string& text, const std::string& origin,
                            std::vector<NodeRef>& nodes, LoadReport& report);

/// The node that the file of these names imports under \a name; null when there is none now.
using ImportFinder = Node* (*)(const NodeNameSpace& names, const std::string& name);

/// The loader pool registers its readers and its writer here when it is loaded.
class ORVANE_API SceneLoaderRegistration
{
public:
    SceneLoaderRegistration(SceneReader reader, InlineReader inlineReader, SceneWriter writer,
                            NodeReader nodeReader = nullptr, ImportFinder importFinder = nullptr);
};

/// Brings the content of an `Inline` in step with its fields. Nodes that come run when the inline does. The
/// messages go where those of `reportMessage` go.
ORVANE_API bool reloadInline(Node& inlineNode);

/// Reads a scene from \a url, or from \a text when that is not null, as `Context::load` does, but for its
/// place in the context: its root stands in no list, and nothing runs. Messages go to the log.
ORVANE_API bool readScene(Context& context, const Relayne::URL& url, const std::string* text,
                          LoadedScene& scene);

/// The node that the file of \a names imports under \a name; null when there is none now.
ORVANE_API Node* findImportedNode(const NodeNameSpace& names, const std::string& name);

/// Gives the context the roots of a scene in the place of those that it has of the same type.
ORVANE_API void installScene(Context& context, const LoadedScene& scene);

/// Adds a message to the report of the context's last load and to the log: "WARNING: file:line:column: text".
/// For faults that show after loading, such as a texture that is no image.
ORVANE_API void reportMessage(Context& context, const LoadMessage& message);
/// The same about a node, at its place in its file.
ORVANE_API void reportMessage(const Node& node, LoadMessage::Severity severity, const std::string& text);

} // namespace Orvane
