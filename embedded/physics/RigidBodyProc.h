#pragma once

#include "core/ElementProc.h"
#include "physics/SimulatedBody.h"
#include <Orvane/Rotation.h>
#include <memory>
#include <vector>

namespace Orvane {

class Part;
class RigidBodyCollectionProc;

/// From when on a body counts as resting.
struct RestLimits
{
    bool enabled = false;
    double linearSpeed = 0.0;
    double angularSpeed = 0.0;
    double time = 0.0;
};

/// The limits of a `RigidBody` or a `RigidBodyCollection`.
RestLimits readRestLimits(const Node& node);

/// Behaviour of a `RigidBody`. The first collection that has it moves it; the body then puts its collidables
/// to its own place, and tells place and speed by events. What a scene writes to these fields counts at once.
class RigidBodyProc : public ElementProc
{
public:
    explicit RigidBodyProc(Node& node);
    ~RigidBodyProc() override;

    void fieldChanged(Field& field, double time) override;
    void update() override;

    /// The collection that moves the body; null when there is none.
    RigidBodyCollectionProc* collection() const;
    /// The body in the engine; null as long as no collection moves it.
    SimulatedBody* simulated() const { return _simulated.get(); }
    /// As the fields say.
    RigidPose pose() const;

    // These are called by the collection, and may throw `DynamicsFault`.

    /// Comes to stand in \a world, and takes over what changed in the fields but for places and speeds.
    void join(const std::shared_ptr<RigidWorld>& world, const RestLimits& limits);
    void leave();
    /// Takes over places and speeds that the scene has written.
    void takeEdits(double time);
    /// Tells where the steps have led. False when nothing has changed at all.
    bool send(double time);
    /// Looks after the last step.
    void keepSound();

protected:
    void elementChanged(ElementProc& element) override;
    void elementGone() override;

private:
    /// What the fields had when they were last looked at or written.
    struct Known
    {
        osg::Vec3f position;
        Rotation orientation;
        osg::Vec3f linearVelocity;
        osg::Vec3f angularVelocity;
    };

    Known readKnown() const;
    /// True for the fields of places and speeds.
    static bool isState(const Field& field);
    /// True when such a field has the value that it was last seen with.
    bool isKnown(const Field& field) const;
    BodySettings readSettings(const RestLimits& limits);
    BodyMass readMass();
    osg::Vec3d sumOf(const Part& part);
    void syncCollidables();
    void tellCollidables();
    void drive(const RigidPose& pose, double time);

    std::vector<Use> _collidables;
    Use _massModel;
    Known _known;
    std::unique_ptr<SimulatedBody> _simulated;
    BodyState _last; ///< as last told
    bool _settingsChanged = true;
    bool _collidablesChanged = true;
};

} // namespace Orvane
