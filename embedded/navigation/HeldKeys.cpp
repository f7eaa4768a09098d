#include "navigation/HeldKeys.h"

namespace Orvane {

void HeldKeys::press(int key)
{
    _held.insert(key);
    _tapped.insert(key);
}

void HeldKeys::releaseAll()
{
    _held.clear();
    _tapped.clear();
}

double HeldKeys::axis(int forward, int backward) const
{
    return (isDown(forward) ? 1.0 : 0.0) - (isDown(backward) ? 1.0 : 0.0);
}

} // namespace Orvane
