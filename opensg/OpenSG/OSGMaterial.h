#pragma once

#include "OSGMaterialFields.h"
#include "OSGStateChunk.h"

#include <vector>

namespace osg {

/// How a drawable looks: the chunks of GL state that it is drawn with.
class OSG_SYSTEMLIB_DLLMAPPING Material : public AttachmentContainer
{
public:
    using Ptr = MaterialPtr;

    /// A chunk with its place in the state.
    struct Entry
    {
        UInt16 place; ///< class * MaxSlots + slot
        StateChunkPtr chunk;

        StateChunk::ChunkClass chunkClass() const
        {
            return static_cast<StateChunk::ChunkClass>(place / StateChunk::MaxSlots);
        }
        UInt32 slot() const { return place % StateChunk::MaxSlots; }
    };

    enum : UInt32 { SortKeyFieldId = AttachmentContainer::NextFieldId, NextFieldId };
    static constexpr BitVector SortKeyFieldMask = BitVector(1) << SortKeyFieldId;

    static FieldContainerType& getClassType();
    FieldContainerType& getType() const override;

    /// The chunks by rising places, no two at one place.
    const std::vector<Entry>& getEntries() const { return _entries; }
    /// Whether what is drawn so lets shine through what is behind.
    virtual bool isTransparent() const = 0;

    /// Among what is opaque, materials with a lower key are drawn first; -128 to 127, 0 at first.
    Int32 getSortKey() const { return _sortKey; }
    void setSortKey(Int32 key);

protected:
    Material() = default;

    std::vector<Entry> _entries;

private:
    Int32 _sortKey = 0;
};

} // namespace osg
