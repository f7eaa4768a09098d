#pragma once

#include "OSGMatrix.h"
#include "OSGStateChunk.h"

namespace osg {

class TextureTransformChunk;
using TextureTransformChunkPtr = FCPtr<StateChunkPtr, TextureTransformChunk>;

/// A matrix that the coordinates of one texture unit, its slot, go through.
class OSG_SYSTEMLIB_DLLMAPPING TextureTransformChunk : public StateChunk
{
public:
    using Ptr = TextureTransformChunkPtr;

    static TextureTransformChunkPtr create();
    static FieldContainerType& getClassType();
    FieldContainerType& getType() const override;

    const Matrix& getMatrix() const { return _matrix; }
    void setMatrix(const Matrix& matrix) { _matrix = matrix; }

    /// Whether coordinates in the system of the camera are turned into that of the world first, so that a
    /// cube map stands still when the camera turns. Default: no.
    bool getFromCamera() const { return _fromCamera; }
    void setFromCamera(bool fromCamera) { _fromCamera = fromCamera; }

    ChunkClass getChunkClass() const override { return TEXTURE_TRANSFORM; }
    UInt32 getSlotCount() const override { return MaxSlots; }
    void activate(RenderActionBase& action, UInt32 slot) override;
    void changeFrom(RenderActionBase& action, StateChunk& old, UInt32 slot) override;
    void deactivate(RenderActionBase& action, UInt32 slot) override;

protected:
    TextureTransformChunk() = default;

private:
    Matrix _matrix;
    bool _fromCamera = false;
};

} // namespace osg
