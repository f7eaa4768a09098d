#pragma once

#include <Orvane/TouchPointRecord.h>
#include <cmath>
#include <string>
#include <vector>

namespace Orvane {

/// One input of a host's widget, as it was noted for the next frame.
struct InputEvent
{
    enum Kind : int {
        KEY_PRESS,
        KEY_RELEASE,
        BUTTON_PRESS,
        BUTTON_RELEASE,
        MOUSE_MOVE,
        TOUCH,
        MESSAGE,
        BROWSE
    };

    Kind kind = MOUSE_MOVE;
    int code = 0; ///< key code, or button
    int x = 0;    ///< widget pixels from the left
    int y = 0;    ///< widget pixels from the top
    std::vector<TouchPointRecord> touches;
    std::string message;
};

/// The pixel of a touch point; 0 for what is no usable number.
inline int pixel(float coordinate)
{
    constexpr float widest = 1e6F;
    return std::abs(coordinate) <= widest ? static_cast<int>(std::floor(coordinate)) : 0;
}

} // namespace Orvane
