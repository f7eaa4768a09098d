#pragma once

#include "core/ElementProc.h"
#include <OpenSG/OSGVector.h>
#include <Orvane/Export.h>
#include <random>

namespace Orvane {

/// One particle of a system.
struct Particle
{
    osg::Vec3f position;
    osg::Vec3f velocity; ///< metres a second
    float age = 0.0F;    ///< seconds
    float lifetime = 0.0F;
    float mass = 0.0F;
    float surfaceArea = 0.0F;
};

/// Numbers by chance, the same ones in each run.
class Chance
{
public:
    /// From 0 to 1.
    float share() { return static_cast<float>(_engine() - 1U) / 2147483645.0F; }
    /// A value that differs from \a middle by up to \a variation times it.
    float about(float middle, float variation)
    {
        return middle * (1.0F + variation * (2.0F * share() - 1.0F));
    }
    /// A unit vector to any side.
    osg::Vec3f direction();

private:
    std::minstd_rand _engine{1};
};

/// Behaviour of a node that sends particles out.
class ORVANE_API EmitterProc : public DescriptionProc
{
public:
    using DescriptionProc::DescriptionProc;

    bool isOn() const;
    /// True when all particles are sent at once.
    virtual bool isExplosion() const { return false; }
    /// Gives a particle its place, speed and mass. False when there is no place to start from.
    bool emit(Particle& particle, Chance& chance);

protected:
    /// Gives a place and a unit direction.
    virtual bool place(osg::Vec3f& position, osg::Vec3f& direction, Chance& chance) = 0;
};

/// An emitter at a shape, which it reads when a particle is wanted and the shape has changed.
class ORVANE_API ShapeEmitterProc : public EmitterProc
{
public:
    using EmitterProc::EmitterProc;

    void fieldChanged(Field& field, double time) override;
    void childrenChanged(Field& field) override;

protected:
    void elementChanged(ElementProc& element) override;
    void elementGone() override;
    bool place(osg::Vec3f& position, osg::Vec3f& direction, Chance& chance) final;

    /// Reads the shape anew.
    virtual void readShape() = 0;
    /// As `place`, at the shape that was read.
    virtual bool placeAtShape(osg::Vec3f& position, osg::Vec3f& direction, Chance& chance) = 0;

private:
    bool _isRead = false;
};

/// Behaviour of a node that moves particles.
class ORVANE_API ParticlePhysicsProc : public DescriptionProc
{
public:
    using DescriptionProc::DescriptionProc;

    /// Prepares a step of all particles.
    virtual void begin(Chance& /*chance*/) {}
    /// The force on a particle in newtons; where it has no mass, the acceleration.
    virtual osg::Vec3f force(const Particle& particle, Chance& chance) const = 0;
    /// Keeps a particle that has just moved from a place inside its bounds.
    virtual void bound(Particle& /*particle*/, const osg::Vec3f& /*from*/) {}
};

/// The unit vector in the field `direction` of a node, or any when it has none.
ORVANE_API osg::Vec3f particleDirection(const Node& node, Chance& chance);

} // namespace Orvane
