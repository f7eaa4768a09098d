#include "QorColorFieldEditor.h"

#include <QtWidgets/QHBoxLayout>

namespace Orvane::Qt4 {

QorColorFieldEditor::QorColorFieldEditor(QWidget* parent)
    : QorFieldEditor(parent)
    , _layout(new QHBoxLayout(this))
{
    _layout->setContentsMargins(0, 0, 0, 0);
    _layout->setSpacing(0);
}

void QorColorFieldEditor::setEditorData(QorFieldItem*)
{
}

void QorColorFieldEditor::setModelData(QorFieldItem*)
{
}

} // namespace Orvane::Qt4
