#pragma once

namespace Orvane {

/// Codes of the keys that move a user; others come as their character.
struct Keys
{
    static constexpr int home = 269;
    static constexpr int end = 270;
    static constexpr int pageUp = 271;
    static constexpr int pageDown = 272;
    static constexpr int up = 273;
    static constexpr int down = 274;
    static constexpr int left = 275;
    static constexpr int right = 276;
};

/// Bits of the mouse buttons; each step of the wheel is a press of its own.
struct Buttons
{
    static constexpr int left = 1;
    static constexpr int right = 2;
    static constexpr int middle = 4;
    static constexpr int wheelUp = 8;
    static constexpr int wheelDown = 16;
    /// The pointer may tremble this far, in pixels, and it still is a click.
    static constexpr double clickSlack = 3.0;
};

} // namespace Orvane
