#include "core/PickFilter.h"
#include "core/Part.h"
#include <Orvane/MFString.h>
#include <Orvane/SFBool.h>
#include <algorithm>
#include <iterator>

namespace Orvane {

namespace {

const Part objectTypePart("objectType");
const Part pickablePart("pickable");

/// The labels that stand for others.
constexpr const char* All = "ALL";
constexpr const char* None = "NONE";

bool has(const std::vector<std::string>& labels, const char* label)
{
    return std::find(labels.begin(), labels.end(), label) != labels.end();
}

std::vector<std::string> sorted(std::vector<std::string> labels)
{
    std::sort(labels.begin(), labels.end());
    labels.erase(std::unique(labels.begin(), labels.end()), labels.end());
    return labels;
}

} // namespace

PickFilter::PickFilter(std::vector<std::string> labels, Criterion criterion)
    : _labels(sorted(std::move(labels)))
    , _criterion(criterion)
{
}

bool PickFilter::isOpen() const
{
    return !_labels.empty() && !has(_labels, None);
}

bool PickFilter::takes(const std::vector<std::string>& labels) const
{
    if (!isOpen() || has(labels, None))
        return false;
    if (has(_labels, All) || has(labels, All))
        return true;
    const std::vector<std::string> others = sorted(labels);
    std::vector<std::string> common;
    std::set_intersection(_labels.begin(), _labels.end(), others.begin(), others.end(),
                          std::back_inserter(common));
    switch (_criterion) {
    case MATCH_EVERY:
        return common.size() == _labels.size() && common.size() == others.size();
    case MATCH_ONLY_ONE:
        return common.size() == 1;
    default:
        return !common.empty();
    }
}

bool PickFilter::takes(const Node& pickable) const
{
    return pickablePart.read<SFBool>(pickable).value() && takes(readLabels(pickable));
}

std::vector<std::string> readLabels(const Node& node)
{
    const auto& field = objectTypePart.read<MFString>(node);
    std::vector<std::string> labels;
    for (int i = 0; i < static_cast<int>(field.size()); ++i)
        labels.push_back(field[i]);
    return labels;
}

} // namespace Orvane
