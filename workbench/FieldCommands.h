#pragma once

#include "FieldState.h"
#include <QUndoCommand>
#include <memory>

class Steps;

namespace Orvane {
class Node;
}

/// A value that the user has written. Writes of one edit, such as the steps of a drag, are one step. It holds
/// the number of the node, so that it does nothing once that has died.
class FieldCommand : public QUndoCommand
{
public:
    static constexpr int Id = 1;

    /// The field has the value \a after already. Writes with the same \a edit are one; 0 is an edit alone.
    FieldCommand(Steps& steps, const Orvane::Field& field, const FieldState& before, const FieldState& after,
                 int edit);

    void redo() override;
    void undo() override;
    int id() const override { return Id; }
    bool mergeWith(const QUndoCommand* later) override;

private:
    void give(const FieldState& state, const FieldState& present);

    Steps& _steps;
    unsigned long long _node;
    std::string _field;
    FieldState _before;
    FieldState _after;
    int _edit;
    bool _isDone = true;
};

/// Pushes what happens to a field between the beginning and the end of its life onto a stack, when that is a
/// change that is seen in a file.
class FieldRecorder
{
public:
    /// \a field may be null, and may die meanwhile. \a edit as with `FieldCommand`.
    FieldRecorder(Steps* steps, const Orvane::Field* field, int edit = 0);
    FieldRecorder(const FieldRecorder&) = delete;
    FieldRecorder& operator=(const FieldRecorder&) = delete;
    ~FieldRecorder();

    /// A number for an edit of its own.
    static int newEdit();

private:
    Steps* _steps;
    unsigned long long _node = 0;
    std::string _field;
    std::unique_ptr<const FieldState> _before;
    int _edit;
};
