#include "core/InterpolatorProc.h"
#include <Orvane/MFRotation.h>
#include <Orvane/MFVec2f.h>
#include <Orvane/MFVec3f.h>
#include <Orvane/SFBool.h>

namespace Orvane {

namespace {

const Part closedPart("closed");
const Part keyValuePart("keyValue");
const Part keyVelocityPart("keyVelocity");
const Part normalizeVelocityPart("normalizeVelocity");
const Part valueChangedPart("value_changed");

float lengthOf(float value)
{
    return std::abs(value);
}

template <osg::UInt32 N>
float lengthOf(const osg::Vector<float, N>& value)
{
    return value.length();
}

/// What lies at \a t between \a from and \a to when the way leaves and reaches them with these velocities.
template <class Value>
Value hermite(const Value& from, const Value& to, const Value& leave, const Value& reach, float t)
{
    const float t2 = t * t;
    const float t3 = t2 * t;
    return from * (2.0F * t3 - 3.0F * t2 + 1.0F) + to * (3.0F * t2 - 2.0F * t3) +
           leave * (t3 - 2.0F * t2 + t) + reach * (t3 - t2);
}

/// An interpolator that goes through its key values along Hermite curves. The scene gives the velocities at
/// all keys, or at the two ends, or none: then each is half the way between the key's neighbours. They are
/// scaled by the lengths of the intervals on both sides of a key, so that the way has no jolt there.
template <class KeyField, class OutField, class Value>
class SplineInterpolatorProc : public InterpolatorBase
{
public:
    using InterpolatorBase::InterpolatorBase;

protected:
    void send(const std::vector<float>& keys, float fraction, double time) override
    {
        const std::vector<Value>& values = keyValuePart.read<KeyField>(node()).values();
        const std::size_t count = std::min(keys.size(), values.size());
        if (count == 0)
            return;
        const KeyPlace at = place(keys, count, fraction);
        Value result = values[at.first];
        if (at.t > 0.0F) {
            const Way way{keys,
                          values,
                          keyVelocityPart.read<KeyField>(node()).values(),
                          count,
                          isRing(values, count),
                          normalizeVelocityPart.read<SFBool>(node()).value()};
            const std::size_t next = at.first + 1;
            result = hermite(values[at.first], values[next], way.velocity(at.first) * way.leaving(at.first),
                             way.velocity(next) * way.reaching(next), at.t);
        }
        valueChangedPart.edit<OutField>(node()).setValue(time, result, Field::EVENT_CT);
    }

private:
    /// The keys with all that shapes the way through them.
    struct Way
    {
        const std::vector<float>& keys;
        const std::vector<Value>& values;
        const std::vector<Value>& velocities;
        std::size_t count;
        bool ring;
        bool normalized;

        Value velocity(std::size_t i) const
        {
            const bool atEnd = i == 0 || i + 1 == count;
            Value given{};
            if (velocities.size() == count)
                given = velocities[i];
            else if (velocities.size() == 2 && atEnd)
                given = velocities[i == 0 ? 0 : 1];
            else if (velocities.empty() && ring && atEnd)
                given = (values[1] - values[count - 2]) * 0.5F;
            else if (!atEnd)
                given = (values[i + 1] - values[i - 1]) * 0.5F;
            return normalized ? withPace(given) : given;
        }

        /// The same direction, with the length of the whole way as its length.
        Value withPace(const Value& direction) const
        {
            const float length = lengthOf(direction);
            if (!(length > 0.0F))
                return direction;
            float whole = 0.0F;
            for (std::size_t i = 0; i + 1 < count; ++i)
                whole += lengthOf(values[i + 1] - values[i]);
            return direction * (whole / length);
        }

        float leaving(std::size_t i) const { return scale(i, after(i)); }
        float reaching(std::size_t i) const { return scale(i, before(i)); }

        float scale(std::size_t i, float interval) const
        {
            if (!ring && (i == 0 || i + 1 == count))
                return 1.0F;
            const float both = before(i) + after(i);
            return both > 0.0F ? 2.0F * interval / both : 1.0F;
        }

        /// The interval that ends at a key; round the ring at the first one.
        float before(std::size_t i) const
        {
            return i > 0 ? keys[i] - keys[i - 1] : keys[count - 1] - keys[count - 2];
        }
        float after(std::size_t i) const { return i + 1 < count ? keys[i + 1] - keys[i] : keys[1] - keys[0]; }
    };

    /// A way is a ring when the scene says so and its ends meet.
    bool isRing(const std::vector<Value>& values, std::size_t count) const
    {
        return closedPart.read<SFBool>(node()).value() && values[0] == values[count - 1];
    }
};

/// An interpolator that turns smoothly through its key rotations.
class SquadInterpolatorProc : public InterpolatorBase
{
public:
    using InterpolatorBase::InterpolatorBase;

protected:
    void send(const std::vector<float>& keys, float fraction, double time) override
    {
        const std::vector<Rotation>& values = keyValuePart.read<MFRotation>(node()).values();
        const std::size_t count = std::min(keys.size(), values.size());
        if (count == 0)
            return;
        const KeyPlace at = place(keys, count, fraction);
        const std::size_t from = at.first;
        Rotation result = values[from];
        if (at.t > 0.0F) {
            const std::size_t to = from + 1;
            result = blendSmoothly(values[from > 0 ? from - 1 : from], values[from], values[to],
                                   values[to + 1 < count ? to + 1 : to], at.t);
        }
        valueChangedPart.edit<SFRotation>(node()).setValue(time, result, Field::EVENT_CT);
    }
};

/// Bends a fraction before it reaches an interpolator, so that movements start and end softly at keys.
class EaseProc : public InterpolatorBase
{
public:
    using InterpolatorBase::InterpolatorBase;

protected:
    void send(const std::vector<float>& keys, float fraction, double time) override
    {
        static const Part easeInEaseOut("easeInEaseOut");
        static const Part modifiedFraction("modifiedFraction_changed");
        const std::vector<osg::Vec2f>& eases = easeInEaseOut.read<MFVec2f>(node()).values();
        const std::size_t count = std::min(keys.size(), eases.size());
        if (count == 0)
            return;
        const KeyPlace at = place(keys, count, fraction);
        const bool over = count > 1 && at.first + 1 == count;
        const float bent = over          ? 1.0F
                           : at.t > 0.0F ? eased(at.t, eases[at.first][1], eases[at.first + 1][0])
                                         : 0.0F;
        modifiedFraction.edit<SFFloat>(node()).setValue(time, bent, Field::EVENT_CT);
    }

private:
    /// Speeds up over the share \a out of an interval, and slows down over its share \a in.
    static float eased(float t, float out, float in)
    {
        float sum = out + in;
        if (!(sum > 0.0F) || out < 0.0F || in < 0.0F)
            return t;
        if (sum > 1.0F) {
            out /= sum;
            in /= sum;
            sum = 1.0F;
        }
        const float pace = 1.0F / (2.0F - sum);
        if (t < out)
            return pace / out * t * t;
        if (t < 1.0F - in || !(in > 0.0F))
            return pace * (2.0F * t - out);
        return 1.0F - pace / in * (1.0F - t) * (1.0F - t);
    }
};

using SplinePosition = SplineInterpolatorProc<MFVec3f, SFVec3f, osg::Vec3f>;
using SplinePosition2D = SplineInterpolatorProc<MFVec2f, SFVec2f, osg::Vec2f>;
using SplineScalar = SplineInterpolatorProc<MFFloat, SFFloat, float>;

const ProcRegistration position("SplinePositionInterpolator", makeProc<SplinePosition>);
const ProcRegistration position2D("SplinePositionInterpolator2D", makeProc<SplinePosition2D>);
const ProcRegistration scalar("SplineScalarInterpolator", makeProc<SplineScalar>);
const ProcRegistration squad("SquadOrientationInterpolator", makeProc<SquadInterpolatorProc>);
const ProcRegistration ease("EaseInEaseOut", makeProc<EaseProc>);

} // namespace

} // namespace Orvane
