#include "core/AppearanceProcs.h"
#include "base/ValueFields.h"
#include "core/Part.h"
#include "core/UsableValues.h"
#include <Orvane/SFFloat.h>
#include <algorithm>

namespace Orvane {

namespace {

const Part ambientIntensityPart("ambientIntensity");
const Part diffuseColorPart("diffuseColor");
const Part emissiveColorPart("emissiveColor");
const Part materialPart("material");
const Part shininessPart("shininess");
const Part specularColorPart("specularColor");
const Part texturePart("texture");
const Part textureTransformPart("textureTransform");
const Part transparencyPart("transparency");

float fraction(const Part& part, const Node& node)
{
    return std::clamp(usableNumber(part.read<SFFloat>(node).value(), 0.0F), 0.0F, 1.0F);
}

osg::Color3f scaled(const osg::Color3f& color, float factor)
{
    return osg::Color3f(color.red() * factor, color.green() * factor, color.blue() * factor);
}

/// Behaviour of a `Material`, and of the front of a `TwoSidedMaterial`.
class LitMaterialProc : public MaterialProc
{
public:
    using MaterialProc::MaterialProc;

    void describe(Surface& surface) const override
    {
        const osg::Color3f& diffuse = diffuseColorPart.read<SFColor>(node()).value();
        const osg::Color3f& emission = emissiveColorPart.read<SFColor>(node()).value();
        surface.alpha = 1.0F - fraction(transparencyPart, node());
        if (surface.kind != Surface::FACES) {
            surface.diffuse = emission;
            return;
        }
        surface.lit = true;
        surface.ambient = scaled(diffuse, fraction(ambientIntensityPart, node()));
        surface.diffuse = diffuse;
        surface.emission = emission;
        surface.specular = specularColorPart.read<SFColor>(node()).value();
        surface.shininess = fraction(shininessPart, node()) * 128.0F;
    }
};

/// Behaviour of an `UnlitMaterial`.
class UnlitMaterialProc : public MaterialProc
{
public:
    using MaterialProc::MaterialProc;

    void describe(Surface& surface) const override
    {
        surface.diffuse = emissiveColorPart.read<SFColor>(node()).value();
        surface.alpha = 1.0F - fraction(transparencyPart, node());
    }
};

const ProcRegistration appearance("Appearance", makeProc<AppearanceProc>);
const ProcRegistration material("Material", makeProc<LitMaterialProc>);
const ProcRegistration twoSidedMaterial("TwoSidedMaterial", makeProc<LitMaterialProc>);
const ProcRegistration unlitMaterial("UnlitMaterial", makeProc<UnlitMaterialProc>);

/// What X3D says of the channels of a texture: grey takes part in the colour, red, green and blue are the
/// colour; alpha is the transparency.
void applyChannels(Surface& surface)
{
    const osg::ImagePtr image = surface.image;
    const bool colored = image->hasColorChannel();
    if (colored) {
        if (surface.lit) {
            // The ambient share of the material's colour stays.
            const float diffuse = surface.diffuse.red() + surface.diffuse.green() + surface.diffuse.blue();
            const float ambient = surface.ambient.red() + surface.ambient.green() + surface.ambient.blue();
            const float share = diffuse > 0.0F ? std::min(ambient / diffuse, 1.0F) : 0.0F;
            surface.ambient = osg::Color3f(share, share, share);
        }
        surface.diffuse = osg::Color3f(1.0F, 1.0F, 1.0F);
        surface.vertexColors = Surface::NO_COLORS;
    }
    if (image->hasAlphaChannel())
        surface.alpha = 1.0F;
}

} // namespace

void AppearanceProc::describe(Surface& surface)
{
    auto* const material = elementOf<MaterialProc>(materialPart.readNode(node()));
    _material.set(*this, material);
    if (material)
        material->describe(surface);
    if (surface.kind == Surface::FACES)
        describeTexture(surface);
}

void AppearanceProc::describeTexture(Surface& surface)
{
    auto* const texture = elementOf<TextureProc>(texturePart.readNode(node()));
    auto* const transform = elementOf<TextureTransformProc>(textureTransformPart.readNode(node()));
    if (!texture && !transform) {
        _texturing.reset();
        return;
    }
    if (!_texturing)
        _texturing = std::make_unique<Texturing>();
    _texturing->texture.set(*this, texture);
    _texturing->transform.set(*this, transform);
    if (texture)
        texture->describe(surface);
    if (!surface.image)
        return;
    applyChannels(surface);
    if (transform)
        surface.textureTransform = transform->matrix();
}

} // namespace Orvane
