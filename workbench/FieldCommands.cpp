#include "FieldCommands.h"

#include "Steps.h"
#include <Orvane/Field.h>
#include <Orvane/Node.h>
#include <QCoreApplication>
#include <QorTools.h>

namespace {

Orvane::Field* fieldOf(unsigned long long node, const std::string& field)
{
    const Orvane::Node* const found = Orvane::Node::findNode(node);
    return found ? found->findField(field, Orvane::Node::EXACT_FSO) : nullptr;
}

} // namespace

FieldCommand::FieldCommand(Steps& steps, const Orvane::Field& field, const FieldState& before,
                           const FieldState& after, int edit)
    : _steps(steps)
    , _node(field.node()->ID())
    , _field(field.name())
    , _before(before)
    , _after(after)
    , _edit(edit)
{
    setText(QCoreApplication::translate("FieldCommand", "edit of %1").arg(Orvane::Qt4::fromRuntime(_field)));
}

void FieldCommand::redo()
{
    if (std::exchange(_isDone, false))
        _after.restLost(_before);
    else
        give(_after, _before);
}

void FieldCommand::undo()
{
    give(_before, _after);
}

void FieldCommand::give(const FieldState& state, const FieldState& present)
{
    Orvane::Field* const field = fieldOf(_node, _field);
    if (!field) {
        setObsolete(true);
        return;
    }
    state.giveTo(*field);
    state.restLost(present);
    if (Orvane::Node* const node = Orvane::Node::findNode(_node))
        emit _steps.valueGiven(node);
}

bool FieldCommand::mergeWith(const QUndoCommand* later)
{
    const auto* const other = static_cast<const FieldCommand*>(later);
    if (_edit == 0 || other->_edit != _edit || other->_node != _node || other->_field != _field)
        return false;
    _after = other->_after;
    setObsolete(_after == _before);
    return true;
}

FieldRecorder::FieldRecorder(Steps* steps, const Orvane::Field* field, int edit)
    : _steps(steps)
    , _edit(edit)
{
    // An event has no value to go back to.
    if (!field || !(field->partType() & Orvane::FIELDP))
        return;
    _node = field->node()->ID();
    _field = field->name();
    _before = std::make_unique<const FieldState>(*field);
}

FieldRecorder::~FieldRecorder()
{
    const Orvane::Field* const field = _before ? fieldOf(_node, _field) : nullptr;
    if (!field)
        return;
    const FieldState after(*field);
    if (after != *_before)
        _steps->push(new FieldCommand(*_steps, *field, *_before, after, _edit));
}

int FieldRecorder::newEdit()
{
    static int last = 0;
    return ++last;
}
