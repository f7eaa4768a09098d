#pragma once

#include "FieldState.h"
#include "RouteRecord.h"
#include <QString>
#include <QUndoCommand>
#include <memory>
#include <vector>

class Steps;

/// A field of a script or shader that comes and goes, with its place, its value and its routes.
class AuthorFieldCommand : public QUndoCommand
{
public:
    /// Adds a field as `AuthorFields::add` does, as a step. The result says why not; empty when it is there.
    static QString add(Steps& steps, Orvane::Node& node, const QString& dataType, const QString& fieldType,
                       const QString& name, const QString& defaultValue);
    /// Removes a field as `AuthorFields::remove` does, as a step.
    static QString remove(Steps& steps, Orvane::Node& node, const QString& name);

    void redo() override;
    void undo() override;

private:
    enum Kind : int { Adds, Removes };

    AuthorFieldCommand(Steps& steps, Orvane::Field& field, Kind kind);

    void takeOut();
    void putBack();

    Steps& _steps;
    Orvane::HeldNode _node;
    Orvane::Field* _field; ///< lives as long as its node, in it or out of it
    Kind _kind;
    bool _isDone;
    unsigned int _part = 0;
    std::unique_ptr<const FieldState> _value;
    std::vector<RouteRecord> _routes;
};
