#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

namespace Orvane {

/// Where a fraction lies among keys: between the key values \a first and \a first + 1, at \a t from 0 to 1.
/// At and outside the ends \a t is 0 and \a first the end key.
struct KeyPlace
{
    std::size_t first = 0;
    float t = 0.0F;
};

/// Finds the place of \a fraction among the first \a count of ascending \a keys; \a count is not 0. The
/// search begins at \a hint, the place of the last one: animations move by small steps.
inline KeyPlace findKey(const std::vector<float>& keys, std::size_t count, float fraction, std::size_t hint)
{
    if (!(fraction > keys[0]))
        return {0, 0.0F};
    if (fraction >= keys[count - 1])
        return {count - 1, 0.0F};
    const auto holds = [&](std::size_t i) { return keys[i] <= fraction && fraction < keys[i + 1]; };
    std::size_t first = 0;
    if (hint + 1 < count && holds(hint))
        first = hint;
    else if (hint + 2 < count && holds(hint + 1))
        first = hint + 1;
    else {
        const auto end = keys.begin() + static_cast<std::ptrdiff_t>(count);
        first = static_cast<std::size_t>(std::upper_bound(keys.begin(), end, fraction) - keys.begin());
        first = std::clamp<std::size_t>(first, 1, count - 1) - 1;
    }
    const float span = keys[first + 1] - keys[first];
    return {first, span > 0.0F ? std::clamp((fraction - keys[first]) / span, 0.0F, 1.0F) : 0.0F};
}

} // namespace Orvane
