#include "QorNewFieldDialog.h"

#include "QorTools.h"
#include <Orvane/FieldType.h>
#include <QtCore/QPointer>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QGridLayout>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPushButton>
#include <array>

namespace Orvane::Qt4 {

namespace {

struct FieldTypeName
{
    const char* name;
    Orvane::NodePartType type;
};

/// In the order of the box. These names are also what the host is told, so that they are not translated.
constexpr std::array<FieldTypeName, 4> fieldTypes = {{{"Field", Orvane::FIELDP},
                                                      {"EventIn", Orvane::EVENTINP},
                                                      {"EventOut", Orvane::EVENTOUTP},
                                                      {"ExposedField", Orvane::EXPOSEDFIELDP}}};

constexpr int FirstDataType = 1;
constexpr int LastDataType = 48;

} // namespace

QorNewFieldDialog::QorNewFieldDialog(Orvane::Node* node, QWidget* parent)
    : QDialog(parent)
    , _nameEdit(new QLineEdit(this))
    , _defaultValueEdit(new QLineEdit(this))
    , _dataTypeCombo(new QComboBox(this))
    , _node(node)
    , _layout(new QGridLayout(this))
    , _nameLabel(new QLabel(tr("Name:"), this))
    , _fieldTypeCombo(new QComboBox(this))
    , _nodeLabel(new QLabel(tr("Node: ") + fromRuntime(nodeName(node)), this))
    , _defaultValueLabel(new QLabel(tr("Default value:"), this))
    , _fieldTypeLabel(new QLabel(tr("Field type"), this))
    , _dataTypeLabel(new QLabel(tr("Data type"), this))
    , _createButton(new QPushButton(tr("Create"), this))
    , _cancelButton(new QPushButton(tr("Cancel"), this))
{
    setWindowTitle(tr("Create new field"));
    // A name of the scene is never read as markup.
    _nodeLabel->setTextFormat(Qt::PlainText);

    for (const FieldTypeName& each : fieldTypes)
        _fieldTypeCombo->addItem(QLatin1String(each.name));
    for (int i = FirstDataType; i <= LastDataType; ++i)
        _dataTypeCombo->addItem(
            fromRuntime(Orvane::FieldType::dataTypeName(static_cast<Orvane::NodePartDataType>(i))));

    _layout->setContentsMargins(6, 6, 6, 6);
    _layout->setSpacing(6);
    // This label covers the whole column: it keeps to the top, in a row that nothing else stands in.
    _nodeLabel->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    _layout->setRowMinimumHeight(0, _nodeLabel->sizeHint().height());
    _layout->addWidget(_nodeLabel, 0, 0, 0, 1);
    _layout->addWidget(_nameLabel, 1, 0);
    _layout->addWidget(_nameEdit, 1, 1);
    _layout->addWidget(_fieldTypeLabel, 2, 0);
    _layout->addWidget(_fieldTypeCombo, 2, 1);
    _layout->addWidget(_dataTypeLabel, 3, 0);
    _layout->addWidget(_dataTypeCombo, 3, 1);
    _layout->addWidget(_defaultValueLabel, 4, 0);
    _layout->addWidget(_defaultValueEdit, 4, 1);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(_createButton);
    buttons->addSpacing(16);
    buttons->addWidget(_cancelButton);
    _layout->addLayout(buttons, 5, 0, 5, 1);

    connect(_nameEdit, SIGNAL(textChanged(const QString&)), this, SLOT(onNameChanged(const QString&)));
    connect(_createButton, SIGNAL(clicked()), this, SLOT(onCreate()));
    connect(_cancelButton, SIGNAL(clicked()), this, SLOT(reject()));
    QorNewFieldDialog::updateButtons();
}

QorNewFieldDialog::~QorNewFieldDialog() = default;

Orvane::NodePartType QorNewFieldDialog::getNodePartType(const QString& fieldType)
{
    for (const FieldTypeName& each : fieldTypes) {
        if (fieldType == QLatin1String(each.name))
            return each.type;
    }
    return Orvane::NO_PART;
}

void QorNewFieldDialog::onNameChanged(QString)
{
    updateButtons();
}

void QorNewFieldDialog::updateButtons()
{
    _createButton->setEnabled(!_nameEdit->text().isEmpty());
}

void QorNewFieldDialog::onCreate()
{
    const QPointer<QorNewFieldDialog> self(this);
    if (Orvane::Node* node = _node.get())
        emit wantsAddField(node, _dataTypeCombo->currentText(), _fieldTypeCombo->currentText(),
                           _nameEdit->text(), _defaultValueEdit->text(), QStringLiteral(""),
                           QStringLiteral(""));
    if (self)
        accept();
}

} // namespace Orvane::Qt4
