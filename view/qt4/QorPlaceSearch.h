#pragma once

#include <Orvane/NodePath.h>
#include <vector>

namespace Orvane {
class NodeLink;
}

namespace Orvane::Qt4 {

class QorNodeItem;

/// The search for the item at a place. An item stands below the items of the nodes on the way to it, so that
/// only these are entered: the cost is that of comparing siblings, not that of the whole tree.
class QorPlaceSearch
{
public:
    /// \a place must be valid while the search is used.
    explicit QorPlaceSearch(const Orvane::NodePath& place);

    /// The first item at the place from \a item down, in row order; null when none is built.
    QorNodeItem* searchFrom(QorNodeItem* item) const;

private:
    bool isOnTheWay(const QorNodeItem& item, std::size_t& depth) const;
    QorNodeItem* searchBelow(const QorNodeItem& item, std::size_t depth) const;
    Orvane::NodePath wayOf(std::size_t depth) const;

    const Orvane::NodePath& _place;
    std::vector<Orvane::NodeLink*> _links; ///< the deepest first
};

/// True when nothing below an item has been built but what the next rebuild replaces.
bool isUnbuilt(const QorNodeItem& item);

} // namespace Orvane::Qt4
