#pragma once

#include "core/ElementProc.h"
#include "core/Surface.h"
#include <OpenSG/OSGMatrix.h>
#include <Orvane/Export.h>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace Orvane {

class ShaderProc;

/// Coordinates of a geometry, by the name that textures know them by.
struct TexChannel
{
    std::string mapping;
    SurfaceTexture::Coordinates coordinates = SurfaceTexture::GIVEN;
};

/// Behaviour of a texture, of one image or of several.
class ORVANE_API TextureProc : public DescriptionProc
{
public:
    using DescriptionProc::DescriptionProc;

    /// Appends what \a surface needs of the texture; nothing when it has no image. The set of coordinates of
    /// each is its number in the texture.
    virtual void describe(Surface& surface) = 0;
    /// True when it says itself how its colours join those of the material.
    virtual bool hasStages() const { return false; }

    /// The (first) image; null when there is none.
    osg::ImagePtr image();
};

/// A texture of a material, with the name of the coordinates that it takes.
struct MaterialTexture
{
    TextureProc* proc = nullptr; ///< null when there is none
    std::string mapping;
    SurfaceShading::Role role = SurfaceShading::COLOR;

    bool operator==(const MaterialTexture& other) const
    {
        return proc == other.proc && mapping == other.mapping && role == other.role;
    }
};

/// Behaviour of a material: the colours of a surface.
class ORVANE_API MaterialProc : public DescriptionProc
{
public:
    using DescriptionProc::DescriptionProc;

    /// Fills the colours of \a surface, whose kind is known.
    virtual void describe(Surface& surface) const = 0;

    /// The texture that the diffuse colour, or that of an unlit surface, is multiplied with.
    virtual MaterialTexture colorTexture() { return {}; }
    /// The texture of the emissive colour of a lit surface.
    virtual MaterialTexture emissionTexture() { return {}; }
    /// Fills what programs take of a side besides colours and textures.
    virtual void describeShading(SurfaceShading::Side& /*side*/) const {}
    /// The textures that only programs can use, after the two above.
    virtual std::vector<MaterialTexture> shadingTextures() { return {}; }
    /// True for colours that are shown as they are.
    virtual bool isUnlit() const { return false; }
    /// True when coloured textures of the appearance are multiplied with the colour in every version of X3D.
    virtual bool tintsTextures() const { return false; }
};

/// Behaviour of a transformation of texture coordinates.
class ORVANE_API TextureTransformProc : public DescriptionProc
{
public:
    using DescriptionProc::DescriptionProc;

    /// The matrix for texture \a stage of the appearance, and for a texture with the name \a mapping; none
    /// when the coordinates stay as they are.
    virtual std::optional<osg::Matrix> matrixFor(unsigned int stage, const std::string& mapping) = 0;
};

/// Behaviour of a node that tells how lines, points or faces are drawn.
class ORVANE_API LookProc : public DescriptionProc
{
public:
    using DescriptionProc::DescriptionProc;

    /// Fills the part of \a surface that it tells of.
    virtual void describe(Surface& surface) = 0;
    /// Makes \a surface the one that is drawn over the first. False when there is none.
    virtual bool describeOverlay(Surface& /*surface*/) { return false; }
};

/// Behaviour of an `Appearance`.
class ORVANE_API AppearanceProc : public DescriptionProc
{
public:
    using DescriptionProc::DescriptionProc;
    ~AppearanceProc() override;

    /// Fills a surface of which the kind, `solid` and the vertex colours are known. \a channels are the
    /// coordinates that the geometry has for textures.
    void describe(Surface& surface, const std::vector<TexChannel>& channels);
    /// Fills the surface that is drawn over that of `describe`, which was called before. False when there is
    /// none.
    bool describeOverlay(Surface& surface);

private:
    /// What few appearances have.
    struct Texturing
    {
        Use texture;
        Use transform;
    };
    struct Looks
    {
        Use backMaterial;
        bool isBackUsed = false; ///< it is of the front's kind
        Use fill;
        Use line;
        Use point;
    };

    /// The shaders, of which the first usable one draws.
    struct Shading
    {
        std::vector<Use> shaders;
        Use selected;
    };

    /// What textures of materials are put on with.
    struct TextureTools
    {
        TextureTransformProc* transform;
        const std::vector<TexChannel>& channels;
        TextureProc* texture; ///< that of the appearance
    };

    void describeAlpha(Surface& surface);
    bool describeBack(Surface& surface);
    void describeLooks(Surface& surface);
    void describeShader(Surface& surface);
    void describeShading(Surface& surface, MaterialProc& material, const TextureTools& tools);
    void addShading(Surface& surface, const MaterialTexture& texture, SurfaceShading::Sides sides,
                    const TextureTools& tools);
    void describeTextures(Surface& surface, MaterialProc* material, const std::vector<TexChannel>& channels);
    bool multipliesTexture() const;
    void selectShader(ShaderProc* shader);

    Use _material;
    std::unique_ptr<Texturing> _texturing;
    std::unique_ptr<Looks> _looks;
    std::unique_ptr<Shading> _shading;
};

} // namespace Orvane
