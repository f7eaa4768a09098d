#pragma once

#include "QorExport.h"
#include <QtWidgets/QHeaderView>

class QAction;
class QMenu;

namespace Orvane::Qt4 {

class QorNodeEditorTreeView;

/// The header of the field tree, with a menu that shows and hides columns.
class QOR_EXPORT QorNodeEditorHeaderView : public QHeaderView
{
    Q_OBJECT

public:
    /// The header of \a parent, which owns it.
    QorNodeEditorHeaderView(Qt::Orientation orientation, QorNodeEditorTreeView* parent);

    void setModel(QAbstractItemModel* model) override;

protected:
    void contextMenuEvent(QContextMenuEvent* event) override;
    /// Makes the menu anew, with an entry for each column; without a node it stays empty.
    virtual void updateContextMenu();

protected slots:
    /// Shows or hides the columns that bear the text of an entry of the menu.
    void onContextAction(QAction* action);

private:
    QMenu* _contextMenu = nullptr;
};

} // namespace Orvane::Qt4
