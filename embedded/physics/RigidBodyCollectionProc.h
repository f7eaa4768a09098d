#pragma once

#include "core/ElementProc.h"
#include "physics/ContactSurface.h"
#include "physics/RigidWorld.h"
#include <Orvane/Types.h>
#include <memory>
#include <vector>

namespace Orvane {

class CollisionCollectionProc;
class JointProc;
class RigidBodyProc;

/// Behaviour of a `RigidBodyCollection`: moves its bodies in steps of one length, however frames come. It
/// ticks only while something may move.
class RigidBodyCollectionProc : public ElementProc
{
public:
    explicit RigidBodyCollectionProc(Node& node);
    ~RigidBodyCollectionProc() override;

    void fieldChanged(Field& field, double time) override;
    void update() override;
    void tick(double time) override;

    /// True while it moves its bodies in each frame.
    bool isRunning() const { return _running; }

protected:
    void elementChanged(ElementProc& element) override;
    void elementGone() override;

private:
    /// A contact that the scene tells.
    struct GivenContact
    {
        ContactSurface surface;
        ContactPoint point;
        UInt64 bodies[2]; ///< IDs of nodes; 0 for none
    };

    void syncWorld();
    void syncBodies();
    void syncJoints();
    void takeContacts(Field& field);
    void wake();
    void run(int steps, double time);
    void addGivenContacts();
    void setRunning(bool running);
    template <class Visit>
    void forEachBody(Visit visit);
    template <class Visit>
    void forEachJoint(Visit visit);

    std::shared_ptr<RigidWorld> _world;
    std::vector<Use> _bodies;
    std::vector<Use> _joints;
    Use _collider;
    std::vector<GivenContact> _given;
    double _last = 0.0; ///< time up to which the bodies have come, but for `_owed`
    double _owed = 0.0; ///< seconds that are no whole step
    bool _running = false;
    bool _wakeAll = true;
    bool _settled = false; ///< the last steps have changed nothing
};

} // namespace Orvane
