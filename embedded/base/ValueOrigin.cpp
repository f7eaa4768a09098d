#include "base/ValueOrigin.h"
#include "base/LiveRoute.h"
#include "base/NodeData.h"
#include <Orvane/EventInSlot.h>
#include <Orvane/EventOutSlot.h>

namespace Orvane {

namespace {

/// The field of the instance around it that fills the field; null when there is none.
const Field* fieldOutside(const Field& field)
{
    if (!field._inSlot)
        return nullptr;
    for (const Route* route : *field._inSlot) {
        const Field& from = *route->outSlot()->field();
        if (route->type() == Route::IS_RT && static_cast<const LiveRoute*>(route)->leadsInto &&
            !from.hasValueOf(defaultField(*from._desc)))
            return &from;
    }
    return nullptr;
}

} // namespace

const Node& valueOrigin(const Field& field)
{
    const Field* origin = &field;
    while (const Field* outside = fieldOutside(*origin))
        origin = outside;
    return *origin->node();
}

} // namespace Orvane
