#include "QorFieldEditor.h"

#include "QorLog.h"

namespace Orvane::Qt4 {

QorFieldEditor::QorFieldEditor(QWidget* parent)
    : QWidget(parent)
{
}

void QorFieldEditor::signalCommitData()
{
    QOR_NOTICE("QorFieldEditor::signalCommitData:\n");
    emit commitData(this);
}

} // namespace Orvane::Qt4
