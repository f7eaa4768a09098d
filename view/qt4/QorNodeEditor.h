#pragma once

#include "QorExport.h"
#include "QorMetaTypes.h"
#include "QorNodeModel.h"
#include <Orvane/Observer.h>
#include <QtCore/QPointer>
#include <QtWidgets/QWidget>

class QLabel;

namespace Orvane::Qt4 {

class QorNodeEditorTreeView;
class QorNodeItemDelegate;

/// Shows a node and edits its fields: type and name, on demand the description of the type, and a tree of the
/// fields. It follows the name and the death of its node, but not the values: these are read when a cell is
/// painted. The node is borrowed. The last model and a delegate that the editor made outlive it; a host that
/// cares calls `setNode(nullptr)` first and sets a delegate of its own.
class QOR_EXPORT QorNodeEditor : public QWidget
{
    Q_OBJECT

public:
    /// What the head line shows.
    enum GuiElementFilter : int { NONE_GE = 0, NODE_NAME_GE = 1, NODE_TYPE_GE = 8, ALL_GE = 15 };

    /// Kept for hosts; every public field is shown whatever it says.
    enum FieldTypeFilter : int {
        NONE_FT = 0,
        FIELD_FT = 1,
        EVENT_IN_FT = 2,
        EVENT_OUT_FT = 4,
        EXPOSED_FIELD_FT = 8,
        ALL_FT = 15
    };

    /// Tells an editor of the end and of a new name of its node, out of those of all nodes.
    class QOR_EXPORT NodeObserver : public Orvane::Observer
    {
    public:
        /// \a kind is 1 to watch for the end of nodes, 2 for their names.
        NodeObserver(QorNodeEditor* editor, int kind);
        ~NodeObserver() override;

        void notify(const double& time, Orvane::BaseObject* subject, Orvane::BaseObject* a,
                    Orvane::BaseObject* b) override;

    private:
        QorNodeEditor* _editor;
        int _kind;
    };

    /// Shows no node.
    explicit QorNodeEditor(QWidget* parent = nullptr);
    ~QorNodeEditor() override;

    /// The node shown, or null.
    Orvane::Node* node() const { return _node; }
    /// The model of the node; null without one.
    QorNodeModel* model() const { return _model; }
    QorNodeEditorTreeView* treeView() const { return _treeView; }

    /// Null until a delegate was set or a node shown.
    QorNodeItemDelegate* itemDelegate() const;
    /// Takes a delegate, which stays the host's, from the next `setNode` on. The press of a node button in it
    /// leads this editor to that node.
    void setItemDelegate(QorNodeItemDelegate* delegate);

    /// What of the fields shows, from the next `setNode` on.
    const GuiElementFilter& guiElementFilter() const { return _guiElementFilter; }
    void setGuiElementFilter(const GuiElementFilter& filter);
    const FieldTypeFilter& fieldTypeFilter() const { return _fieldTypeFilter; }
    void setFieldTypeFilter(const FieldTypeFilter& filter);

public slots:
    /// Shows a node, or nothing for null. The node that is shown already keeps its tree as it is.
    virtual void setNode(Orvane::Node* node);
    void showColumn(QorNodeModel::FieldColumn column);
    void hideColumn(QorNodeModel::FieldColumn column);
    /// Shows or hides the description of the node's type, hidden at first.
    void setDescriptionVisible(bool visible);

signals:
    /// The user pressed the button of a node in the tree.
    void nodeSelected(Orvane::Node* node);

protected:
    /// 280 by 300 pixels.
    QSize sizeHint() const override;

private:
    void showNodeName();

    Orvane::Node* _node = nullptr;
    FieldTypeFilter _fieldTypeFilter = ALL_FT;
    GuiElementFilter _guiElementFilter = ALL_GE;
    QorNodeModel* _model = nullptr;
    QPointer<QorNodeItemDelegate> _itemDelegate;
    QLabel* _nodeNameLabel;
    QLabel* _nodeTypeLabel;
    QLabel* _descriptionLabel;
    QorNodeEditorTreeView* _treeView;
    NodeObserver _nameSpaceObserver;
    NodeObserver _deleteObserver;
};

} // namespace Orvane::Qt4
