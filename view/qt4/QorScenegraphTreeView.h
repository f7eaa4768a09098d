#pragma once

#include "QorExport.h"
#include "QorMetaTypes.h"
#include <QtCore/QPointer>
#include <QtWidgets/QTreeView>

namespace Orvane::Qt4 {

class QorScenegraphModel;

/// The tree of a scene below a root node, read level by level when rows are expanded. It makes and owns a
/// `QorScenegraphModel` for each root; a model that a host sets belongs to the host until the next root. The
/// mouse selects nodes, and the host is told.
class QOR_EXPORT QorScenegraphTreeView : public QTreeView
{
    Q_OBJECT

public:
    /// A view without a scene.
    explicit QorScenegraphTreeView(QWidget* parent);
    ~QorScenegraphTreeView() override;

    /// Null when the view has no model or one of another class.
    QorScenegraphModel* scenegraphModel() const;

    /// Names of the node types that alone have rows, from the next root on; takes the place of hidden types.
    void setShowTypeFilter(const QStringList& types);
    /// Names of the node types that have no rows, from the next root on; takes the place of shown types.
    void setHideTypeFilter(const QStringList& types);
    /// Forgets the filter, from the next root on; without one there is a log line.
    void removeFilter();

public slots:
    /// Shows a node, which is borrowed, and opens its row. The present model is deleted, whoever made it.
    /// Null shows nothing.
    virtual void setRootNode(Orvane::Node* rootNode);

signals:
    /// The left or right button was released over the row of a node. The first signal comes first.
    void nodeSelected(Orvane::NodePath nodePath);
    void nodeSelected(Orvane::Node* node);

protected:
    /// A view without parent and filters.
    QorScenegraphTreeView(QorScenegraphTreeView& other);

    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;

protected slots:
    /// Reads the level below a row.
    void onItemExpanded(QModelIndex index);

private:
    Orvane::Node* _rootNode = nullptr;
    QStringList _showTypeFilter;
    QStringList _hideTypeFilter;
    QPointer<QorScenegraphModel> _ownModel;
};

} // namespace Orvane::Qt4
