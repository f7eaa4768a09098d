#include "physics/ContactSurface.h"
#include "base/ValueFields.h"
#include "core/Part.h"
#include "physics/RigidPose.h"
#include <Orvane/MFString.h>
#include <Orvane/SFFloat.h>
#include <string_view>

namespace Orvane {

namespace {

const Part appliedParametersPart("appliedParameters");
const Part bouncePart("bounce");
const Part frictionCoefficientsPart("frictionCoefficients");
const Part minBounceSpeedPart("minBounceSpeed");
const Part slipCoefficientsPart("slipCoefficients");
const Part slipFactorsPart("slipFactors");
const Part softnessConstantForceMixPart("softnessConstantForceMix");
const Part softnessErrorCorrectionPart("softnessErrorCorrection");
const Part surfaceSpeedPart("surfaceSpeed");

constexpr double Most = 1e6;

unsigned int appliedFlag(std::string_view name)
{
    static constexpr struct
    {
        std::string_view name;
        ContactSurface::Applied flag;
    } Names[] = {{"BOUNCE", ContactSurface::Bounce},
                 {"USER_FRICTION", ContactSurface::UserFriction},
                 {"FRICTION_COEFFICIENT-2", ContactSurface::SecondFriction},
                 {"ERROR_REDUCTION", ContactSurface::ErrorReduction},
                 {"CONSTANT_FORCE", ContactSurface::ConstantForce},
                 {"SPEED-1", ContactSurface::FirstSpeed},
                 {"SPEED-2", ContactSurface::SecondSpeed},
                 {"SLIP-1", ContactSurface::FirstSlip},
                 {"SLIP-2", ContactSurface::SecondSlip}};
    for (const auto& known : Names) {
        if (known.name == name)
            return known.flag;
    }
    return 0;
}

double number(const Part& part, const Node& node, double most)
{
    return bounded(part.read<SFFloat>(node).value(), 0.0, most, 0.0);
}

void readPair(const Part& part, const Node& node, double least, double (&pair)[2])
{
    const osg::Vec2f& value = part.read<SFVec2f>(node).value();
    for (osg::UInt32 i = 0; i < 2; ++i)
        pair[i] = bounded(value[i], least, Most, 0.0);
}

} // namespace

ContactSurface readContactSurface(const Node& node)
{
    ContactSurface surface;
    surface.applied = 0;
    const auto& names = appliedParametersPart.read<MFString>(node);
    for (int i = 0; i < static_cast<int>(names.size()); ++i)
        surface.applied |= appliedFlag(names[i]);
    surface.bounce = number(bouncePart, node, 1.0);
    surface.minBounceSpeed = number(minBounceSpeedPart, node, Most);
    surface.errorCorrection = number(softnessErrorCorrectionPart, node, 1.0);
    surface.constantForceMix = number(softnessConstantForceMixPart, node, Most);
    readPair(frictionCoefficientsPart, node, 0.0, surface.friction);
    readPair(slipFactorsPart.isIn(node) ? slipFactorsPart : slipCoefficientsPart, node, 0.0, surface.slip);
    readPair(surfaceSpeedPart, node, -Most, surface.speed);
    return surface;
}

} // namespace Orvane
