#include "RecordingDelegate.h"

#include "FieldCommands.h"
#include <Orvane/SFNode.h>
#include <QorFieldItem.h>
#include <QorNodeModel.h>

using namespace Orvane::Qt4;

namespace {

constexpr char editProperty[] = "edit"; ///< of an editor: the number of its edit

Orvane::Field* fieldOf(const QModelIndex& index)
{
    const auto* const item = static_cast<QorFieldItem*>(index.internalPointer());
    return item ? item->field() : nullptr;
}

} // namespace

RecordingDelegate::RecordingDelegate(Steps* steps, QObject* parent)
    : QorNodeItemDelegate(parent)
    , _steps(steps)
{
    // An author sets what a scene only reads once, such as the size of a box.
    setInitOnlyEditorEnabled(true);
}

RecordingDelegate::~RecordingDelegate() = default;

void RecordingDelegate::watch(QorNodeModel* model)
{
    if (_model == model)
        return;
    if (_model)
        _model->disconnect(this);
    _rows.reset();
    _model = model;
    if (!model)
        return;
    connect(model, &QAbstractItemModel::rowsAboutToBeInserted, this, &RecordingDelegate::beginRows);
    connect(model, &QAbstractItemModel::rowsAboutToBeRemoved, this, &RecordingDelegate::beginRows);
    connect(model, &QAbstractItemModel::rowsInserted, this, &RecordingDelegate::endRows);
    connect(model, &QAbstractItemModel::rowsRemoved, this, &RecordingDelegate::endRows);
}

QWidget* RecordingDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                                         const QModelIndex& index) const
{
    // An editor of a node leads to it, and has nothing to show without one.
    auto* const single = dynamic_cast<Orvane::SFNode*>(fieldOf(index));
    if (single && !single->link().node())
        return nullptr;
    QWidget* const editor = QorNodeItemDelegate::createEditor(parent, option, index);
    if (editor)
        editor->setProperty(editProperty, FieldRecorder::newEdit());
    return editor;
}

void RecordingDelegate::drawDisplay(QPainter* painter, const QStyleOptionViewItem& option, const QRect& rect,
                                    const QString& text) const
{
    // The library's red of rows that wait cannot be read on a dark ground.
    QStyleOptionViewItem readable(option);
    if (option.palette.color(QPalette::Text) == QColor(200, 0, 0) &&
        option.palette.color(QPalette::Base).lightness() < 128)
        readable.palette.setColor(QPalette::Text, QColor(255, 120, 120));
    QorNodeItemDelegate::drawDisplay(painter, readable, rect, text);
}

void RecordingDelegate::setModelData(QWidget* editor, QAbstractItemModel* model,
                                     const QModelIndex& index) const
{
    const FieldRecorder recorder(_steps, fieldOf(index), editor->property(editProperty).toInt());
    QorNodeItemDelegate::setModelData(editor, model, index);
}

void RecordingDelegate::beginRows(const QModelIndex& parent)
{
    _rows = std::make_unique<FieldRecorder>(_steps, fieldOf(parent));
}

void RecordingDelegate::endRows()
{
    _rows.reset();
}
