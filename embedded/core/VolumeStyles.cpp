// The styles that change colours by one formula each.
#include "core/VolumeStyles.h"
#include "base/ValueFields.h"
#include "core/Blend.h"
#include "core/UsableValues.h"
#include <Orvane/SFBool.h>
#include <Orvane/SFFloat.h>
#include <Orvane/SFInt32.h>
#include <algorithm>
#include <cmath>

namespace Orvane {

namespace {

const Part boundaryOpacityPart("boundaryOpacity");
const Part colorStepsPart("colorSteps");
const Part coolColorPart("coolColor");
const Part edgeColorPart("edgeColor");
const Part enabledPart("enabled");
const Part gradientThresholdPart("gradientThreshold");
const Part opacityFactorPart("opacityFactor");
const Part orthogonalColorPart("orthogonalColor");
const Part parallelColorPart("parallelColor");
const Part retainedOpacityPart("retainedOpacity");
const Part silhouetteBoundaryOpacityPart("silhouetteBoundaryOpacity");
const Part silhouetteRetainedOpacityPart("silhouetteRetainedOpacity");
const Part silhouetteSharpnessPart("silhouetteSharpness");
const Part surfaceNormalsPart("surfaceNormals");
const Part transferFunctionPart("transferFunction");
const Part warmColorPart("warmColor");

float number(const Part& part, const Node& node)
{
    return usableNumber(part.read<SFFloat>(node).value(), 0.0F);
}

osg::Color4f color(const Part& part, const Node& node)
{
    const osg::Color4f& value = part.read<SFColorRGBA>(node).value();
    return osg::Color4f(usableNumber(value.red(), 0.0F), usableNumber(value.green(), 0.0F),
                        usableNumber(value.blue(), 0.0F), usableNumber(value.alpha(), 1.0F));
}

/// The components of a voxel lead to a colour in the transfer function, the first along its first axis and so
/// on. A function without alpha leaves the opacity as it is. Without one the voxel is shown as it is.
class OpacityMapProc : public VolumeStyleProc
{
public:
    using VolumeStyleProc::VolumeStyleProc;

    void describe(VolumeText& text) override
    {
        const std::optional<SurfaceTexture> function = volumeTexture(*this, _function, transferFunctionPart);
        if (!function)
            return;
        osg::Image& image = *function->image.get();
        const bool isFlat = image.getDepth() < 2;
        // A place that a voxel has no component for is 0.
        const std::string at = text.components(isFlat ? 2 : 3);
        text.write("    color" + std::string(image.hasAlphaChannel() ? "" : ".rgb") + " = " +
                   (isFlat ? "texture2D(" : "texture3D(") + text.map(*function) + ", " + at + ")" +
                   (image.hasAlphaChannel() ? "" : ".rgb") + ";\n");
        text.dropSlope();
    }

private:
    Use _function;
};

/// Og = Ov (kgc + kgs |grad f| ^ kge)
class BoundaryProc : public VolumeStyleProc
{
public:
    using VolumeStyleProc::VolumeStyleProc;

    void describe(VolumeText& text) override
    {
        text.useSlope();
        text.write("    color.a = clamp(color.a * (" + text.number(number(retainedOpacityPart, node())) +
                   " + " + text.number(number(boundaryOpacityPart, node())) +
                   " * pow(max(steepness, 1e-6), " + text.number(number(opacityFactorPart, node())) +
                   ")), 0.0, 1.0);\n");
    }
};

/// The edge colour where the normal is further from the look than a threshold; its alpha is its share.
class EdgeProc : public NormalStyleProc
{
public:
    using NormalStyleProc::NormalStyleProc;

    void describe(VolumeText& text) override
    {
        findNormal(text);
        const std::string edge = text.color(color(edgeColorPart, node()));
        text.write("    if (steepness > 0.0 && abs(dot(normal, look)) < " +
                   text.number(std::cos(number(gradientThresholdPart, node()))) +
                   ")\n        color.rgb = mix(color.rgb, " + edge + ".rgb, " + edge + ".a);\n");
    }
};

/// Og = Ov (ksc + kss (1 - |n . V|) ^ kse)
class SilhouetteProc : public NormalStyleProc
{
public:
    using NormalStyleProc::NormalStyleProc;

    void describe(VolumeText& text) override
    {
        findNormal(text);
        text.write("    color.a = clamp(color.a * (" +
                   text.number(number(silhouetteRetainedOpacityPart, node())) + " + " +
                   text.number(number(silhouetteBoundaryOpacityPart, node())) +
                   " * pow(max(1.0 - abs(dot(normal, look)), 1e-6), " +
                   text.number(number(silhouetteSharpnessPart, node())) + ")), 0.0, 1.0);\n");
    }
};

/// Gooch's light: from the cool to the warm colour as (1 + n . L) / 2 goes from 0 to 1, over all lights by
/// their strength. Where none shines all is cool.
class ToneMappedProc : public NormalStyleProc
{
public:
    using NormalStyleProc::NormalStyleProc;

    void describe(VolumeText& text) override
    {
        findNormal(text);
        const std::string cool = text.color(color(coolColorPart, node()));
        const std::string warm = text.color(color(warmColorPart, node()));
        text.write("    float toLight = 0.0;\n    float lights = 0.0;\n"
                   "    for (int i = 0; i < osg_LightCount; ++i) {\n        vec3 way;\n"
                   "        float share = max(reach(i, way), 0.0);\n"
                   "        toLight += share * (0.5 + 0.5 * dot(normal, way));\n"
                   "        lights += share;\n    }\n    color.rgb = mix(" +
                   cool + ".rgb, " + warm + ".rgb, toLight / max(lights, 1e-6));\n");
    }
};

/// Steps of colour by the angle between normal and look: that for surfaces across the look at its one end,
/// that for surfaces along it at the other, between them those at the middles of their steps.
class CartoonProc : public NormalStyleProc
{
public:
    using NormalStyleProc::NormalStyleProc;

    void describe(VolumeText& text) override
    {
        findNormal(text);
        const std::vector<osg::Color4f> steps = stepColors();
        const std::string count = std::to_string(steps.size());
        text.write("    float angle = acos(min(abs(dot(normal, look)), 1.0)) / 1.5707963;\n"
                   "    vec4 ink = " +
                   text.colors(steps) + "[int(min(floor(angle * " + count + ".0), " + count +
                   ".0 - 1.0))];\n    color = vec4(ink.rgb, color.a * ink.a);\n");
    }

private:
    std::vector<osg::Color4f> stepColors() const
    {
        constexpr int MostSteps = 64;
        const osg::Color4f across = color(orthogonalColorPart, node());
        const osg::Color4f along = color(parallelColorPart, node());
        const int count = std::clamp(colorStepsPart.read<SFInt32>(node()).value(), 1, MostSteps);
        std::vector<osg::Color4f> steps{across};
        for (int i = 1; i + 1 < count; ++i) {
            const float t = (static_cast<float>(i) + 0.5F) / static_cast<float>(count);
            const osg::Color3f mixed = blend(osg::Color3f(across.red(), across.green(), across.blue()),
                                             osg::Color3f(along.red(), along.green(), along.blue()), t);
            steps.emplace_back(mixed.red(), mixed.green(), mixed.blue(),
                               blend(across.alpha(), along.alpha(), t));
        }
        if (count > 1)
            steps.push_back(along);
        return steps;
    }
};

const ProcRegistration opacityMap("OpacityMapVolumeStyle", makeProc<OpacityMapProc>);
const ProcRegistration boundary("BoundaryEnhancementVolumeStyle", makeProc<BoundaryProc>);
const ProcRegistration edge("EdgeEnhancementVolumeStyle", makeProc<EdgeProc>);
const ProcRegistration silhouette("SilhouetteEnhancementVolumeStyle", makeProc<SilhouetteProc>);
const ProcRegistration toneMapped("ToneMappedVolumeStyle", makeProc<ToneMappedProc>);
const ProcRegistration cartoon("CartoonVolumeStyle", makeProc<CartoonProc>);

} // namespace

bool VolumeStyleProc::isEnabled() const
{
    return enabledPart.read<SFBool>(node()).value();
}

std::optional<SurfaceTexture> volumeTexture(ElementProc& user, Use& use, const Part& part)
{
    auto* const proc = elementOf<TextureProc>(part.readNode(user.node()));
    use.set(user, proc);
    Surface surface;
    if (proc)
        proc->describe(surface);
    if (surface.textures.empty() || surface.textures[0].image->getSideCount() > 1)
        return std::nullopt;
    return surface.textures[0];
}

std::optional<SurfaceTexture> spaceTexture(ElementProc& user, Use& use, const Part& part, bool& isFlat)
{
    std::optional<SurfaceTexture> texture = volumeTexture(user, use, part);
    isFlat = texture && texture->image->getDepth() < 2;
    if (isFlat)
        texture.reset();
    return texture;
}

void NormalStyleProc::findNormal(VolumeText& text)
{
    bool isFlat = false;
    const std::optional<SurfaceTexture> normals = spaceTexture(*this, _normals, surfaceNormalsPart, isFlat);
    if (isFlat)
        complain("surfaceNormals", "expected an image with depth, found a flat one, which is not used");
    if (normals)
        text.useNormals(*normals);
    else
        text.useSlope();
}

} // namespace Orvane
