#pragma once

#include "OSGStateChunk.h"
#include "OSGVector.h"

namespace osg {

class TexGenChunk;
using TexGenChunkPtr = FCPtr<StateChunkPtr, TexGenChunk>;

/// Coordinates of one texture unit, its slot, that GL makes from positions and normals in place of those that
/// a geometry has. Constants are OpenGL's.
class OSG_SYSTEMLIB_DLLMAPPING TexGenChunk : public StateChunk
{
public:
    using Ptr = TexGenChunkPtr;

    /// Where a coordinate comes from: a plane in the system of the geometry or of the eye, or what the eye
    /// sees by the normal.
    enum GenFunc : UInt32 {
        NO_GEN = 0,
        EYE_LINEAR = 0x2400,
        OBJECT_LINEAR = 0x2401,
        SPHERE_MAP = 0x2402,
        NORMAL_MAP = 0x8511,
        REFLECTION_MAP = 0x8512
    };

    static TexGenChunkPtr create();
    static FieldContainerType& getClassType();
    FieldContainerType& getType() const override;

    UInt32 getGenFuncS() const { return _functions[0]; }
    UInt32 getGenFuncT() const { return _functions[1]; }
    UInt32 getGenFuncR() const { return _functions[2]; }
    UInt32 getGenFuncQ() const { return _functions[3]; }
    void setGenFuncS(UInt32 function) { _functions[0] = function; }
    void setGenFuncT(UInt32 function) { _functions[1] = function; }
    /// Q and R have no sphere map, Q no other map either.
    void setGenFuncR(UInt32 function) { _functions[2] = function; }
    void setGenFuncQ(UInt32 function) { _functions[3] = function; }

    /// The planes of the linear functions. Default: the axis of each coordinate.
    const Vec4f& getGenFuncSPlane() const { return _planes[0]; }
    const Vec4f& getGenFuncTPlane() const { return _planes[1]; }
    const Vec4f& getGenFuncRPlane() const { return _planes[2]; }
    const Vec4f& getGenFuncQPlane() const { return _planes[3]; }
    void setGenFuncSPlane(const Vec4f& plane) { _planes[0] = plane; }
    void setGenFuncTPlane(const Vec4f& plane) { _planes[1] = plane; }
    void setGenFuncRPlane(const Vec4f& plane) { _planes[2] = plane; }
    void setGenFuncQPlane(const Vec4f& plane) { _planes[3] = plane; }

    ChunkClass getChunkClass() const override { return TEXTURE_GEN; }
    UInt32 getSlotCount() const override { return MaxSlots; }
    void activate(RenderActionBase& action, UInt32 slot) override;
    void deactivate(RenderActionBase& action, UInt32 slot) override;

protected:
    TexGenChunk() = default;

private:
    UInt32 _functions[4] = {NO_GEN, NO_GEN, NO_GEN, NO_GEN};
    Vec4f _planes[4] = {{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}};
};

} // namespace osg
