#include "base/ValueFields.h"
#include "core/AppearanceProcs.h"
#include "core/Part.h"
#include "core/UsableValues.h"
#include <Orvane/SFBool.h>
#include <Orvane/SFFloat.h>
#include <Orvane/SFString.h>
#include <algorithm>
#include <cmath>

namespace Orvane {

namespace {

const Part ambientIntensityPart("ambientIntensity");
const Part backAmbientIntensityPart("backAmbientIntensity");
const Part backDiffuseColorPart("backDiffuseColor");
const Part backEmissiveColorPart("backEmissiveColor");
const Part backShininessPart("backShininess");
const Part backSpecularColorPart("backSpecularColor");
const Part backTransparencyPart("backTransparency");
const Part baseColorPart("baseColor");
const Part baseTexturePart("baseTexture");
const Part baseTextureMappingPart("baseTextureMapping");
const Part diffuseColorPart("diffuseColor");
const Part diffuseTexturePart("diffuseTexture");
const Part diffuseTextureMappingPart("diffuseTextureMapping");
const Part emissiveColorPart("emissiveColor");
const Part emissiveTexturePart("emissiveTexture");
const Part emissiveTextureMappingPart("emissiveTextureMapping");
const Part metallicPart("metallic");
const Part normalScalePart("normalScale");
const Part occlusionStrengthPart("occlusionStrength");
const Part roughnessPart("roughness");
const Part separateBackColorPart("separateBackColor");
const Part shininessPart("shininess");
const Part specularColorPart("specularColor");
const Part transparencyPart("transparency");

constexpr float MaxExponent = 128.0F; ///< of a highlight, in OpenGL

/// Textures that only programs can use.
struct ShadingField
{
    SurfaceShading::Role role;
    Part texture;
    Part mapping;
};
const ShadingField shadingFields[] = {
    {SurfaceShading::AMBIENT, Part("ambientTexture"), Part("ambientTextureMapping")},
    {SurfaceShading::SPECULAR, Part("specularTexture"), Part("specularTextureMapping")},
    {SurfaceShading::SHININESS, Part("shininessTexture"), Part("shininessTextureMapping")},
    {SurfaceShading::METALLIC_ROUGHNESS, Part("metallicRoughnessTexture"),
     Part("metallicRoughnessTextureMapping")},
    {SurfaceShading::OCCLUSION, Part("occlusionTexture"), Part("occlusionTextureMapping")},
    {SurfaceShading::NORMAL, Part("normalTexture"), Part("normalTextureMapping")}};

float fraction(const Part& part, const Node& node)
{
    return std::clamp(usableNumber(part.read<SFFloat>(node).value(), 0.0F), 0.0F, 1.0F);
}

osg::Color3f color(const Part& part, const Node& node)
{
    return usableColor(part.read<SFColor>(node).value());
}

osg::Color3f scaled(const osg::Color3f& color, float factor)
{
    return osg::Color3f(color.red() * factor, color.green() * factor, color.blue() * factor);
}

/// A material with textures of its own.
class TexturedMaterialProc : public MaterialProc
{
public:
    using MaterialProc::MaterialProc;

    MaterialTexture emissionTexture() override
    {
        return use(1, emissiveTexturePart, emissiveTextureMappingPart);
    }

    std::vector<MaterialTexture> shadingTextures() override
    {
        std::vector<MaterialTexture> result;
        std::vector<Use> uses;
        for (const ShadingField& field : shadingFields) {
            auto* const proc = elementOf<TextureProc>(field.texture.readNode(node()));
            if (!proc)
                continue;
            uses.emplace_back();
            uses.back().set(*this, proc);
            result.push_back({proc, field.mapping.read<SFString>(node()).value(), field.role});
        }
        _shadingUses = std::move(uses);
        return result;
    }

    void describeShading(SurfaceShading::Side& side) const override
    {
        if (normalScalePart.isIn(node()))
            side.normalScale = usableNumber(normalScalePart.read<SFFloat>(node()).value(), 1.0F);
        if (occlusionStrengthPart.isIn(node()))
            side.occlusionStrength = fraction(occlusionStrengthPart, node());
    }

protected:
    /// The texture of a field, of which changes are followed from now on.
    MaterialTexture use(std::size_t place, const Part& texturePart, const Part& mappingPart)
    {
        MaterialTexture result;
        result.proc = elementOf<TextureProc>(texturePart.readNode(node()));
        if (!result.proc && !_uses[place].element())
            return result;
        _uses[place].set(*this, result.proc);
        result.mapping = mappingPart.read<SFString>(node()).value();
        return result;
    }

private:
    Use _uses[2];
    std::vector<Use> _shadingUses;
};

/// Behaviour of a `Material`.
class LitMaterialProc : public TexturedMaterialProc
{
public:
    using TexturedMaterialProc::TexturedMaterialProc;

    void describe(Surface& surface) const override
    {
        const osg::Color3f diffuse = color(diffuseColorPart, node());
        const osg::Color3f emission = color(emissiveColorPart, node());
        surface.alpha = 1.0F - fraction(transparencyPart, node());
        if (surface.kind != Surface::FACES) {
            surface.diffuse = emission;
            return;
        }
        surface.lit = true;
        surface.ambient = scaled(diffuse, fraction(ambientIntensityPart, node()));
        surface.diffuse = diffuse;
        surface.emission = emission;
        surface.specular = color(specularColorPart, node());
        surface.shininess = fraction(shininessPart, node()) * MaxExponent;
    }

    MaterialTexture colorTexture() override { return use(0, diffuseTexturePart, diffuseTextureMappingPart); }
};

/// Behaviour of a `TwoSidedMaterial`.
class TwoSidedMaterialProc : public LitMaterialProc
{
public:
    using LitMaterialProc::LitMaterialProc;

    void describe(Surface& surface) const override
    {
        LitMaterialProc::describe(surface);
        if (surface.kind != Surface::FACES || !separateBackColorPart.read<SFBool>(node()).value())
            return;
        SurfaceColors back;
        back.diffuse = color(backDiffuseColorPart, node());
        back.ambient = scaled(back.diffuse, fraction(backAmbientIntensityPart, node()));
        back.emission = color(backEmissiveColorPart, node());
        back.specular = color(backSpecularColorPart, node());
        back.shininess = fraction(backShininessPart, node()) * MaxExponent;
        back.alpha = 1.0F - fraction(backTransparencyPart, node());
        surface.back = back;
    }

    // These have no textures.
    MaterialTexture colorTexture() override { return {}; }
    MaterialTexture emissionTexture() override { return {}; }
    std::vector<MaterialTexture> shadingTextures() override { return {}; }
};

/// Behaviour of an `UnlitMaterial`.
class UnlitMaterialProc : public TexturedMaterialProc
{
public:
    using TexturedMaterialProc::TexturedMaterialProc;

    void describe(Surface& surface) const override
    {
        surface.diffuse = color(emissiveColorPart, node());
        surface.alpha = 1.0F - fraction(transparencyPart, node());
    }

    MaterialTexture colorTexture() override
    {
        return use(0, emissiveTexturePart, emissiveTextureMappingPart);
    }
    MaterialTexture emissionTexture() override { return {}; }
    // Without lights nothing is seen of normals.
    std::vector<MaterialTexture> shadingTextures() override { return {}; }
    bool isUnlit() const override { return true; }
    bool tintsTextures() const override { return true; }
};

/// Behaviour of a `PhysicalMaterial`, and how it is shown by fixed lighting where there are no programs: as
/// bright as by the equations of X3D where one looks along the light and the normal, with a highlight of the
/// same width.
class PhysicalMaterialProc : public TexturedMaterialProc
{
public:
    using TexturedMaterialProc::TexturedMaterialProc;

    void describe(Surface& surface) const override
    {
        const osg::Color3f base = color(baseColorPart, node());
        const osg::Color3f emission = color(emissiveColorPart, node());
        surface.alpha = 1.0F - fraction(transparencyPart, node());
        if (surface.kind != Surface::FACES) {
            surface.diffuse = emission;
            return;
        }
        constexpr float Pi = 3.14159265F;
        constexpr float AmbientShare = 0.2F;
        constexpr float MirroredShare = 0.35F;    ///< stands for the surroundings that metals mirror
        constexpr float PlainReflectance = 0.04F; ///< of what is no metal, looked at straight
        const float metallic = fraction(metallicPart, node());
        const float roughness = std::max(fraction(roughnessPart, node()), 0.05F);
        // The square of the highlight's width; what is that wide is scattered rather than mirrored.
        const float width = std::pow(roughness, 4.0F);
        const float scattered = 1.0F - metallic + metallic * std::max(width, MirroredShare);
        osg::Color3f reflectance;
        float strongest = PlainReflectance;
        for (osg::UInt32 i = 0; i < 3; ++i) {
            surface.diffuse[i] = base[i] * scattered / Pi;
            reflectance[i] = PlainReflectance + (base[i] - PlainReflectance) * metallic;
            strongest = std::max(strongest, reflectance[i]);
        }
        // Highlights keep their hue, however bright.
        const float gain = std::min((1.0F - width) / (Pi * width), 1.0F / strongest);
        surface.lit = true;
        surface.specular = scaled(reflectance, gain);
        surface.ambient = scaled(surface.diffuse, AmbientShare);
        surface.emission = emission;
        // Blinn's exponent for the width.
        surface.shininess = std::clamp(2.0F / width - 2.0F, 0.0F, MaxExponent);
        surface.shading.emplace();
        surface.shading->model = SurfaceShading::PHYSICAL;
        SurfaceShading::Side side;
        side.base = base;
        side.emission = emission;
        side.metallic = metallic;
        side.roughness = fraction(roughnessPart, node());
        surface.shading->sides.fill(side);
    }

    MaterialTexture colorTexture() override { return use(0, baseTexturePart, baseTextureMappingPart); }
    bool tintsTextures() const override { return true; }
};

const ProcRegistration material("Material", makeProc<LitMaterialProc>);
const ProcRegistration physicalMaterial("PhysicalMaterial", makeProc<PhysicalMaterialProc>);
const ProcRegistration twoSidedMaterial("TwoSidedMaterial", makeProc<TwoSidedMaterialProc>);
const ProcRegistration unlitMaterial("UnlitMaterial", makeProc<UnlitMaterialProc>);

} // namespace

} // namespace Orvane
