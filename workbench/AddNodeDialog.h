#pragma once

#include <QDialog>

class QCheckBox;
class QLabel;
class QLineEdit;
class QListView;
class QSortFilterProxyModel;
class QStandardItemModel;

namespace Orvane {
class Node;
}

/// Asks which node to add. A line of text narrows the list down to the types in whose names or descriptions
/// its words stand; a switch shows those only that have a place below the selected node.
class AddNodeDialog : public QDialog
{
    Q_OBJECT

public:
    /// \a scene and \a parent node are borrowed while the dialog is open.
    AddNodeDialog(const Orvane::Node& scene, Orvane::Node& parentNode, QWidget* parent);
    ~AddNodeDialog() override;

    /// The chosen type; empty when none is.
    QString typeName() const;
    /// The name that the node is to bear; may be empty.
    QString nodeName() const;

protected:
    /// Up and down in the line of text go through the list.
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void fill(const Orvane::Node& scene, Orvane::Node& parentNode);
    void narrow();
    void showChoice();

    QLineEdit* _search;
    QCheckBox* _fittingOnly;
    QListView* _list;
    QLabel* _description;
    QLineEdit* _name;
    QWidget* _ok = nullptr;
    QStandardItemModel* _types;
    QSortFilterProxyModel* _shown;
};
