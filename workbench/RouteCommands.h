#pragma once

#include <Orvane/Route.h>
#include <QUndoCommand>

namespace Orvane {
class Field;
}

/// A route made or deleted by the user, as a step that can be taken back. It holds numbers, no pointers: a
/// step whose nodes or fields have gone does nothing and leaves the stack.
class RouteCommand : public QUndoCommand
{
public:
    /// Numbers of the two ends.
    struct Ends
    {
        unsigned long long fromNode;
        unsigned int fromField;
        unsigned long long toNode;
        unsigned int toField;
    };

    /// The ends of a living route.
    static Ends endsOf(const Orvane::Route& route);

protected:
    RouteCommand(const Ends& ends, Orvane::Route::Type type, QUndoCommand* parent);

    void makeRoute();
    void deleteRoute();

private:
    Orvane::Field* source() const;
    Orvane::Field* destination() const;

    Ends _ends;
    Orvane::Route::Type _type;
};

/// Makes a route of the scene.
class CreateRouteCommand : public RouteCommand
{
public:
    explicit CreateRouteCommand(const Ends& ends, QUndoCommand* parent = nullptr);
    void redo() override { makeRoute(); }
    void undo() override { deleteRoute(); }
};

/// Deletes a route; what comes back is of its type.
class DeleteRouteCommand : public RouteCommand
{
public:
    explicit DeleteRouteCommand(const Orvane::Route& route, QUndoCommand* parent = nullptr);
    void redo() override { deleteRoute(); }
    void undo() override { makeRoute(); }
};
