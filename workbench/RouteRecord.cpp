#include "RouteRecord.h"

#include <Orvane/EventInSlot.h>
#include <Orvane/EventOutSlot.h>
#include <Orvane/Field.h>
#include <Orvane/Node.h>
#include <algorithm>

using namespace Orvane;

namespace {

Field* fieldOf(unsigned long long node, unsigned int field)
{
    const Node* const found = Node::findNode(node);
    return found ? found->findField(field) : nullptr;
}

void append(const EventSlot* slot, std::vector<Route*>& routes)
{
    if (!slot)
        return;
    for (Route* const route : *slot) {
        if (route->type() != Route::IS_RT && std::find(routes.begin(), routes.end(), route) == routes.end())
            routes.push_back(route);
    }
}

} // namespace

RouteRecord::RouteRecord(const Ends& ends, Route::Type type)
    : _ends(ends)
    , _type(type)
{
}

RouteRecord::RouteRecord(const Route& route)
    : RouteRecord(endsOf(route), route.type())
{
}

RouteRecord::Ends RouteRecord::endsOf(const Route& route)
{
    const Node& from = *route.outSlot()->field()->node();
    const Node& to = *route.inSlot()->field()->node();
    return {from.ID(), static_cast<unsigned int>(from.findEventOutSlotID(route.outSlot()->name())), to.ID(),
            static_cast<unsigned int>(to.findEventInSlotID(route.inSlot()->name()))};
}

Route* RouteRecord::find(const Ends& ends)
{
    const Field* const from = fieldOf(ends.fromNode, ends.fromField);
    const Field* const to = fieldOf(ends.toNode, ends.toField);
    return from && to && from->_outSlot && to->_inSlot ? from->_outSlot->findRoute(to->_inSlot) : nullptr;
}

bool RouteRecord::create(const Ends& ends, Route::Type type)
{
    Field* const from = fieldOf(ends.fromNode, ends.fromField);
    Field* const to = fieldOf(ends.toNode, ends.toField);
    if (from && !from->_outSlot)
        from->createOutSlot(false);
    if (to && !to->_inSlot)
        to->createInSlot(false);
    return from && to && from->_outSlot && to->_inSlot && Route::create(*from->_outSlot, *to->_inSlot, type);
}

bool RouteRecord::make() const
{
    if (!create(_ends, _type))
        return false;
    for (const Behind& next : _behind) {
        if (Route* const route = find(next.ends)) {
            delete route;
            create(next.ends, next.type);
        }
    }
    return true;
}

bool RouteRecord::end()
{
    Route* const route = find(_ends);
    if (!route)
        return false;
    _behind.clear();
    const EventOutSlot& source = *route->outSlot();
    for (auto next = std::find(source.begin(), source.end(), route) + 1; next != source.end(); ++next) {
        if ((*next)->type() != Route::IS_RT)
            _behind.push_back({endsOf(**next), (*next)->type()});
    }
    delete route;
    return true;
}

std::vector<Route*> RouteRecord::routesOf(const Node& node)
{
    std::vector<Route*> routes;
    for (unsigned int i = 0; const Field* const field = node.findField(i); ++i) {
        append(field->_outSlot, routes);
        append(field->_inSlot, routes);
    }
    return routes;
}

std::vector<Route*> RouteRecord::routesOf(const Field& field)
{
    std::vector<Route*> routes;
    append(field._outSlot, routes);
    append(field._inSlot, routes);
    return routes;
}
