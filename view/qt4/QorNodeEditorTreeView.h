#pragma once

#include "QorExport.h"
#include <QtWidgets/QTreeView>

namespace Orvane::Qt4 {

class QorMFieldValueItem;
class QorNodeModel;

/// The tree of the fields of a node, over a `QorNodeModel`. A menu inserts and removes values of multi
/// fields, and a left press on the row of a delayed multi field fills it.
class QOR_EXPORT QorNodeEditorTreeView : public QTreeView
{
    Q_OBJECT

public:
    /// A view without a model.
    explicit QorNodeEditorTreeView(QWidget* parent);

    // Rows are one line high, unless the first row has more: then each is as high as its texts.
    void reset() override;
    void doItemsLayout() override;

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    /// Texts start at the top, so that the first of several lines is the one that shows.
    QStyleOptionViewItem viewOptions() const override;

protected slots:
    void commitData(QWidget* editor) override;

    // All of these work on the current row.
    void onInsertValueBeforeSelected();
    void onInsertValueBehindSelected();
    void onInsertValueAtFront();
    void onRemoveSelectedValue();

private:
    QorNodeModel* nodeModel() const;
    QorMFieldValueItem* currentValueItem() const;
    void insertValue(int row);
    void chooseRowHeights();
};

} // namespace Orvane::Qt4
