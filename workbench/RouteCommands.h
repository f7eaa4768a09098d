#pragma once

#include "RouteRecord.h"
#include <QUndoCommand>

/// A route made or deleted by the user, as a step that can be taken back. It holds numbers, no pointers: a
/// step whose nodes or fields have gone does nothing and leaves the stack.
class RouteCommand : public QUndoCommand
{
public:
    using Ends = RouteRecord::Ends;

protected:
    RouteCommand(const RouteRecord& route, QUndoCommand* parent);

    void makeRoute();
    void deleteRoute();

private:
    RouteRecord _route;
};

/// Makes a route of the scene.
class CreateRouteCommand : public RouteCommand
{
public:
    explicit CreateRouteCommand(const Ends& ends, QUndoCommand* parent = nullptr);
    void redo() override { makeRoute(); }
    void undo() override { deleteRoute(); }
};

/// Deletes a route; what comes back is of its type and stands at its place.
class DeleteRouteCommand : public RouteCommand
{
public:
    explicit DeleteRouteCommand(const Orvane::Route& route, QUndoCommand* parent = nullptr);
    void redo() override { deleteRoute(); }
    void undo() override { makeRoute(); }
};
