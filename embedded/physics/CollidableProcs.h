#pragma once

#include "core/GroupProc.h"
#include "physics/CollisionGeom.h"
#include "physics/RigidPose.h"
#include <OpenSG/OSGMatrix.h>
#include <unordered_set>
#include <vector>

namespace Orvane {

class CollidableShapeProc;
class RigidBodyProc;

/// The shapes of a tree of collidables, each once, and where they stand.
struct CollidableWalk
{
    struct Place
    {
        CollidableShapeProc* shape;
        RigidPose pose; ///< in the world, as long as no body has the shape
        bool enabled;
        bool exact; ///< false when a box round the shape will do
    };

    /// Adds what hangs below an element.
    void visit(ElementProc* element, const RigidPose& outer, bool enabled, bool exact);

    std::vector<Place> places;

private:
    std::unordered_set<const ElementProc*> _seen; ///< the ways may meet, or run in a ring
    int _depth = 0;
};

/// Behaviour of collidable nodes: draws what collides, at the place of the body that has it.
class CollidableProc : public GroupProc
{
public:
    /// The body that moves a collidable, and where this stands in the body's system.
    struct Driver
    {
        RigidBodyProc* body = nullptr; ///< null for what stands by itself
        RigidPose offset;
    };

    explicit CollidableProc(Node& node);

    void fieldChanged(Field& field, double time) override;
    void update() override;

    /// The body, by the first place where one has the node.
    Driver driver() const { return driver(0); }
    /// A body moves the collidable to a place in the world.
    virtual void drive(const RigidPose& pose, double time) = 0;
    /// Has come to a body, or has left one.
    virtual void driverChanged() = 0;
    virtual void visit(CollidableWalk& walk, const RigidPose& outer, bool enabled, bool exact) = 0;

    /// As the node's own fields say.
    RigidPose pose() const;
    bool isEnabled() const;

protected:
    void collectChildren(std::vector<Node*>& nodes) const override = 0;
    /// Where the content is drawn.
    virtual RigidPose shownPose() const = 0;
    /// True when the body put the value there that the field has.
    virtual bool isDriven(const Field& field) const = 0;

private:
    Driver driver(int depth) const;
};

/// Behaviour of a `CollidableShape`.
class CollidableShapeProc : public CollidableProc
{
public:
    using CollidableProc::CollidableProc;

    void update() override;
    void drive(const RigidPose& pose, double time) override;
    void driverChanged() override { changed(); }
    void visit(CollidableWalk& walk, const RigidPose& outer, bool enabled, bool exact) override;

    /// What the shape is in collisions, made when it is asked for.
    const CollisionSolid& solid();

protected:
    void elementChanged(ElementProc& element) override;
    void elementGone() override;
    void collectChildren(std::vector<Node*>& nodes) const override;
    RigidPose shownPose() const override { return pose(); }
    bool isDriven(const Field& field) const override;

private:
    CollisionSolid makeSolid();

    Use _geometry;
    CollisionSolid _solid;
    bool _solidChanged = true;
    osg::Vec3f _drivenTranslation{0.0F, 0.0F, 0.0F};
    Rotation _drivenRotation;
    bool _driven = false;
};

/// Behaviour of a `CollidableOffset`: puts a collidable to another place in the system of a body.
class CollidableOffsetProc : public CollidableProc
{
public:
    using CollidableProc::CollidableProc;

    void drive(const RigidPose& pose, double time) override;
    void driverChanged() override;
    void visit(CollidableWalk& walk, const RigidPose& outer, bool enabled, bool exact) override;

protected:
    void elementChanged(ElementProc& element) override;
    void collectChildren(std::vector<Node*>& nodes) const override;
    RigidPose shownPose() const override;
    bool isDriven(const Field&) const override { return false; }

private:
    CollidableProc* collidable() const;

    bool _passing = false; ///< on the way down, which may run in a ring
};

/// Behaviour of a `CollisionSpace`: collidables that are switched together.
class CollisionSpaceProc : public ElementProc
{
public:
    using ElementProc::ElementProc;

    void update() override;

    void visit(CollidableWalk& walk, const RigidPose& outer, bool enabled, bool exact);

protected:
    void elementChanged(ElementProc&) override { tellCollections(); }

private:
    /// Tells the collections above, each once however many ways lead there.
    void tellCollections();

    std::vector<Use> _members;
};

} // namespace Orvane
