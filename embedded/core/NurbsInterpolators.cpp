#include "base/ValueFields.h"
#include "core/ComposedMeshProc.h"
#include "core/NurbsProcs.h"
#include "core/Part.h"
#include "core/UsableValues.h"
#include <Orvane/SFFloat.h>
#include <algorithm>
#include <cmath>

namespace Orvane {

namespace {

const Part controlPointPart("controlPoint");
const Part normalChangedPart("normal_changed");
const Part positionChangedPart("position_changed");
const Part setFractionPart("set_fraction");
const Part valueChangedPart("value_changed");

/// Sends what a curve or a surface is like at a fraction. The shape is read when a fraction comes and the
/// fields have changed.
template <class Shape>
class NurbsInterpolatorProc : public ElementProc
{
public:
    using ElementProc::ElementProc;

    void start(double) override {}

    void fieldChanged(Field& field, double time) override
    {
        if (!setFractionPart.is(field)) {
            _isRead = false;
            return;
        }
        if (!_isRead)
            readShape();
        if (_shape)
            send(*_shape, time);
    }

    void childrenChanged(Field&) override { _isRead = false; }

protected:
    void elementChanged(ElementProc&) override { _isRead = false; }
    void elementGone() override { _isRead = false; }

    virtual std::optional<Shape> read(const std::vector<osg::Vec3f>& points, NurbsFault& fault) = 0;
    virtual void send(const Shape& shape, double time) = 0;

private:
    void readShape()
    {
        _isRead = true;
        Node* const points = resolved(controlPointPart.readNode(node()));
        _controlPoints.set(*this, procAs<ElementProc>(points));
        std::vector<osg::Vec3f> converted;
        NurbsFault fault;
        _shape = read(pointsOf(points, converted), fault);
        if (fault.part)
            complain(fault.part, fault.text);
    }

    Use _controlPoints;
    std::optional<Shape> _shape;
    bool _isRead = false;
};

class NurbsLineInterpolatorProc : public NurbsInterpolatorProc<NurbsLine>
{
public:
    using NurbsInterpolatorProc::NurbsInterpolatorProc;

protected:
    std::optional<NurbsLine> read(const std::vector<osg::Vec3f>& points, NurbsFault& fault) override
    {
        return readNurbsLine(node(), points, fault);
    }

    void send(const NurbsLine& line, double time) override
    {
        const float fraction = setFractionPart.read<SFFloat>(node()).value();
        if (std::isfinite(fraction))
            sendAt(line, static_cast<double>(std::clamp(fraction, 0.0F, 1.0F)), time);
    }

    virtual void sendAt(const NurbsLine& line, double t, double time) = 0;
};

class NurbsPositionInterpolatorProc : public NurbsLineInterpolatorProc
{
public:
    using NurbsLineInterpolatorProc::NurbsLineInterpolatorProc;

protected:
    void sendAt(const NurbsLine& line, double t, double time) override
    {
        valueChangedPart.edit<SFVec3f>(node()).setValue(time, line.at(t), Field::EVENT_CT);
    }
};

/// Sends the shortest rotation that turns the z axis along the curve.
class NurbsOrientationInterpolatorProc : public NurbsLineInterpolatorProc
{
public:
    using NurbsLineInterpolatorProc::NurbsLineInterpolatorProc;

protected:
    void sendAt(const NurbsLine& line, double t, double time) override
    {
        const osg::Vec3f way = line.tangentAt(t);
        if (isNull(way))
            return;
        osg::Vec3f axis = osg::Vec3f(0.0F, 0.0F, 1.0F).cross(way);
        const float sine = axis.length();
        if (sine > 1e-6F)
            axis *= 1.0F / sine;
        else
            axis = osg::Vec3f(0.0F, 1.0F, 0.0F);
        valueChangedPart.edit<SFRotation>(node()).setValue(
            time, Rotation(axis[0], axis[1], axis[2], std::atan2(sine, way[2])), Field::EVENT_CT);
    }
};

class NurbsSurfaceInterpolatorProc : public NurbsInterpolatorProc<NurbsPatch>
{
public:
    using NurbsInterpolatorProc::NurbsInterpolatorProc;

protected:
    std::optional<NurbsPatch> read(const std::vector<osg::Vec3f>& points, NurbsFault& fault) override
    {
        return readNurbsPatch(node(), points, fault);
    }

    void send(const NurbsPatch& patch, double time) override
    {
        const osg::Vec2f& fraction = setFractionPart.read<SFVec2f>(node()).value();
        if (!std::isfinite(fraction[0]) || !std::isfinite(fraction[1]))
            return;
        const double u = static_cast<double>(std::clamp(fraction[0], 0.0F, 1.0F));
        const double v = static_cast<double>(std::clamp(fraction[1], 0.0F, 1.0F));
        positionChangedPart.edit<SFVec3f>(node()).setValue(time, patch.at(u, v), Field::EVENT_CT);
        normalChangedPart.edit<SFVec3f>(node()).setValue(time, patch.normalAt(u, v), Field::EVENT_CT);
    }
};

const ProcRegistration orientation("NurbsOrientationInterpolator",
                                   makeProc<NurbsOrientationInterpolatorProc>);
const ProcRegistration position("NurbsPositionInterpolator", makeProc<NurbsPositionInterpolatorProc>);
const ProcRegistration surface("NurbsSurfaceInterpolator", makeProc<NurbsSurfaceInterpolatorProc>);

} // namespace

} // namespace Orvane
