#pragma once

#include "base/Proc.h"
#include "base/ValueFields.h"
#include "core/Blend.h"
#include "core/KeyTable.h"
#include "core/Part.h"
#include <Orvane/MFFloat.h>
#include <Orvane/SFFloat.h>
#include <cmath>

namespace Orvane {

/// Blends two single key values.
template <class Value>
struct PlainBlend
{
    Value operator()(const Value& a, const Value& b, float t) const { return blend(a, b, t); }
};

/// Blends the values of a list that are directions.
struct DirectionBlend
{
    osg::Vec3f operator()(const osg::Vec3f& a, const osg::Vec3f& b, float t) const
    {
        return blendDirections(a, b, t);
    }
};

/// What all interpolators have in common: a fraction comes in, and the blend of two key values goes out. Bad
/// keys never stop it: surplus keys and key values are ignored, a fraction that is no number sends nothing.
class InterpolatorBase : public Proc
{
public:
    using Proc::Proc;

    void fieldChanged(Field& field, double time) override
    {
        static const Part setFraction("set_fraction");
        static const Part key("key");
        if (!setFraction.is(field))
            return;
        const float fraction = setFraction.read<SFFloat>(node()).value();
        const std::vector<float>& keys = key.read<MFFloat>(node()).values();
        if (keys.empty() || !std::isfinite(fraction))
            return;
        send(keys, fraction, time);
    }

protected:
    virtual void send(const std::vector<float>& keys, float fraction, double time) = 0;

    KeyPlace place(const std::vector<float>& keys, std::size_t count, float fraction)
    {
        const KeyPlace found = findKey(keys, count, fraction, _hint);
        _hint = found.first;
        return found;
    }

private:
    std::size_t _hint = 0;
};

/// An interpolator whose result is one value.
template <class KeyField, class OutField, class Value, class Blend = PlainBlend<Value>>
class InterpolatorProc : public InterpolatorBase
{
public:
    using InterpolatorBase::InterpolatorBase;

protected:
    void send(const std::vector<float>& keys, float fraction, double time) override
    {
        static const Part keyValue("keyValue");
        static const Part valueChanged("value_changed");
        const std::vector<Value>& values = keyValue.read<KeyField>(node()).values();
        const std::size_t count = std::min(keys.size(), values.size());
        if (count == 0)
            return;
        const KeyPlace at = place(keys, count, fraction);
        const Value& first = values[at.first];
        valueChanged.edit<OutField>(node()).setValue(
            time, at.t > 0.0F ? Blend()(first, values[at.first + 1], at.t) : first, Field::EVENT_CT);
    }
};

/// An interpolator whose result is a list: each key has as many values as the list is long.
template <class ValueField, class Value, class Blend = PlainBlend<Value>>
class ListInterpolatorProc : public InterpolatorBase
{
public:
    using InterpolatorBase::InterpolatorBase;

protected:
    void send(const std::vector<float>& keys, float fraction, double time) override
    {
        static const Part keyValue("keyValue");
        static const Part valueChanged("value_changed");
        const std::vector<Value>& values = keyValue.read<ValueField>(node()).values();
        const std::size_t length = values.size() / keys.size();
        if (length == 0)
            return;
        const KeyPlace at = place(keys, keys.size(), fraction);
        ValueField& out = valueChanged.edit<ValueField>(node());
        std::vector<Value>& result = out.editValues();
        const Value* const first = values.data() + at.first * length;
        if (at.t > 0.0F) {
            result.resize(length);
            for (std::size_t i = 0; i < length; ++i)
                result[i] = Blend()(first[i], first[i + length], at.t);
        } else
            result.assign(first, first + length);
        out.processValueChange(time, Field::EVENT_CT);
    }
};

} // namespace Orvane
