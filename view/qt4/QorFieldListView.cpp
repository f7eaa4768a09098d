#include "QorFieldListView.h"

#include "QorTools.h"
#include <Orvane/Field.h>
#include <Orvane/NodePartDesc.h>

namespace Orvane::Qt4 {

namespace {

constexpr int ColumnCount = 3;

} // namespace

QorFieldListView::QorFieldListView(QWidget* parent)
    : QTreeWidget(parent)
{
    setRootIsDecorated(false);
    QorFieldListView::initListView();
    QorFieldListView::updateView();
}

QorFieldListView::~QorFieldListView() = default;

void QorFieldListView::setNode(Orvane::Node* node)
{
    _node = QorBorrowedNode(node);
    updateView();
}

void QorFieldListView::setExtensionsOnly(bool extensionsOnly)
{
    _extensionsOnly = extensionsOnly;
    updateView();
}

void QorFieldListView::showPartTypes(const Orvane::NodePartType& partTypes)
{
    _shownPartTypes = partTypes;
    updateView();
}

void QorFieldListView::showColumns(const Column& columns)
{
    if (columns == _shownColumns)
        return;
    _shownColumns = columns;
    initListView();
    updateView();
}

void QorFieldListView::initListView()
{
    _columnOrder.clear();
    setColumnCount(ColumnCount);
    QStringList labels;
    const std::pair<Column, QString> columns[] = {{COLUMN_NAME, tr("Name")},
                                                  {COLUMN_DATA_TYPE, tr("Data type")},
                                                  {COLUMN_FIELD_TYPE, tr("Field type")}};
    for (const auto& [column, label] : columns) {
        if (_shownColumns & column) {
            _columnOrder.append(column);
            labels << label;
        }
    }
    setHeaderLabels(labels);
    for (int i = labels.size(); i < ColumnCount; ++i)
        headerItem()->setText(i, QString());
}

void QorFieldListView::updateView()
{
    clear();
    const Orvane::Node* const node = _node.get();
    if (!node)
        return;
    for (unsigned int part = 0; const Orvane::Field* field = node->findField(part); ++part) {
        if (!isShown(*field))
            continue;
        auto* row = new QTreeWidgetItem(this);
        for (int i = 0; i < ColumnCount; ++i)
            row->setText(i, i < _columnOrder.size() ? getColumnText(field, _columnOrder.at(i)) : QString());
    }
}

bool QorFieldListView::isShown(const Orvane::Field& field) const
{
    if (_shownPartTypes != Orvane::NO_PART && (!field._desc || field.partType() != _shownPartTypes))
        return false;
    return !_extensionsOnly || (field._desc && field._desc->objExt());
}

QString QorFieldListView::getColumnText(const Orvane::Field* field, const Column& column) const
{
    switch (column) {
    case COLUMN_NAME:
        return fromRuntime(field->name());
    case COLUMN_DATA_TYPE:
        return field->_desc ? fromRuntime(field->_desc->dataTypeName()) : QString();
    case COLUMN_FIELD_TYPE:
        return field->_desc ? fromRuntime(field->_desc->partTypeName()) : QString();
    }
    return {};
}

} // namespace Orvane::Qt4
