#include "core/HatchPattern.h"

namespace Orvane {

namespace {

constexpr int Edge = 32;
constexpr int Pitch = 8; ///< from line to line, in pixels
constexpr int DotsStyle = 19;

bool isSet(int style, int x, int y)
{
    const bool flat = y % Pitch == 0;
    const bool upright = x % Pitch == 0;
    const bool rising = (x + Edge - y) % Pitch == 0;
    const bool falling = (x + y) % Pitch == 0;
    switch (style) {
    case 2:
        return upright;
    case 3:
        return rising;
    case 4:
        return falling;
    case 5:
        return flat || upright;
    case 6:
        return rising || falling;
    case DotsStyle:
        return x % Pitch < 2 && y % Pitch < 2;
    default:
        return flat;
    }
}

} // namespace

bool isKnownHatch(int style)
{
    return (style >= 1 && style <= 6) || style == DotsStyle;
}

std::vector<std::uint32_t> hatchPattern(int style)
{
    std::vector<std::uint32_t> rows(Edge, 0U);
    for (int y = 0; y < Edge; ++y) {
        for (int x = 0; x < Edge; ++x) {
            if (isSet(style, x, y))
                rows[static_cast<std::size_t>(y)] |= 0x80000000U >> x;
        }
    }
    return rows;
}

} // namespace Orvane
