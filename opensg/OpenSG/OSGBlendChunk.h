#pragma once

#include "OSGColor.h"
#include "OSGStateChunk.h"

namespace osg {

class BlendChunk;
using BlendChunkPtr = FCPtr<StateChunkPtr, BlendChunk>;

/// How what is drawn mixes with what is there. Without such a chunk, transparent materials mix by their
/// alpha. Constants are OpenGL's.
class OSG_SYSTEMLIB_DLLMAPPING BlendChunk : public StateChunk
{
public:
    using Ptr = BlendChunkPtr;

    enum Factor : UInt32 {
        ZERO = 0,
        ONE = 1,
        SRC_COLOR = 0x0300,
        ONE_MINUS_SRC_COLOR = 0x0301,
        SRC_ALPHA = 0x0302,
        ONE_MINUS_SRC_ALPHA = 0x0303,
        DST_COLOR = 0x0306,
        ONE_MINUS_DST_COLOR = 0x0307
    };
    /// No test on alpha.
    static constexpr UInt32 NO_ALPHA_FUNC = 0;

    static BlendChunkPtr create();
    static FieldContainerType& getClassType();
    FieldContainerType& getType() const override;

    UInt32 getSrcFactor() const { return _srcFactor; }
    void setSrcFactor(UInt32 factor) { _srcFactor = factor; }
    UInt32 getDestFactor() const { return _destFactor; }
    void setDestFactor(UInt32 factor);
    /// For the factors that use a constant colour.
    const Color4f& getColor() const { return _color; }
    void setColor(const Color4f& color) { _color = color; }
    /// A comparison (0x0200 to 0x0207) that alpha has to pass; NO_ALPHA_FUNC, the default, for none.
    UInt32 getAlphaFunc() const { return _alphaFunc; }
    void setAlphaFunc(UInt32 function) { _alphaFunc = function; }
    Real32 getAlphaValue() const { return _alphaValue; }
    void setAlphaValue(Real32 value) { _alphaValue = value; }

    ChunkClass getChunkClass() const override { return BLEND; }
    /// True unless what is there is overwritten.
    bool isTransparent() const override { return _destFactor != ZERO; }
    void activate(RenderActionBase& action, UInt32 slot) override;
    void deactivate(RenderActionBase& action, UInt32 slot) override;

protected:
    BlendChunk() = default;

private:
    UInt32 _srcFactor = SRC_ALPHA;
    UInt32 _destFactor = ONE_MINUS_SRC_ALPHA;
    Color4f _color;
    UInt32 _alphaFunc = NO_ALPHA_FUNC;
    Real32 _alphaValue = 0;
};

} // namespace osg
