// The styles that put others together, those of light, and projections.
#include "base/ValueFields.h"
#include "core/UsableValues.h"
#include "core/VolumeStyles.h"
#include <Orvane/MFNode.h>
#include <Orvane/SFBool.h>
#include <Orvane/SFFloat.h>
#include <Orvane/SFString.h>
#include <algorithm>

namespace Orvane {

namespace {

const Part intensityThresholdPart("intensityThreshold");
const Part lightingPart("lighting");
const Part materialPart("material");
const Part renderStylePart("renderStyle");
const Part shadowsPart("shadows");
const Part typePart("type");
const Part voxelsPart("voxels");

/// Light on the voxels as on surfaces across their gradients, after Blinn and Phong. Colours are those of a
/// material, whose transparency counts too, or those of the voxels.
class ShadedProc : public NormalStyleProc
{
public:
    using NormalStyleProc::NormalStyleProc;

    void describe(VolumeText& text) override
    {
        if (shadowsPart.read<SFBool>(node()).value())
            complain("shadows", "expected FALSE, found TRUE; volumes throw no shadows");
        auto* const material = elementOf<MaterialProc>(materialPart.readNode(node()));
        _material.set(*this, material);
        const bool hasLights = lightingPart.read<SFBool>(node()).value();
        if (material)
            shade(text, *material, hasLights);
        else if (hasLights) {
            findNormal(text);
            // The ambient share of a material by default.
            text.write("    color.rgb = shaded(vec4(color.rgb, 1.0), 0.2 * color.rgb, vec3(0.0), vec3(0.0), "
                       "1.0);\n");
        }
    }

private:
    void shade(VolumeText& text, const MaterialProc& material, bool hasLights)
    {
        Surface surface;
        material.describe(surface);
        text.write("    color.a *= " + text.number(surface.alpha) + ";\n");
        if (!hasLights || !surface.lit) {
            text.write("    color.rgb = " + text.color(surface.diffuse) + ";\n");
            return;
        }
        findNormal(text);
        text.write("    color.rgb = shaded(vec4(" + text.color(surface.diffuse) + ", 1.0), " +
                   text.color(surface.ambient) + ", " + text.color(surface.specular) + ", " +
                   text.color(surface.emission) + ", " + text.number(surface.shininess) + ");\n");
    }

    Use _material;
};

/// Styles one after the other, each of which gets the colour that the one before it has made.
class ComposedProc : public VolumeStyleProc
{
public:
    using VolumeStyleProc::VolumeStyleProc;

    void describe(VolumeText& text) override
    {
        std::vector<Use> uses;
        const auto& styles = renderStylePart.read<MFNode>(node());
        for (unsigned int i = 0; i < styles.size(); ++i) {
            auto* const style = elementOf<VolumeStyleProc>(styles.elem(static_cast<int>(i)).directNode());
            if (!style)
                continue;
            uses.emplace_back();
            uses.back().set(*this, style);
            text.apply(style);
        }
        _uses = std::move(uses);
    }

private:
    std::vector<Use> _uses;
};

/// Cg = Cv w1 + Cblend w2, Og = Ov w1 + Oblend w2, where "blend" is what the second voxels come to by the
/// second style.
class BlendedProc : public VolumeStyleProc
{
public:
    using VolumeStyleProc::VolumeStyleProc;

    void describe(VolumeText& text) override
    {
        bool isFlat = false;
        const std::optional<SurfaceTexture> voxels = spaceTexture(*this, _voxels, voxelsPart, isFlat);
        auto* const style = elementOf<VolumeStyleProc>(renderStylePart.readNode(node()));
        _style.set(*this, style);
        if (isFlat)
            complain("voxels", "expected an image with depth, found a flat one, which is not drawn");
        if (!voxels)
            return;
        const std::string second = text.addStyle(text.addVoxels(*voxels), style);
        text.write("    {\n        vec4 own = texel;\n        vec4 other = " + second +
                   ";\n        texel = own;\n        float w1 = " + weight(text, 0) +
                   ";\n        float w2 = " + weight(text, 1) +
                   ";\n        color = clamp(color * w1 + other * w2, 0.0, 1.0);\n    }\n");
        text.dropSlope();
    }

private:
    std::string weight(VolumeText& text, std::size_t place)
    {
        static const Part functions[] = {Part("weightFunction1"), Part("weightFunction2")};
        static const Part constants[] = {Part("weightConstant1"), Part("weightConstant2")};
        static const Part tables[] = {Part("weightTransferFunction1"), Part("weightTransferFunction2")};
        const std::string& function = functions[place].read<SFString>(node()).value();
        if (function == "ALPHA1")
            return "color.a";
        if (function == "ALPHA2")
            return "other.a";
        if (function == "ONE_MINUS_ALPHA1")
            return "1.0 - color.a";
        if (function == "ONE_MINUS_ALPHA2")
            return "1.0 - other.a";
        const std::optional<SurfaceTexture> table =
            function == "TABLE" ? volumeTexture(*this, _tables[place], tables[place]) : std::nullopt;
        if (table && table->image->getDepth() < 2)
            return "texture2D(" + text.map(*table) + ", vec2(color.a, other.a)).r";
        if (function == "TABLE")
            complain(place == 0 ? "weightFunction1" : "weightFunction2",
                     "found TABLE without a flat image as its table; the constant counts");
        else if (function != "CONSTANT")
            complain(place == 0 ? "weightFunction1" : "weightFunction2",
                     "expected CONSTANT, ALPHA1, ALPHA2, ONE_MINUS_ALPHA1, ONE_MINUS_ALPHA2 or TABLE, found "
                     "\"" +
                         function + "\"; it counts as CONSTANT");
        return text.number(
            std::clamp(usableNumber(constants[place].read<SFFloat>(node()).value(), 0.0F), 0.0F, 1.0F));
    }

    Use _voxels;
    Use _style;
    Use _tables[2];
};

/// The largest, the least or the average intensity along a ray. With a threshold the largest one is the first
/// peak that reaches it, and the least one is that of those which reach it.
class ProjectionProc : public VolumeStyleProc
{
public:
    using VolumeStyleProc::VolumeStyleProc;

    void describe(VolumeText&) override {}
    bool isProjection() const override { return true; }

    void describeRay(VolumeText& text) override
    {
        const std::string& type = typePart.read<SFString>(node()).value();
        const float threshold = usableNumber(intensityThresholdPart.read<SFFloat>(node()).value(), 0.0F);
        if (type == "AVERAGE") {
            text.gatherIntensity("        best = max(best, 0.0) + value / float(count);\n");
            return;
        }
        const std::string limit = text.number(threshold);
        if (type == "MIN") {
            text.gatherIntensity("        if (value >= " + limit +
                                 ")\n            best = best < 0.0 ? value : min(best, value);\n");
            return;
        }
        if (type != "MAX")
            complain("type", "expected MAX, MIN or AVERAGE, found \"" + type + "\"; it counts as MAX");
        text.gatherIntensity("        if (" + limit + " > 0.0 && best >= " + limit +
                             " && value < best)\n            break;\n        best = max(best, value);\n");
    }
};

const ProcRegistration shadedStyle("ShadedVolumeStyle", makeProc<ShadedProc>);
const ProcRegistration composed("ComposedVolumeStyle", makeProc<ComposedProc>);
const ProcRegistration blended("BlendedVolumeStyle", makeProc<BlendedProc>);
const ProcRegistration projection("ProjectionVolumeStyle", makeProc<ProjectionProc>);

} // namespace

} // namespace Orvane
