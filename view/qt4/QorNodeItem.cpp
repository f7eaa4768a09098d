#include "QorNodeItem.h"

#include "QorLog.h"
#include "QorScenegraphModel.h"
#include "QorTools.h"
#include "QorTypeFilter.h"
#include <Orvane/Field.h>
#include <Orvane/Node.h>
#include <Orvane/NodeLink.h>
#include <Orvane/NodeType.h>
#include <algorithm>
#include <list>
#include <vector>

namespace Orvane::Qt4 {

namespace {

const int ColumnCount = 2;
const int TypeColumn = 0;
const int NameColumn = 1;
const int ValidColumn = 2;

/// True for a prototype instance of which nothing shows.
bool isClosed(const Orvane::Node& node, const QorScenegraphModel& model)
{
    return node.type()->isProto() && !model.isShowingProtoBody();
}

bool mayExpand(const Orvane::Node* node)
{
    return node && node->childCount() > 0;
}

bool carriesEventsOnly(const Orvane::Field* field)
{
    return !field || field->partType() == Orvane::EVENTOUTP || field->partType() == Orvane::EVENTINP;
}

} // namespace

QorNodeItem::QorNodeItem(QorScenegraphModel* model, const Orvane::NodePath& path, QorNodeItem* parent)
    : _model(model)
    , _nodePath(path)
    , _node(path.isValid() ? path.node() : nullptr)
    , _parent(parent)
{
}

QorNodeItem::QorNodeItem(const QorNodeItem& other) = default;
QorNodeItem& QorNodeItem::operator=(const QorNodeItem& other) = default;

QorNodeItem::~QorNodeItem()
{
    // Level by level, so that no depth of the tree is too much for the stack.
    QList<QorNodeItem*> doomed;
    doomed.swap(_children);
    for (int i = 0; i < doomed.size(); ++i) {
        doomed += doomed[i]->_children;
        doomed[i]->_children.clear();
    }
    qDeleteAll(doomed);
}

Orvane::Node* QorNodeItem::node() const
{
    // The path knows when something on the way has died.
    return _nodePath.node() == _node ? _node : nullptr;
}

QorNodeItem* QorNodeItem::child(int row) const
{
    if (!_valid && mayExpand(node()))
        return new QorNodeItem(_model, Orvane::NodePath(nullptr), _parent);
    return _children.value(row);
}

int QorNodeItem::childCount() const
{
    const Orvane::Node* const living = node();
    if (living && isClosed(*living, *_model))
        return 0;
    return !_valid && mayExpand(living) ? 1 : _children.size();
}

int QorNodeItem::columnCount() const
{
    return ColumnCount;
}

QVariant QorNodeItem::data(int column) const
{
    const Orvane::Node* const living = _nodePath.node();
    if (!living)
        return QVariant();
    switch (column) {
    case TypeColumn:
        return fromRuntime(living->type()->name);
    case NameColumn:
        return fromRuntime(nodeName(living));
    case ValidColumn:
        return _valid ? QStringLiteral("true") : QStringLiteral("false");
    default:
        return QVariant();
    }
}

int QorNodeItem::row() const
{
    return _parent ? _parent->_children.indexOf(const_cast<QorNodeItem*>(this)) : 0;
}

QorNodeItem* QorNodeItem::parent() const
{
    return _parent;
}

void QorNodeItem::appendChild(QorNodeItem* item)
{
    if (item)
        _children.append(item);
}

void QorNodeItem::clearChildren()
{
    if (_children.isEmpty())
        return;
    _model->dropIndexesBelow(this);
    QList<QorNodeItem*> doomed;
    doomed.swap(_children);
    qDeleteAll(doomed);
}

void QorNodeItem::addNodeLink(QList<Orvane::NodeLink*>& linkStack, QorNodeItem* item, QStringList& showFilter,
                              QStringList& hideFilter)
{
    Orvane::Node* const present = _nodePath.node();
    if (!present) {
        QOR_WARNING("QorNodeItem::addNodeLink: node is 0!\n");
        return;
    }
    if (isClosed(*present, *_model))
        return;

    QList<Orvane::NodeLink*> links;
    nodeLinks(linkStack.isEmpty() ? present : linkStack.first()->directNode(), links, false);
    QOR_NOTICE("QorNodeItem::addNodeLink: adding %d nodelinks.\n", links.size());
    item->_children.reserve(item->_children.size() + links.size());
    std::list<Orvane::NodeLink*> stack(linkStack.cbegin(), linkStack.cend());
    Orvane::NodePath path;
    for (Orvane::NodeLink* link : qAsConst(links)) {
        if (carriesEventsOnly(link->field())) {
            QOR_NOTICE("QorNodeItem::addNodeLink: Omitting nodelink of type EVENTOUTP | EVENTINP.\n");
            continue;
        }
        if (!isTypeShown(*link->directNode(), showFilter, hideFilter))
            continue;
        stack.push_front(link);
        path.setNode(stack);
        stack.pop_front();
        if (path.node() == _invalidNode) {
            QOR_WARNING("QorNodeItem::addNodeLink: omitting invalid node %p\n",
                        static_cast<const void*>(_invalidNode));
            continue;
        }
        item->_children.append(new QorNodeItem(_model, path, item));
    }
}

void QorNodeItem::invalidate(Orvane::Node* invalidNode)
{
    _invalidNode = invalidNode;
    _valid = false;
}

void QorNodeItem::updateCache(bool triggerLayoutChanged)
{
    if (_valid) {
        QOR_NOTICE("QorNodeItem::updateCache: node item is valid. Skipping update.\n");
        return;
    }
    QStringList showFilter = _model->showTypeFilter();
    QStringList hideFilter = _model->hideTypeFilter();
    std::list<Orvane::NodeLink*> links;
    _nodePath.nodeLinks(links);
    QList<Orvane::NodeLink*> linkStack;
    for (Orvane::NodeLink* link : links)
        linkStack.append(link);
    QOR_NOTICE("QorNodeItem::updateCache(): item of node=%p/%s cache is invalid. Updating cache.\n",
               static_cast<const void*>(_nodePath.node()), nodeName(_nodePath.node()).c_str());

    // Views note what they hold before it goes.
    if (triggerLayoutChanged)
        emit _model->layoutAboutToBeChanged();
    clearChildren();
    addNodeLink(linkStack, this, showFilter, hideFilter);
    _valid = true;
    if (triggerLayoutChanged)
        _model->triggerLayoutChanged();
    _invalidNode = nullptr;
}

void QorNodeItem::updateInsertedChild(unsigned int childIndex)
{
    Orvane::Node* const living = node();
    const int nodeChildCount = living ? living->childCount() : 0;
    QOR_NOTICE("QorNodeItem::updateInsertedChild: childIndex=%d, itemcount=%d, node->childCount=%d\n",
               static_cast<int>(childIndex), childCount(), nodeChildCount);
    if (!living || childIndex > static_cast<unsigned int>(nodeChildCount))
        return;
    std::vector<Orvane::Node*> nodeVec;
    living->collectAllChildren(nodeVec, 0);
    if (childIndex >= nodeVec.size()) {
        QOR_FATAL("QorNodeItem::updateInsertedChild: childIndex=%d or nodeVec.size()=%d. Skipping update.\n",
                  static_cast<int>(childIndex), static_cast<int>(nodeVec.size()));
        return;
    }
    Orvane::NodePath path(_nodePath);
    QOR_NOTICE("QorNodeItem::updateInsertedChild: item nodePath().node()=%s/%p, nodeVec.size()=%d\n",
               nodeName(path.node()).c_str(), static_cast<const void*>(path.node()),
               static_cast<int>(nodeVec.size()));
    if (!path.isValid()) {
        QOR_FATAL("QorNodeItem::updateInsertedChild: invalid nodepath!\n");
        return;
    }
    Orvane::Node* const added = nodeVec[childIndex];
    path.addNode(added);
    // Hidden children take part in the count of the index but have no item.
    if (isTypeShown(*added, _model->showTypeFilter(), _model->hideTypeFilter())) {
        const int place =
            static_cast<int>(std::min<unsigned int>(childIndex, static_cast<unsigned int>(_children.size())));
        _children.insert(place, new QorNodeItem(_model, path, this));
    }
}

void QorNodeItem::updateRemovedChild(unsigned int childIndex)
{
    QOR_NOTICE("QorNodeItem::updateRemovedChild: childIndex=%d\n", static_cast<int>(childIndex));
    if (childIndex < static_cast<unsigned int>(_children.size()))
        _children.removeAt(static_cast<int>(childIndex));
    else
        QOR_FATAL(
            "QorNodeItem::updateRemovedChild: removal at index %d invalid. Node item only has %d childs.\n",
            static_cast<int>(childIndex), _children.size());
}

} // namespace Orvane::Qt4
