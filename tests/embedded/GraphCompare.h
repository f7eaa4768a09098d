#pragma once

#include <QString>

namespace Orvane {
class Node;
}

/// What a comparison does not look at.
struct GraphLeniency
{
    bool names = false;
    bool routes = false;
};

/// Compares two graphs: types, names, values, author fields, links and routes, place by place. Empty when
/// they are equal, else where they differ first. Names that only one of them has count as equal: a saver
/// gives names to nodes that need one.
QString graphDifference(Orvane::Node* first, Orvane::Node* second, GraphLeniency ignored = {});
