#include "base/NodeGraph.h"
#include "base/ContextData.h"
#include "base/NodeData.h"
#include "base/NodeDeath.h"
#include "base/NodeRunning.h"
#include "base/NodeTable.h"
#include <algorithm>

namespace Orvane {

namespace {

/// True while a link that led to \a child still does so. Behaviours and observers may do anything, so after
/// them nothing is touched before it is known to live.
class LinkWatch
{
public:
    LinkWatch(Field& field, GraphLink& link)
        : _field(field)
        , _link(link)
        , _parent(*field.node())
        , _parentId(_parent.ID())
        , _child(link.child())
    {
    }

    Node* child() const { return _child.get(); }
    bool isParentThere() const { return nodeTable::find(_parentId) == &_parent; }
    bool isLinkThere() const
    {
        if (!_child || !isParentThere())
            return false;
        if (_field.dataType() == MFNODE_DT) {
            const std::vector<NodeLink*>& links = FieldAccess::links(static_cast<MFNode&>(_field));
            if (std::find(links.rbegin(), links.rend(), &_link) == links.rend())
                return false;
        }
        return _link.child() == _child.get();
    }

private:
    Field& _field;
    GraphLink& _link;
    Node& _parent;
    const UInt64 _parentId;
    const NodeRef _child;
};

/// Tells of a new link.
void announce(Field& field, GraphLink& link)
{
    Node& parent = *field.node();
    const LinkWatch watch(field, link);
    joinParent(parent, *watch.child());
    if (!watch.isLinkThere())
        return;
    Node::_childAdded.fire(timeOf(parent), &parent, &link);
    if (watch.isParentThere() && parent.state() == RUNNING_NS && parent.data()->proc)
        parent.data()->proc->childrenChanged(field);
}

/// Tells of the end of a link; false when it has ended under way.
bool announceRemoval(Field& field, GraphLink& link)
{
    Node& parent = *field.node();
    const LinkWatch watch(field, link);
    Node::_childRemoved.fire(timeOf(parent), &parent, &link);
    if (!watch.isLinkThere())
        return false;
    if (parent.state() == RUNNING_NS && parent.data()->proc)
        parent.data()->proc->childrenChanged(field);
    return watch.isLinkThere();
}

} // namespace

bool mayLink(const Field& field, const Node* child)
{
    return child && field.node() && child->data()->context == field.node()->data()->context &&
           child->state() != DYING_NS && field.node()->state() != DYING_NS;
}

void setLink(SFNode& field, Node& child)
{
    GraphLink& link = FieldAccess::link(field);
    link.attach(child);
    announce(field, link);
}

void insertLink(MFNode& field, unsigned int index, Node& child)
{
    std::vector<NodeLink*>& links = FieldAccess::links(field);
    auto link = std::make_unique<GraphLink>(&field);
    links.insert(links.begin() + index, link.get());
    GraphLink& inserted = *link.release();
    inserted.attach(child);
    announce(field, inserted);
}

void removeLink(GraphLink& link)
{
    Field& field = *link.field();
    const NodeRef child(link.child()); // dies at the end when this was its last link
    BusyScope busy(*field.node()->data()->context);
    // The end of a circle of nodes empties links that stay in their field.
    if (child) {
        if (!announceRemoval(field, link))
            return;
        link.detach();
    }
    if (field.dataType() == MFNODE_DT) {
        std::vector<NodeLink*>& links = FieldAccess::links(static_cast<MFNode&>(field));
        links.erase(std::find(links.begin(), links.end(), &link));
        delete &link;
    }
}

void removeAllLinks(Field& field)
{
    if (field.dataType() == SFNODE_DT) {
        GraphLink& link = FieldAccess::link(static_cast<SFNode&>(field));
        if (link.child())
            removeLink(link);
        return;
    }
    const Node& owner = *field.node();
    const UInt64 ownerId = owner.ID();
    const std::vector<NodeLink*>& links = FieldAccess::links(static_cast<MFNode&>(field));
    while (nodeTable::find(ownerId) == &owner && !links.empty())
        removeLink(static_cast<GraphLink&>(*links.back()));
}

} // namespace Orvane
