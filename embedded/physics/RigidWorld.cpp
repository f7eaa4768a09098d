#include "physics/RigidWorld.h"
#include <algorithm>
#include <cmath>
#include <ode/ode.h>

namespace Orvane {

namespace {

constexpr std::size_t MostContacts = 50000;
/// So few joints come out well by many iterations, in no time to speak of. The engine's direct method would
/// be exact, but ends in faults when bodies differ much.
constexpr std::size_t FewJoints = 40;
constexpr int ManyIterations = 100;
constexpr int AccurateFactor = 5; ///< for scenes that ask for it

constexpr double StepsOfCorrection = 8.0;
constexpr double MostCorrection = 0.4;

} // namespace

double correctionOfStep(double share)
{
    return std::min(1.0 - std::pow(1.0 - share, 1.0 / StepsOfCorrection), MostCorrection);
}

RigidWorld::RigidWorld()
    : _world(dWorldCreate())
    , _ground(dBodyCreate(_world.get()))
    , _contacts(dJointGroupCreate(0))
{
    dBodySetKinematic(_ground.get());
}

RigidWorld::~RigidWorld() = default;

void RigidWorld::set(const WorldSettings& settings)
{
    dxWorld* const world = _world.get();
    dWorldSetGravity(world, settings.gravity[0], settings.gravity[1], settings.gravity[2]);
    dWorldSetERP(world, correctionOfStep(settings.errorCorrection));
    dWorldSetCFM(world, settings.constantForceMix);
    dWorldSetContactSurfaceLayer(world, settings.surfaceThickness);
    dWorldSetContactMaxCorrectingVel(world, settings.maxCorrectionSpeed < 0.0 ? dInfinity
                                                                              : settings.maxCorrectionSpeed);
    _iterations = settings.iterations;
    _preferAccuracy = settings.preferAccuracy;
}

bool RigidWorld::addContact(const ContactSurface& surface, const ContactPoint& point, dxBody* first,
                            dxBody* second)
{
    if (_contactCount >= MostContacts)
        return false;
    const auto applies = [&surface](ContactSurface::Applied flag) { return (surface.applied & flag) != 0; };
    dContact contact{};
    // Friction in the proportion of the force that presses, not of a fixed size.
    contact.surface.mode = dContactApprox1;
    contact.surface.mu = surface.friction[0];
    const auto apply = [&](ContactSurface::Applied flag, int mode, dReal& place, double value) {
        if (!applies(flag))
            return;
        contact.surface.mode |= mode;
        place = value;
    };
    apply(ContactSurface::Bounce, dContactBounce, contact.surface.bounce, surface.bounce);
    apply(ContactSurface::Bounce, dContactBounce, contact.surface.bounce_vel, surface.minBounceSpeed);
    apply(ContactSurface::SecondFriction, dContactMu2, contact.surface.mu2, surface.friction[1]);
    apply(ContactSurface::ErrorReduction, dContactSoftERP, contact.surface.soft_erp,
          correctionOfStep(surface.errorCorrection));
    apply(ContactSurface::ConstantForce, dContactSoftCFM, contact.surface.soft_cfm, surface.constantForceMix);
    apply(ContactSurface::FirstSpeed, dContactMotion1, contact.surface.motion1, surface.speed[0]);
    apply(ContactSurface::SecondSpeed, dContactMotion2, contact.surface.motion2, surface.speed[1]);
    apply(ContactSurface::FirstSlip, dContactSlip1, contact.surface.slip1, surface.slip[0]);
    apply(ContactSurface::SecondSlip, dContactSlip2, contact.surface.slip2, surface.slip[1]);
    // The direction of friction has to lie in the plane of the contact.
    osg::Vec3d along = point.frictionDirection - point.normal * point.frictionDirection.dot(point.normal);
    if (applies(ContactSurface::UserFriction) && along.length() > 1e-6) {
        along = along * (1.0 / along.length());
        contact.surface.mode |= dContactFDir1;
    }
    for (osg::UInt32 i = 0; i < 3; ++i) {
        contact.geom.pos[i] = point.position[i];
        contact.geom.normal[i] = point.normal[i];
        contact.fdir1[i] = along[i];
    }
    contact.geom.depth = point.depth;
    dJointAttach(dJointCreateContact(_world.get(), _contacts.get(), &contact), first, second);
    ++_contactCount;
    return true;
}

void RigidWorld::step()
{
    // The engine draws lots for the order of joints; each world has a row of its own, so that worlds run the
    // same way each time.
    dRandSetSeed(_chance);
    const bool isSmall = _contactCount + static_cast<std::size_t>(_joints) < FewJoints;
    const int iterations = _preferAccuracy ? _iterations * AccurateFactor : _iterations;
    dWorldSetQuickStepNumIterations(
        _world.get(), isSmall || _preferAccuracy ? std::max(iterations, ManyIterations) : iterations);
    dWorldQuickStep(_world.get(), Step);
    _chance = dRandGetSeed();
    dJointGroupEmpty(_contacts.get());
    _contactCount = 0;
}

} // namespace Orvane
