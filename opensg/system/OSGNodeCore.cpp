#include <OpenSG/OSGNode.h>

#include "OSGContainerType.h"

#include <algorithm>
#include <iterator>

namespace osg {

OSG_CONTAINER_TYPE(NodeCore, AttachmentContainer)

void NodeCore::accumulateMatrix(Matrix&) const
{
}

void NodeCore::adjustVolume(Volume&)
{
}

NodeCore::ChildRange NodeCore::getActiveChildren(UInt32 count) const
{
    return {0, count};
}

NodePtr NodeCore::getReferredTree() const
{
    return NullFC;
}

void NodeCore::renderEnter(RenderAction&)
{
}

void NodeCore::renderLeave(RenderAction&)
{
}

void NodeCore::intersect(IntersectAction&)
{
}

void NodeCore::intersectLeave(IntersectAction&)
{
}

void NodeCore::invalidateVolume()
{
    for (const NodePtr& node : _parents)
        node->invalidateVolume();
}

void NodeCore::addParent(const NodePtr& node)
{
    _parents.push_back(node);
}

void NodeCore::subParent(const NodePtr& node)
{
    // From the end: nodes mostly go in the reverse order of their making, and the order tells nothing.
    const auto found = std::find(std::make_reverse_iterator(_parents.end()),
                                 std::make_reverse_iterator(_parents.begin()), node);
    if (found.base() == _parents.begin())
        return;
    *found = _parents.back();
    _parents.pop_back();
}

} // namespace osg
