#include "RouteCommands.h"

#include <Orvane/Field.h>
#include <Orvane/Node.h>
#include <QCoreApplication>
#include <QorTools.h>

using namespace Orvane;

namespace {

QString fieldName(unsigned long long node, unsigned int field)
{
    const Node* const found = Node::findNode(node);
    const Field* const part = found ? found->findField(field) : nullptr;
    return part ? Qt4::fromRuntime(part->name()) : QString();
}

QString textFor(const char* text, const RouteCommand::Ends& ends)
{
    return QCoreApplication::translate("RouteCommand", text)
        .arg(fieldName(ends.fromNode, ends.fromField), fieldName(ends.toNode, ends.toField));
}

} // namespace

RouteCommand::RouteCommand(const RouteRecord& route, QUndoCommand* parent)
    : QUndoCommand(parent)
    , _route(route)
{
}

void RouteCommand::makeRoute()
{
    if (!_route.make())
        setObsolete(true);
}

void RouteCommand::deleteRoute()
{
    if (!_route.end())
        setObsolete(true);
}

CreateRouteCommand::CreateRouteCommand(const Ends& ends, QUndoCommand* parent)
    : RouteCommand({ends, Route::SCENE_RT}, parent)
{
    setText(textFor(QT_TRANSLATE_NOOP("RouteCommand", "route %1 to %2"), ends));
}

DeleteRouteCommand::DeleteRouteCommand(const Route& route, QUndoCommand* parent)
    : RouteCommand(RouteRecord(route), parent)
{
    setText(textFor(QT_TRANSLATE_NOOP("RouteCommand", "delete route %1 to %2"), RouteRecord(route).ends()));
}
