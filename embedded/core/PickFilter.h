#pragma once

#include <Orvane/Export.h>
#include <string>
#include <vector>

namespace Orvane {

class Node;

/// Which groups a pick sensor looks into: those whose labels suit its own, by its `objectType` and
/// `matchCriterion`.
class ORVANE_API PickFilter
{
public:
    enum Criterion { MATCH_ANY, MATCH_EVERY, MATCH_ONLY_ONE };

    PickFilter(std::vector<std::string> labels, Criterion criterion);

    /// False for a sensor that looks at nothing.
    bool isOpen() const;
    /// True when a group with these labels may be looked into.
    bool takes(const std::vector<std::string>& labels) const;
    /// The same for a node with the fields of an `X3DPickableObject`, whose `pickable` may be FALSE.
    bool takes(const Node& pickable) const;

private:
    std::vector<std::string> _labels; ///< each once, in order
    Criterion _criterion;
};

/// The values of a field `objectType`.
ORVANE_API std::vector<std::string> readLabels(const Node& node);

} // namespace Orvane
