#include "base/ValueFields.h"
#include "core/DoubleMatrix.h"
#include "core/GeoSystem.h"
#include "core/GroupProc.h"
#include "core/LayerSeat.h"
#include "core/Places.h"
#include "core/SceneState.h"
#include "core/UsableValues.h"
#include "core/ViewpointProc.h"
#include <OpenSG/OSGBoxVolume.h>
#include <Orvane/SFBool.h>
#include <cmath>
#include <optional>

namespace Orvane {

namespace {

const Part centerPart("center");
const Part centerOfRotationPart("centerOfRotation");
const Part centerOfRotationChangedPart("centerOfRotation_changed");
const Part enabledPart("enabled");
const Part enterTimePart("enterTime");
const Part exitTimePart("exitTime");
const Part geoCenterPart("geoCenter");
const Part geoCoordPart("geoCoord_changed");
const Part isActivePart("isActive");
const Part orientationPart("orientation_changed");
const Part positionPart("position_changed");
const Part sizePart("size");
const Part targetObjectPart("targetObject");

osg::Vec3f translationOf(const osg::Matrix& matrix)
{
    return osg::Vec3f(matrix[3][0], matrix[3][1], matrix[3][2]);
}

Rotation rotationOf(const osg::Matrix& matrix)
{
    osg::Vec3f translation;
    osg::Quaternion rotation;
    osg::Vec3f scale;
    osg::Quaternion scaleOrientation;
    matrix.getTransform(translation, rotation, scale, scaleOrientation);
    osg::Vec3f axis;
    float angle = 0.0F;
    rotation.getValueAsAxisRad(axis, angle);
    return Rotation(axis[0], axis[1], axis[2], angle);
}

/// A sensor of what happens in a box. It looks once a frame, and only when something may have changed.
class EnvironmentSensorProc : public ElementProc
{
public:
    using ElementProc::ElementProc;

    void start(double) override
    {
        _scene.take(node(), [this](SceneState&) { _seenVersion = 0; });
        setTicking(true);
    }

    void fieldChanged(Field& field, double) override
    {
        if (enabledPart.is(field) || centerPart.is(field) || geoCenterPart.is(field) || sizePart.is(field) ||
            targetObjectPart.is(field))
            _seenVersion = 0;
    }

    void tick(double time) override
    {
        // What moves asks for frames; standing by needs none.
        requestFrame(StandByInterval);
        if (!_scene)
            return;
        const osg::Matrix viewer = _scene->viewerToWorld();
        const unsigned long version = pictureVersion();
        const unsigned long viewVersion = _scene->viewVersion();
        if (version == _seenVersion && viewVersion == _seenViewVersion && viewer == _viewer)
            return;
        _seenVersion = version;
        _seenViewVersion = viewVersion;
        _viewer = viewer;
        bool active = false;
        if (enabledPart.read<SFBool>(node()).value() && readBox()) {
            for (const osg::Matrix& place : placesOf(*this)) {
                active = placeBox(place) && isInside(place);
                if (active)
                    break;
            }
        }
        setActive(active, time);
    }

protected:
    /// True when the box stands at a place so that the sensor is active. Notes what is to be sent then.
    virtual bool isInside(const osg::Matrix& toWorld) = 0;
    /// Sends what the last `isInside` noted; \a entered is true for the first time.
    virtual void send(bool /*entered*/, double /*time*/) {}
    /// The centre of the box, in the system of a place.
    virtual osg::Vec3f centerAt(const osg::Matrix& /*toWorld*/) const
    {
        return centerPart.read<SFVec3f>(node()).value();
    }
    /// The smallest size that makes a box.
    virtual bool isBox(const osg::Vec3f& size) const
    {
        return size[0] > 0.0F && size[1] > 0.0F && size[2] > 0.0F;
    }

    SceneState& scene() const { return *_scene.get(); }
    const osg::Matrix& viewer() const { return _viewer; }
    const osg::Vec3f& center() const { return _center; }
    const osg::Vec3f& size() const { return _size; }

    bool contains(const osg::Vec3f& place) const
    {
        for (osg::UInt32 axis = 0; axis < 3; ++axis) {
            if (!(std::abs(place[axis] - _center[axis]) <= 0.5F * _size[axis]))
                return false;
        }
        return true;
    }

    /// Writes a value when it is another one than before, or in any case when asked to.
    template <class F, class T>
    void report(const Part& part, const T& value, bool always, double time)
    {
        F& field = part.edit<F>(node());
        if (always || !(field.value() == value))
            field.setValue(time, value, Field::EVENT_CT);
    }

private:
    static constexpr double StandByInterval = 1.0;

    bool readBox()
    {
        _size = sizePart.read<SFVec3f>(node()).value();
        return isUsable(_size) && isBox(_size);
    }

    bool placeBox(const osg::Matrix& toWorld)
    {
        _center = centerAt(toWorld);
        return isUsable(_center);
    }

    void setActive(bool active, double time)
    {
        const bool changed = active != _active;
        _active = active;
        if (changed) {
            isActivePart.edit<SFBool>(node()).setValue(time, active, Field::EVENT_CT);
            (active ? enterTimePart : exitTimePart)
                .edit<SFTime>(node())
                .setValue(time, time, Field::EVENT_CT);
        }
        if (active)
            send(changed, time);
    }

    LayerSeat _scene;
    osg::Matrix _viewer;
    osg::Vec3f _center;
    osg::Vec3f _size;
    unsigned long _seenVersion = 0; ///< 0 to look in any case
    unsigned long _seenViewVersion = 0;
    bool _active = false;
};

/// Senses the viewer in a box.
class ProximitySensorProc : public EnvironmentSensorProc
{
public:
    using EnvironmentSensorProc::EnvironmentSensorProc;

protected:
    bool isInside(const osg::Matrix& toWorld) override
    {
        _toLocal = osg::Matrix();
        if (!toWorld.inverse(_toLocal))
            return false;
        _local = _toLocal;
        _local.mult(viewer());
        const osg::Vec3f place = translationOf(_local);
        return isUsable(place) && contains(place);
    }

    void send(bool entered, double time) override
    {
        report<SFVec3f>(positionPart, translationOf(_local), entered, time);
        report<SFRotation>(orientationPart, rotationOf(_local), entered, time);
        if (const std::optional<osg::Vec3f> center = centerOfRotation())
            report<SFVec3f>(centerOfRotationChangedPart, *center, entered, time);
    }

private:
    std::optional<osg::Vec3f> centerOfRotation() const
    {
        auto* const viewpoint = static_cast<ViewpointProc*>(scene().stack(BindableKind::Viewpoint).bound());
        if (!viewpoint || !centerOfRotationPart.isIn(viewpoint->node()))
            return std::nullopt;
        osg::Vec3f pivot;
        viewpoint->pivot(pivot);
        osg::Pnt3f center(pivot);
        if (const GroupProc* const group = groupOf(*viewpoint))
            group->toWorld().multMatrixPnt(center);
        _toLocal.multMatrixPnt(center);
        return osg::Vec3f(center);
    }

    osg::Matrix _toLocal; ///< from the world
    osg::Matrix _local;   ///< from the viewer
};

/// Senses the viewer in a box about a geographic place. Places are those of the world, in whatever groups the
/// sensor stands; the box lies along the axes of its own group.
class GeoProximitySensorProc : public ProximitySensorProc
{
public:
    using ProximitySensorProc::ProximitySensorProc;

protected:
    osg::Vec3f centerAt(const osg::Matrix& toWorld) const override
    {
        // The field has had two names.
        const osg::Vec3d& named = geoCenterPart.read<SFVec3d>(node()).value();
        const osg::Vec3d& center = named == osg::Vec3d() ? centerPart.read<SFVec3d>(node()).value() : named;
        osg::Matrix4d toLocal;
        if (!toDouble(toWorld).inverse(toLocal))
            return osg::Vec3f(osg::Inf, osg::Inf, osg::Inf); // nowhere
        return osg::Vec3f(transformed(toLocal, GeoSystem::of(node()).toScene(center)));
    }

    void send(bool entered, double time) override
    {
        ProximitySensorProc::send(entered, time);
        const osg::Vec3d eye(translationOf(viewer()));
        report<SFVec3d>(geoCoordPart, GeoSystem::of(node()).fromScene(eye), entered, time);
    }
};

/// Senses whether a box may be seen.
class VisibilitySensorProc : public EnvironmentSensorProc
{
public:
    using EnvironmentSensorProc::EnvironmentSensorProc;

protected:
    bool isInside(const osg::Matrix& toWorld) override
    {
        return scene().isBoxSeen(toWorld, center(), size());
    }

    bool isBox(const osg::Vec3f& size) const override
    {
        return size[0] >= 0.0F && size[1] >= 0.0F && size[2] >= 0.0F;
    }
};

/// Senses another node in a box.
class TransformSensorProc : public EnvironmentSensorProc
{
public:
    using EnvironmentSensorProc::EnvironmentSensorProc;

protected:
    bool isInside(const osg::Matrix& toWorld) override
    {
        ElementProc* const target = elementOf(targetObjectPart.readNode(node()));
        const osg::NodePtr tree = target ? target->tree() : osg::NodePtr();
        osg::Matrix toLocal;
        if (!tree || !toWorld.inverse(toLocal))
            return false;
        _local = toLocal;
        _local.mult(tree->getToWorld());
        osg::DynamicVolume volume;
        tree->getWorldVolume(volume);
        if (volume.isEmpty())
            return contains(translationOf(_local));
        osg::BoxVolume extent;
        extent.setEmpty();
        extent.extendBy(volume);
        extent.transform(toLocal);
        const osg::BoxVolume box(osg::Pnt3f(center() - size() * 0.5F), osg::Pnt3f(center() + size() * 0.5F));
        return isUsable(translationOf(_local)) && static_cast<const osg::Volume&>(box).intersect(extent);
    }

    void send(bool entered, double time) override
    {
        report<SFVec3f>(positionPart, translationOf(_local), entered, time);
        report<SFRotation>(orientationPart, rotationOf(_local), entered, time);
    }

private:
    osg::Matrix _local; ///< from the target
};

const ProcRegistration geoProximitySensor("GeoProximitySensor", makeProc<GeoProximitySensorProc>);
const ProcRegistration proximitySensor("ProximitySensor", makeProc<ProximitySensorProc>);
const ProcRegistration visibilitySensor("VisibilitySensor", makeProc<VisibilitySensorProc>);
const ProcRegistration transformSensor("TransformSensor", makeProc<TransformSensorProc>);

} // namespace

} // namespace Orvane
