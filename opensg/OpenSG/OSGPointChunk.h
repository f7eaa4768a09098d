#pragma once

#include "OSGStateChunk.h"
#include "OSGVector.h"

namespace osg {

class PointChunk;
using PointChunkPtr = FCPtr<StateChunkPtr, PointChunk>;

/// Size of points, and how it falls with the distance.
class OSG_SYSTEMLIB_DLLMAPPING PointChunk : public StateChunk
{
public:
    using Ptr = PointChunkPtr;

    static PointChunkPtr create();
    static FieldContainerType& getClassType();
    FieldContainerType& getType() const override;

    /// In pixels; 0 and less count as 1.
    Real32 getSize() const { return _size; }
    void setSize(Real32 size) { _size = size; }
    /// The size at distance d is divided by the root of x + y d + z d^2. Default: 1, 0, 0.
    const Vec3f& getAttenuation() const { return _attenuation; }
    void setAttenuation(const Vec3f& attenuation) { _attenuation = attenuation; }
    /// Bounds of the size after the division; negative values of the second one are no bound.
    Real32 getMinSize() const { return _minSize; }
    void setMinSize(Real32 size) { _minSize = size; }
    Real32 getMaxSize() const { return _maxSize; }
    void setMaxSize(Real32 size) { _maxSize = size; }
    bool getSmooth() const { return _smooth; }
    void setSmooth(bool smooth) { _smooth = smooth; }

    ChunkClass getChunkClass() const override { return POINT; }
    void activate(RenderActionBase& action, UInt32 slot) override;
    void deactivate(RenderActionBase& action, UInt32 slot) override;

protected:
    PointChunk() = default;

private:
    Real32 _size = 1;
    Vec3f _attenuation = {1, 0, 0};
    Real32 _minSize = 0;
    Real32 _maxSize = -1;
    bool _smooth = false;
};

} // namespace osg
