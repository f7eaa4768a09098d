#include "core/ParticleProcs.h"
#include "base/ValueFields.h"
#include "core/ComposedMeshProc.h"
#include "core/NormalGenerator.h"
#include "core/Part.h"
#include "core/UsableValues.h"
#include <Orvane/MFInt32.h>
#include <Orvane/SFBool.h>
#include <Orvane/SFFloat.h>
#include <algorithm>
#include <cmath>

namespace Orvane {

namespace {

const Part anglePart("angle");
const Part coordIndexPart("coordIndex");
const Part coordPart("coord");
const Part directionPart("direction");
const Part enabledPart("enabled");
const Part forcePart("force");
const Part gustinessPart("gustiness");
const Part massPart("mass");
const Part onPart("on");
const Part positionPart("position");
const Part speedPart("speed");
const Part surfaceAreaPart("surfaceArea");
const Part turbulencePart("turbulence");
const Part variationPart("variation");

constexpr float Pi = 3.1415927F;

float number(const Part& part, const Node& node)
{
    return usableNumber(part.read<SFFloat>(node).value(), 0.0F);
}

osg::Vec3f vector(const Part& part, const Node& node)
{
    return usableVector(part.read<SFVec3f>(node).value());
}

class PointEmitterProc : public EmitterProc
{
public:
    using EmitterProc::EmitterProc;

protected:
    bool place(osg::Vec3f& position, osg::Vec3f& direction, Chance& chance) override
    {
        position = vector(positionPart, node());
        direction = particleDirection(node(), chance);
        return true;
    }
};

class ConeEmitterProc : public EmitterProc
{
public:
    using EmitterProc::EmitterProc;

protected:
    bool place(osg::Vec3f& position, osg::Vec3f& direction, Chance& chance) override
    {
        position = vector(positionPart, node());
        const osg::Vec3f axis = particleDirection(node(), chance);
        const osg::Vec3f other = std::abs(axis[0]) < 0.7F ? osg::Vec3f(1, 0, 0) : osg::Vec3f(0, 1, 0);
        const osg::Vec3f right = unitVector(axis.cross(other));
        const float lowest = std::cos(std::clamp(number(anglePart, node()), 0.0F, Pi));
        const float cosine = lowest + (1.0F - lowest) * chance.share();
        const float sine = std::sqrt(std::max(0.0F, 1.0F - cosine * cosine));
        const float turn = 2.0F * Pi * chance.share();
        direction = axis * cosine + (right * std::cos(turn) + axis.cross(right) * std::sin(turn)) * sine;
        return true;
    }
};

class ExplosionEmitterProc : public EmitterProc
{
public:
    using EmitterProc::EmitterProc;

    bool isExplosion() const override { return true; }

protected:
    bool place(osg::Vec3f& position, osg::Vec3f& direction, Chance& chance) override
    {
        position = vector(positionPart, node());
        direction = chance.direction();
        return true;
    }
};

class PolylineEmitterProc : public ShapeEmitterProc
{
public:
    using ShapeEmitterProc::ShapeEmitterProc;

protected:
    /// Any place on the lines is as likely as any other.
    bool placeAtShape(osg::Vec3f& position, osg::Vec3f& direction, Chance& chance) override
    {
        if (_lines.empty())
            return false;
        const float wanted = chance.share() * _lines.back().until;
        auto line =
            std::find_if(_lines.begin(), _lines.end(), [&](const Line& l) { return l.until >= wanted; });
        if (line == _lines.end())
            --line;
        position = line->from + (line->to - line->from) * chance.share();
        direction = particleDirection(node(), chance);
        return true;
    }

    void readShape() override
    {
        _lines.clear();
        Node* const coord = resolved(coordPart.readNode(node()));
        _coord.set(*this, procAs<ElementProc>(coord));
        std::vector<osg::Vec3f> converted;
        const std::vector<osg::Vec3f>& points = pointsOf(coord, converted);
        std::vector<int> index = coordIndexPart.read<MFInt32>(node()).values();
        if (std::all_of(index.begin(), index.end(), [](int i) { return i < 0; }))
            index = pointRuns({static_cast<int>(points.size())}, points.size());
        float length = 0.0F;
        for (std::size_t i = 1; i < index.size(); ++i) {
            const auto from = static_cast<std::size_t>(index[i - 1]);
            const auto to = static_cast<std::size_t>(index[i]);
            if (from >= points.size() || to >= points.size() || !isUsable(points[from]) ||
                !isUsable(points[to]))
                continue;
            length += (points[to] - points[from]).length();
            _lines.push_back({points[from], points[to], length});
        }
    }

private:
    struct Line
    {
        osg::Vec3f from;
        osg::Vec3f to;
        float until; ///< length of the lines up to the end of this one
    };

    Use _coord;
    std::vector<Line> _lines;
};

class ForcePhysicsProc : public ParticlePhysicsProc
{
public:
    using ParticlePhysicsProc::ParticlePhysicsProc;

    osg::Vec3f force(const Particle&, Chance&) const override
    {
        return enabledPart.read<SFBool>(node()).value() ? vector(forcePart, node()) : osg::Vec3f();
    }
};

class WindPhysicsProc : public ParticlePhysicsProc
{
public:
    using ParticlePhysicsProc::ParticlePhysicsProc;

    void begin(Chance& chance) override
    {
        const float speed =
            std::clamp(chance.about(number(speedPart, node()), number(gustinessPart, node())), 0.0F, 1e6F);
        _pressure = 0.64615F * speed * speed;
    }

    osg::Vec3f force(const Particle& particle, Chance& chance) const override
    {
        if (!enabledPart.read<SFBool>(node()).value())
            return {};
        const float turbulence = std::clamp(number(turbulencePart, node()), 0.0F, 1.0F);
        const osg::Vec3f straight = particleDirection(node(), chance);
        const osg::Vec3f direction =
            unitVector(straight * (1.0F - turbulence) + chance.direction() * turbulence);
        return direction * (_pressure * particle.surfaceArea);
    }

private:
    float _pressure = 0.0F;
};

const ProcRegistration cone("ConeEmitter", makeProc<ConeEmitterProc>);
const ProcRegistration explosion("ExplosionEmitter", makeProc<ExplosionEmitterProc>);
const ProcRegistration force("ForcePhysicsModel", makeProc<ForcePhysicsProc>);
const ProcRegistration point("PointEmitter", makeProc<PointEmitterProc>);
const ProcRegistration polyline("PolylineEmitter", makeProc<PolylineEmitterProc>);
const ProcRegistration wind("WindPhysicsModel", makeProc<WindPhysicsProc>);

} // namespace

osg::Vec3f Chance::direction()
{
    const float z = 2.0F * share() - 1.0F;
    const float turn = 2.0F * Pi * share();
    const float radius = std::sqrt(std::max(0.0F, 1.0F - z * z));
    return osg::Vec3f(radius * std::cos(turn), radius * std::sin(turn), z);
}

bool EmitterProc::isOn() const
{
    return onPart.read<SFBool>(node()).value();
}

bool EmitterProc::emit(Particle& particle, Chance& chance)
{
    osg::Vec3f direction;
    if (!place(particle.position, direction, chance))
        return false;
    const float variation = std::max(0.0F, number(variationPart, node()));
    particle.velocity = usableVector(direction * chance.about(number(speedPart, node()), variation));
    particle.mass = std::max(0.0F, chance.about(number(massPart, node()), variation));
    particle.surfaceArea = std::max(0.0F, chance.about(number(surfaceAreaPart, node()), variation));
    return true;
}

void ShapeEmitterProc::fieldChanged(Field& field, double time)
{
    _isRead = false;
    EmitterProc::fieldChanged(field, time);
}

void ShapeEmitterProc::childrenChanged(Field& field)
{
    _isRead = false;
    EmitterProc::childrenChanged(field);
}

void ShapeEmitterProc::elementChanged(ElementProc& element)
{
    _isRead = false;
    EmitterProc::elementChanged(element);
}

void ShapeEmitterProc::elementGone()
{
    _isRead = false;
    EmitterProc::elementGone();
}

bool ShapeEmitterProc::place(osg::Vec3f& position, osg::Vec3f& direction, Chance& chance)
{
    if (!_isRead) {
        _isRead = true;
        readShape();
    }
    return placeAtShape(position, direction, chance);
}

osg::Vec3f particleDirection(const Node& node, Chance& chance)
{
    const osg::Vec3f direction = unitVector(vector(directionPart, node));
    return isNull(direction) ? chance.direction() : direction;
}

} // namespace Orvane
