#pragma once

#include "OSGMaterial.h"

namespace osg {

class ChunkMaterial;
using ChunkMaterialPtr = FCPtr<MaterialPtr, ChunkMaterial>;

/// A material that is put together from chunks, on which it holds references.
class OSG_SYSTEMLIB_DLLMAPPING ChunkMaterial : public Material
{
public:
    using Ptr = ChunkMaterialPtr;

    enum : UInt32 {
        ChunksFieldId = Material::NextFieldId,
        SlotsFieldId,
        TransparencyModeFieldId,
        NextFieldId
    };
    static constexpr BitVector ChunksFieldMask = BitVector(1) << ChunksFieldId;
    static constexpr BitVector SlotsFieldMask = BitVector(1) << SlotsFieldId;
    static constexpr BitVector TransparencyModeFieldMask = BitVector(1) << TransparencyModeFieldId;

    enum TransparencyMode : Int32 {
        TransparencyAutoDetection,
        TransparencyForceTransparent,
        TransparencyForceOpaque
    };

    static ChunkMaterialPtr create();
    static FieldContainerType& getClassType();
    FieldContainerType& getType() const override;

    /// Puts a chunk into a slot of its class, in place of the one that is there; -1 takes the first free
    /// slot, or the last. A null chunk, and a slot that the class does not have, answer false.
    bool addChunk(const StateChunkPtr& chunk, Int32 slot = -1);
    /// False when the material does not have the chunk.
    bool subChunk(const StateChunkPtr& chunk);
    void clearChunks();
    /// Null when there is none.
    StateChunkPtr findChunk(StateChunk::ChunkClass chunkClass, UInt32 slot = 0) const;

    /// Whether transparency follows from the chunks. Default: yes.
    Int32 getTransparencyMode() const { return _transparencyMode; }
    void setTransparencyMode(Int32 mode);

    bool isTransparent() const override;

protected:
    ChunkMaterial() = default;
    ~ChunkMaterial() override;

private:
    Int32 _transparencyMode = TransparencyAutoDetection;
};

} // namespace osg
