#include "AddressCommand.h"

#include "Steps.h"
#include <Orvane/Node.h>
#include <QCoreApplication>
#include <utility>

AddressCommand::AddressCommand(Steps& steps, std::unique_ptr<Orvane::SceneMove> move)
    : _steps(steps)
    , _move(std::move(move))
{
    setText(QCoreApplication::translate("AddressCommand", "rewritten addresses"));
}

void AddressCommand::redo()
{
    if (!std::exchange(_isDone, false))
        _move->make(true);
    tell();
}

void AddressCommand::undo()
{
    _move->takeBack();
    tell();
}

void AddressCommand::tell() const
{
    for (Orvane::Node* const node : _move->nodes())
        emit _steps.valueGiven(node);
}
