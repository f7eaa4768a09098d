#pragma once

#include <Orvane/SceneMove.h>
#include <QUndoCommand>
#include <memory>

class Steps;

/// A scene that has gone to another file, and whose addresses were rewritten so that they still lead to the
/// same files.
class AddressCommand : public QUndoCommand
{
public:
    /// The move has been made already.
    AddressCommand(Steps& steps, std::unique_ptr<Orvane::SceneMove> move);

    void redo() override;
    void undo() override;

private:
    void tell() const;

    Steps& _steps;
    std::unique_ptr<Orvane::SceneMove> _move;
    bool _isDone = true;
};
