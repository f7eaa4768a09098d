#pragma once

#include <Orvane/Export.h>
#include <Orvane/Node.h>
#include <Orvane/NodeType.h>

namespace Orvane {

/// What becomes of the nodes of a type in a running scene.
enum class TypeService {
    DRAWN, ///< takes part in the picture
    ALIVE, ///< takes part in what happens
    KEPT,  ///< holds what others read, and is saved; nothing is missed
    TOLD,  ///< kept too, but scenes have such nodes for what they should do: the log says so
};

/// The service of a type of the catalogue, by what the pools have registered.
ORVANE_API TypeService serviceOf(const NodeType& type);

/// Says of a node that comes to run without a behaviour that nodes of its type do nothing, once for each type
/// and scene, if that is to be told.
void tellOfKept(const Node& node);

} // namespace Orvane
