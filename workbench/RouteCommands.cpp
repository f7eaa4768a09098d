#include "RouteCommands.h"

#include <Orvane/EventInSlot.h>
#include <Orvane/EventOutSlot.h>
#include <Orvane/Field.h>
#include <Orvane/Node.h>
#include <QCoreApplication>
#include <QorTools.h>

using namespace Orvane;

namespace {

Field* fieldOf(unsigned long long node, unsigned int field)
{
    const Node* const found = Node::findNode(node);
    return found ? found->findField(field) : nullptr;
}

QString textFor(const char* text, const RouteCommand::Ends& ends)
{
    const Field* const from = fieldOf(ends.fromNode, ends.fromField);
    const Field* const to = fieldOf(ends.toNode, ends.toField);
    return QCoreApplication::translate("RouteCommand", text)
        .arg(from ? Qt4::fromRuntime(from->name()) : QString(),
             to ? Qt4::fromRuntime(to->name()) : QString());
}

} // namespace

RouteCommand::RouteCommand(const Ends& ends, Route::Type type, QUndoCommand* parent)
    : QUndoCommand(parent)
    , _ends(ends)
    , _type(type)
{
}

RouteCommand::Ends RouteCommand::endsOf(const Route& route)
{
    const Node& from = *route.outSlot()->field()->node();
    const Node& to = *route.inSlot()->field()->node();
    return {from.ID(), static_cast<unsigned int>(from.findEventOutSlotID(route.outSlot()->name())), to.ID(),
            static_cast<unsigned int>(to.findEventInSlotID(route.inSlot()->name()))};
}

Field* RouteCommand::source() const
{
    return fieldOf(_ends.fromNode, _ends.fromField);
}

Field* RouteCommand::destination() const
{
    return fieldOf(_ends.toNode, _ends.toField);
}

void RouteCommand::makeRoute()
{
    Field* const from = source();
    Field* const to = destination();
    if (from && !from->_outSlot)
        from->createOutSlot(false);
    if (to && !to->_inSlot)
        to->createInSlot(false);
    const bool canTry = from && to && from->_outSlot && to->_inSlot;
    if (!canTry || !Route::create(*from->_outSlot, *to->_inSlot, _type))
        setObsolete(true);
}

void RouteCommand::deleteRoute()
{
    const Field* const from = source();
    const Field* const to = destination();
    Route* const route =
        from && to && from->_outSlot && to->_inSlot ? from->_outSlot->findRoute(to->_inSlot) : nullptr;
    if (route)
        delete route;
    else
        setObsolete(true);
}

CreateRouteCommand::CreateRouteCommand(const Ends& ends, QUndoCommand* parent)
    : RouteCommand(ends, Route::SCENE_RT, parent)
{
    setText(textFor(QT_TRANSLATE_NOOP("RouteCommand", "route %1 to %2"), ends));
}

DeleteRouteCommand::DeleteRouteCommand(const Route& route, QUndoCommand* parent)
    : RouteCommand(endsOf(route), route.type(), parent)
{
    setText(textFor(QT_TRANSLATE_NOOP("RouteCommand", "delete route %1 to %2"), endsOf(route)));
}
