#include "loader/Routes.h"

#include "base/Graph.h"
#include "loader/ChildPlacement.h"
#include "loader/FileScope.h"
#include <Orvane/EventInSlot.h>
#include <Orvane/EventOutSlot.h>
#include <Orvane/Field.h>
#include <Orvane/Node.h>
#include <Orvane/NodePartDesc.h>
#include <Orvane/NodeType.h>
#include <Orvane/Route.h>
#include <algorithm>

namespace Orvane {

namespace {

std::string label(const Node& node)
{
    const std::string named = node.name() ? " " + quoted(*node.name()) : std::string();
    return node.type()->name + named;
}

/// Null when there is no such node; told, unless the name is that of an import, which has been told of.
Node* findEnd(const PendingEnd& end, FileScope& scope, SourcePlace place)
{
    Node* node = end.node ? end.node.get() : scope.findNode(end.nodeName);
    const auto isImport = [&](const PendingImport& import) { return import.name == end.nodeName; };
    if (!node && std::none_of(scope.imports.begin(), scope.imports.end(), isImport))
        scope.messages.warn(place, "ROUTE: expected the name of a node, found " + quoted(end.nodeName));
    return node;
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
    Node* fromNode = findEnd(pending.from, scope, pending.place);
    Node* toNode = findEnd(pending.to, scope, pending.place);
    if (!fromNode || !toNode)
        return;
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
