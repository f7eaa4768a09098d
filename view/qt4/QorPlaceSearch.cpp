#include "QorPlaceSearch.h"

#include "QorNodeItem.h"
#include <Orvane/Node.h>
#include <Orvane/NodeLink.h>
#include <algorithm>
#include <list>

namespace Orvane::Qt4 {

bool isUnbuilt(const QorNodeItem& item)
{
    const Orvane::Node* const node = item.node();
    return !item.isValid() && node && node->childCount() > 0;
}

QorPlaceSearch::QorPlaceSearch(const Orvane::NodePath& place)
    : _place(place)
{
    std::list<Orvane::NodeLink*> links;
    place.nodeLinks(links);
    _links.assign(links.begin(), links.end());
}

QorNodeItem* QorPlaceSearch::searchFrom(QorNodeItem* item) const
{
    if (item->nodePath() == _place)
        return item;
    std::size_t depth = 0;
    if (item->nodePath().isValid())
        return isOnTheWay(*item, depth) ? searchBelow(*item, depth) : nullptr;
    // The internal root.
    const int count = item->childCount();
    for (int row = 0; row < count; ++row) {
        if (QorNodeItem* found = searchFrom(item->child(row)))
            return found;
    }
    return nullptr;
}

/// \a depth becomes the number of links that lead to the item.
bool QorPlaceSearch::isOnTheWay(const QorNodeItem& item, std::size_t& depth) const
{
    std::list<Orvane::NodeLink*> links;
    item.nodePath().nodeLinks(links);
    depth = links.size();
    if (depth >= _links.size())
        return false;
    if (depth == 0)
        return item.nodePath().node() == _links.back()->parent();
    return std::equal(links.rbegin(), links.rend(), _links.rbegin());
}

QorNodeItem* QorPlaceSearch::searchBelow(const QorNodeItem& item, std::size_t depth) const
{
    if (isUnbuilt(item))
        return nullptr;
    const bool isLastStep = depth + 1 == _links.size();
    const Orvane::NodePath way = isLastStep ? _place : wayOf(depth + 1);
    const int count = item.childCount();
    for (int row = 0; row < count; ++row) {
        QorNodeItem* const child = item.child(row);
        if (!(child->nodePath() == way))
            continue;
        if (QorNodeItem* found = isLastStep ? child : searchBelow(*child, depth + 1))
            return found;
    }
    return nullptr;
}

/// The place that the uppermost \a depth links lead to.
Orvane::NodePath QorPlaceSearch::wayOf(std::size_t depth) const
{
    return Orvane::NodePath(
        std::list<Orvane::NodeLink*>(_links.end() - static_cast<std::ptrdiff_t>(depth), _links.end()));
}

} // namespace Orvane::Qt4
