#pragma once

#include <Orvane/Export.h>
#include <memory>

namespace Orvane {

class Node;

/// Keeps a node alive that no link may lead to any more, for who wants to bring it back. A value. A node that
/// dies with its context dies all the same, and then the value says so.
class ORVANE_API HeldNode
{
public:
    HeldNode() = default;
    /// \a node may be null.
    explicit HeldNode(Node* node);

    /// Null when there is none, and once it has died with its context.
    Node* node() const;

    struct Data;

private:
    std::shared_ptr<Data> _data;
};

} // namespace Orvane
