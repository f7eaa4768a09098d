#include "core/LightProc.h"
#include "base/ValueFields.h"
#include "core/Part.h"
#include "core/UsableValues.h"
#include <OpenSG/OSGDirectionalLight.h>
#include <OpenSG/OSGPointLight.h>
#include <OpenSG/OSGSpotLight.h>
#include <Orvane/SFBool.h>
#include <Orvane/SFFloat.h>
#include <algorithm>
#include <cmath>

namespace Orvane {

namespace {

const Part ambientIntensityPart("ambientIntensity");
const Part attenuationPart("attenuation");
const Part beamWidthPart("beamWidth");
const Part colorPart("color");
const Part cutOffAnglePart("cutOffAngle");
const Part directionPart("direction");
const Part globalPart("global");
const Part intensityPart("intensity");
const Part locationPart("location");
const Part onPart("on");
const Part radiusPart("radius");

osg::Color4f scaled(const osg::Color3f& color, float factor)
{
    return osg::Color4f(color.red() * factor, color.green() * factor, color.blue() * factor, 1.0F);
}

class DirectionalLightProc : public LightProc
{
public:
    using LightProc::LightProc;

    osg::LightPtr makeLight() const override { return osg::DirectionalLight::create(); }

    void applyTo(const osg::LightPtr& light) const override
    {
        LightProc::applyTo(light);
        // X3D says where the light goes, OpenSG where it comes from.
        const osg::Vec3f direction = usableVector(directionPart.read<SFVec3f>(node()).value());
        const auto directional = osg::DirectionalLightPtr::dcast(light);
        directional->setDirection(isNull(direction) ? osg::Vec3f(0.0F, 0.0F, 1.0F) : -direction);
    }
};

class PointLightProc : public LightProc
{
public:
    using LightProc::LightProc;

    osg::LightPtr makeLight() const override { return osg::PointLight::create(); }

    void applyTo(const osg::LightPtr& light) const override
    {
        LightProc::applyTo(light);
        const auto point = osg::PointLightPtr::dcast(light);
        point->setPosition(osg::Pnt3f(usableVector(locationPart.read<SFVec3f>(node()).value())));
        const osg::Vec3f factors = usableVector(attenuationPart.read<SFVec3f>(node()).value());
        // All zero means none; a negative factor would make the light brighter with distance.
        const bool none = !(factors[0] > 0.0F || factors[1] > 0.0F || factors[2] > 0.0F);
        light->setConstantAttenuation(none ? 1.0F : std::max(factors[0], 0.0F));
        light->setLinearAttenuation(std::max(factors[1], 0.0F));
        light->setQuadraticAttenuation(std::max(factors[2], 0.0F));
        const float radius = radiusPart.read<SFFloat>(node()).value();
        point->setRange(radius > 0.0F ? radius : 0.0F);
    }
};

class SpotLightProc : public PointLightProc
{
public:
    using PointLightProc::PointLightProc;

    osg::LightPtr makeLight() const override { return osg::SpotLight::create(); }

    void applyTo(const osg::LightPtr& light) const override
    {
        PointLightProc::applyTo(light);
        const auto spot = osg::SpotLightPtr::dcast(light);
        const osg::Vec3f direction = usableVector(directionPart.read<SFVec3f>(node()).value());
        spot->setDirection(isNull(direction) ? osg::Vec3f(0.0F, 0.0F, -1.0F) : direction);
        constexpr float RightAngle = 1.5707963F;
        const auto angle = [&](const Part& part) {
            const float value = part.read<SFFloat>(node()).value();
            return std::isfinite(value) ? std::clamp(value, 0.0F, RightAngle) : RightAngle;
        };
        const float cutOff = angle(cutOffAnglePart);
        const float beam = angle(beamWidthPart);
        spot->setSpotCutOff(cutOff);
        // A cone that is full out to its beam width and gone at its cut-off angle has no equal in OpenGL's
        // fixed steps. The exponent halves the light midway between both.
        float exponent = 0.0F;
        if (beam < cutOff) {
            const float cosine = std::cos(0.5F * (beam + cutOff));
            exponent = std::clamp(std::log(0.5F) / std::log(std::min(cosine, 0.9999F)), 0.0F, 128.0F);
        }
        spot->setSpotExponent(exponent);
        spot->setBeamWidth(beam);
    }
};

const ProcRegistration directional("DirectionalLight", makeProc<DirectionalLightProc>);
const ProcRegistration point("PointLight", makeProc<PointLightProc>);
const ProcRegistration spot("SpotLight", makeProc<SpotLightProc>);

} // namespace

bool LightProc::isGlobal() const
{
    return globalPart.read<SFBool>(node()).value();
}

void LightProc::apply(const osg::NodeCorePtr& core, const osg::NodePtr& group) const
{
    const osg::LightPtr light = osg::LightPtr::dcast(core);
    applyTo(light);
    // A light over the group's content stands in the system of that, wherever the group is shown.
    light->setBeacon(isGlobal() ? group : osg::NodePtr());
}

void LightProc::applyTo(const osg::LightPtr& light) const
{
    const osg::Color3f& color = colorPart.read<SFColor>(node()).value();
    const float intensity = usableNumber(intensityPart.read<SFFloat>(node()).value(), 1.0F);
    const osg::Color4f shine = scaled(color, intensity);
    light->setOn(onPart.read<SFBool>(node()).value());
    light->setDiffuse(shine);
    light->setSpecular(shine);
    light->setAmbient(scaled(color, usableNumber(ambientIntensityPart.read<SFFloat>(node()).value(), 0.0F)));
}

} // namespace Orvane
