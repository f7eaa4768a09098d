#pragma once

#include <Orvane/NodeNameSpace.h>
#include <string>
#include <string_view>
#include <unordered_map>

namespace Orvane {

/// A name space as the runtime makes it. It closes when its root dies, and is then found no more; it goes
/// when it is closed and no node stands in it.
class SceneNames final : public NodeNameSpace
{
public:
    SceneNames(Context& context, NodeNameSpace* parent, std::string_view name, Node* rootNode,
               const Relayne::URL& baseURL);
    ~SceneNames() override;

    /// The root has gone.
    void close();
};

struct NodeNameSpace::Data
{
    Context* context;
    NodeNameSpace* parent;
    std::string name;
    std::unordered_map<std::string_view, Node*> nodes; ///< the keys are the nodes' own names
    std::size_t members = 0;                           ///< nodes that stand in the name space
    bool isClosed = false;
};

/// The node dies: nobody finds it by its name any more, and a name space of which it is the root closes.
void leaveNameSpace(Node& node);

/// Ends all name spaces of a context without nodes.
void endNameSpaces(Context& context);

} // namespace Orvane
