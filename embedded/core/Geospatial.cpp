#include "base/ValueFields.h"
#include "core/GeoSystem.h"
#include "core/InterpolatorProc.h"
#include "core/TransformProc.h"
#include "core/UsableValues.h"
#include "core/VectorListProc.h"
#include "core/ViewpointProc.h"
#include <Orvane/MFVec3d.h>
#include <algorithm>

namespace Orvane {

namespace {

const Part centerOfRotationPart("centerOfRotation");
const Part geoCenterPart("geoCenter");
const Part geoCoordsPart("geoCoords");
const Part geoOriginPart("geoOrigin");
const Part orientationPart("orientation");
const Part pointPart("point");
const Part positionPart("position");
const Part rotationPart("rotation");
const Part scaleOrientationPart("scaleOrientation");
const Part scalePart("scale");
const Part translationPart("translation");

/// A group that stands at a geographic place. Its matrix is made anew in each update, as its origin may have
/// changed.
class GeoGroupProc : public GroupProc
{
public:
    explicit GeoGroupProc(Node& node)
        : GroupProc(node, osg::Transform::create())
    {
    }

    void update() override
    {
        _origin.set(*this, elementOf(geoOriginPart.readNode(node())));
        auto& transform = static_cast<osg::Transform&>(*tree()->getCore());
        const osg::Matrix wanted = matrix(GeoSystem::of(node()));
        if (!(static_cast<const osg::Transform&>(transform).getMatrix() == wanted))
            transform.setMatrix(wanted);
        GroupProc::update();
    }

protected:
    virtual osg::Matrix matrix(const GeoSystem& system) const = 0;

private:
    Use _origin;
};

/// Sets its children down at a place, upright and to the north.
class GeoLocationProc : public GeoGroupProc
{
public:
    using GeoGroupProc::GeoGroupProc;

protected:
    osg::Matrix matrix(const GeoSystem& system) const override
    {
        return system.frameAt(geoCoordsPart.read<SFVec3d>(node()).value());
    }
};

/// Moves geographic children about a place, with the axes that things at that place have.
class GeoTransformProc : public GeoGroupProc
{
public:
    using GeoGroupProc::GeoGroupProc;

protected:
    osg::Matrix matrix(const GeoSystem& system) const override
    {
        osg::Matrix result = system.frameAt(geoCenterPart.read<SFVec3d>(node()).value());
        osg::Matrix back;
        if (!result.inverse(back))
            return osg::Matrix();
        const osg::Vec3f& scale = scalePart.read<SFVec3f>(node()).value();
        osg::Matrix change;
        change.setTransform(usableVector(translationPart.read<SFVec3f>(node()).value()),
                            toQuaternion(rotationPart.read<SFRotation>(node()).value()),
                            osg::Vec3f(usableNumber(scale[0], 1.0F), usableNumber(scale[1], 1.0F),
                                       usableNumber(scale[2], 1.0F)),
                            toQuaternion(scaleOrientationPart.read<SFRotation>(node()).value()));
        result.mult(change);
        result.mult(back);
        return result;
    }
};

/// Points by their geographic places.
class GeoCoordinateProc : public VectorListProc
{
public:
    using VectorListProc::VectorListProc;

    void start(double) override { requestUpdate(); }
    void fieldChanged(Field&, double) override { requestUpdate(); }
    void childrenChanged(Field&) override { requestUpdate(); }

    void update() override
    {
        _origin.set(*this, elementOf(geoOriginPart.readNode(node())));
        const GeoSystem system = GeoSystem::of(node());
        const std::vector<osg::Vec3d>& places = pointPart.read<MFVec3d>(node()).values();
        std::vector<osg::Vec3f> points;
        points.reserve(places.size());
        for (const osg::Vec3d& place : places)
            points.emplace_back(system.toScene(place));
        bend(std::move(points));
    }

protected:
    void elementChanged(ElementProc&) override { requestUpdate(); }

private:
    Use _origin;
};

/// A viewpoint at a geographic place, whose orientation counts from a viewer who looks north there.
class GeoViewpointProc : public ViewpointProc
{
public:
    using ViewpointProc::ViewpointProc;

    void update() override
    {
        _origin.set(*this, elementOf(geoOriginPart.readNode(node())));
        ViewpointProc::update();
    }

    bool pivot(osg::Vec3f& center) const override
    {
        const osg::Vec3d& place = centerOfRotationPart.read<SFVec3d>(node()).value();
        if (place == osg::Vec3d())
            return false;
        center = osg::Vec3f(GeoSystem::of(node()).toScene(place));
        return true;
    }

protected:
    osg::Matrix place() const override
    {
        osg::Matrix result = GeoSystem::of(node()).frameAt(positionPart.read<SFVec3d>(node()).value());
        osg::Matrix turn;
        turn.setRotate(toQuaternion(orientationPart.read<SFRotation>(node()).value()));
        result.mult(turn);
        return result;
    }

private:
    Use _origin;
};

/// Blends between geographic places, by their coordinates.
class GeoPositionInterpolatorProc : public InterpolatorBase
{
public:
    using InterpolatorBase::InterpolatorBase;

protected:
    void send(const std::vector<float>& keys, float fraction, double time) override
    {
        static const Part keyValuePart("keyValue");
        static const Part geoValuePart("geovalue_changed");
        static const Part valuePart("value_changed");
        const std::vector<osg::Vec3d>& values = keyValuePart.read<MFVec3d>(node()).values();
        const std::size_t count = std::min(keys.size(), values.size());
        if (count == 0)
            return;
        const KeyPlace at = place(keys, count, fraction);
        osg::Vec3d value = values[at.first];
        if (at.t > 0.0F)
            value += (values[at.first + 1] - value) * static_cast<double>(at.t);
        geoValuePart.edit<SFVec3d>(node()).setValue(time, value, Field::EVENT_CT);
        valuePart.edit<SFVec3f>(node()).setValue(time, osg::Vec3f(GeoSystem::of(node()).toScene(value)),
                                                 Field::EVENT_CT);
    }
};

const ProcRegistration coordinate("GeoCoordinate", makeProc<GeoCoordinateProc>);
const ProcRegistration interpolator("GeoPositionInterpolator", makeProc<GeoPositionInterpolatorProc>);
const ProcRegistration location("GeoLocation", makeProc<GeoLocationProc>);
const ProcRegistration origin("GeoOrigin", makeProc<DescriptionProc>);
const ProcRegistration transform("GeoTransform", makeProc<GeoTransformProc>);
const ProcRegistration viewpoint("GeoViewpoint", makeProc<GeoViewpointProc>);

} // namespace

} // namespace Orvane
