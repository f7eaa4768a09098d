#pragma once

#include "base/Graph.h"
#include <Orvane/Field.h>
#include <Orvane/Node.h>
#include <Orvane/NodePartDesc.h>

namespace Orvane {

/// A field of a behaviour's node, known by its name. The name is looked up once for all nodes of a type in a
/// row, so that behaviours read their fields by index.
class Part
{
public:
    explicit constexpr Part(const char* name)
        : _name(name)
    {
    }

    const char* name() const { return _name; }

    /// Index of the part in \a node; past all parts when the node has none of that name.
    unsigned int in(const Node& node) const
    {
        if (node.type() != _type) {
            _type = node.type();
            _index = static_cast<unsigned int>(partIndex(*_type, _name));
        }
        return _index;
    }

    /// True when \a node has such a part.
    bool isIn(const Node& node) const { return static_cast<int>(in(node)) >= 0; }
    /// True when \a field is this part of its node.
    bool is(const Field& field) const { return field._desc->id == in(*field.node()); }

    /// The field; the node must have it.
    template <class F>
    const F& read(const Node& node) const
    {
        return Orvane::read<F>(node, in(node));
    }
    template <class F>
    F& edit(Node& node) const
    {
        return Orvane::edit<F>(node, in(node));
    }
    /// The node of an `SFNode` part, or null.
    Node* readNode(const Node& node) const { return isIn(node) ? Orvane::readNode(node, in(node)) : nullptr; }

private:
    const char* _name;
    mutable const NodeType* _type = nullptr;
    mutable unsigned int _index = 0;
};

} // namespace Orvane
