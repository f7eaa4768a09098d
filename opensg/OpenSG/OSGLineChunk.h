#pragma once

#include "OSGStateChunk.h"

namespace osg {

class LineChunk;
using LineChunkPtr = FCPtr<StateChunkPtr, LineChunk>;

/// Width and pattern of lines.
class OSG_SYSTEMLIB_DLLMAPPING LineChunk : public StateChunk
{
public:
    using Ptr = LineChunkPtr;

    static LineChunkPtr create();
    static FieldContainerType& getClassType();
    FieldContainerType& getType() const override;

    /// In pixels; 0 and less count as 1.
    Real32 getWidth() const { return _width; }
    void setWidth(Real32 width) { _width = width; }
    /// 16 bits, lowest first, each for `repeat` pixels; all ones, the default, is a solid line.
    UInt16 getStipplePattern() const { return _stipplePattern; }
    void setStipplePattern(UInt16 pattern) { _stipplePattern = pattern; }
    Int32 getStippleRepeat() const { return _stippleRepeat; }
    void setStippleRepeat(Int32 repeat) { _stippleRepeat = repeat; }
    bool getSmooth() const { return _smooth; }
    void setSmooth(bool smooth) { _smooth = smooth; }

    ChunkClass getChunkClass() const override { return LINE; }
    void activate(RenderActionBase& action, UInt32 slot) override;
    void deactivate(RenderActionBase& action, UInt32 slot) override;

protected:
    LineChunk() = default;

private:
    Real32 _width = 1;
    UInt16 _stipplePattern = 0xffff;
    Int32 _stippleRepeat = 1;
    bool _smooth = false;
};

} // namespace osg
