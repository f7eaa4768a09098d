#pragma once

#include "NameEdit.h"
#include <QDialog>
#include <vector>

class QCheckBox;
class QLabel;
class QLineEdit;
class QListView;
class QSortFilterProxyModel;
class QStandardItem;
class QStandardItemModel;

namespace Orvane {
class Node;
class NodeType;
} // namespace Orvane

/// Asks which node to add. A line of text narrows the list down to the types in whose names or descriptions
/// its words stand, and chooses the one whose name it begins. A switch shows those only that have a place
/// below the selected node; a type that is called by its name is shown all the same, with the reason why it
/// may not stand there.
class AddNodeDialog : public QDialog
{
    Q_OBJECT

public:
    /// The nodes of \a way lead from the root of the scene to the selected one, and are borrowed while the
    /// dialog is open. \a check judges the name of the new node.
    AddNodeDialog(const std::vector<Orvane::Node*>& way, const NameEdit::Check& check, QWidget* parent);
    ~AddNodeDialog() override;

    /// The chosen type; empty when none is.
    QString typeName() const;
    /// The name that the node is to bear; may be empty.
    QString nodeName() const { return _name->name(); }

public slots:
    /// Stays open without a type, and with a name that cannot be.
    void accept() override;

protected:
    /// Up and down in the line of text go through the list.
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void fill(const std::vector<Orvane::Node*>& way);
    void narrow();
    void showChoice();
    void updateRow(QStandardItem& item) const;

    std::vector<Orvane::NodeType*> _catalogue; ///< by the rows of the types
    QLineEdit* _search;
    QCheckBox* _fittingOnly;
    QListView* _list;
    QLabel* _description;
    NameEdit* _name;
    QWidget* _ok = nullptr;
    QStandardItemModel* _types;
    QSortFilterProxyModel* _shown;
};
