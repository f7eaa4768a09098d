#pragma once

#include <Orvane/HeldNode.h>
#include <string>
#include <vector>

namespace Orvane {
class Field;
}

/// The value of a field at some time, to be compared and given back. A value. It keeps the nodes of a field
/// of nodes alive.
class FieldState
{
public:
    explicit FieldState(const Orvane::Field& field);

    /// Gives the field this value, as its host. The field must be of the same type.
    void giveTo(Orvane::Field& field) const;

    /// Puts those nodes to rest that another value has led to, and that are no longer part of the scene now.
    void restLost(const FieldState& other) const;

    bool operator==(const FieldState& other) const;
    bool operator!=(const FieldState& other) const { return !(*this == other); }

private:
    std::string _text;
    std::vector<Orvane::HeldNode> _nodes; ///< of a field of nodes, which has no text
};
