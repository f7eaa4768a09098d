#pragma once

#include "OSGColor.h"
#include "OSGStateChunk.h"

#include <memory>

namespace osg {

class MaterialChunk;
using MaterialChunkPtr = FCPtr<StateChunkPtr, MaterialChunk>;

/// The colours of a surface under lights. A geometry's own colours stand for those that the colour material
/// names. Starts with GL's material.
class OSG_SYSTEMLIB_DLLMAPPING MaterialChunk : public StateChunk
{
public:
    using Ptr = MaterialChunkPtr;

    /// The colours of one side.
    struct Side
    {
        Color4f ambient = {0.2f, 0.2f, 0.2f, 1.f};
        Color4f diffuse = {0.8f, 0.8f, 0.8f, 1.f};
        Color4f specular = {0.f, 0.f, 0.f, 1.f};
        Color4f emission = {0.f, 0.f, 0.f, 1.f};
        Real32 shininess = 0; ///< 0 to 128
    };

    /// Values of the colour material, which are OpenGL's.
    enum ColorMaterial : UInt32 {
        NO_COLOR_MATERIAL = 0,
        AMBIENT_COLOR = 0x1200,
        DIFFUSE_COLOR = 0x1201,
        SPECULAR_COLOR = 0x1202,
        EMISSION_COLOR = 0x1600,
        AMBIENT_AND_DIFFUSE_COLOR = 0x1602
    };

    static MaterialChunkPtr create();
    static FieldContainerType& getClassType();
    FieldContainerType& getType() const override;

    const Color4f& getAmbient() const { return _front.ambient; }
    void setAmbient(const Color4f& color) { _front.ambient = color; }
    /// The alpha is that of the surface. An unlit surface shows this colour as it is.
    const Color4f& getDiffuse() const { return _front.diffuse; }
    void setDiffuse(const Color4f& color);
    const Color4f& getSpecular() const { return _front.specular; }
    void setSpecular(const Color4f& color) { _front.specular = color; }
    const Color4f& getEmission() const { return _front.emission; }
    void setEmission(const Color4f& color) { _front.emission = color; }
    /// The exponent of highlights, kept within 0 and 128.
    Real32 getShininess() const { return _front.shininess; }
    void setShininess(Real32 shininess);

    /// The colours of the side that faces away; null when both sides have the same.
    const Side* getBack() const { return _back.get(); }
    void setBack(const Side& side);
    void clearBack();

    /// Whether lights count. Default: yes.
    bool getLit() const { return _lit; }
    void setLit(bool lit) { _lit = lit; }
    /// Default: diffuse.
    UInt32 getColorMaterial() const { return _colorMaterial; }
    void setColorMaterial(UInt32 mode);

    ChunkClass getChunkClass() const override { return MATERIAL; }
    bool isTransparent() const override;
    void activate(RenderActionBase& action, UInt32 slot) override;
    void changeFrom(RenderActionBase& action, StateChunk& old, UInt32 slot) override;
    void deactivate(RenderActionBase& action, UInt32 slot) override;

protected:
    MaterialChunk() = default;

private:
    Side _front;
    std::unique_ptr<Side> _back;
    bool _lit = true;
    UInt32 _colorMaterial = DIFFUSE_COLOR;
};

} // namespace osg
