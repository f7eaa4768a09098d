#include "core/AppearanceProcs.h"
#include "base/Graph.h"
#include "core/Part.h"
#include "core/ShaderProc.h"
#include "core/UsableValues.h"
#include <Orvane/MFNode.h>
#include <Orvane/SFFloat.h>
#include <Orvane/SFString.h>
#include <algorithm>

namespace Orvane {

namespace {

const Part alphaCutoffPart("alphaCutoff");
const Part alphaModePart("alphaMode");
const Part backMaterialPart("backMaterial");
const Part fillPropertiesPart("fillProperties");
const Part linePropertiesPart("lineProperties");
const Part materialPart("material");
const Part pointPropertiesPart("pointProperties");
const Part shadersPart("shaders");
const Part texturePart("texture");
const Part textureTransformPart("textureTransform");

const ProcRegistration appearance("Appearance", makeProc<AppearanceProc>);

/// What becomes of colours below an image that has colours: the ambient share stays.
void whiten(SurfaceColors& colors, bool lit)
{
    if (lit) {
        const float diffuse = colors.diffuse.red() + colors.diffuse.green() + colors.diffuse.blue();
        const float ambient = colors.ambient.red() + colors.ambient.green() + colors.ambient.blue();
        const float share = diffuse > 0.0F ? std::min(ambient / diffuse, 1.0F) : 0.0F;
        colors.ambient = osg::Color3f(share, share, share);
    }
    colors.diffuse = osg::Color3f(1.0F, 1.0F, 1.0F);
}

/// Since this version of X3D the texture of an appearance is multiplied with the material.
constexpr unsigned int tintingVersion = 40;

/// What X3D said before of the channels of a texture: grey takes part in the colour, red, green and blue are
/// the colour; alpha is the transparency.
void applyChannels(Surface& surface)
{
    const osg::ImagePtr image = surface.textures.back().image;
    if (image->hasColorChannel()) {
        whiten(surface, surface.lit);
        if (surface.back)
            whiten(*surface.back, surface.lit);
        // Without lights colours of vertices come in whether they are asked for or not.
        if (!surface.lit && surface.vertexColors != Surface::NO_COLORS)
            surface.textures.back().envMode = osg::TextureChunk::ENV_REPLACE;
        surface.vertexColors = Surface::NO_COLORS;
    }
    if (image->hasAlphaChannel()) {
        surface.alpha = 1.0F;
        if (surface.back)
            surface.back->alpha = 1.0F;
    }
}

/// Makes colours that are shown as they are into those of a lit surface, which alone has two sides.
void shineAlone(SurfaceColors& colors)
{
    colors.emission = colors.diffuse;
    colors.ambient = colors.diffuse = colors.specular = osg::Color3f();
}

/// Has the last texture add light of its own, as bright as the emissive colour was, to what is below.
void emitTexture(Surface& surface)
{
    constexpr osg::UInt32 Texture = 0x1702;
    constexpr osg::UInt32 Constant = 0x8576;
    constexpr osg::UInt32 Previous = 0x8578;
    constexpr osg::UInt32 Color = 0x0300;
    constexpr osg::UInt32 Alpha = 0x0302;
    SurfaceTexture& texture = surface.textures.back();
    texture.envMode = osg::TextureChunk::ENV_COMBINE;
    texture.combine.rgb = osg::TextureChunk::COMBINE_MODULATE_ADD;
    texture.combine.alpha = osg::TextureChunk::ENV_REPLACE;
    const osg::UInt32 sources[] = {Texture, Previous, Constant};
    std::copy_n(sources, 3, texture.combine.source[0]);
    std::fill_n(texture.combine.operand[0], 3, Color);
    texture.combine.source[1][0] = Previous;
    texture.combine.operand[1][0] = Alpha;
    const osg::Color3f& emission = surface.emission;
    texture.factor = osg::Color4f(emission.red(), emission.green(), emission.blue(), 1.0F);
    surface.emission = osg::Color3f();
}

/// Gives the textures of \a surface from \a first on the coordinates that they ask for.
void findCoordinates(Surface& surface, std::size_t first, const std::string& mapping,
                     TextureTransformProc* transform, const std::vector<TexChannel>& channels)
{
    const auto named = std::find_if(channels.begin(), channels.end(), [&mapping](const TexChannel& channel) {
        return !mapping.empty() && channel.mapping == mapping;
    });
    for (std::size_t i = first; i < surface.textures.size(); ++i) {
        SurfaceTexture& texture = surface.textures[i];
        if (transform)
            texture.transform = transform->matrixFor(texture.coordSet, mapping);
        if (channels.empty()) {
            texture.coordSet = 0;
            // Flat coordinates lead nowhere in a cube: it is mirrored.
            if (texture.image->getSideCount() == 6)
                texture.coordinates = SurfaceTexture::CAMERA_REFLECTION;
            continue;
        }
        if (named != channels.end())
            texture.coordSet = static_cast<unsigned int>(named - channels.begin());
        texture.coordSet = std::min(texture.coordSet, static_cast<unsigned int>(channels.size() - 1));
        texture.coordinates = channels[texture.coordSet].coordinates;
    }
}

/// All textures of a material; \a common is that of the colour where the material has none.
std::vector<MaterialTexture> texturesOf(MaterialProc& material, TextureProc* common)
{
    std::vector<MaterialTexture> result;
    MaterialTexture color = material.colorTexture();
    if (!color.proc)
        color = {common, std::string(), SurfaceShading::COLOR};
    if (color.proc)
        result.push_back(std::move(color));
    for (MaterialTexture& texture : material.shadingTextures())
        result.push_back(std::move(texture));
    MaterialTexture emission = material.emissionTexture();
    emission.role = SurfaceShading::EMISSION;
    if (emission.proc)
        result.push_back(std::move(emission));
    return result;
}

bool contains(const std::vector<MaterialTexture>& textures, const MaterialTexture& texture)
{
    return std::find(textures.begin(), textures.end(), texture) != textures.end();
}

/// True for textures that fixed steps cannot show; what glows itself must not take the colour's texture,
/// unless an emissive texture keeps it apart anyway.
bool needProgram(const std::vector<MaterialTexture>& textures, bool keepsGlow)
{
    const auto hasRole = [&textures](auto isWanted) {
        return std::any_of(textures.begin(), textures.end(),
                           [&](const MaterialTexture& texture) { return isWanted(texture.role); });
    };
    if (hasRole([](auto role) { return role != SurfaceShading::COLOR && role != SurfaceShading::EMISSION; }))
        return true;
    return keepsGlow && !hasRole([](auto role) { return role == SurfaceShading::EMISSION; });
}

bool isBlack(const osg::Color3f& color)
{
    return !(color.red() > 0.0F) && !(color.green() > 0.0F) && !(color.blue() > 0.0F);
}

/// True for a surface with light of its own, on whatever side.
bool glows(const Surface& surface)
{
    return !isBlack(surface.emission) || (surface.back && !isBlack(surface.back->emission));
}

} // namespace

osg::ImagePtr TextureProc::image()
{
    Surface surface;
    describe(surface);
    return surface.textures.empty() ? osg::ImagePtr() : osg::ImagePtr(surface.textures.front().image.get());
}

AppearanceProc::~AppearanceProc()
{
    if (_shading)
        selectShader(nullptr);
}

void AppearanceProc::describe(Surface& surface, const std::vector<TexChannel>& channels)
{
    auto* const material = elementOf<MaterialProc>(materialPart.readNode(node()));
    _material.set(*this, material);
    if (material)
        material->describe(surface);
    describeLooks(surface);
    describeAlpha(surface);
    if (surface.kind == Surface::FACES)
        describeTextures(surface, material, channels);
    describeShader(surface);
}

void AppearanceProc::describeShader(Surface& surface)
{
    const auto& shaders = shadersPart.read<MFNode>(node());
    if (shaders.size() == 0) {
        if (_shading)
            selectShader(nullptr);
        _shading.reset();
        return;
    }
    if (!_shading)
        _shading = std::make_unique<Shading>();
    _shading->shaders.resize(shaders.size());
    ShaderProc* selected = nullptr;
    for (unsigned int i = 0; i < shaders.size(); ++i) {
        auto* const shader = elementOf<ShaderProc>(shaders.elem(static_cast<int>(i)).directNode());
        _shading->shaders[i].set(*this, shader);
        if (shader && !selected && shader->isUsable())
            selected = shader;
    }
    selectShader(selected);
    if (selected)
        surface.program = osg::StateChunkPtr(selected->chunk());
}

void AppearanceProc::selectShader(ShaderProc* shader)
{
    auto* const last = static_cast<ShaderProc*>(_shading->selected.element());
    if (last == shader)
        return;
    if (last)
        last->deselect();
    if (shader)
        shader->select();
    _shading->selected.set(*this, shader);
}

bool AppearanceProc::describeOverlay(Surface& surface)
{
    auto* const fill = _looks ? static_cast<LookProc*>(_looks->fill.element()) : nullptr;
    return fill && fill->describeOverlay(surface);
}

void AppearanceProc::describeAlpha(Surface& surface)
{
    const std::string& mode = alphaModePart.read<SFString>(node()).value();
    if (mode == "OPAQUE")
        surface.alphaMode = Surface::NO_ALPHA;
    else if (mode == "BLEND")
        surface.alphaMode = Surface::BLENDED_ALPHA;
    else if (mode == "MASK") {
        surface.alphaMode = Surface::MASKED_ALPHA;
        const float cutoff = usableNumber(alphaCutoffPart.read<SFFloat>(node()).value(), 0.5F);
        surface.alphaCutoff = std::clamp(cutoff, 0.0F, 1.0F);
    } else if (mode != "AUTO" && !mode.empty())
        complain("alphaMode",
                 "expected AUTO, OPAQUE, MASK or BLEND, found \"" + mode + "\"; it counts as AUTO");
}

void AppearanceProc::describeLooks(Surface& surface)
{
    auto* const back = elementOf<MaterialProc>(backMaterialPart.readNode(node()));
    auto* const fill = elementOf<LookProc>(fillPropertiesPart.readNode(node()));
    auto* const line = elementOf<LookProc>(linePropertiesPart.readNode(node()));
    auto* const point = elementOf<LookProc>(pointPropertiesPart.readNode(node()));
    if (!back && !fill && !line && !point) {
        _looks.reset();
        return;
    }
    if (!_looks)
        _looks = std::make_unique<Looks>();
    _looks->backMaterial.set(*this, back);
    _looks->fill.set(*this, fill);
    _looks->line.set(*this, line);
    _looks->point.set(*this, point);
    for (LookProc* const look : {fill, line, point}) {
        if (look)
            look->describe(surface);
    }
    _looks->isBackUsed = back && describeBack(surface);
}

/// False when the material cannot be that of the back.
bool AppearanceProc::describeBack(Surface& surface)
{
    Surface back;
    back.kind = surface.kind;
    static_cast<MaterialProc*>(_looks->backMaterial.element())->describe(back);
    const bool hasColors = surface.vertexColors != Surface::NO_COLORS;
    if (surface.lit != back.lit || !_material.element() || (!surface.lit && hasColors)) {
        complain("backMaterial", "expected two materials of a kind, found others; the front's counts");
        return false;
    }
    if (!surface.lit) {
        shineAlone(surface);
        shineAlone(back);
        surface.lit = true;
    }
    surface.back = static_cast<const SurfaceColors&>(back);
    // Two sides by one program need materials of one model.
    if (surface.shading && back.shading)
        surface.shading->sides[1] = back.shading->sides[0];
    else
        surface.shading.reset();
    return true;
}

bool AppearanceProc::multipliesTexture() const
{
    return fileVersion(node().nameSpace()) >= tintingVersion;
}

void AppearanceProc::describeTextures(Surface& surface, MaterialProc* material,
                                      const std::vector<TexChannel>& channels)
{
    auto* const texture = elementOf<TextureProc>(texturePart.readNode(node()));
    auto* const transform = elementOf<TextureTransformProc>(textureTransformPart.readNode(node()));
    if (!texture && !transform)
        _texturing.reset();
    else if (!_texturing)
        _texturing = std::make_unique<Texturing>();
    if (_texturing) {
        _texturing->texture.set(*this, texture);
        _texturing->transform.set(*this, transform);
    }
    const MaterialTexture color = material ? material->colorTexture() : MaterialTexture();
    if (color.proc) {
        color.proc->describe(surface);
        findCoordinates(surface, 0, color.mapping, transform, channels);
    } else if (texture) {
        texture->describe(surface);
        const bool tints = multipliesTexture() || (material && material->tintsTextures());
        if (!surface.textures.empty() && !texture->hasStages() && !tints)
            applyChannels(surface);
        findCoordinates(surface, 0, std::string(), transform, channels);
    }
    if (material && surface.lit)
        describeShading(surface, *material, {transform, channels, texture});
    const MaterialTexture emission =
        material && surface.lit ? material->emissionTexture() : MaterialTexture();
    if (!emission.proc)
        return;
    const std::size_t before = surface.textures.size();
    emission.proc->describe(surface);
    if (surface.textures.size() == before + 1) {
        emitTexture(surface);
        findCoordinates(surface, before, emission.mapping, transform, channels);
    } else
        surface.textures.resize(before);
}

/// Adds what programs make of the textures of the materials, where these have any that only programs can
/// show, or the two sides have others, or light of its own must stay clear of the texture of the colour.
void AppearanceProc::describeShading(Surface& surface, MaterialProc& material, const TextureTools& tools)
{
    const bool isFixed =
        surface.textures.size() > 1 ||
        (!surface.textures.empty() && surface.textures[0].envMode != osg::TextureChunk::ENV_MODULATE);
    if (isFixed) {
        surface.shading.reset();
        return;
    }
    auto* const back =
        _looks && _looks->isBackUsed ? static_cast<MaterialProc*>(_looks->backMaterial.element()) : nullptr;
    const std::vector<MaterialTexture> front = texturesOf(material, tools.texture);
    const std::vector<MaterialTexture> behind =
        back ? texturesOf(*back, tools.texture) : std::vector<MaterialTexture>();
    const bool isUnlit = material.isUnlit();
    if (!surface.shading) {
        const bool keepsGlow = !isUnlit && !surface.textures.empty() && glows(surface) &&
                               (material.colorTexture().proc || multipliesTexture());
        const bool sidesDiffer =
            back && !std::is_permutation(front.begin(), front.end(), behind.begin(), behind.end());
        if (!sidesDiffer && !needProgram(front, keepsGlow))
            return;
        surface.shading.emplace();
    }
    SurfaceShading& shading = *surface.shading;
    material.describeShading(shading.sides[0]);
    (back ? *back : material).describeShading(shading.sides[1]);
    if (shading.model == SurfaceShading::PHONG) {
        shading.tintsAll = isUnlit;
        shading.sides[0].emission = surface.emission;
        shading.sides[1].emission = surface.back ? surface.back->emission : surface.emission;
    }
    for (const MaterialTexture& texture : front) {
        const bool isShared = !back || contains(behind, texture);
        addShading(surface, texture, isShared ? SurfaceShading::BOTH_SIDES : SurfaceShading::FRONT, tools);
    }
    for (const MaterialTexture& texture : behind) {
        if (!contains(front, texture))
            addShading(surface, texture, SurfaceShading::BACK, tools);
    }
}

void AppearanceProc::addShading(Surface& surface, const MaterialTexture& texture, SurfaceShading::Sides sides,
                                const TextureTools& tools)
{
    Surface alone;
    texture.proc->describe(alone);
    if (alone.textures.size() != 1)
        return;
    if (surface.shading->textures.size() == osg::StateChunk::MaxSlots) {
        complain("material", "expected " + std::to_string(osg::StateChunk::MaxSlots) +
                                 " textures of materials or fewer, found more; the others are left out");
        return;
    }
    findCoordinates(alone, 0, texture.mapping, tools.transform, tools.channels);
    surface.unseenBy |= alone.unseenBy;
    surface.shading->textures.push_back({texture.role, std::move(alone.textures[0]), sides});
}

} // namespace Orvane
