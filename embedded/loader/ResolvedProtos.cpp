#include "loader/ResolvedProtos.h"

#include "base/Graph.h"
#include "base/LiveRoute.h"
#include "base/ProtoDeclaration.h"
#include "loader/NodeFields.h"
#include <Orvane/EventInSlot.h>
#include <Orvane/EventOutSlot.h>
#include <Orvane/MFNode.h>
#include <Orvane/Node.h>
#include <Orvane/NodeType.h>

namespace Orvane {

namespace {

bool leadsInto(const Route& route)
{
    return route.type() == Route::IS_RT && static_cast<const LiveRoute&>(route).leadsInto;
}

} // namespace

bool ResolvedProtos::isResolved(const Node& node) const
{
    if (!_isResolving)
        return false;
    const ProtoDeclaration* declaration = protoDeclaration(*node.type());
    return declaration && declaration->model && declaration->model.get() != &node;
}

const Node* ResolvedProtos::resolve(const Node* node)
{
    const Node* const placed = node;
    // Bodies that begin with an instance of their own kind are refused when they are read.
    while (node && isResolved(*node)) {
        const MFNode& body = protoBody(*node);
        const bool isNew = _metInstances.insert(node).second;
        for (int link = 1; isNew && link < linkCount(body); ++link)
            if (const Node* rest = linkedNode(body, link))
                _unseen.push_back(rest);
        node = linkCount(body) > 0 ? linkedNode(body, 0) : nullptr;
    }
    if (node && node != placed)
        _standsFor.emplace(node, placed);
    return node;
}

const Node& ResolvedProtos::bearer(const Node& node) const
{
    const auto found = _standsFor.find(&node);
    return found != _standsFor.end() && found->second->name() ? *found->second : node;
}

std::vector<WrittenRoute> ResolvedProtos::routes(const std::vector<const Node*>& nodes) const
{
    std::vector<WrittenRoute> result;
    std::vector<const Field*> fields;
    for (const Node* node : nodes) {
        fields.clear();
        madeFields(*node, fields);
        for (const Field* field : fields)
            if (field->_outSlot)
                follow(*field->_outSlot, result);
    }
    return result;
}

/// Finds where the events of a slot arrive, through as many instances as it takes.
void ResolvedProtos::follow(const EventOutSlot& source, std::vector<WrittenRoute>& found) const
{
    struct Stop
    {
        const Field* field;
        bool fromOutside; ///< the event came to an instance from around it
    };
    std::vector<Stop> waiting = {{source.field(), false}};
    std::unordered_set<const Field*> met = {source.field()};
    while (!waiting.empty()) {
        const Stop stop = waiting.back();
        waiting.pop_back();
        const EventOutSlot* slot = stop.field->_outSlot;
        if (!slot)
            continue;
        // What an instance hands into its body comes out of there again.
        bool onlyInto = false;
        for (const Route* route : *slot)
            onlyInto = onlyInto || (stop.fromOutside && leadsInto(*route));
        for (const Route* route : *slot) {
            const bool isIs = route->type() == Route::IS_RT;
            const Field& to = *route->inSlot()->field();
            if (!to.node() || (isIs ? !_isResolving : route->type() != Route::SCENE_RT))
                continue;
            if ((onlyInto && !leadsInto(*route)) || !met.insert(&to).second)
                continue;
            if (isResolved(*to.node()))
                waiting.push_back({&to, !isIs || leadsInto(*route)});
            else
                found.push_back({&source, route->inSlot()});
        }
    }
}

} // namespace Orvane
