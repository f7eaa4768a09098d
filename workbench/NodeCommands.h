#pragma once

#include "RouteRecord.h"
#include <Orvane/HeldNode.h>
#include <Orvane/NodePath.h>
#include <QUndoCommand>
#include <string>
#include <utility>
#include <vector>

class Steps;

/// A place for a node in the graph: a field of nodes, and the position in it. It holds numbers, no pointers.
struct NodePlace
{
    unsigned long long parent = 0;
    std::string field;
    int index = 0;

    /// The place at the end of a path; without parent for a root and for a path that is not valid.
    static NodePlace of(const Orvane::NodePath& path);
    /// The place behind the last node of a field.
    static NodePlace endOf(const Orvane::Field& field);

    Orvane::Field* find() const;
    /// The node that stands there; null when there is none.
    Orvane::Node* node() const;
    /// False when the field has gone or does not take the node.
    bool link(Orvane::Node& node) const;
    bool unlink() const;
};

/// A node that comes to a place, or leaves it. What is no longer part of the scene then is kept alive,
/// without names and routes in the scene, which come back with it, and rests meanwhile.
class PlaceCommand : public QUndoCommand
{
protected:
    PlaceCommand(Steps& steps, const NodePlace& place, Orvane::Node& node, QUndoCommand* parent);

    void comeBack();
    void leave();

private:
    void detach(const std::vector<Orvane::Node*>& nodes);

    Steps& _steps;
    NodePlace _place;
    Orvane::HeldNode _node;
    std::vector<std::pair<Orvane::HeldNode, std::string>> _names;
    std::vector<RouteRecord> _routes;
};

/// Puts a node that hangs nowhere, or elsewhere, to a place.
class AddNodeCommand : public PlaceCommand
{
public:
    AddNodeCommand(Steps& steps, const NodePlace& place, Orvane::Node& node, QUndoCommand* parent = nullptr);
    void redo() override { comeBack(); }
    void undo() override { leave(); }
};

/// Takes a node from a place. It stays at its other places.
class DeleteNodeCommand : public PlaceCommand
{
public:
    DeleteNodeCommand(Steps& steps, const NodePlace& place, QUndoCommand* parent = nullptr);
    void redo() override { leave(); }
    void undo() override { comeBack(); }
};

/// Takes a node from one place to another; names and routes stay.
class MoveNodeCommand : public QUndoCommand
{
public:
    /// \a to counts without the node at its old place.
    MoveNodeCommand(Steps& steps, const NodePlace& from, const NodePlace& to);
    void redo() override { move(_from, _to); }
    void undo() override { move(_to, _from); }

private:
    void move(const NodePlace& from, const NodePlace& to);

    Steps& _steps;
    NodePlace _from;
    NodePlace _to;
};

/// Gives a node another name.
class RenameCommand : public QUndoCommand
{
public:
    RenameCommand(Orvane::Node& node, const std::string& name);
    void redo() override { give(_after); }
    void undo() override { give(_before); }

private:
    void give(const std::string& name);

    unsigned long long _node;
    std::string _before;
    std::string _after;
};
