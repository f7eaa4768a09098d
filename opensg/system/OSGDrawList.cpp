#include "OSGDrawList.h"

#include <OpenSG/OSGBlendChunk.h>
#include <OpenSG/OSGFog.h>
#include <OpenSG/OSGGeometry.h>
#include <OpenSG/OSGLight.h>
#include <OpenSG/OSGMaterial.h>
#include <OpenSG/OSGMaterialChunk.h>
#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGSHLChunk.h>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace osg {

namespace {

const UInt16 colorPlace = StateChunk::MATERIAL * StateChunk::MaxSlots;
const UInt16 blendPlace = StateChunk::BLEND * StateChunk::MaxSlots;
const UInt16 programPlace = StateChunk::PROGRAM * StateChunk::MaxSlots;
// Of the distance to a light, the size of faces over which it changes much; lights that end somewhere must be
// found sooner.
const Real32 nearPoint = 0.25f;
const Real32 nearCone = 0.05f;
const UInt32 greater = 0x0204; // of the functions of the alpha test

// Stand for what a material does not have. Never destroyed: pictures may be drawn until the process ends.
StateChunk* defaultColors()
{
    static const MaterialChunkPtr chunk = MaterialChunk::create();
    return chunk.getCPtr();
}

StateChunk* defaultBlending()
{
    static const BlendChunkPtr chunk = BlendChunk::create();
    return chunk.getCPtr();
}

// What is opaque but for holes.
StateChunk* defaultHoles()
{
    static const BlendChunkPtr chunk = [] {
        const BlendChunkPtr made = BlendChunk::create();
        made->setSrcFactor(BlendChunk::ONE);
        made->setDestFactor(BlendChunk::ZERO);
        made->setAlphaFunc(greater);
        made->setAlphaValue(0.5f);
        return made;
    }();
    return chunk.getCPtr();
}

// Orders as the number does; no number comes first.
UInt32 sortableBits(Real32 value)
{
    UInt32 bits = 0;
    std::memcpy(&bits, &value, sizeof(bits));
    return bits & 0x80000000U ? ~bits : bits | 0x80000000U;
}

} // namespace

void DrawList::clear()
{
    _lights.clear();
    _fogs.clear();
    _planes.clear();
    _items.clear();
    _states.clear();
    _boxes.clear();
    _opaque.clear();
    _transparent.clear();
    // The outermost scope, where nothing acts.
    _scopes.clear();
    _scopes.push_back({0, none, none, none, true});
    _openScopes.assign(1, 0);
    _openMaterials.assign(1, nullptr);
}

void DrawList::pushLight(const Light& light, const Matrix& toWorld)
{
    if (!light.getOn()) {
        _openScopes.push_back(_openScopes.back());
        return;
    }
    openScope(static_cast<UInt32>(_lights.size()), _scopes[_openScopes.back()].fog, none);
    _lights.push_back({&light, toWorld, toWorld, light.getSource() != nullptr, Pnt3f(), light.getRange()});
}

void DrawList::pushFog(const Fog& fog, const Matrix& toWorld)
{
    openScope(none, static_cast<UInt32>(_fogs.size()), none);
    _fogs.push_back({&fog, toWorld, toWorld});
}

void DrawList::pushClipPlane(const ClipPlane& plane, const Matrix& toWorld)
{
    openScope(none, _scopes[_openScopes.back()].fog, static_cast<UInt32>(_planes.size()));
    _planes.push_back({&plane, toWorld});
}

void DrawList::openScope(UInt32 light, UInt32 fog, UInt32 plane)
{
    _scopes.push_back({_openScopes.back(), light, fog, plane});
    _openScopes.push_back(static_cast<UInt32>(_scopes.size() - 1));
}

void DrawList::placeLights()
{
    for (PlacedLight& placed : _lights) {
        const NodePtr& beacon = placed.light->getBeacon();
        placed.toWorld = beacon ? beacon->getToWorld() : placed.pathToWorld;
        if (!placed.hasSource)
            continue;
        placed.toWorld.multMatrixPnt(*placed.light->getSource(), placed.source);
        Real32 scale = 0;
        for (UInt32 c = 0; c < 3; ++c)
            scale = osgMax(scale, Vec3f(placed.toWorld[c]).length());
        placed.range = osgMin(placed.light->getRange() * scale, Inf);
    }
    for (PlacedFog& placed : _fogs) {
        const NodePtr& beacon = placed.fog->getBeacon();
        placed.toWorld = beacon ? beacon->getToWorld() : placed.pathToWorld;
    }
}

void DrawList::pushMaterial(const Material* material)
{
    const Material* const outer = _openMaterials.back();
    _openMaterials.push_back(outer ? outer : material);
}

void DrawList::gather(Scope& scope)
{
    for (const Scope* place = &scope; place != &_scopes[0]; place = &_scopes[place->outer]) {
        if (place->light != none) {
            scope.lights.push_back(place->light);
            scope.choose |= _lights[place->light].range < Inf;
        }
        if (place->plane != none)
            scope.planes.push_back(place->plane);
    }
    // The outermost first.
    std::reverse(scope.lights.begin(), scope.lights.end());
    std::reverse(scope.planes.begin(), scope.planes.end());
    scope.choose |= scope.lights.size() > lightLimit;
    scope.gathered = true;
}

void DrawList::add(const Geometry& geometry, const Matrix& toWorld)
{
    const UInt32 scope = _openScopes.back();
    if (!_scopes[scope].gathered)
        gather(_scopes[scope]);
    const Material* const group = _openMaterials.back();
    const Material* const material = group ? group : geometry.getMaterial().getCPtr();
    _items.push_back({&geometry, material, 0, 0, false, false, scope, 0, toWorld});
}

void DrawList::arrange(bool keep)
{
    for (UInt32 i = 0; i < _items.size(); ++i) {
        Item& item = _items[i];
        item.vertexColors = static_cast<bool>(item.geometry->getColors());
        item.transparent =
            (item.material && item.material->isTransparent()) || item.geometry->hasTransparentColors();
        item.faceShare = faceShareOf(item);
        const Item* last = i > 0 ? &_items[i - 1] : nullptr;
        if (last && last->material == item.material && last->transparent == item.transparent) {
            item.firstState = last->firstState;
            item.stateCount = last->stateCount;
        } else {
            resolveState(item);
        }
        if (item.transparent)
            _transparent.push_back({0, i});
        else
            _opaque.push_back({stateKey(item), i});
    }
    if (!std::is_sorted(_opaque.begin(), _opaque.end()))
        std::stable_sort(_opaque.begin(), _opaque.end());
    if (keep)
        layOut();
}

// About one over the number of faces along an edge of the shape.
Real32 DrawList::faceShareOf(const Item& item)
{
    const auto isForNearLights = [](const Material::Entry& entry) {
        return entry.place == programPlace &&
               static_cast<const SHLChunk*>(entry.chunk.getCPtr())->getNearLightsOnly();
    };
    if (!item.material || item.material->getEntries().empty() ||
        !isForNearLights(item.material->getEntries().back()) || !item.geometry->getPositions())
        return 0;
    const UInt32 count = item.geometry->getPositions()->getSize();
    return 1 / std::sqrt(osgMax(static_cast<Real32>(count) / 4, 1.f));
}

bool DrawList::isNear(UInt32 item, UInt32 light) const
{
    const PlacedLight& placed = _lights[light];
    if (!placed.hasSource)
        return false;
    const Real32 kind = placed.light->getShape(placed.range)[0];
    if (kind > 4)
        return true; // nothing but programs shows what it throws
    const BoxVolume box = boxOf(item);
    Vec3f size;
    box.getSize(size);
    Real32 square = 0;
    for (UInt32 i = 0; i < 3; ++i) {
        const Real32 outside = osgMax(box.getMin()[i] - placed.source[i], placed.source[i] - box.getMax()[i]);
        square += osgMax(outside, 0.f) * osgMax(outside, 0.f);
    }
    const Real32 distance = std::sqrt(square);
    const Real32 faceSize = size.length() * _items[item].faceShare;
    const bool isCone = kind > 2;
    const bool ends = placed.range < distance + size.length();
    return faceSize > distance * (isCone || ends ? nearCone : nearPoint);
}

void DrawList::resolveState(Item& item)
{
    item.firstState = static_cast<UInt32>(_states.size());
    if (!item.material || item.material->getEntries().empty() ||
        item.material->getEntries().front().place != colorPlace)
        _states.push_back({colorPlace, defaultColors()});
    bool blends = false;
    bool holes = false;
    const auto addDefaultBlending = [&] {
        if (!blends && (item.transparent || holes))
            _states.push_back({blendPlace, item.transparent ? defaultBlending() : defaultHoles()});
        blends = true;
    };
    if (item.material) {
        for (const Material::Entry& entry : item.material->getEntries()) {
            if (entry.place > blendPlace)
                addDefaultBlending();
            blends |= entry.place == blendPlace;
            holes |= entry.chunk->hasHoles();
            _states.push_back({entry.place, entry.chunk.getCPtr()});
        }
    }
    addDefaultBlending();
    item.stateCount = static_cast<UInt16>(_states.size() - item.firstState);
}

// Groups what shares state, the dearest first: scope of lights, texture, material, geometry. Keys that meet
// by chance cost a change of state and nothing else.
UInt64 DrawList::stateKey(const Item& item) const
{
    UInt64 texture = 0;
    const StateEntry* state = getState(item);
    for (UInt32 i = 0; i < item.stateCount && texture == 0; ++i) {
        if (state[i].place / StateChunk::MaxSlots == StateChunk::TEXTURE)
            texture = state[i].chunk->getFieldContainerId();
    }
    const Int32 sortKey = item.material ? osgClamp(-128, item.material->getSortKey(), 127) : 0;
    const UInt64 material = item.material ? item.material->getFieldContainerId() : 0;
    const UInt64 geometry = item.geometry->getFieldContainerId();
    return static_cast<UInt64>(sortKey + 128) << 56 | UInt64(item.scope & 0xff) << 48 |
           (texture & 0xffff) << 32 | (material & 0xfffff) << 12 | (geometry & 0xfff);
}

// A kept list is read from its begin to its end in every picture, which is by far the fastest way to read.
void DrawList::layOut()
{
    std::vector<Item> items;
    std::vector<StateEntry> states;
    items.reserve(_items.size());
    states.reserve(_states.size());
    const auto take = [&](std::vector<Order>& order) {
        for (Order& entry : order) {
            Item item = _items[entry.item];
            const Item* last = items.empty() ? nullptr : &items.back();
            const StateEntry* state = getState(item);
            item.firstState = static_cast<UInt32>(states.size());
            if (last && last->material == item.material && last->transparent == item.transparent)
                item.firstState = last->firstState;
            else
                states.insert(states.end(), state, state + item.stateCount);
            entry.item = static_cast<UInt32>(items.size());
            items.push_back(item);
        }
    };
    take(_opaque);
    take(_transparent);
    _items = std::move(items);
    _states = std::move(states);

    _box.setEmpty();
    _boxes.reserve(_items.size());
    for (const Item& item : _items) {
        _boxes.push_back(computeBox(item));
        _box.extendBy(_boxes.back());
    }
}

BoxVolume DrawList::computeBox(const Item& item)
{
    BoxVolume box = item.geometry->getBox();
    box.transform(item.toWorld);
    return box;
}

void DrawList::sortTransparent(const Matrix& viewing)
{
    for (Order& entry : _transparent) {
        Pnt3f center;
        boxOf(entry.item).getCenter(center);
        viewing.multMatrixPnt(center);
        // The farthest has the lowest z.
        entry.key = sortableBits(center[2]);
    }
    std::stable_sort(_transparent.begin(), _transparent.end());
}

void DrawList::chooseLights(const Item& item, std::vector<UInt32>& chosen) const
{
    const BoxVolume box = boxOf(static_cast<UInt32>(&item - _items.data()));
    Pnt3f center;
    Vec3f size;
    box.getCenter(center);
    box.getSize(size);
    const Real32 radius = size.length() / 2;

    std::vector<std::pair<Real32, UInt32>> reaching;
    for (UInt32 index : _scopes[item.scope].lights) {
        const PlacedLight& placed = _lights[index];
        const Real32 distance = placed.hasSource ? placed.source.dist(center) : -1;
        if (!(distance > placed.range + radius))
            reaching.emplace_back(distance, index);
    }
    if (reaching.size() > lightLimit) {
        std::stable_sort(reaching.begin(), reaching.end(),
                         [](const auto& a, const auto& b) { return a.first < b.first; });
        reaching.resize(lightLimit);
    }
    for (const auto& light : reaching)
        chosen.push_back(light.second);
}

} // namespace osg
