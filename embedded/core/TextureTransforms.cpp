#include "base/ValueFields.h"
#include "core/AppearanceProcs.h"
#include "core/Part.h"
#include "core/UsableValues.h"
#include <Orvane/MFNode.h>
#include <Orvane/SFFloat.h>
#include <Orvane/SFString.h>
#include <algorithm>

namespace Orvane {

namespace {

const Part centerPart("center");
const Part mappingPart("mapping");
const Part matrixPart("matrix");
const Part rotationPart("rotation");
const Part scalePart("scale");
const Part textureTransformPart("textureTransform");
const Part translationPart("translation");

/// -center, scale, rotation, center and translation, the last one applied first to a coordinate.
osg::Matrix coordinateMatrix(const osg::Vec3f& center, const osg::Vec3f& scale,
                             const osg::Quaternion& rotation, const osg::Vec3f& translation)
{
    osg::Matrix result;
    result.setTranslate(-center[0], -center[1], -center[2]);
    osg::Matrix step;
    step.setScale(scale[0], scale[1], scale[2]);
    result.mult(step);
    step.setIdentity();
    step.setRotate(rotation);
    result.mult(step);
    step.setIdentity();
    const osg::Vec3f shift = center + translation;
    step.setTranslate(shift[0], shift[1], shift[2]);
    result.mult(step);
    return result;
}

/// A transformation of one set of coordinates: that of the first texture, or of those that bear its name.
class SingleTextureTransformProc : public TextureTransformProc
{
public:
    using TextureTransformProc::TextureTransformProc;

    std::optional<osg::Matrix> matrixFor(unsigned int stage, const std::string& mapping) override
    {
        if (stage > 0 || (!name().empty() && name() != mapping))
            return std::nullopt;
        return matrix();
    }

    const std::string& name() const { return mappingPart.read<SFString>(node()).value(); }
    virtual osg::Matrix matrix() const = 0;
};

class FlatTextureTransformProc : public SingleTextureTransformProc
{
public:
    using SingleTextureTransformProc::SingleTextureTransformProc;

    osg::Matrix matrix() const override
    {
        const auto pair = [this](const Part& part, float fallback) {
            const osg::Vec2f& v = part.read<SFVec2f>(node()).value();
            return osg::Vec3f(usableNumber(v[0], fallback), usableNumber(v[1], fallback), 0.0F);
        };
        osg::Vec3f scale = pair(scalePart, 1.0F);
        scale[2] = 1.0F;
        const Rotation rotation(0.0F, 0.0F, 1.0F, rotationPart.read<SFFloat>(node()).value());
        return coordinateMatrix(pair(centerPart, 0.0F), scale, toQuaternion(rotation),
                                pair(translationPart, 0.0F));
    }
};

class SpaceTextureTransformProc : public SingleTextureTransformProc
{
public:
    using SingleTextureTransformProc::SingleTextureTransformProc;

    osg::Matrix matrix() const override
    {
        const auto vector = [this](const Part& part) {
            return usableVector(part.read<SFVec3f>(node()).value());
        };
        return coordinateMatrix(vector(centerPart), vector(scalePart),
                                toQuaternion(rotationPart.read<SFRotation>(node()).value()),
                                vector(translationPart));
    }
};

class MatrixTextureTransformProc : public SingleTextureTransformProc
{
public:
    using SingleTextureTransformProc::SingleTextureTransformProc;

    osg::Matrix matrix() const override
    {
        const auto& values = matrixPart.read<SFMatrix4f>(node()).value().v;
        osg::Matrix result;
        if (!std::all_of(values.begin(), values.end(), [](float value) { return isDrawable(value); }))
            return result;
        // X3D writes the place of the origin last, as columns of OpenGL stand.
        for (osg::UInt32 i = 0; i < 16; ++i)
            result[i / 4][i % 4] = values[i];
        return result;
    }
};

/// Behaviour of a `MultiTextureTransform`: a transformation for each texture.
class MultiTextureTransformProc : public TextureTransformProc
{
public:
    using TextureTransformProc::TextureTransformProc;

    std::optional<osg::Matrix> matrixFor(unsigned int stage, const std::string& mapping) override
    {
        const auto& list = textureTransformPart.read<MFNode>(node());
        const std::size_t count = std::min<std::size_t>(list.size(), osg::StateChunk::MaxSlots);
        _uses.resize(count);
        SingleTextureTransformProc* found = nullptr;
        for (std::size_t i = 0; i < count; ++i) {
            auto* const child =
                elementOf<SingleTextureTransformProc>(list.elem(static_cast<int>(i)).directNode());
            _uses[i].set(*this, child);
            const bool isNamed = child && !mapping.empty() && child->name() == mapping;
            if (isNamed || (i == stage && mapping.empty()))
                found = child;
        }
        if (!found)
            return std::nullopt;
        return found->matrix();
    }

private:
    std::vector<Use> _uses;
};

const ProcRegistration multiTextureTransform("MultiTextureTransform", makeProc<MultiTextureTransformProc>);
const ProcRegistration textureTransform("TextureTransform", makeProc<FlatTextureTransformProc>);
const ProcRegistration textureTransform3D("TextureTransform3D", makeProc<SpaceTextureTransformProc>);
const ProcRegistration matrixTransform("TextureTransformMatrix3D", makeProc<MatrixTextureTransformProc>);

} // namespace

} // namespace Orvane
