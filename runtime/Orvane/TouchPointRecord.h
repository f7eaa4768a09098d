#pragma once

namespace Orvane {

/// One point of a touch event.
struct TouchPointRecord
{
    int id;         ///< names the finger as long as it is down
    int state;      ///< 0 begin, 1 end, 2 update
    bool primary;   ///< the first finger of the touch
    float x;        ///< widget pixels from the left
    float y;        ///< widget pixels from the top
    float pressure; ///< 0 to 1
};

} // namespace Orvane
