#include "core/Pointer.h"
#include "core/AnchorProc.h"
#include "core/DoubleMatrix.h"
#include "core/NormalGenerator.h"
#include "core/Part.h"
#include "core/PointingSensorProc.h"
#include "core/SceneProc.h"
#include "core/SurfacePoint.h"
#include "core/UsableValues.h"
#include <Orvane/SFString.h>
#include <algorithm>
#include <utility>

namespace Orvane {

namespace {

const Part descriptionPart("description");

/// The sensor that a node is, while it lives and stands in a scene.
PointingSensor* sensorOf(UInt64 id)
{
    Node* const node = Node::findNode(id);
    return node && node->contextRoot() ? procAs<PointingSensor>(node) : nullptr;
}

} // namespace

bool Pointer::Ray::operator==(const Ray& other) const
{
    for (osg::UInt32 i = 0; i < 3; ++i) {
        if (line.getPosition()[i] != other.line.getPosition()[i] ||
            line.getDirection()[i] != other.line.getDirection()[i])
            return false;
    }
    return layerId == other.layerId && mayHit == other.mayHit;
}

void Pointer::move(const SceneProc* scene, const std::vector<LayerRay>& rays, unsigned long pictureVersion,
                   double time)
{
    const UInt64 sceneId = scene ? scene->node().ID() : 0;
    const unsigned long sensorVersion = scene ? scene->sensorVersion() : 0;
    std::vector<Ray> present;
    present.reserve(rays.size());
    for (const LayerRay& ray : rays)
        present.push_back({ray.layer->node().ID(), ray.line, ray.isInside && ray.layer->isPickable()});
    if (_hasLooked && present == _rays && sceneId == _sceneId && pictureVersion == _pictureVersion &&
        sensorVersion == _sensorVersion)
        return;
    _hasLooked = true;
    _rays = std::move(present);
    _sceneId = sceneId;
    _pictureVersion = pictureVersion;
    _sensorVersion = sensorVersion;
    _hit.clear();
    for (std::size_t i = 0; i < rays.size(); ++i) {
        if (_rays[i].mayHit && look(*rays[i].layer, rays[i].line))
            break;
    }
    // Sensors that gave up, or have gone, are dragged no more.
    _active.erase(std::remove_if(_active.begin(), _active.end(),
                                 [](const Place& place) {
                                     const PointingSensor* const sensor = sensorOf(place.id);
                                     return !sensor || !sensor->isActivated();
                                 }),
                  _active.end());
    tellOver(time);
    if (_active.empty()) {
        for (const Place& place : _over) {
            if (PointingSensor* const sensor = sensorOf(place.id))
                sensor->hover(spotOf(place, true), time);
        }
        return;
    }
    for (const Place& place : _active) {
        if (PointingSensor* const sensor = sensorOf(place.id))
            sensor->drag(spotOf(place, isHit(place)), time);
    }
}

bool Pointer::look(SceneLayer& layer, const osg::Line& ray)
{
    const osg::Vec3f& direction = ray.getDirection();
    if (!isUsable(osg::Vec3f(ray.getPosition())) || !isUsable(direction) || isNull(direction))
        return false;
    SceneHit hit;
    if (!layer.castRay(ray, hit))
        return false;
    findSensors(hit, layer.node().ID());
    if (_hit.empty())
        return true;
    _point = hit.point;
    readSurface(hit);
    return true;
}

void Pointer::findSensors(const SceneHit& hit, UInt64 layerId)
{
    std::vector<PointingSensorProc*> sensors;
    for (auto level = hit.levels.rbegin(); level != hit.levels.rend() && _hit.empty(); ++level) {
        sensors.clear();
        level->group->collectSensors(sensors);
        for (const PointingSensorProc* sensor : sensors) {
            if (sensor->isEnabled())
                _hit.push_back({sensor->node().ID(), level->toWorld, layerId});
        }
        const auto* const anchor = dynamic_cast<AnchorProc*>(level->group);
        if (anchor && anchor->isEnabled())
            _hit.push_back({anchor->node().ID(), level->toWorld, layerId});
    }
}

void Pointer::readSurface(const SceneHit& hit)
{
    const bool wantsTexCoord = std::any_of(_hit.begin(), _hit.end(), [](const Place& place) {
        const PointingSensor* const sensor = sensorOf(place.id);
        return sensor && sensor->wantsTexCoord();
    });
    _normal = hit.normal;
    _hasTexCoord = false;
    if (!wantsTexCoord)
        return;
    const SurfacePoint surface = surfaceAt(hit);
    _normal = surface.normal;
    _texCoord = surface.texCoord;
    _hasTexCoord = surface.hasTexCoord;
}

bool Pointer::isHit(const Place& place) const
{
    return std::any_of(_hit.begin(), _hit.end(), [&](const Place& hit) { return hit.id == place.id; });
}

void Pointer::tellOver(double time)
{
    // While sensors are active no others hear of the pointer.
    const std::vector<Place>& heard = _active.empty() ? _hit : _active;
    std::vector<Place> over;
    for (const Place& place : heard) {
        if (isHit(place))
            over.push_back(place);
    }
    const auto holds = [](const std::vector<Place>& places, const Place& wanted) {
        return std::any_of(places.begin(), places.end(),
                           [&](const Place& place) { return place.id == wanted.id; });
    };
    const std::vector<Place> before = std::exchange(_over, over);
    for (const Place& place : before) {
        PointingSensor* const sensor = holds(over, place) ? nullptr : sensorOf(place.id);
        if (sensor)
            sensor->setOver(false, time);
    }
    for (const Place& place : over) {
        if (PointingSensor* const sensor = sensorOf(place.id))
            sensor->setOver(true, time);
    }
}

const osg::Line& Pointer::rayIn(UInt64 layerId) const
{
    static const osg::Line none;
    const auto found = std::find_if(_rays.begin(), _rays.end(),
                                    [layerId](const Ray& ray) { return ray.layerId == layerId; });
    return found == _rays.end() ? none : found->line;
}

PointerSpot Pointer::spotOf(const Place& place, bool isOver) const
{
    PointerSpot spot;
    const osg::Matrix4d toWorld = toDouble(place.toWorld);
    osg::Matrix4d toLocal;
    toWorld.inverse(toLocal);
    const osg::Line& ray = rayIn(place.layerId);
    toLocal.multMatrixPnt(osg::Pnt3d(ray.getPosition()), spot.origin);
    toLocal.multMatrixVec(osg::Vec3d(ray.getDirection()), spot.direction);
    const double length = spot.direction.length();
    if (length > 0.0)
        spot.direction /= length;
    spot.isOver = isOver;
    if (!isOver)
        return spot;
    osg::Pnt3d point;
    toLocal.multMatrixPnt(osg::Pnt3d(_point), point);
    spot.point = osg::Pnt3f(point);
    spot.worldPoint = _point;
    // Normals go by the inverse of the inverse, transposed.
    osg::Vec3d normal;
    toWorld.multVecMatrix(osg::Vec3d(_normal), normal);
    spot.normal = unitVector(osg::Vec3f(normal));
    spot.texCoord = _texCoord;
    spot.hasTexCoord = _hasTexCoord;
    return spot;
}

std::string Pointer::description() const
{
    for (const Place& place : _active.empty() ? _over : _active) {
        const Node* const node = Node::findNode(place.id);
        if (!node || !descriptionPart.isIn(*node))
            continue;
        const std::string& text = descriptionPart.read<SFString>(*node).value();
        if (!text.empty())
            return text;
    }
    return {};
}

bool Pointer::press(double time)
{
    if (!_active.empty())
        return true;
    _active = _over;
    _active.erase(std::remove_if(_active.begin(), _active.end(),
                                 [](const Place& place) {
                                     const PointingSensor* const sensor = sensorOf(place.id);
                                     return !sensor || !sensor->isEnabled() || sensor->isActivated();
                                 }),
                  _active.end());
    for (const Place& place : _active) {
        if (PointingSensor* const sensor = sensorOf(place.id))
            sensor->activate(spotOf(place, true), time);
    }
    return !_active.empty();
}

void Pointer::release(double time)
{
    for (const Place& place : std::exchange(_active, {})) {
        if (PointingSensor* const sensor = sensorOf(place.id))
            sensor->deactivate(isHit(place), time);
    }
    // Others may be pointed at by now; the next move tells them.
    _hasLooked = false;
}

void Pointer::leave(double time)
{
    _hit.clear();
    for (const Place& place : std::exchange(_active, {})) {
        if (PointingSensor* const sensor = sensorOf(place.id))
            sensor->deactivate(false, time);
    }
    tellOver(time);
    _hasLooked = false;
}

} // namespace Orvane
