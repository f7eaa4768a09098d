#include "base/NodeGraph.h"
#include "base/ContextData.h"
#include "base/NodeData.h"
#include "base/NodeDeath.h"
#include "base/NodeRunning.h"
#include "base/NodeTable.h"
#include <algorithm>

namespace Orvane {

namespace {

/// Tells of a new link. Observers may do anything, so nothing is touched after them before it is known to
/// live.
void announce(Field& field, GraphLink& link)
{
    Node& parent = *field.node();
    const NodeRef child(link.child());
    const UInt64 parentId = parent.ID();
    joinParent(parent, *child);
    if (!child || link.child() != child.get())
        return;
    Node::_childAdded.fire(timeOf(parent), &parent, &link);
    if (nodeTable::find(parentId) == &parent && parent.state() == RUNNING_NS && parent.data()->proc)
        parent.data()->proc->childrenChanged(field);
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
    Node& parent = *field.node();
    const NodeRef child(link.child());
    BusyScope busy(*parent.data()->context);
    const UInt64 parentId = parent.ID();
    const auto isStillThere = [&] {
        if (nodeTable::find(parentId) != &parent)
            return false;
        if (field.dataType() == SFNODE_DT)
            return link.child() == child.get();
        const std::vector<NodeLink*>& links = FieldAccess::links(static_cast<MFNode&>(field));
        return std::find(links.begin(), links.end(), &link) != links.end();
    };

    Node::_childRemoved.fire(timeOf(parent), &parent, &link);
    if (!isStillThere())
        return;
    if (parent.state() == RUNNING_NS && parent.data()->proc) {
        parent.data()->proc->childrenChanged(field);
        if (!isStillThere())
            return;
    }
    link.detach();
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
