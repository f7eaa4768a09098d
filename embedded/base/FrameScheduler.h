#pragma once

#include <limits>
#include <vector>

namespace Orvane {

class Cascade;
class Proc;

/// What the behaviours of a context want of its frames: ticks, updates, the next frame, a new picture.
class FrameScheduler
{
public:
    /// So many rounds of updates that updates ask for take place in one frame; what is left waits for the
    /// next frame.
    static constexpr unsigned int longestUpdate = 64;

    void setTicking(Proc& proc, bool ticking);
    void requestUpdate(Proc& proc);
    void requestFrame(double seconds);
    void pictureChanged() { ++_pictureVersion; }
    /// The behaviour ends.
    void forget(Proc& proc);

    void tick(double time, Cascade& cascade);
    void update(Cascade& cascade);
    /// A frame begins: what was wanted of it counts no more.
    void beginFrame() { _wantedIn = std::numeric_limits<double>::infinity(); }

    unsigned long pictureVersion() const { return _pictureVersion; }
    /// True when there is something to do in each frame.
    bool isMoving() const { return !_updates.empty(); }
    /// Seconds from the present frame in which the next one is wanted; infinite when none is.
    double wantedIn() const { return _wantedIn; }

private:
    std::vector<Proc*> _ticking; ///< null where one has left
    std::vector<Proc*> _updates; ///< null where one has ended
    std::vector<Proc*> _updating;
    double _wantedIn = std::numeric_limits<double>::infinity();
    bool _hasAsked = false; ///< the present tick wants a frame
    unsigned long _pictureVersion = 1;
};

} // namespace Orvane
