#include "QorNodeFieldEditor.h"

#include "QorEditedValue.h"
#include "QorFieldItem.h"
#include "QorLog.h"
#include "QorTools.h"
#include <Orvane/MFNode.h>
#include <Orvane/SFNode.h>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QPushButton>

namespace Orvane::Qt4 {

QorNodeFieldEditor::QorNodeFieldEditor(QWidget* parent)
    : QorFieldEditor(parent)
    , _layout(new QHBoxLayout(this))
    , _button(new QPushButton(this))
{
    _layout->setContentsMargins(0, 0, 0, 0);
    _layout->setSpacing(0);
    _layout->addWidget(_button, 0);
    connect(_button, &QPushButton::clicked, this, &QorNodeFieldEditor::onBtnClicked);
}

void QorNodeFieldEditor::setEditorData(QorFieldItem* item)
{
    Orvane::Field* field = item->field();
    if (!field) {
        QOR_FATAL("QorNodeFieldEditor::setEditorData: invalid field. Can't update editor.");
        return;
    }
    Orvane::Node* node = nullptr;
    if (field->cardinality() == 0) {
        auto* single = dynamic_cast<Orvane::SFNode*>(field);
        if (!single)
            return;
        node = single->link().node();
    } else {
        auto* multi = dynamic_cast<Orvane::MFNode*>(field);
        const int index = editedValueIndex(item, field);
        if (!multi || index < 0)
            return;
        // Unlike the node of a single field, one in a list is not followed behind a reference.
        Orvane::NodeLink link(multi->elem(index));
        node = link.directNode();
    }

    _button->setEnabled(node);
    if (!node)
        return;
    _node = node;
    _nodeId = node->ID();
    // A single "&" would underline the next letter.
    _button->setText(toString().replace(QLatin1Char('&'), QLatin1String("&&")));
}

void QorNodeFieldEditor::setModelData(QorFieldItem*)
{
}

QString QorNodeFieldEditor::toString()
{
    return _node ? fromRuntime(nodeName(_node)) : QString();
}

void QorNodeFieldEditor::onBtnClicked()
{
    if (_node && Orvane::Node::findNode(_nodeId) == _node)
        emit nodeSelected(_node);
}

} // namespace Orvane::Qt4
