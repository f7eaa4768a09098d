#include "base/NodeGraph.h"
#include "base/TypeData.h"
#include <Orvane/EventInSlot.h>
#include <Orvane/EventOutSlot.h>
#include <Orvane/Field.h>
#include <Orvane/Route.h>
#include <algorithm>

namespace Orvane {

EventSlot::EventSlot(Field* field)
    : _field(field)
{
}

EventSlot::~EventSlot() = default;

EventInSlot::EventInSlot(Field* field)
    : EventSlot(field)
{
}

EventInSlot::~EventInSlot()
{
    while (!_routes.empty())
        delete _routes.back();
}

const char* EventInSlot::name() const
{
    return eventInName(*_field->_desc).c_str();
}

EventOutSlot::EventOutSlot(Field* field)
    : EventSlot(field)
{
}

EventOutSlot::~EventOutSlot()
{
    while (!_routes.empty())
        delete _routes.back();
}

const char* EventOutSlot::name() const
{
    return eventOutName(*_field->_desc).c_str();
}

Route* EventOutSlot::findRoute(EventInSlot* inSlot)
{
    if (!inSlot)
        return nullptr;
    // Along the shorter of both lists.
    const bool fromHere = _routes.size() <= static_cast<std::size_t>(inSlot->end() - inSlot->begin());
    const auto begin = fromHere ? _routes.begin() : inSlot->begin();
    const auto end = fromHere ? _routes.end() : inSlot->end();
    const auto found = std::find_if(begin, end, [this, inSlot](const Route* route) {
        return route->outSlot() == this && route->inSlot() == inSlot;
    });
    return found != end ? *found : nullptr;
}

void endRoutes(Field& field)
{
    if (field._inSlot)
        while (field._inSlot->begin() != field._inSlot->end())
            delete *field._inSlot->begin();
    if (field._outSlot)
        while (field._outSlot->begin() != field._outSlot->end())
            delete *field._outSlot->begin();
}

} // namespace Orvane
