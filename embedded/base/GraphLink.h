#pragma once

#include "base/SmallBlocks.h"
#include <Orvane/NodeLink.h>

namespace Orvane {

class GraphLink;

/// What paths hold of a link: it outlives the link and then says so.
struct LinkHandle
{
    GraphLink* link;
    unsigned int holders = 0;

    void release()
    {
        if (--holders == 0 && !link)
            delete this;
    }
};

/// A link that stands in a field. While it leads to a node it is also in that node's list of parent links,
/// the oldest first.
class GraphLink final : public NodeLink
{
public:
    explicit GraphLink(Field* field) { _field = field; }
    GraphLink(const GraphLink&) = delete;
    GraphLink& operator=(const GraphLink&) = delete;
    ~GraphLink() override;

    ORVANE_IN_SMALL_BLOCKS

    /// Leads the empty link to \a child, as the youngest of its parent links.
    void attach(Node& child);
    /// Empties the link; it is gone in the eyes of paths.
    void detach();

    Node* child() const { return _node; }
    /// The next younger link to the same child.
    GraphLink* nextParentLink() const { return _next; }

    /// Handle of the present connection, with one holder more. The link must not be empty.
    LinkHandle* holdHandle();

private:
    GraphLink* _previous = nullptr; ///< the next older one; of the oldest, the youngest
    GraphLink* _next = nullptr;     ///< the next younger one
    LinkHandle* _handle = nullptr;
};

} // namespace Orvane
