#pragma once

#include "OSGColor.h"
#include "OSGGLSlot.h"
#include "OSGImageFields.h"
#include "OSGStateChunk.h"

namespace osg {

class TextureChunk;
struct GLLimits;
using TextureChunkPtr = FCPtr<StateChunkPtr, TextureChunk>;

/// A texture in one of the units: an image, on which a reference is held, and how it is put on a surface. An
/// image with a depth is a volume, one with six sides a cube. Changes of the image are followed. The slot in
/// a material is the texture unit. Constants are OpenGL's.
class OSG_SYSTEMLIB_DLLMAPPING TextureChunk : public StateChunk
{
public:
    using Ptr = TextureChunkPtr;

    enum : UInt32 {
        ImageFieldId = AttachmentContainer::NextFieldId,
        FrameFieldId,
        FilterFieldId,
        EnvFieldId,
        NextFieldId
    };
    static constexpr BitVector ImageFieldMask = BitVector(1) << ImageFieldId;
    static constexpr BitVector FrameFieldMask = BitVector(1) << FrameFieldId;
    static constexpr BitVector FilterFieldMask = BitVector(1) << FilterFieldId;
    static constexpr BitVector EnvFieldMask = BitVector(1) << EnvFieldId;

    enum Wrap : UInt32 {
        CLAMP = 0x2900,
        REPEAT = 0x2901,
        CLAMP_TO_BORDER = 0x812D,
        CLAMP_TO_EDGE = 0x812F,
        MIRRORED_REPEAT = 0x8370
    };
    enum Filter : UInt32 {
        NEAREST = 0x2600,
        LINEAR = 0x2601,
        NEAREST_MIPMAP_NEAREST = 0x2700,
        LINEAR_MIPMAP_NEAREST = 0x2701,
        NEAREST_MIPMAP_LINEAR = 0x2702,
        LINEAR_MIPMAP_LINEAR = 0x2703
    };
    enum EnvMode : UInt32 {
        ENV_ADD = 0x0104,
        ENV_BLEND = 0x0BE2,
        ENV_REPLACE = 0x1E01,
        ENV_MODULATE = 0x2100,
        ENV_DECAL = 0x2101,
        ENV_COMBINE = 0x8570
    };
    /// A function of ENV_COMBINE beside those of OpenGL: argument 0 times argument 2, plus argument 1. Where
    /// a context cannot do it, arguments 0 and 1 are added.
    static constexpr UInt32 COMBINE_MODULATE_ADD = 0x8744;
    /// The arguments of ENV_COMBINE that may be set, under their OpenGL names.
    struct Combine
    {
        UInt32 rgb = ENV_MODULATE;
        UInt32 alpha = ENV_MODULATE;
        UInt32 source[2][3] = {{0x1702, 0x8578, 0x8576}, {0x1702, 0x8578, 0x8576}}; ///< rgb, alpha
        UInt32 operand[2][3] = {{0x0300, 0x0300, 0x0302}, {0x0302, 0x0302, 0x0302}};
        Real32 rgbScale = 1;
        Real32 alphaScale = 1;
    };

    static TextureChunkPtr create();
    static FieldContainerType& getClassType();
    FieldContainerType& getType() const override;

    const ImagePtr& getImage() const { return _image; }
    void setImage(const ImagePtr& image);
    /// Which frame of the image is shown; a frame that it does not have counts as the last.
    UInt32 getFrame() const { return _frame; }
    void setFrame(UInt32 frame);

    UInt32 getWrapS() const { return _wrap[0]; }
    UInt32 getWrapT() const { return _wrap[1]; }
    UInt32 getWrapR() const { return _wrap[2]; }
    void setWrapS(UInt32 wrap) { setWrap(0, wrap); }
    void setWrapT(UInt32 wrap) { setWrap(1, wrap); }
    void setWrapR(UInt32 wrap) { setWrap(2, wrap); }
    /// Mipmaps are made when the filter needs them and the image has none.
    UInt32 getMinFilter() const { return _minFilter; }
    void setMinFilter(UInt32 filter);
    UInt32 getMagFilter() const { return _magFilter; }
    void setMagFilter(UInt32 filter);
    /// 1 or above; kept within what GL offers.
    Real32 getAnisotropy() const { return _anisotropy; }
    void setAnisotropy(Real32 anisotropy);
    const Color4f& getBorderColor() const { return _borderColor; }
    void setBorderColor(const Color4f& color);

    UInt32 getEnvMode() const { return _envMode; }
    void setEnvMode(UInt32 mode) { _envMode = mode; }
    const Color4f& getEnvColor() const { return _envColor; }
    void setEnvColor(const Color4f& color) { _envColor = color; }
    const Combine& getEnvCombine() const { return _combine; }
    void setEnvCombine(const Combine& combine) { _combine = combine; }

    /// Which of a geometry's coordinates the texture takes; those of its own unit by default. A geometry with
    /// fewer gives its last ones.
    UInt32 getCoordSet(UInt32 slot) const { return _coordSet < 0 ? slot : static_cast<UInt32>(_coordSet); }
    /// A set of `MaxSlots` or more counts as the default.
    void setCoordSet(UInt32 set);

    void changed(BitVector whichField, UInt32 origin) override;

    ChunkClass getChunkClass() const override { return TEXTURE; }
    UInt32 getSlotCount() const override { return MaxSlots; }
    /// True for an image with shades of alpha; one of alpha all or nothing is drawn through a test.
    bool isTransparent() const override;
    bool hasHoles() const override;
    void activate(RenderActionBase& action, UInt32 slot) override;
    void deactivate(RenderActionBase& action, UInt32 slot) override;

    /// Puts the texture into a unit without having fixed drawing use it. Answers its kind, such as
    /// GL_TEXTURE_2D; 0 when there is nothing to show, and the unit stays as it is.
    UInt32 bind(RenderActionBase& action, UInt32 unit);

protected:
    TextureChunk() = default;
    ~TextureChunk() override;

private:
    friend class GLTexture;

    enum class Alpha { UNKNOWN, NONE, BINARY, SHADES };

    void setWrap(UInt32 axis, UInt32 wrap);
    Alpha getAlpha() const;
    void applyEnv(const GLLimits& limits) const;

    ImagePtr _image;
    UInt32 _frame = 0;
    UInt32 _wrap[3] = {REPEAT, REPEAT, REPEAT};
    UInt32 _minFilter = LINEAR_MIPMAP_LINEAR;
    UInt32 _magFilter = LINEAR;
    Real32 _anisotropy = 1;
    Color4f _borderColor;
    UInt32 _envMode = ENV_MODULATE;
    Color4f _envColor;
    Combine _combine;
    Int32 _coordSet = -1;
    mutable Alpha _alpha = Alpha::UNKNOWN;
    UInt64 _imageStamp = 0;
    GLSlot _glSlot;
};

} // namespace osg
