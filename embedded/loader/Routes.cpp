#include "loader/Routes.h"

#include "base/Graph.h"
#include "loader/ChildPlacement.h"
#include "loader/FileScope.h"
#include "loader/KeptStatements.h"
#include <Orvane/EventInSlot.h>
#include <Orvane/EventOutSlot.h>
#include <Orvane/Field.h>
#include <Orvane/Node.h>
#include <Orvane/NodePartDesc.h>
#include <Orvane/NodeType.h>
#include <Orvane/Route.h>

namespace Orvane {

namespace {

std::string label(const Node& node)
{
    const std::string named = node.name() ? " " + quoted(*node.name()) : std::string();
    return node.type()->name + named;
}

/// One end of a route as it is found.
struct RouteEnd
{
    Node* node;
    bool isAwaited; ///< imported from an inline that holds no such node now, which has been told of
};

RouteEnd findEnd(const PendingEnd& end, FileScope& scope, const PendingRoute& route)
{
    if (Node* node = end.node ? end.node.get() : scope.findNode(end.nodeName))
        return {node, false};
    if (route.isKept || scope.importNames.count(end.nodeName) > 0)
        return {nullptr, true};
    scope.messages.warn(route.place, "ROUTE: expected the name of a node, found " + quoted(end.nodeName));
    return {nullptr, false};
}

Field* outField(const Node& node, const std::string& name)
{
    const int part = node.findEventOutSlotID(name);
    return part < 0 ? nullptr : node.findField(static_cast<unsigned int>(part));
}

Field* inField(const Node& node, const std::string& name)
{
    const int part = node.findEventInSlotID(name);
    return part < 0 ? nullptr : node.findField(static_cast<unsigned int>(part));
}

/// Gives the field of a node of unknown type the data type of the other end: the field as it stands was made
/// from text, as nothing better was known, or is missing.
Field* adapted(Field* field, Node& node, const std::string& name, const Field* other, NodePartType access)
{
    if (!other || !isUnknown(*node.type()))
        return field;
    if (!field)
        return addField(node, name, other->dataType(), access);
    if (field->dataType() != SFSTRING_DT || other->dataType() == SFSTRING_DT)
        return field;
    const std::string text = field->valueToString();
    const std::string fieldName = field->name();
    removeField(node, *field);
    Field* result = addField(node, fieldName, other->dataType(), EXPOSEDFIELDP);
    std::string error;
    if (result && !result->parseValue(text, error)) {
        removeField(node, *result);
        result = addField(node, fieldName, SFSTRING_DT, EXPOSEDFIELDP);
        result->parseValue(text, error);
    }
    return result;
}

void makeRoute(const PendingRoute& pending, FileScope& scope, LoadReport& report)
{
    const auto [fromNode, fromIsAwaited] = findEnd(pending.from, scope, pending);
    const auto [toNode, toIsAwaited] = findEnd(pending.to, scope, pending);
    if (!fromNode || !toNode) {
        if ((fromNode || fromIsAwaited) && (toNode || toIsAwaited))
            keepRoute(*scope.root,
                      {pending.from.nodeName, pending.from.field, pending.to.nodeName, pending.to.field});
        return;
    }
    Field* from = outField(*fromNode, pending.from.field);
    Field* to = inField(*toNode, pending.to.field);
    const bool fromIsKnown = !isUnknown(*fromNode->type());
    from = adapted(from, *fromNode, pending.from.field, to, EVENTOUTP);
    if (fromIsKnown)
        to = adapted(to, *toNode, pending.to.field, from, EVENTINP);
    if (!from || !to) {
        const bool isFrom = !from;
        const Node& node = isFrom ? *fromNode : *toNode;
        scope.messages.warn(pending.place, "ROUTE: expected an " + std::string(isFrom ? "output" : "input") +
                                               " of " + label(node) + ", found " +
                                               quoted(isFrom ? pending.from.field : pending.to.field));
        return;
    }
    from->createOutSlot(false);
    to->createInSlot(false);
    if (from->_outSlot->findRoute(to->_inSlot))
        return; // saying it twice means the same
    if (Route::create(*from->_outSlot, *to->_inSlot, Route::SCENE_RT))
        ++report.routes;
    else
        scope.messages.warn(pending.place, "ROUTE: expected two fields of one type, found " +
                                               pending.from.field + " (" + from->dataTypeName() + ") and " +
                                               pending.to.field + " (" + to->dataTypeName() + ")");
}

} // namespace

void makeRoutes(FileScope& scope, LoadReport& report)
{
    for (const PendingRoute& route : scope.routes)
        makeRoute(route, scope, report);
}

} // namespace Orvane
