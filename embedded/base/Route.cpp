#include "base/ContextData.h"
#include "base/LiveRoute.h"
#include "base/NodeData.h"
#include <Orvane/EventInSlot.h>
#include <Orvane/EventOutSlot.h>
#include <Orvane/Route.h>
#include <algorithm>

namespace Orvane {

Subject Route::_newObject;
Subject Route::_deleteObject;

namespace {

/// Slots exist for any access, for who watches a field. An IS connection joins parts of the same access.
bool fitsAccess(const Field& from, const Field& to, Route::Type type)
{
    return type == Route::IS_RT || ((from.partType() & EVENTOUTP) && (to.partType() & EVENTINP));
}

bool mayConnect(EventOutSlot& outSlot, EventInSlot& inSlot, Route::Type type)
{
    const Field& from = *outSlot.field();
    const Field& to = *inSlot.field();
    return from.dataType() == to.dataType() && fitsAccess(from, to, type) &&
           from.node()->data()->context == to.node()->data()->context && from.node()->state() != DYING_NS &&
           to.node()->state() != DYING_NS && from._desc->id != removedPart && to._desc->id != removedPart &&
           !outSlot.findRoute(&inSlot);
}

/// Fields that stand for each other hand on their values both ways.
void pairWithOpposite(LiveRoute& route)
{
    EventOutSlot* const back = route.inSlot()->field()->_outSlot;
    Route* const opposite = back ? back->findRoute(route.outSlot()->field()->_inSlot) : nullptr;
    if (!opposite || opposite->type() != Route::IS_RT)
        return;
    route.opposite = static_cast<LiveRoute*>(opposite);
    route.opposite->opposite = &route;
}

} // namespace

Route* Route::create(EventOutSlot& outSlot, EventInSlot& inSlot, Type type)
{
    if (!mayConnect(outSlot, inSlot, type))
        return nullptr;
    auto* const route = new LiveRoute(outSlot, inSlot, type); // the slots own it
    if (type == IS_RT)
        pairWithOpposite(*route);
    _newObject.fire(timeOf(*outSlot.field()->node()), route);
    return outSlot.findRoute(&inSlot); // an observer may have deleted it
}

Route::Route(EventOutSlot& outSlot, EventInSlot& inSlot, Type type)
    : _outSlot(&outSlot)
    , _inSlot(&inSlot)
    , _type(type)
{
    outSlot._routes.push_back(this);
    inSlot._routes.push_back(this);
}

Route::~Route()
{
    _deleteObject.fire(timeOf(*_outSlot->field()->node()), this);
    for (EventSlot* slot : {static_cast<EventSlot*>(_outSlot), static_cast<EventSlot*>(_inSlot)})
        slot->_routes.erase(std::find(slot->_routes.begin(), slot->_routes.end(), this));
}

} // namespace Orvane
