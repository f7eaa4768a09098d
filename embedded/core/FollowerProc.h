#pragma once

#include "base/Proc.h"
#include "base/ValueFields.h"
#include "core/FollowedValues.h"
#include "core/Part.h"
#include <Orvane/SFBool.h>
#include <Orvane/SFFloat.h>
#include <Orvane/SFInt32.h>
#include <cmath>
#include <deque>
#include <utility>

namespace Orvane {

/// How followers read and write a field: one value, or the whole list.
template <class F>
struct FollowedField
{
    using Value = std::decay_t<decltype(std::declval<const F&>().value())>;

    static const Value& read(const Part& part, const Node& node) { return part.read<F>(node).value(); }
    static void send(const Part& part, Node& node, const Value& value, double time)
    {
        part.edit<F>(node).setValue(time, value, Field::EVENT_CT);
    }
};

template <class T>
struct FollowedListField
{
    using Value = std::vector<T>;

    static const Value& read(const Part& part, const Node& node)
    {
        return part.read<MVField<T, 0>>(node).values();
    }
    static void send(const Part& part, Node& node, const Value& value, double time)
    {
        auto& field = part.edit<MVField<T, 0>>(node);
        field.editValues() = value;
        field.processValueChange(time, Field::EVENT_CT);
    }
};

/// What all followers have in common: a destination comes in, and a value goes out that moves there in the
/// course of time. A follower ticks only while its value is on the way.
template <class Access>
class FollowerProc : public Proc
{
public:
    using Value = typename Access::Value;
    using Space = Followed<Value>;
    using Proc::Proc;

    void start(double) override
    {
        static const Part initialValue("initialValue");
        _value = Access::read(initialValue, node());
        _destination = _value;
        reset(_value);
        // The way to the first destination begins with the first frame.
        setTicking(true);
    }

    void fieldChanged(Field& field, double time) override
    {
        static const Part setDestination("set_destination");
        static const Part setValue("set_value");
        begin(time);
        if (setDestination.is(field))
            head(Access::read(setDestination, node()), time);
        else if (setValue.is(field)) {
            const Value& value = Access::read(setValue, node());
            reset(value);
            send(value, time);
            head(_destination, time);
        }
    }

    bool rest(double) override { return true; }
    void resume(double) override { setTicking(true); }

    void tick(double time) override
    {
        begin(time);
        Value value = _value;
        if (isOnTheWay() && advance(value, _destination, time))
            send(value, time);
        else
            arrive(time);
    }

protected:
    /// Stands at \a value, with nothing left of what it was asked before.
    virtual void reset(const Value& value) = 0;
    /// From now on it goes from one destination to another.
    virtual void redirect(const Value& from, const Value& to, double time) = 0;
    /// The value at \a time; false when the destination is reached.
    virtual bool advance(Value& value, const Value& destination, double time) = 0;
    /// True when there is no way to go: values follow at once.
    virtual bool jumps() const = 0;

    bool isOnTheWay() const { return activeFlag().template read<SFBool>(node()).value(); }

private:
    static const Part& activeFlag()
    {
        static const Part part("isActive");
        return part;
    }

    void begin(double time)
    {
        static const Part initialDestination("initialDestination");
        if (std::exchange(_begun, true))
            return;
        head(Access::read(initialDestination, node()), time);
    }

    void head(const Value& to, double time)
    {
        const Value from = _destination;
        _destination = to;
        const float way = Space::distance(_value, to);
        // What is no number has no way, and would be followed for ever.
        if (jumps() || !std::isfinite(way)) {
            reset(to);
            arrive(time);
            return;
        }
        redirect(from, to, time);
        if (_value != to)
            setActive(true, time);
    }

    void arrive(double time)
    {
        if (_value != _destination)
            send(_destination, time);
        setActive(false, time);
    }

    void send(const Value& value, double time)
    {
        static const Part valueChanged("value_changed");
        _value = value;
        Access::send(valueChanged, node(), _value, time);
    }

    void setActive(bool active, double time)
    {
        setTicking(active);
        if (isOnTheWay() != active)
            activeFlag().template edit<SFBool>(node()).setValue(time, active, Field::EVENT_CT);
    }

    Value _value{};
    Value _destination{};
    bool _begun = false;
};

/// Approaches its destination by a chain of up to five filters of the first order, each of which follows
/// the one before it and covers all but 1/e of its way in `tau` seconds.
template <class Access>
class DamperProc : public FollowerProc<Access>
{
public:
    using Base = FollowerProc<Access>;
    using Base::Base;
    using typename Base::Space;
    using typename Base::Value;

protected:
    void reset(const Value& value) override { _stages.assign(order(), value); }

    void redirect(const Value&, const Value&, double time) override
    {
        if (!this->isOnTheWay())
            _last = time;
    }

    bool jumps() const override { return order() == 0 || !(tau() > 0.0); }

    bool advance(Value& value, const Value& destination, double time) override
    {
        if (jumps())
            return false;
        _stages.resize(order(), value);
        const double passed = std::max(0.0, time - _last);
        _last = time;
        const auto share = static_cast<float>(1.0 - std::exp(-passed / tau()));
        const Value* ahead = &destination;
        float rest = 0.0F;
        for (Value& stage : _stages) {
            stage = Space::between(stage, *ahead, share);
            rest = std::max(rest, Space::distance(stage, destination));
            ahead = &stage;
        }
        value = _stages.back();
        return rest > tolerance();
    }

private:
    std::size_t order() const
    {
        static const Part part("order");
        return static_cast<std::size_t>(std::clamp(part.read<SFInt32>(this->node()).value(), 0, 5));
    }
    double tau() const
    {
        static const Part part("tau");
        return part.read<SFTime>(this->node()).value();
    }
    /// How near is there: the scene says so, or what no picture shows.
    float tolerance() const
    {
        static const Part part("tolerance");
        const float given = part.read<SFFloat>(this->node()).value();
        return given >= 0.0F ? given : 1e-4F;
    }

    std::vector<Value> _stages; ///< the outputs of the filters
    double _last = 0.0;         ///< time up to which they have come
};

/// Reaches its destination in `duration` seconds, with a soft start and a soft end. Destinations that come
/// meanwhile are all followed, each with a transition of its own on top of the others.
template <class Access>
class ChaserProc : public FollowerProc<Access>
{
public:
    using Base = FollowerProc<Access>;
    using Base::Base;
    using typename Base::Space;
    using typename Base::Value;

protected:
    void reset(const Value& value) override
    {
        _base = value;
        _turns.clear();
    }

    void redirect(const Value& from, const Value& to, double time) override
    {
        // What comes nearly at the same time is one transition, so that their number has a bound.
        if (!_turns.empty() && time - _turns.back().time < duration() / 256.0)
            _turns.back().to = to;
        else
            _turns.push_back({_turns.empty() ? _base : from, to, time});
    }

    bool jumps() const override { return !(duration() > 0.0); }

    bool advance(Value& value, const Value&, double time) override
    {
        while (!_turns.empty() && time - _turns.front().time >= duration()) {
            _base = Space::moved(_base, _turns.front().from, _turns.front().to, 1.0F);
            _turns.pop_front();
        }
        if (_turns.empty())
            return false;
        value = _base;
        for (const Turn& turn : _turns)
            value = Space::moved(value, turn.from, turn.to, response((time - turn.time) / duration()));
        return true;
    }

private:
    /// A new destination, and the one before it.
    struct Turn
    {
        Value from;
        Value to;
        double time;
    };

    /// The share of a way that is done after a share of the duration.
    static float response(double passed)
    {
        return static_cast<float>(0.5 - 0.5 * std::cos(3.14159265358979 * std::clamp(passed, 0.0, 1.0)));
    }
    double duration() const
    {
        static const Part part("duration");
        return part.read<SFTime>(this->node()).value();
    }

    Value _base{}; ///< where the transitions that are over have led
    std::deque<Turn> _turns;
};

} // namespace Orvane
