#pragma once

namespace Orvane {

/// Process-wide id of a node.
using UInt64 = unsigned long long;

/// Who made a node.
enum NodeCreator : int {
    RUNTIME_NC = 0, ///< the runtime itself
    HOST_NC = 1,    ///< the host program, through the library
    LOADER_NC = 2   ///< a scene file
};

/// Life of a node. States only grow until the node rests or dies.
enum NodeState : int {
    CREATED_NS = 0, ///< the node exists, its fields can be read and written
    LOADED_NS = 1,  ///< it belongs to a loaded scene
    SETUP_NS = 2,   ///< its processing object is being made
    RUNNING_NS = 3, ///< it takes part in frames
    DYING_NS = 4    ///< it is about to be deleted
};

} // namespace Orvane
