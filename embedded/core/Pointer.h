#pragma once

#include "core/PointingSensor.h"
#include "core/SceneHit.h"
#include <OpenSG/OSGLine.h>
#include <Orvane/Export.h>
#include <Orvane/Types.h>
#include <string>
#include <vector>

namespace Orvane {

class SceneLayer;
class SceneProc;

/// The line on which a pointer lies in one layer of a scene.
struct LayerRay
{
    SceneLayer* layer;
    osg::Line line;
    bool isInside; ///< the pointer is over the part of the surface that shows the layer
};

/// A pointing device over a scene, with one button. It tells the sensors that are pointed at what it does:
/// those of the lowest group above the hit shape that has an enabled one, in the topmost layer in which it is
/// over a shape. While a sensor is active the pointer is its own. Sensors may come and go, and the scene be
/// replaced, at any moment.
class ORVANE_API Pointer
{
public:
    /// The device points along \a rays, of the topmost layer first. Looks anew only when one of them or what
    /// is seen has changed, for which \a pictureVersion stands. A null scene has nothing in it.
    void move(const SceneProc* scene, const std::vector<LayerRay>& rays, unsigned long pictureVersion,
              double time);
    /// The button goes down where the last move led. True when a sensor is active then.
    bool press(double time);
    void release(double time);
    /// The device points nowhere, and its button is up. Nothing is clicked by that.
    void leave(double time);

    /// True while a sensor is pointed at or active.
    bool isOverSensor() const { return !_over.empty() || !_active.empty(); }
    bool isDragging() const { return !_active.empty(); }
    /// What the first sensor with a description that is pointed at or active says of itself; empty when none
    /// does.
    std::string description() const;

private:
    /// A sensor as a place of the scene: the same one may be met in several.
    struct Place
    {
        UInt64 id; ///< of the node
        osg::Matrix toWorld;
        UInt64 layerId;
    };
    /// The ray in a layer, and whether the layer may be hit.
    struct Ray
    {
        UInt64 layerId;
        osg::Line line;
        bool mayHit;

        bool operator==(const Ray& other) const;
    };

    bool look(SceneLayer& layer, const osg::Line& ray);
    void findSensors(const SceneHit& hit, UInt64 layerId);
    const osg::Line& rayIn(UInt64 layerId) const;
    void readSurface(const SceneHit& hit);
    void tellOver(double time);
    PointerSpot spotOf(const Place& place, bool isOver) const;
    bool isHit(const Place& place) const;

    std::vector<Place> _hit;    ///< sensors of what is pointed at
    std::vector<Place> _over;   ///< those that know that they are pointed at
    std::vector<Place> _active; ///< as they were when the button went down
    std::vector<Ray> _rays;
    osg::Pnt3f _point;  ///< in the world
    osg::Vec3f _normal; ///< in the world
    osg::Vec2f _texCoord;
    bool _hasTexCoord = false;
    bool _hasLooked = false;
    UInt64 _sceneId = 0;
    unsigned long _pictureVersion = 0;
    unsigned long _sensorVersion = 0;
};

} // namespace Orvane
