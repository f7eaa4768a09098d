#pragma once

#include "core/Part.h"
#include <Orvane/Export.h>
#include <Orvane/MFNode.h>
#include <vector>

namespace Orvane {

/// Adds the nodes of an event such as `addChildren` to a list, those that it does not hold yet, or takes them
/// out of it.
ORVANE_API void editList(MFNode& list, const MFNode& nodes, bool add, double time);

/// Replaces the links of a list, as an event. False when it has these already.
ORVANE_API bool setNodes(MFNode& list, const std::vector<Node*>& nodes, double time);

/// What a behaviour does with the event fields \a add and \a remove of its list. False when \a field is
/// neither of them.
inline bool takeListEvent(Node& node, Field& field, const Part& add, const Part& remove, const Part& list,
                          double time)
{
    const bool adds = add.is(field);
    if (!adds && !remove.is(field))
        return false;
    editList(list.edit<MFNode>(node), static_cast<MFNode&>(field), adds, time);
    // What came in is done with; the links of an event would count as parents.
    field.clear();
    return true;
}

} // namespace Orvane
