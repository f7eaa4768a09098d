#pragma once

#include <set>

namespace Orvane {

/// Which keys are down. A key that went down and up within one frame counts for that frame, and the pairs of
/// release and press by which window systems repeat a key do not break what is held.
class HeldKeys
{
public:
    void press(int key);
    void release(int key) { _held.erase(key); }
    void releaseAll();
    /// The frame has made use of the keys.
    void endFrame() { _tapped.clear(); }

    bool isEmpty() const { return _held.empty() && _tapped.empty(); }
    bool isDown(int key) const { return _held.count(key) || _tapped.count(key); }
    /// 1 while \a forward is down, -1 while \a backward is, 0 with both or none.
    double axis(int forward, int backward) const;

private:
    std::set<int> _held;
    std::set<int> _tapped;
};

} // namespace Orvane
