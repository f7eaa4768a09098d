#include "OSGPainter.h"

#include "OSGGLObjects.h"

#include <OpenSG/OSGClipPlane.h>
#include <OpenSG/OSGEnvironmentLight.h>
#include <OpenSG/OSGFog.h>
#include <OpenSG/OSGFrustumVolume.h>
#include <OpenSG/OSGImage.h>
#include <OpenSG/OSGLight.h>
#include <OpenSG/OSGMaterialChunk.h>
#include <OpenSG/OSGProjectorLight.h>
#include <OpenSG/OSGRenderAction.h>
#include <OpenSG/OSGSHLChunk.h>
#include <OpenSG/OSGTextureChunk.h>
#include <OpenSG/OSGWindow.h>

#include <algorithm>
#include <atomic>
#include <epoxy/gl.h>

namespace osg {

namespace {

const Real32 cornerSize = 3;
const UInt32 noLight = DrawList::none;
const Real32 projectorKind = 5; // of Light::getShape
const Real32 environmentKind = 6;
/// Planes that every GL has.
const std::size_t mostPlanes = Surroundings::MostPlanes;
const UInt16 colorPlace = StateChunk::MATERIAL * StateChunk::MaxSlots;
const UInt16 programPlace = StateChunk::PROGRAM * StateChunk::MaxSlots;

void takeCoordSets(const SHLChunk& program, TexCoordSets& sets)
{
    const std::vector<UInt32>& wanted = program.getCoordSets();
    for (UInt32 unit = 0; unit < wanted.size() && unit < StateChunk::MaxSlots; ++unit) {
        if (!sets.isTextured(unit))
            sets.take(unit, wanted[unit]);
    }
}

} // namespace

void Surroundings::renew()
{
    // Several actions may draw into a window.
    static std::atomic<UInt64> last{0};
    stamp = ++last;
}

void Painter::draw(DrawList& list, const FrustumVolume* frustum, RenderAction& action,
                   RenderStatistics& statistics)
{
    _list = &list;
    _action = &action;
    _statistics = &statistics;
    _objects = &action.getWindow()->getGLObjects();
    _unitCount = static_cast<UInt32>(osgMax(_objects->getLimits().textureUnits, 1));

    list.placeLights();
    if (action.getSortTrans())
        list.sortTransparent(action.getViewing());
    begin();
    drawItems(list.getOpaque(), frustum);
    if (!list.getTransparent().empty()) {
        clearState();
        action._transparentPass = true;
        _depth.begin();
        _surroundings.depth = &_depth;
        _surroundings.renew();
        glDepthMask(action.getZWriteTrans());
        drawItems(list.getTransparent(), frustum);
        glDepthMask(GL_TRUE);
    }
    end();
}

void Painter::begin()
{
    _state.clear();
    _stateItem = nullptr;
    _textured = false;
    _sets = TexCoordSets();
    _scope = 0;
    std::fill_n(_lights, DrawList::lightLimit, noLight);
    _hasSources = false;
    _fog = DrawList::none;
    _fogByDepth = false;
    _planes.clear();
    _arrays = VertexArrays();
    _geometry = nullptr;
    _buffers = nullptr;
    _frontFace = GL_CCW;
    _action->_transparentPass = false;
    _action->_vertexColors = false;
    _action->_nearLights = false;
    _surroundings = Surroundings();
    const Matrix turn = _action->getTurnToWorld();
    for (UInt32 i = 0; i < 9; ++i)
        _surroundings.turnToWorld[i] = turn[i / 3][i % 3];
    _surroundings.renew();
    _action->_surroundings = &_surroundings;
    _action->setFrontFace(GL_CCW);

    glMatrixMode(GL_PROJECTION);
    glLoadMatrixf(_action->getProjection().getValues());
    glMatrixMode(GL_MODELVIEW);
    glEnable(GL_DEPTH_TEST);
    glDepthFunc(GL_LESS);
    glDepthMask(GL_TRUE);
    glFrontFace(GL_CCW);
    glShadeModel(GL_SMOOTH);
    glPolygonMode(GL_FRONT_AND_BACK, _action->getPolygonMode());
    // Faces that are drawn as their corners should still be found.
    if (_action->getPolygonMode() == GL_POINT)
        glPointSize(cornerSize);
    // Matrices may scale, and normals of scenes have any length.
    glEnable(GL_NORMALIZE);
    const Real32 black[] = {0, 0, 0, 1};
    glLightModelfv(GL_LIGHT_MODEL_AMBIENT, black);
    glLightModeli(GL_LIGHT_MODEL_TWO_SIDE, GL_TRUE);
    // Highlights lie where the eye is, not where it looks.
    glLightModeli(GL_LIGHT_MODEL_LOCAL_VIEWER, GL_TRUE);
    glEnableClientState(GL_VERTEX_ARRAY);
    glNormal3f(0, 0, 1);
}

void Painter::end()
{
    clearState();
    _action->_transparentPass = false;
    _action->_surroundings = nullptr;
    for (UInt32 i = 0; i < DrawList::lightLimit; ++i) {
        if (_lights[i] != noLight)
            glDisable(GL_LIGHT0 + i);
    }
    setFog(DrawList::none, false);
    setPlanes({});
    clearAttributes();
    _arrays.enable(nullptr, TexCoordSets(), 0);
    glDisableClientState(GL_VERTEX_ARRAY);
    glClientActiveTexture(GL_TEXTURE0);
    glActiveTexture(GL_TEXTURE0);
    glBindBuffer(GL_ARRAY_BUFFER, 0);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, 0);
    glLightModeli(GL_LIGHT_MODEL_TWO_SIDE, GL_FALSE);
    glLightModeli(GL_LIGHT_MODEL_LOCAL_VIEWER, GL_FALSE);
    glDisable(GL_NORMALIZE);
    glDisable(GL_DEPTH_TEST);
    glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
    glPointSize(1);
    glFrontFace(GL_CCW);
    glLoadIdentity();
}

void Painter::drawItems(const std::vector<DrawList::Order>& order, const FrustumVolume* frustum)
{
    for (const DrawList::Order& entry : order) {
        if (frustum && frustum->classify(_list->getBox(entry.item)) == FrustumVolume::OUTSIDE) {
            ++_statistics->culled;
            continue;
        }
        const Item& item = _list->getItems()[entry.item];
        const UInt64 surroundings = _surroundings.stamp;
        if (item.scope != _scope || _list->getScope(item).choose)
            setScope(item);
        const bool nearLights = _hasSources && item.faceShare > 0 && hasNearLight(entry.item);
        if (!_stateItem || item.firstState != _stateItem->firstState ||
            item.vertexColors != _stateItem->vertexColors || nearLights != _action->_nearLights)
            setState(item, nearLights);
        else if (surroundings != _surroundings.stamp)
            tellProgram();
        setGeometry(item);
        if (_buffers->hasFogDepths() != _fogByDepth) {
            setFog(_fog, _buffers->hasFogDepths());
            tellProgram();
        }
        if (_attributes != 0 || _buffers->hasAttributes())
            setAttributes();
        setPlace(item.toWorld);
        _buffers->draw(*_statistics);
        ++_statistics->shapes;
    }
}

void Painter::setScope(const Item& item)
{
    _scope = item.scope;
    setLights(item);
    setFog(_list->getScope(item).fog, _fogByDepth);
    setPlanes(_list->getScope(item).planes);
}

void Painter::setFog(UInt32 fog, bool byDepth)
{
    if (fog == _fog && byDepth == _fogByDepth)
        return;
    if (byDepth != _fogByDepth)
        glFogi(GL_FOG_COORD_SRC, byDepth ? GL_FOG_COORD : GL_FRAGMENT_DEPTH);
    _fog = fog;
    _fogByDepth = byDepth;
    const DrawList::PlacedFog* placed = fog == DrawList::none ? nullptr : &_list->getFog(fog);
    const bool isOn = placed && placed->fog->activate(placed->toWorld, byDepth);
    if (isOn)
        glEnable(GL_FOG);
    else
        glDisable(GL_FOG);
    _surroundings.fogKind = !isOn ? 0 : placed->fog->getMode() == Fog::EXPONENTIAL_MODE ? 2 : 1;
    if (isOn && byDepth)
        _surroundings.fogKind += 2;
    _surroundings.renew();
}

void Painter::setPlanes(const std::vector<UInt32>& planes)
{
    if (planes == _planes)
        return;
    _planes = planes;
    _surroundings.planeCount = static_cast<Int32>(osgMin(planes.size(), mostPlanes));
    std::fill_n(_surroundings.planes, 4 * mostPlanes, 0.f);
    _surroundings.renew();
    for (std::size_t i = 0; i < mostPlanes; ++i) {
        const DrawList::PlacedPlane* placed = i < planes.size() ? &_list->getPlane(planes[i]) : nullptr;
        if (!placed || !placed->plane->getOn()) {
            glDisable(GL_CLIP_PLANE0 + static_cast<GLenum>(i));
            continue;
        }
        Matrix toEye = _action->getViewing();
        toEye.mult(placed->toWorld);
        placed->plane->activate(static_cast<UInt32>(i), toEye);
        GLdouble atEye[4] = {};
        glGetClipPlane(GL_CLIP_PLANE0 + static_cast<GLenum>(i), atEye);
        std::copy_n(atEye, 4, _surroundings.planes + 4 * i);
        glEnable(GL_CLIP_PLANE0 + static_cast<GLenum>(i));
    }
}

void Painter::setLights(const Item& item)
{
    const std::vector<UInt32>* wanted = &_list->getScope(item).lights;
    if (_list->getScope(item).choose) {
        _chosen.clear();
        _list->chooseLights(item, _chosen);
        wanted = &_chosen;
    }
    UInt32* const end = _lights + DrawList::lightLimit;
    bool changes = false;
    for (UInt32& light : _lights) {
        if (light == noLight || std::find(wanted->begin(), wanted->end(), light) != wanted->end())
            continue;
        glDisable(GL_LIGHT0 + static_cast<GLenum>(&light - _lights));
        std::fill_n(_surroundings.lights + 4 * (&light - _lights), 4, 0.f);
        light = noLight;
        changes = true;
    }
    for (UInt32 light : *wanted) {
        if (std::find(_lights, end, light) != end)
            continue;
        UInt32* const place = std::find(_lights, end, noLight);
        *place = light;
        Matrix toEye = _action->getViewing();
        toEye.mult(_list->getLight(light).toWorld);
        // GL takes places of lights through the matrix of the moment.
        glLoadIdentity();
        const UInt32 index = static_cast<UInt32>(place - _lights);
        _list->getLight(light).light->activate(index, toEye);
        const Vec4f shape = _list->getLight(light).light->getShape(_list->getLight(light).range);
        std::copy_n(shape.getValues(), 4, _surroundings.lights + std::size_t(4) * index);
        if (shape[0] < projectorKind)
            glEnable(GL_LIGHT0 + index);
        changes = true;
    }
    if (!changes)
        return;
    _hasSources = std::any_of(
        _lights, end, [this](UInt32 light) { return light != noLight && _list->getLight(light).hasSource; });
    _surroundings.lightCount = DrawList::lightLimit;
    while (_surroundings.lightCount > 0 && _lights[_surroundings.lightCount - 1] == noLight)
        --_surroundings.lightCount;
    setProjector();
    setEnvironment();
    _surroundings.renew();
}

void Painter::setProjector()
{
    _surroundings.projected = nullptr;
    for (UInt32 i = 0; i < DrawList::lightLimit; ++i) {
        Real32& kind = _surroundings.lights[4 * i];
        if (kind != projectorKind)
            continue;
        const DrawList::PlacedLight& placed = _list->getLight(_lights[i]);
        const auto& projector = static_cast<const ProjectorLight&>(*placed.light);
        Matrix toEye = _action->getViewing();
        toEye.mult(placed.toWorld);
        Matrix fromEye;
        if (_surroundings.projected || !projector.getTexture() || !toEye.inverse(fromEye)) {
            kind = 0;
            continue;
        }
        _surroundings.projected = projector.getTexture().get().getCPtr();
        Matrix projection = projector.getProjection();
        projection.mult(fromEye);
        std::copy_n(projection.getValues(), 16, _surroundings.projection);
    }
}

void Painter::setEnvironment()
{
    _surroundings.mirrored = nullptr;
    std::fill_n(_surroundings.environment, 4, 0.f);
    for (UInt32 i = 0; i < DrawList::lightLimit; ++i) {
        if (_surroundings.lights[4 * i] != environmentKind)
            continue;
        const DrawList::PlacedLight& placed = _list->getLight(_lights[i]);
        const auto& light = static_cast<const EnvironmentLight&>(*placed.light);
        Matrix toEye = _action->getViewing();
        toEye.mult(placed.toWorld);
        Matrix fromEye;
        if (_surroundings.environment[3] != 0 || !toEye.inverse(fromEye))
            continue;
        Matrix turn = light.getTurn();
        turn.mult(fromEye);
        for (UInt32 column = 0; column < 3; ++column) {
            Vec3f axis(turn[column]);
            axis.normalize();
            std::copy_n(axis.getValues(), 3, _surroundings.turnToEnvironment + std::size_t(3) * column);
        }
        std::copy_n(light.getDiffuse().getValuesRGBA(), 3, _surroundings.environment);
        const ImagePtr image = light.getTexture() ? light.getTexture()->getImage() : NullFC;
        const bool isCube = image && image->getSideCount() == 6;
        _surroundings.environment[3] = isCube ? static_cast<Real32>(image->calcMipmapLevelCount()) : -1.f;
        _surroundings.mirrored = isCube ? light.getTexture().get().getCPtr() : nullptr;
        std::copy(light.getIrradiance().begin(), light.getIrradiance().end(), _surroundings.irradiance);
    }
}

bool Painter::hasNearLight(UInt32 item) const
{
    return std::any_of(_lights, _lights + DrawList::lightLimit,
                       [&](UInt32 light) { return light != noLight && _list->isNear(item, light); });
}

void Painter::tellProgram()
{
    if (_state.back().place == programPlace)
        static_cast<const SHLChunk*>(_state.back().chunk)->surroundingsChanged(*_action);
}

void Painter::setState(const Item& item, bool nearLights)
{
    const bool colorsChange = item.vertexColors != _action->hasVertexColors();
    const bool lightsChange = nearLights != _action->hasNearLights();
    _action->_vertexColors = item.vertexColors;
    _action->_nearLights = nearLights;
    _stateItem = &item;
    ++_statistics->materialChanges;

    // Both states stand by rising places.
    const DrawList::StateEntry* next = _list->getState(item);
    const DrawList::StateEntry* const nextEnd = next + item.stateCount;
    _alpha = static_cast<const MaterialChunk*>(next->chunk)->getDiffuse().alpha();
    TexCoordSets sets;
    auto old = _state.begin();
    for (const DrawList::StateEntry* entry = next; entry != nextEnd; ++entry) {
        const UInt32 slot = entry->place % StateChunk::MaxSlots;
        for (; old != _state.end() && old->place < entry->place; ++old)
            old->chunk->deactivate(*_action, old->place % StateChunk::MaxSlots);
        const bool has = old != _state.end() && old->place == entry->place;
        // Only chunks of texture units have other slots than the first.
        if (slot >= _unitCount)
            continue;
        if (entry->place / StateChunk::MaxSlots == StateChunk::TEXTURE)
            sets.take(slot, static_cast<const TextureChunk*>(entry->chunk)->getCoordSet(slot));
        if (entry->place == programPlace)
            takeCoordSets(*static_cast<const SHLChunk*>(entry->chunk), sets);
        if (!has || (lightsChange && entry->place == programPlace)) {
            entry->chunk->activate(*_action, slot);
        } else if (colorsChange && entry->place == colorPlace) {
            old->chunk->deactivate(*_action, slot);
            entry->chunk->activate(*_action, slot);
        } else if (old->chunk != entry->chunk) {
            entry->chunk->changeFrom(*_action, *old->chunk, slot);
        }
        old += has;
    }
    for (; old != _state.end(); ++old)
        old->chunk->deactivate(*_action, old->place % StateChunk::MaxSlots);
    setTextured(sets.textured != 0);
    _sets = sets;
    // Programs find the colour of vertices without one in the same variable.
    const bool isProgrammed = (nextEnd - 1)->place == programPlace;
    if (isProgrammed && !item.vertexColors)
        glColor4fv(static_cast<const MaterialChunk*>(next->chunk)->getDiffuse().getValuesRGBA());
    _state.clear();
    std::copy_if(next, nextEnd, std::back_inserter(_state), [this](const DrawList::StateEntry& entry) {
        return entry.place % StateChunk::MaxSlots < _unitCount;
    });
}

void Painter::clearState()
{
    for (const DrawList::StateEntry& entry : _state)
        entry.chunk->deactivate(*_action, entry.place % StateChunk::MaxSlots);
    _state.clear();
    _stateItem = nullptr;
    setTextured(false);
    _action->_vertexColors = false;
    _action->_nearLights = false;
}

// Highlights lie over textures. Without one the sum is the same, and cheaper in one.
void Painter::setTextured(bool textured)
{
    if (textured != _textured)
        glLightModeli(GL_LIGHT_MODEL_COLOR_CONTROL, textured ? GL_SEPARATE_SPECULAR_COLOR : GL_SINGLE_COLOR);
    _textured = textured;
}

void Painter::setGeometry(const Item& item)
{
    if (item.geometry == _geometry && !_buffers->needsAlpha(_alpha) && _sets == _boundSets)
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
    buffers.bind(_arrays, _sets, _unitCount);
    _boundSets = _sets;
    _geometry = item.geometry;
    _buffers = &buffers;
    ++_statistics->geometryChanges;
}

void Painter::clearAttributes()
{
    for (UInt32 place = 0; _attributes >> place; ++place) {
        if (_attributes >> place & 1)
            glDisableVertexAttribArray(place);
    }
    _attributes = 0;
}

void Painter::setAttributes()
{
    clearAttributes();
    if (_state.back().place != programPlace)
        return;
    const SHLChunk& program = *static_cast<const SHLChunk*>(_state.back().chunk);
    _attributes = _buffers->bindAttributes(
        [&](const std::string& name) { return program.getAttributePlace(*_action, name); });
}

void Painter::setPlace(const Matrix& toWorld)
{
    Matrix toEye = _action->getViewing();
    toEye.mult(toWorld);
    glLoadMatrixf(toEye.getValues());
    // A matrix that mirrors turns the sense of all faces.
    const bool mirrors = toWorld.det3() < 0;
    const UInt32 frontFace = (_action->getFrontFace() == GL_CCW) != mirrors ? GL_CCW : GL_CW;
    if (frontFace != _frontFace)
        glFrontFace(frontFace);
    _frontFace = frontFace;
}

} // namespace osg
