#pragma once

#include "base/Graph.h"
#include "base/SmallBlocks.h"
#include <Orvane/Export.h>
#include <Orvane/NodeNameSpace.h>
#include <list>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>

namespace Orvane {

/// A name space as the runtime makes it. It closes when its root dies, and is then found no more; it goes
/// when it is closed and no node stands in it.
class ORVANE_API SceneNames final : public NodeNameSpace
{
public:
    SceneNames(Context& context, NodeNameSpace* parent, std::string_view name, Node* rootNode,
               const Relayne::URL& baseURL);
    ~SceneNames() override;

    /// The root has gone.
    void close();
    /// Another node is the root from now on.
    void setRoot(Node& root);
    /// Relative addresses count from another file.
    void setBaseURL(const Relayne::URL& url) { _baseURL = url; }
};

using NameSpaceList = std::list<std::unique_ptr<SceneNames>>;

/// The name of a node, in small blocks; goes by `dropName`.
const std::string* makeName(std::string_view text);
/// \a name must not be null.
void dropName(const std::string* name);

/// Names by what they say, not by where they stand.
struct SameName
{
    std::size_t operator()(const std::string* name) const { return std::hash<std::string>()(*name); }
    bool operator()(const std::string* a, const std::string* b) const { return *a == *b; }
};

/// Nodes by their own names, which are not copied.
using NodesByName = std::unordered_map<const std::string*, Node*, SameName, SameName,
                                       smallBlocks::Allocator<std::pair<const std::string* const, Node*>>>;

struct NodeNameSpace::Data
{
    Context* context;
    NodeNameSpace* parent;
    std::string name;
    NodesByName nodes;
    std::size_t members = 0; ///< nodes that stand in the name space
    bool isClosed = false;
    bool isHidden = false; ///< of a prototype's model, which is no place of the scene
    unsigned int fileVersion = newestVersion;
    NodeNameSpace* firstNested = nullptr; ///< of those of which this is the parent
    NodeNameSpace* nextNested = nullptr;  ///< those with the same parent
    NodeNameSpace* previousNested = nullptr;
    NameSpaceList::iterator place{}; ///< in the context's list
};

/// The node dies: nobody finds it by its name any more, and a name space of which it is the root closes.
void leaveNameSpace(Node& node);

/// Makes the names those of a model: they are found by nobody.
void hideNameSpace(NodeNameSpace& names, Node& model);

/// Ends all name spaces of a context without nodes.
void endNameSpaces(Context& context);

} // namespace Orvane
