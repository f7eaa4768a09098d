#pragma once

#include "OSGStateChunk.h"

#include <utility>
#include <vector>

namespace osg {

class PolygonChunk;
using PolygonChunkPtr = FCPtr<StateChunkPtr, PolygonChunk>;

/// Which faces are drawn, and how. Without such a chunk both sides are drawn and lit. Matrices that mirror
/// do not turn front into back. Constants are OpenGL's.
class OSG_SYSTEMLIB_DLLMAPPING PolygonChunk : public StateChunk
{
public:
    using Ptr = PolygonChunkPtr;

    enum CullFace : UInt32 { CULL_NONE = 0, CULL_FRONT = 0x0404, CULL_BACK = 0x0405, CULL_BOTH = 0x0408 };
    enum FrontFace : UInt32 { CLOCKWISE = 0x0900, COUNTERCLOCKWISE = 0x0901 };
    enum Mode : UInt32 { POINT_MODE = 0x1B00, LINE_MODE = 0x1B01, FILL_MODE = 0x1B02 };

    static PolygonChunkPtr create();
    static FieldContainerType& getClassType();
    FieldContainerType& getType() const override;

    UInt32 getCullFace() const { return _cullFace; }
    void setCullFace(UInt32 face) { _cullFace = face; }
    /// The sense in which the corners of a front run. Default: counter-clockwise.
    UInt32 getFrontFace() const { return _frontFace; }
    void setFrontFace(UInt32 sense) { _frontFace = sense; }
    UInt32 getFrontMode() const { return _frontMode; }
    void setFrontMode(UInt32 mode) { _frontMode = mode; }
    UInt32 getBackMode() const { return _backMode; }
    void setBackMode(UInt32 mode) { _backMode = mode; }
    /// Depth offset of filled faces, by slope and by steps of the depth buffer.
    Real32 getOffsetFactor() const { return _offsetFactor; }
    void setOffsetFactor(Real32 factor) { _offsetFactor = factor; }
    Real32 getOffsetBias() const { return _offsetBias; }
    void setOffsetBias(Real32 bias) { _offsetBias = bias; }

    /// A pattern of 32 rows, the lowest first, of 32 pixels each, the highest bit leftmost: only pixels whose
    /// bit is set are drawn. Any other number of rows, as by default: all are.
    const std::vector<UInt32>& getStipple() const { return _stipple; }
    void setStipple(std::vector<UInt32> rows) { _stipple = std::move(rows); }

    ChunkClass getChunkClass() const override { return POLYGON; }
    void activate(RenderActionBase& action, UInt32 slot) override;
    void deactivate(RenderActionBase& action, UInt32 slot) override;

protected:
    PolygonChunk() = default;

private:
    UInt32 _cullFace = CULL_NONE;
    UInt32 _frontFace = COUNTERCLOCKWISE;
    UInt32 _frontMode = FILL_MODE;
    UInt32 _backMode = FILL_MODE;
    Real32 _offsetFactor = 0;
    Real32 _offsetBias = 0;
    std::vector<UInt32> _stipple;
};

} // namespace osg
