#pragma once

#include "QorExport.h"
#include <QtWidgets/QAbstractItemDelegate>
#include <QtWidgets/QWidget>

namespace Orvane::Qt4 {

class QorFieldItem;

/// The small widget over a value cell while it is edited. It reads and writes the field of a row itself; the
/// signals tell the view, through the delegate that made the editor, when to write and when to close. The
/// view deletes it.
class QOR_EXPORT QorFieldEditor : public QWidget
{
    Q_OBJECT

public:
    /// An editor in the cell of a view, which owns it.
    explicit QorFieldEditor(QWidget* parent);

    /// Shows the value of the row.
    virtual void setEditorData(QorFieldItem* item) = 0;
    /// Writes what the editor shows to the field of the row.
    virtual void setModelData(QorFieldItem* item) = 0;

public slots:
    /// Asks the view to have this editor written.
    void signalCommitData();

signals:
    /// As the signals of item delegates: the value is to be written, the edit is over.
    void commitData(QWidget* editor);
    void closeEditor(QWidget* editor,
                     QAbstractItemDelegate::EndEditHint hint = QAbstractItemDelegate::NoHint);
};

} // namespace Orvane::Qt4
