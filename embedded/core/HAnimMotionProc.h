#pragma once

#include "core/ElementProc.h"
#include <OpenSG/OSGQuaternion.h>
#include <OpenSG/OSGVector.h>
#include <Orvane/Export.h>
#include <optional>
#include <string>
#include <vector>

namespace Orvane {

/// Behaviour of an `HAnimMotion`: runs through recorded frames. The humanoids that use it are told by
/// `elementChanged` when another frame counts, and take its poses.
class ORVANE_API HAnimMotionProc : public ElementProc
{
public:
    using ElementProc::ElementProc;

    /// What a frame says of one joint.
    struct Pose
    {
        std::string joint;
        std::optional<float> place[3]; ///< metres along x, y and z
        std::optional<osg::Quaternion> turn;
    };

    void start(double time) override;
    void fieldChanged(Field& field, double time) override;
    void childrenChanged(Field&) override {}
    void tick(double time) override;

    /// The poses of the present frame; none while the motion is switched off or has no frames.
    std::vector<Pose> poses() const;

private:
    enum Channel : std::uint8_t { PLACE, TURN, OTHER };

    /// One number of each frame.
    struct ChannelEntry
    {
        std::size_t joint;
        Channel channel;
        std::uint8_t axis;
    };

    /// The frames of a run, in its direction.
    struct Range
    {
        int first;
        int last;
        int stride; ///< frames from one to the next, 0 or above
    };

    void readChannels();
    int frameCount() const;
    Range range() const;
    /// Starts anew, or rests when switched off.
    void begin(double time);
    /// Goes on by frames, from the last one to the first and back.
    void step(int frames, double time);
    void show(int frame, double time);
    /// Shows the frame that is due.
    void advance(double time);

    std::vector<std::string> _joints;
    std::vector<ChannelEntry> _channels;
    bool _isRunning = false;
    bool _isNew = false; ///< its run begins with the first frame of the scene
    double _runBegin = 0.0;
    double _shownSince = 0.0; ///< when the present frame was due
};

} // namespace Orvane
