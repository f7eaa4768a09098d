#include "base/ValueFields.h"
#include "core/AppearanceProcs.h"
#include "core/EnvironmentMap.h"
#include "core/LightProc.h"
#include "core/Part.h"
#include "core/UsableValues.h"
#include <OpenSG/OSGEnvironmentLight.h>
#include <Orvane/MFFloat.h>
#include <array>
#include <memory>
#include <string>

namespace Orvane {

namespace {

const Part diffuseCoefficientsPart("diffuseCoefficients");
const Part diffuseTexturePart("diffuseTexture");
const Part rotationPart("rotation");
const Part specularTexturePart("specularTexture");

/// Behaviour of an `EnvironmentLight`: what stands far around lights physical materials.
class EnvironmentLightProc : public LightProc
{
public:
    using LightProc::LightProc;

    osg::LightPtr makeLight() const override { return osg::EnvironmentLight::create(); }

    void applyTo(const osg::LightPtr& light) const override
    {
        LightProc::applyTo(light);
        const auto environment = osg::EnvironmentLightPtr::dcast(light);
        osg::Matrix turn;
        turn.setRotate(toQuaternion(rotationPart.read<SFRotation>(node()).value()));
        turn.invert();
        environment->setTurn(turn);
        const std::optional<SurfaceTexture> scattered = cubeOf(0, diffuseTexturePart);
        std::optional<SurfaceTexture> seen = cubeOf(1, specularTexturePart);
        const std::optional<osg::EnvironmentLight::Irradiance> irradiance = irradianceFrom(scattered, seen);
        environment->setIrradiance(irradiance.value_or(osg::EnvironmentLight::Irradiance{}));
        _chunk.reset();
        if (seen) {
            // Rough faces mirror the coarse levels.
            seen->minFilter = osg::TextureChunk::LINEAR_MIPMAP_LINEAR;
            _chunk = surfaceTexture(*seen);
        }
        environment->setTexture(seen ? osg::TextureChunkPtr::dcast(_chunk->get()) : osg::NullFC);
        light->setOn(light->getOn() && (irradiance || seen));
    }

private:
    /// The cube map of a field; none when it has no image of six sides.
    std::optional<SurfaceTexture> cubeOf(std::size_t use, const Part& part) const
    {
        auto* const texture = elementOf<TextureProc>(part.readNode(node()));
        _uses[use].set(const_cast<EnvironmentLightProc&>(*this), texture);
        Surface surface;
        if (texture)
            texture->describe(surface);
        if (surface.textures.size() != 1 || surface.textures[0].image->getSideCount() != 6)
            return std::nullopt;
        return surface.textures[0];
    }

    /// By the coefficients, else by the cube of what is scattered, else by that of what is seen.
    std::optional<osg::EnvironmentLight::Irradiance>
    irradianceFrom(const std::optional<SurfaceTexture>& scattered,
                   const std::optional<SurfaceTexture>& seen) const
    {
        const std::vector<float>& coefficients = diffuseCoefficientsPart.read<MFFloat>(node()).values();
        if (const auto given = irradianceOf(coefficients))
            return given;
        if (!coefficients.empty())
            const_cast<EnvironmentLightProc*>(this)->complain(
                "diffuseCoefficients",
                "expected 27 numbers, found " + std::to_string(coefficients.size()) + "; they do not count");
        if (!scattered && !seen)
            return std::nullopt;
        return scattered ? irradianceOf(scattered->image.get(), EnvironmentMap::SCATTERED)
                         : irradianceOf(seen->image.get(), EnvironmentMap::SEEN);
    }

    mutable std::array<Use, 2> _uses;
    mutable std::shared_ptr<SurfaceChunk> _chunk;
};

const ProcRegistration registration("EnvironmentLight", makeProc<EnvironmentLightProc>);

} // namespace

} // namespace Orvane
