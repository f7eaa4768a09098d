#pragma once

#include "core/ElementProc.h"
#include "core/Part.h"
#include "physics/Dynamics.h"
#include "physics/RigidPose.h"
#include <memory>
#include <string>
#include <vector>

namespace Orvane {

class RigidBodyCollectionProc;
class RigidWorld;

/// What the joints of two bodies have in common. The first collection that has a joint holds it; a side
/// without a body is tied to what never moves. Anchors and axes count from where the bodies stand when they
/// are written.
class JointProc : public ElementProc
{
public:
    using ElementProc::ElementProc;
    ~JointProc() override;

    void fieldChanged(Field& field, double time) override;
    void update() override;

    /// The collection that holds the joint; null when there is none.
    RigidBodyCollectionProc* collection() const;
    bool isAttached() const;

    // These are called by the collection, and may throw `DynamicsFault`.

    /// Ties the bodies in \a world, and takes over what changed in the fields. True when anything did.
    bool join(const std::shared_ptr<RigidWorld>& world);
    void leave();
    /// Forces of the next step.
    void applyForces();
    /// Tells those values that the scene wants.
    void send(double time);

protected:
    /// A field that tells a value, when `forceOutput` names it.
    using Output = Part;

    void elementChanged(ElementProc& element) override;
    void elementGone() override;

    virtual dxJoint* create(dxWorld* world) = 0;
    /// Sets anchor and axes.
    virtual void place(dxJoint* joint) = 0;
    /// Sets what else the fields say.
    virtual void setLimits(dxJoint*) {}
    virtual void addForces(dxJoint*) {}
    virtual void sendValues(dxJoint* joint, double time) = 0;

    /// A number of a field, within limits; \a fallback when it is none.
    double number(const Part& part, double least, double most, double fallback = 0.0) const;
    /// The share of an error that is corrected in a step.
    double correction(const Part& part) const;
    osg::Vec3d point(const Part& part) const;
    osg::Vec3d direction(const Part& part, const osg::Vec3d& fallback) const;
    /// A direction across \a axis, as near to \a wanted as can be.
    static osg::Vec3d across(const osg::Vec3d& axis, const osg::Vec3d& wanted);

    /// The first or second body of the joint.
    static dxBody* bodyOf(dxJoint* joint, int side);
    /// A place or a direction of the world in the system of the first or second body.
    osg::Vec3d toBody(dxJoint* joint, int side, const double* place) const;
    osg::Vec3d directionToBody(dxJoint* joint, int side, const double* direction) const;

    void sendNumber(const Output& output, double value, double time);
    void sendVector(const Output& output, const osg::Vec3d& value, double time);

private:
    dxBody* findBody(const Part& part, const RigidWorld& world, bool& isThere);
    void readOutputs();
    bool isWanted(const char* name) const;

    std::shared_ptr<RigidWorld> _world;
    Dynamics::Joint _joint;
    Use _first;
    Use _second;
    std::vector<std::string> _outputs;
    bool _sendsAll = false;
    bool _placeChanged = true;
    bool _limitsChanged = true;
};

} // namespace Orvane
