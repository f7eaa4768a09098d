#include "base/ValueFields.h"
#include "core/AppearanceProcs.h"
#include "core/LightProc.h"
#include "core/Part.h"
#include "core/UsableValues.h"
#include <OpenSG/OSGProjectorLight.h>
#include <Orvane/SFBool.h>
#include <Orvane/SFFloat.h>
#include <algorithm>
#include <cmath>

namespace Orvane {

namespace {

const Part directionPart("direction");
const Part farDistancePart("farDistance");
const Part fieldOfViewPart("fieldOfView");
const Part locationPart("location");
const Part nearDistancePart("nearDistance");
const Part texturePart("texture");
const Part upVectorPart("upVector");

/// What lies before the projector, with distances along its axis.
struct Reach
{
    float nearDistance;
    float farDistance;
};

/// Behaviour of a projector of a texture: a light whose colour is that of an image.
class TextureProjectorProc : public LightProc
{
public:
    using LightProc::LightProc;

    osg::LightPtr makeLight() const override { return osg::ProjectorLight::create(); }

    void applyTo(const osg::LightPtr& light) const override
    {
        LightProc::applyTo(light);
        const auto projector = osg::ProjectorLightPtr::dcast(light);
        const osg::Vec3f location = usableVector(locationPart.read<SFVec3f>(node()).value());
        osg::Vec3f direction = usableVector(directionPart.read<SFVec3f>(node()).value());
        if (isNull(direction))
            direction = osg::Vec3f(0.0F, 0.0F, 1.0F);
        direction.normalize();
        projector->setPosition(osg::Pnt3f(location));
        auto* const texture = elementOf<TextureProc>(texturePart.readNode(node()));
        _use.set(const_cast<TextureProjectorProc&>(*this), texture);
        Surface surface;
        if (texture)
            texture->describe(surface);
        const bool isFlat = surface.textures.size() == 1 && surface.textures[0].image->getSideCount() == 1 &&
                            surface.textures[0].image->getDepth() == 1;
        light->setOn(light->getOn() && isFlat);
        if (!isFlat) {
            projector->setTexture(osg::NullFC);
            return;
        }
        // Neighbours on the screen may lie far apart in the image.
        surface.textures[0].minFilter = osg::TextureChunk::LINEAR;
        _chunk = surfaceTexture(surface.textures[0]);
        projector->setTexture(osg::TextureChunkPtr::dcast(_chunk->get()));
        const osg::ImagePtr image(surface.textures[0].image.get());
        const float aspect = static_cast<float>(image->getWidth()) / static_cast<float>(image->getHeight());
        osg::Matrix projection;
        projection.setTranslate(0.5F, 0.5F, 0.5F);
        osg::Matrix step;
        step.setScale(0.5F, 0.5F, 0.5F);
        projection.mult(step);
        projection.mult(lens(reach(), aspect));
        projection.mult(view(location, direction));
        projector->setProjection(projection);
        projector->setDirection(isParallel() ? -direction : osg::Vec3f());
    }

protected:
    virtual bool isParallel() const { return false; }

    /// From the system of the projector, which looks along -z, to clip space.
    virtual osg::Matrix lens(const Reach& reach, float aspect) const
    {
        constexpr float MaxAngle = 3.1F;
        const float angle = std::clamp(usableNumber(fieldOfViewPart.read<SFFloat>(node()).value(), 0.7854F),
                                       0.001F, MaxAngle);
        // The angle is that of the smaller direction.
        const float slope = std::tan(angle * 0.5F);
        const float depth = reach.farDistance - reach.nearDistance;
        osg::Matrix result;
        result[0][0] = 1.0F / (slope * std::max(aspect, 1.0F));
        result[1][1] = std::min(aspect, 1.0F) / slope;
        result[2][2] = -(reach.farDistance + reach.nearDistance) / depth;
        result[2][3] = -1.0F;
        result[3][2] = -2.0F * reach.farDistance * reach.nearDistance / depth;
        result[3][3] = 0.0F;
        return result;
    }

private:
    Reach reach() const
    {
        const float first = usableNumber(nearDistancePart.read<SFFloat>(node()).value(), -1.0F);
        const float last = usableNumber(farDistancePart.read<SFFloat>(node()).value(), -1.0F);
        Reach result{first > 0.0F ? first : 0.001F, last > 0.0F ? last : 100000.0F};
        result.farDistance = std::max(result.farDistance, result.nearDistance * 1.001F);
        return result;
    }

    osg::Matrix view(const osg::Vec3f& location, const osg::Vec3f& direction) const
    {
        osg::Vec3f right = direction.cross(usableVector(upVectorPart.read<SFVec3f>(node()).value()));
        if (isNull(right))
            right = direction.cross(std::abs(direction[1]) < 0.9F ? osg::Vec3f(0.0F, 1.0F, 0.0F)
                                                                  : osg::Vec3f(0.0F, 0.0F, 1.0F));
        right.normalize();
        const osg::Vec3f up = right.cross(direction);
        osg::Matrix result;
        for (osg::UInt32 i = 0; i < 3; ++i) {
            result[i][0] = right[i];
            result[i][1] = up[i];
            result[i][2] = -direction[i];
        }
        osg::Matrix step;
        step.setTranslate(-location[0], -location[1], -location[2]);
        result.mult(step);
        return result;
    }

    mutable Use _use; ///< the texture
    mutable std::shared_ptr<SurfaceChunk> _chunk;
};

/// Behaviour of a `TextureProjectorParallel`.
class ParallelProjectorProc : public TextureProjectorProc
{
public:
    using TextureProjectorProc::TextureProjectorProc;

protected:
    bool isParallel() const override { return true; }

    osg::Matrix lens(const Reach& reach, float /*aspect*/) const override
    {
        const osg::Vec4f& window = fieldOfViewPart.read<SFVec4f>(node()).value();
        osg::Matrix result;
        for (osg::UInt32 i = 0; i < 2; ++i) {
            const float low = usableNumber(window[i], -1.0F);
            const float high = usableNumber(window[i + 2], 1.0F);
            const float size = std::max(high - low, 0.001F);
            result[i][i] = 2.0F / size;
            result[3][i] = -(high + low) / size;
        }
        const float depth = reach.farDistance - reach.nearDistance;
        result[2][2] = -2.0F / depth;
        result[3][2] = -(reach.farDistance + reach.nearDistance) / depth;
        return result;
    }
};

const ProcRegistration projector("TextureProjector", makeProc<TextureProjectorProc>);
const ProcRegistration parallelProjector("TextureProjectorParallel", makeProc<ParallelProjectorProc>);

} // namespace

} // namespace Orvane
