#include "Steps.h"

Steps::Steps(QObject* parent)
    : QUndoStack(parent)
{
}
