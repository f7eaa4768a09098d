#pragma once

#include <QPointer>
#include <QorNodeItemDelegate.h>
#include <memory>

class FieldRecorder;
class Steps;

namespace Orvane::Qt4 {
class QorNodeModel;
}

/// A delegate of the field tree whose edits can be taken back. What one editor writes while it is open is one
/// step; values that the menu of the tree adds and removes are steps too.
class RecordingDelegate : public Orvane::Qt4::QorNodeItemDelegate
{
    Q_OBJECT

public:
    /// \a steps is borrowed.
    RecordingDelegate(Steps* steps, QObject* parent);
    ~RecordingDelegate() override;

    /// Records the rows that come and go in the model too; null for none.
    void watch(Orvane::Qt4::QorNodeModel* model);

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const override;
    void setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const override;

protected:
    void drawDisplay(QPainter* painter, const QStyleOptionViewItem& option, const QRect& rect,
                     const QString& text) const override;

private:
    void beginRows(const QModelIndex& parent);
    void endRows();

    Steps* _steps;
    QPointer<QAbstractItemModel> _model;
    std::unique_ptr<FieldRecorder> _rows;
};
