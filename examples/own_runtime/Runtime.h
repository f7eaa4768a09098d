#pragma once

#include <Orvane/Field.h>
#include <Orvane/Node.h>
#include <Orvane/NodeLink.h>
#include <memory>
#include <string>
#include <vector>

// What the sources of this runtime share.

namespace Orvane {

/// What is behind a node. The library never looks at it.
struct Node::Data
{
    UInt64 id = 0;
    std::string name;
    std::vector<std::unique_ptr<Field>> fields;
    NodeLink* place = nullptr; ///< the one link that leads to it, when there is one
};

/// A link in a field, which fires that it is there. It owns its node.
class OwningLink : public NodeLink
{
public:
    OwningLink(Field* field, Node* node);
    ~OwningLink() override;
};

} // namespace Orvane
