#pragma once

#include "core/ElementProc.h"
#include "physics/CollisionGeom.h"
#include "physics/ContactFinder.h"
#include "physics/ContactSurface.h"
#include <map>
#include <memory>
#include <utility>
#include <vector>

namespace Orvane {

class CollidableShapeProc;
class RigidWorld;

/// Two shapes that meet, and where.
struct Meeting
{
    const CollidableShapeProc* first;
    const CollidableShapeProc* second;
    const std::vector<ContactPoint>* points;
};

/// Behaviour of a `CollisionCollection`: finds where its collidables meet, for the collections of bodies that
/// have it as their collider, and for sensors.
class CollisionCollectionProc : public ElementProc
{
public:
    explicit CollisionCollectionProc(Node& node);
    ~CollisionCollectionProc() override;

    void update() override;
    void tick(double time) override;

    /// A sensor has come, or was switched.
    void sensorsChanged() { requestUpdate(); }
    /// Something below has changed.
    void membersChanged() { requestUpdate(); }

    // These are called by the collection of bodies, and may throw `DynamicsFault`.

    /// The steps of a frame begin.
    void beginReport();
    /// Adds the contacts of the bodies of \a world as they stand now.
    void collide(RigidWorld& world);
    /// Tells the sensors what has met in the steps of the frame.
    void report(double time);

protected:
    void elementGone() override;

private:
    struct Entry
    {
        Use shape;
        std::unique_ptr<CollisionGeom> geom;
    };

    struct Met
    {
        unsigned long step = 0;
        std::vector<ContactPoint> points;
    };

    void syncMembers();
    bool syncGeoms();
    bool hasSensors() const;
    bool isDriven() const;
    bool hasMovers() const;
    const std::vector<FoundContact>& find();
    CollidableShapeProc* shapeAt(std::size_t index) const;

    ContactSurface _surface;
    std::vector<Use> _members;
    std::unique_ptr<ContactFinder> _finder;
    std::vector<Entry> _entries;
    std::map<std::pair<std::size_t, std::size_t>, Met>
        _met; ///< of the present frame, by places in `_entries`
    unsigned long _step = 0;
};

} // namespace Orvane
