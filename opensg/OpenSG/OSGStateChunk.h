#pragma once

#include "OSGAttachmentContainer.h"

namespace osg {

class RenderActionBase;
class StateChunk;

using StateChunkPtr = FCPtr<AttachmentContainerPtr, StateChunk>;

/// A part of the GL state that materials are put together from. Chunks may be shared by materials. A new kind
/// is a class with a line in `ChunkClass`.
class OSG_SYSTEMLIB_DLLMAPPING StateChunk : public AttachmentContainer
{
public:
    using Ptr = StateChunkPtr;

    /// The kinds of chunks, in the order in which they are applied.
    enum ChunkClass : UInt16 {
        MATERIAL,
        TEXTURE,
        TEXTURE_TRANSFORM,
        TEXTURE_GEN,
        BLEND,
        POLYGON,
        LINE,
        POINT,
        PROGRAM
    };

    /// A material has at most this many chunks of a class that has slots, such as one per texture unit.
    static constexpr UInt32 MaxSlots = 8;

    static FieldContainerType& getClassType();
    FieldContainerType& getType() const override;

    virtual ChunkClass getChunkClass() const = 0;
    /// How many chunks of the class a material may have.
    virtual UInt32 getSlotCount() const { return 1; }
    /// Whether what is drawn so lets shine through what is behind.
    virtual bool isTransparent() const { return false; }
    /// Whether what is drawn so has holes: places whose alpha is below a half do not show.
    virtual bool hasHoles() const { return false; }

    /// Sets the state; a context is current.
    virtual void activate(RenderActionBase& action, UInt32 slot) = 0;
    /// Sets the state where `old` of the same class is set.
    virtual void changeFrom(RenderActionBase& action, StateChunk& old, UInt32 slot);
    /// Sets the state back to what GL has at first.
    virtual void deactivate(RenderActionBase& action, UInt32 slot) = 0;

protected:
    StateChunk() = default;
};

} // namespace osg
