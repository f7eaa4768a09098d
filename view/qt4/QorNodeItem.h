#pragma once

#include "QorExport.h"
#include <Orvane/NodePath.h>
#include <QtCore/QList>
#include <QtCore/QStringList>
#include <QtCore/QVariant>

namespace Orvane {
class Node;
class NodeLink;
} // namespace Orvane

namespace Orvane::Qt4 {

class QorScenegraphModel;

/// One place of a node in the tree of a scene: a cache over the runtime's graph, of which one level at a time
/// is built, when its row is expanded. An item owns its children. Its node is borrowed and counts as null
/// once the path to it has broken.
class QOR_EXPORT QorNodeItem
{
public:
    /// An item without children, not valid. \a model and \a parent are borrowed; the parent is not told.
    QorNodeItem(QorScenegraphModel* model, const Orvane::NodePath& path, QorNodeItem* parent);
    /// Both items have the same children afterwards, and each takes them for its own.
    QorNodeItem(const QorNodeItem& other);
    QorNodeItem& operator=(const QorNodeItem& other);
    virtual ~QorNodeItem();

    /// The child in a row, null when there is none. An item that is not valid, and whose node has children,
    /// gives a new placeholder for any row: without a path, at home in no list, beside this item and not
    /// below it. Nobody owns placeholders.
    virtual QorNodeItem* child(int row) const;
    /// Number of rows below: 1 while there may be something to expand, 0 for a prototype instance whose body
    /// is not shown.
    virtual int childCount() const;
    virtual int columnCount() const;
    /// Type, name and, for debugging, validity; nothing when the node is gone.
    virtual QVariant data(int column) const;
    /// Position among the parent's children; 0 without a parent, -1 when it is not among them.
    virtual int row() const;
    virtual QorNodeItem* parent() const;

    /// Takes an item as the last child; null is ignored.
    void appendChild(QorNodeItem* item);
    /// Deletes the children. Indexes that the model keeps for views become invalid.
    void clearChildren();
    /// Adds the children that the graph has now to \a item, one level. \a linkStack has the links that lead
    /// to this item, the deepest first.
    void addNodeLink(QList<Orvane::NodeLink*>& linkStack, QorNodeItem* item, QStringList& showFilter,
                     QStringList& hideFilter);

    /// Asks for a rebuild that leaves out every link to \a invalidNode, which may still be in its field; null
    /// leaves out none.
    void invalidate(Orvane::Node* invalidNode);
    /// Builds the children anew unless the item is valid. With \a triggerLayoutChanged views are told.
    void updateCache(bool triggerLayoutChanged);
    /// Puts an item for the child at \a childIndex of the node in that place of the list, or at its end.
    void updateInsertedChild(unsigned int childIndex);
    /// Takes the item at \a childIndex out of the list and leaves it alive: an index may still point at it.
    void updateRemovedChild(unsigned int childIndex);

    /// True when the children are those of the graph.
    bool isValid() const { return _valid; }
    QorScenegraphModel* model() const { return _model; }
    Orvane::Node* node() const;
    const Orvane::NodePath& nodePath() const { return _nodePath; }

private:
    QorScenegraphModel* _model;
    QList<QorNodeItem*> _children; ///< owned
    Orvane::NodePath _nodePath;
    Orvane::Node* _node; ///< as the path had it at first; may have died
    QorNodeItem* _parent;
    bool _valid = false;
    Orvane::Node* _invalidNode = nullptr; ///< only compared
};

} // namespace Orvane::Qt4
