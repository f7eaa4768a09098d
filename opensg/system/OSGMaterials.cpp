#include <OpenSG/OSGBaseFunctions.h>
#include <OpenSG/OSGSimpleMaterial.h>

#include "OSGContainerType.h"
#include "OSGSceneStamp.h"

#include <algorithm>

namespace osg {

OSG_CONTAINER_TYPE(Material, AttachmentContainer)
OSG_CREATABLE_CONTAINER_TYPE(ChunkMaterial, Material)
OSG_CREATABLE_CONTAINER_TYPE(SimpleMaterial, ChunkMaterial)

void Material::setSortKey(Int32 key)
{
    SceneStamp::renew();
    _sortKey = key;
}

ChunkMaterial::~ChunkMaterial()
{
    clearChunks();
}

bool ChunkMaterial::addChunk(const StateChunkPtr& chunk, Int32 slot)
{
    if (!chunk || slot < -1 || slot >= static_cast<Int32>(chunk->getSlotCount()))
        return false;
    SceneStamp::renew();
    UInt32 chosen = slot < 0 ? 0 : static_cast<UInt32>(slot);
    if (slot < 0) {
        while (chosen + 1 < chunk->getSlotCount() && findChunk(chunk->getChunkClass(), chosen))
            ++chosen;
    }
    const UInt16 place = static_cast<UInt16>(chunk->getChunkClass() * StateChunk::MaxSlots + chosen);
    const auto found = std::lower_bound(_entries.begin(), _entries.end(), place,
                                        [](const Entry& entry, UInt16 value) { return entry.place < value; });
    if (found != _entries.end() && found->place == place) {
        setRefdCP(found->chunk, chunk);
    } else {
        addRefCP(chunk);
        _entries.insert(found, {place, chunk});
    }
    return true;
}

bool ChunkMaterial::subChunk(const StateChunkPtr& chunk)
{
    const auto found = std::find_if(_entries.begin(), _entries.end(),
                                    [&chunk](const Entry& entry) { return entry.chunk == chunk; });
    if (found == _entries.end())
        return false;
    SceneStamp::renew();
    const StateChunkPtr dropped = found->chunk;
    _entries.erase(found);
    subRefCP(dropped);
    return true;
}

void ChunkMaterial::clearChunks()
{
    SceneStamp::renew();
    std::vector<Entry> dropped;
    dropped.swap(_entries);
    for (Entry& entry : dropped)
        clearRefCP(entry.chunk);
}

StateChunkPtr ChunkMaterial::findChunk(StateChunk::ChunkClass chunkClass, UInt32 slot) const
{
    for (const Entry& entry : _entries) {
        if (entry.chunkClass() == chunkClass && entry.slot() == slot)
            return entry.chunk;
    }
    return NullFC;
}

void ChunkMaterial::setTransparencyMode(Int32 mode)
{
    SceneStamp::renew();
    _transparencyMode = mode;
}

bool ChunkMaterial::isTransparent() const
{
    if (_transparencyMode != TransparencyAutoDetection)
        return _transparencyMode == TransparencyForceTransparent;
    return std::any_of(_entries.begin(), _entries.end(),
                       [](const Entry& entry) { return entry.chunk->isTransparent(); });
}

SimpleMaterial::SimpleMaterial()
    : _colors(MaterialChunk::create())
{
    addChunk(_colors);
}

void SimpleMaterial::setTransparency(Real32 transparency)
{
    const Color4f& diffuse = _colors->getDiffuse();
    const Real32 alpha = 1 - osgClamp(0.f, transparency, 1.f);
    _colors->setDiffuse(Color4f(diffuse.red(), diffuse.green(), diffuse.blue(), alpha));
}

} // namespace osg
