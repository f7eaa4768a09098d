#include "OSGDrawList.h"

#include "OSGGLObjects.h"

#include <OpenSG/OSGBlendChunk.h>
#include <OpenSG/OSGMaterialChunk.h>
#include <OpenSG/OSGRenderAction.h>
#include <OpenSG/OSGWindow.h>

#include <algorithm>
#include <cstring>
#include <epoxy/gl.h>

namespace osg {

namespace {

const UInt32 noLight = ~UInt32(0);

// Stand for what a material does not have. Never destroyed: a picture may be drawn until the process ends.
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
    _items.clear();
    _opaque.clear();
    _transparent.clear();
    // The outermost scope, without lights.
    _scopes.clear();
    _scopes.push_back({0, noLight, true, false, {}});
    _openScopes.assign(1, 0);
    _openMaterials.assign(1, nullptr);
}

void DrawList::pushLight(const Light& light, const Matrix& toWorld)
{
    if (!light.getOn()) {
        _openScopes.push_back(_openScopes.back());
        return;
    }
    PlacedLight placed{&light, toWorld, light.getSource() != nullptr, Pnt3f(), light.getRange()};
    if (placed.hasSource) {
        toWorld.multMatrixPnt(*light.getSource(), placed.source);
        Real32 scale = 0;
        for (UInt32 c = 0; c < 3; ++c)
            scale = osgMax(scale, Vec3f(toWorld[c]).length());
        placed.range = osgMin(placed.range * scale, Inf);
    }
    _scopes.push_back({_openScopes.back(), static_cast<UInt32>(_lights.size()), false, false, {}});
    _openScopes.push_back(static_cast<UInt32>(_scopes.size() - 1));
    _lights.push_back(placed);
}

void DrawList::popLight()
{
    _openScopes.pop_back();
}

void DrawList::pushMaterial(const Material* material)
{
    const Material* const outer = _openMaterials.back();
    _openMaterials.push_back(outer ? outer : material);
}

void DrawList::gather(Scope& scope)
{
    for (const Scope* place = &scope; place->light != noLight; place = &_scopes[place->outer]) {
        scope.lights.push_back(place->light);
        scope.choose |= _lights[place->light].range < Inf;
    }
    // The outermost first.
    std::reverse(scope.lights.begin(), scope.lights.end());
    scope.choose |= scope.lights.size() > glLightCount;
    scope.gathered = true;
}

void DrawList::add(const Geometry& geometry, const Matrix& toWorld, const Pnt3f& center, Real32 radius)
{
    const UInt32 scope = _openScopes.back();
    if (!_scopes[scope].gathered)
        gather(_scopes[scope]);
    const Material* const group = _openMaterials.back();
    const Material* const material = group ? group : geometry.getMaterial().getCPtr();
    _items.push_back({&geometry, material, scope, radius, center, toWorld});
}

// Groups what shares state, the dearest first: scope of lights, texture, material, geometry. Keys that meet
// by chance cost a change of state and nothing else.
UInt64 DrawList::stateKey(const Item& item) const
{
    UInt64 sortKey = 128;
    UInt64 texture = 0;
    UInt64 material = 0;
    if (item.material) {
        sortKey = static_cast<UInt64>(osgClamp(-128, item.material->getSortKey(), 127) + 128);
        material = item.material->getFieldContainerId();
        for (const Material::Entry& entry : item.material->getEntries()) {
            if (entry.chunkClass() == StateChunk::TEXTURE) {
                texture = entry.chunk->getFieldContainerId();
                break;
            }
        }
    }
    const UInt64 geometry = item.geometry->getFieldContainerId();
    return sortKey << 56 | UInt64(item.scope & 0xff) << 48 | (texture & 0xffff) << 32 |
           (material & 0xfffff) << 12 | (geometry & 0xfff);
}

void DrawList::draw(RenderAction& action, RenderStatistics& statistics)
{
    for (UInt32 i = 0; i < _items.size(); ++i) {
        const Item& item = _items[i];
        const bool transparent =
            (item.material && item.material->isTransparent()) || item.geometry->hasTransparentColors();
        if (!transparent) {
            _opaque.push_back({stateKey(item), i});
            continue;
        }
        Pnt3f center;
        action.getViewing().multMatrixPnt(item.center, center);
        // The farthest, which has the lowest z, comes first.
        _transparent.push_back({action.getSortTrans() ? sortableBits(center[2]) : 0, i});
    }
    if (!std::is_sorted(_opaque.begin(), _opaque.end()))
        std::sort(_opaque.begin(), _opaque.end());
    std::stable_sort(_transparent.begin(), _transparent.end());

    _statistics = &statistics;
    _objects = &action.getWindow()->getGLObjects();
    beginState(action);
    drawItems(action, _opaque);
    if (!_transparent.empty()) {
        setMaterial(action, nullptr, false);
        action._transparentPass = true;
        _materialSet = false;
        glDepthMask(action.getZWriteTrans());
        drawItems(action, _transparent);
        glDepthMask(GL_TRUE);
    }
    endState(action);
}

void DrawList::beginState(RenderAction& action)
{
    _state.clear();
    _scope = 0;
    std::fill_n(_lightInUse, glLightCount, noLight);
    _materialSet = false;
    _arrays = VertexArrays();
    _geometry = nullptr;
    _buffers = nullptr;
    _frontFace = GL_CCW;
    action._transparentPass = false;
    action._vertexColors = false;
    action.setFrontFace(GL_CCW);

    glMatrixMode(GL_PROJECTION);
    glLoadMatrixf(action.getProjection().getValues());
    glMatrixMode(GL_MODELVIEW);
    glEnable(GL_DEPTH_TEST);
    glDepthFunc(GL_LESS);
    glDepthMask(GL_TRUE);
    glFrontFace(GL_CCW);
    glShadeModel(GL_SMOOTH);
    // Matrices may scale, and normals of scenes have any length.
    glEnable(GL_NORMALIZE);
    const Real32 black[] = {0, 0, 0, 1};
    glLightModelfv(GL_LIGHT_MODEL_AMBIENT, black);
    glLightModeli(GL_LIGHT_MODEL_TWO_SIDE, GL_TRUE);
    glLightModeli(GL_LIGHT_MODEL_COLOR_CONTROL, GL_SEPARATE_SPECULAR_COLOR);
    glEnableClientState(GL_VERTEX_ARRAY);
    glNormal3f(0, 0, 1);
}

void DrawList::endState(RenderAction& action)
{
    _nextState.clear();
    for (const StateEntry& entry : _state)
        entry.chunk->deactivate(action, entry.place % StateChunk::MaxSlots);
    _state.clear();
    action._transparentPass = false;
    action._vertexColors = false;
    for (UInt32 i = 0; i < glLightCount; ++i) {
        if (_lightInUse[i] != noLight)
            glDisable(GL_LIGHT0 + i);
    }
    _arrays.enable(nullptr, 0);
    glDisableClientState(GL_VERTEX_ARRAY);
    glClientActiveTexture(GL_TEXTURE0);
    glActiveTexture(GL_TEXTURE0);
    glBindBuffer(GL_ARRAY_BUFFER, 0);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, 0);
    glDisable(GL_NORMALIZE);
    glDisable(GL_DEPTH_TEST);
    glFrontFace(GL_CCW);
    glLoadIdentity();
}

void DrawList::drawItems(RenderAction& action, const std::vector<Order>& order)
{
    for (const Order& entry : order) {
        const Item& item = _items[entry.item];
        if (item.scope != _scope || _scopes[item.scope].choose)
            setLights(action, item);
        const bool vertexColors = static_cast<bool>(item.geometry->getColors());
        if (!_materialSet || item.material != _material || vertexColors != action.hasVertexColors())
            setMaterial(action, item.material, vertexColors);
        setGeometry(action, item);
        setPlace(action, item.toWorld);
        _buffers->draw(*_statistics);
        ++_statistics->shapes;
    }
}

// The nearest lights that reach the shape; lights without a place first.
void DrawList::chooseLights(const Item& item, std::vector<UInt32>& chosen) const
{
    std::vector<std::pair<Real32, UInt32>> reaching;
    for (UInt32 index : _scopes[item.scope].lights) {
        const PlacedLight& placed = _lights[index];
        const Real32 distance = placed.hasSource ? placed.source.dist(item.center) : -1;
        if (!(distance > placed.range + item.radius))
            reaching.emplace_back(distance, index);
    }
    if (reaching.size() > glLightCount) {
        std::stable_sort(reaching.begin(), reaching.end(),
                         [](const auto& a, const auto& b) { return a.first < b.first; });
        reaching.resize(glLightCount);
    }
    for (const auto& light : reaching)
        chosen.push_back(light.second);
}

void DrawList::setLights(RenderAction& action, const Item& item)
{
    _scope = item.scope;
    const std::vector<UInt32>* wanted = &_scopes[item.scope].lights;
    if (_scopes[item.scope].choose) {
        _chosen.clear();
        chooseLights(item, _chosen);
        wanted = &_chosen;
    }
    const auto isWanted = [wanted](UInt32 light) {
        return std::find(wanted->begin(), wanted->end(), light) != wanted->end();
    };
    for (UInt32 i = 0; i < glLightCount; ++i) {
        if (_lightInUse[i] != noLight && !isWanted(_lightInUse[i])) {
            glDisable(GL_LIGHT0 + i);
            _lightInUse[i] = noLight;
        }
    }
    bool matrixReset = false;
    for (UInt32 light : *wanted) {
        if (std::find(_lightInUse, _lightInUse + glLightCount, light) != _lightInUse + glLightCount)
            continue;
        const auto place = std::find(_lightInUse, _lightInUse + glLightCount, noLight);
        *place = light;
        // GL takes places of lights through the matrix of the moment.
        if (!matrixReset)
            glLoadIdentity();
        matrixReset = true;
        Matrix toEye = action.getViewing();
        toEye.mult(_lights[light].toWorld);
        const UInt32 index = static_cast<UInt32>(place - _lightInUse);
        _lights[light].light->activate(index, toEye);
        glEnable(GL_LIGHT0 + index);
    }
}

void DrawList::setMaterial(RenderAction& action, const Material* material, bool vertexColors)
{
    const UInt16 colorPlace = StateChunk::MATERIAL * StateChunk::MaxSlots;
    const UInt16 blendPlace = StateChunk::BLEND * StateChunk::MaxSlots;
    const Int32 unitCount = _objects->getLimits().textureUnits;

    _nextState.clear();
    if (!material || material->getEntries().empty() || material->getEntries().front().place != colorPlace)
        _nextState.push_back({colorPlace, defaultColors()});
    bool blends = !action.isTransparentPass();
    const auto addDefaultBlending = [&] {
        if (!blends)
            _nextState.push_back({blendPlace, defaultBlending()});
        blends = true;
    };
    if (material) {
        for (const Material::Entry& entry : material->getEntries()) {
            if (entry.place == blendPlace)
                blends = true;
            if (entry.place > blendPlace)
                addDefaultBlending();
            const bool perUnit = entry.chunk->getSlotCount() > 1;
            if (!perUnit || static_cast<Int32>(entry.slot()) < unitCount)
                _nextState.push_back({entry.place, entry.chunk.getCPtr()});
        }
    }
    addDefaultBlending();

    const bool colorsChange = vertexColors != action.hasVertexColors();
    action._vertexColors = vertexColors;
    auto old = _state.begin();
    for (const StateEntry& next : _nextState) {
        const UInt32 slot = next.place % StateChunk::MaxSlots;
        for (; old != _state.end() && old->place < next.place; ++old)
            old->chunk->deactivate(action, old->place % StateChunk::MaxSlots);
        if (old == _state.end() || old->place != next.place) {
            next.chunk->activate(action, slot);
            continue;
        }
        if (colorsChange && next.place == colorPlace) {
            old->chunk->deactivate(action, slot);
            next.chunk->activate(action, slot);
        } else if (old->chunk != next.chunk) {
            next.chunk->changeFrom(action, *old->chunk, slot);
        }
        ++old;
    }
    for (; old != _state.end(); ++old)
        old->chunk->deactivate(action, old->place % StateChunk::MaxSlots);
    _state.swap(_nextState);

    const StateEntry& colors = _state.front();
    _alpha = static_cast<const MaterialChunk*>(colors.chunk)->getDiffuse().alpha();
    _material = material;
    _materialSet = true;
    ++_statistics->materialChanges;
}

void DrawList::setGeometry(RenderAction&, const Item& item)
{
    if (item.geometry == _geometry && !_buffers->needsAlpha(_alpha))
        return;
    GLGeometry& buffers = _objects->get<GLGeometry>(item.geometry->getGLSlot(), [&](auto old) {
        auto made = old ? std::move(old) : std::make_unique<GLGeometry>();
        made->build(*item.geometry, _alpha);
        ++_statistics->geometriesBuilt;
        return made;
    });
    if (buffers.needsAlpha(_alpha)) {
        buffers.build(*item.geometry, _alpha);
        ++_statistics->geometriesBuilt;
    }
    buffers.bind(_arrays, _objects->getLimits().textureUnits);
    _geometry = item.geometry;
    _buffers = &buffers;
    ++_statistics->geometryChanges;
}

void DrawList::setPlace(RenderAction& action, const Matrix& toWorld)
{
    Matrix toEye = action.getViewing();
    toEye.mult(toWorld);
    glLoadMatrixf(toEye.getValues());
    // A matrix that mirrors turns the sense of all faces.
    const bool mirrors = toWorld.det3() < 0;
    const UInt32 frontFace = (action.getFrontFace() == GL_CCW) != mirrors ? GL_CCW : GL_CW;
    if (frontFace != _frontFace)
        glFrontFace(frontFace);
    _frontFace = frontFace;
}

} // namespace osg
