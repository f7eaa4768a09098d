#include "AuthorFieldCommand.h"

#include "AuthorFields.h"
#include "Steps.h"
#include <Orvane/Authoring.h>
#include <Orvane/Field.h>
#include <Orvane/Node.h>
#include <Orvane/NodePartDesc.h>
#include <QCoreApplication>
#include <QorTools.h>

using namespace Orvane::Qt4;

namespace {

Orvane::Field* findField(const Orvane::Node& node, const QString& name)
{
    return node.findField(toRuntime(name), Orvane::Node::EXACT_FSO);
}

} // namespace

QString AuthorFieldCommand::add(Steps& steps, Orvane::Node& node, const QString& dataType,
                                const QString& fieldType, const QString& name, const QString& defaultValue)
{
    const QString error = AuthorFields::add(node, dataType, fieldType, name, defaultValue);
    if (error.isEmpty())
        steps.push(new AuthorFieldCommand(steps, *findField(node, name), Adds));
    return error;
}

QString AuthorFieldCommand::remove(Steps& steps, Orvane::Node& node, const QString& name)
{
    Orvane::Field* const field = findField(node, name);
    if (!field || !field->_desc->objExt())
        return AuthorFields::remove(node, name); // which says why
    steps.push(new AuthorFieldCommand(steps, *field, Removes));
    return {};
}

AuthorFieldCommand::AuthorFieldCommand(Steps& steps, Orvane::Field& field, Kind kind)
    : _steps(steps)
    , _node(field.node())
    , _field(&field)
    , _kind(kind)
    , _isDone(kind == Adds)
{
    const QString text = kind == Adds ? QCoreApplication::translate("AuthorFieldCommand", "new field %1")
                                      : QCoreApplication::translate("AuthorFieldCommand", "removal of %1");
    setText(text.arg(fromRuntime(field.name())));
}

void AuthorFieldCommand::redo()
{
    if (std::exchange(_isDone, false))
        emit _steps.fieldsChanged(_node.node());
    else if (_kind == Adds)
        putBack();
    else
        takeOut();
}

void AuthorFieldCommand::undo()
{
    if (_kind == Adds)
        takeOut();
    else
        putBack();
}

void AuthorFieldCommand::takeOut()
{
    Orvane::Node* const node = _node.node();
    if (!node) {
        setObsolete(true);
        return;
    }
    _part = _field->_desc->id;
    _value = std::make_unique<const FieldState>(*_field);
    _routes.clear();
    for (const Orvane::Route* const route : RouteRecord::routesOf(*_field))
        _routes.emplace_back(*route);
    for (RouteRecord& route : _routes)
        route.end();
    if (!node->removeField(*_field))
        setObsolete(true);
    emit _steps.fieldsChanged(node);
}

void AuthorFieldCommand::putBack()
{
    Orvane::Node* const node = _node.node();
    if (!node || !Orvane::Authoring::restoreField(*_field, _part)) {
        setObsolete(true);
        return;
    }
    if (FieldState(*_field) != *_value)
        _value->giveTo(*_field);
    for (auto route = _routes.rbegin(); route != _routes.rend(); ++route)
        route->make();
    emit _steps.fieldsChanged(node);
}
