#include "base/Proc.h"
#include "base/ValueFields.h"
#include "core/Part.h"
#include <Orvane/MFBool.h>
#include <Orvane/MFFloat.h>
#include <Orvane/MFInt32.h>
#include <Orvane/SFBool.h>
#include <Orvane/SFFloat.h>
#include <Orvane/SFInt32.h>
#include <algorithm>
#include <cmath>

namespace Orvane {

namespace {

const Part setBoolean("set_boolean");

/// Lets true and false go different ways.
class BooleanFilterProc : public Proc
{
public:
    using Proc::Proc;

    void fieldChanged(Field& field, double time) override
    {
        static const Part inputTrue("inputTrue");
        static const Part inputFalse("inputFalse");
        static const Part inputNegate("inputNegate");
        if (!setBoolean.is(field))
            return;
        const bool value = setBoolean.read<SFBool>(node()).value();
        (value ? inputTrue : inputFalse).edit<SFBool>(node()).setValue(time, value, Field::EVENT_CT);
        inputNegate.edit<SFBool>(node()).setValue(time, !value, Field::EVENT_CT);
    }
};

/// Keeps a truth value that each true event turns over.
class BooleanToggleProc : public Proc
{
public:
    using Proc::Proc;

    void fieldChanged(Field& field, double time) override
    {
        static const Part toggle("toggle");
        if (!setBoolean.is(field) || !setBoolean.read<SFBool>(node()).value())
            return;
        auto& state = toggle.edit<SFBool>(node());
        state.setValue(time, !state.value(), Field::EVENT_CT);
    }
};

/// Makes a truth value of a time.
class BooleanTriggerProc : public Proc
{
public:
    using Proc::Proc;

    void fieldChanged(Field& field, double time) override
    {
        static const Part setTriggerTime("set_triggerTime");
        static const Part triggerTrue("triggerTrue");
        if (setTriggerTime.is(field))
            triggerTrue.edit<SFBool>(node()).setValue(time, true, Field::EVENT_CT);
    }
};

/// Makes a whole number of a truth value, be it true or false.
class IntegerTriggerProc : public Proc
{
public:
    using Proc::Proc;

    void fieldChanged(Field& field, double time) override
    {
        static const Part integerKey("integerKey");
        static const Part triggerValue("triggerValue");
        if (setBoolean.is(field))
            triggerValue.edit<SFInt32>(node()).setValue(time, integerKey.read<SFInt32>(node()).value(),
                                                        Field::EVENT_CT);
    }
};

/// Makes a time of a truth value, be it true or false.
class TimeTriggerProc : public Proc
{
public:
    using Proc::Proc;

    void fieldChanged(Field& field, double time) override
    {
        static const Part triggerTime("triggerTime");
        if (setBoolean.is(field))
            triggerTime.edit<SFTime>(node()).setValue(time, time, Field::EVENT_CT);
    }
};

bool keyValueAt(const MFBool& list, std::size_t index)
{
    return list[static_cast<int>(index)];
}

int keyValueAt(const MFInt32& list, std::size_t index)
{
    return list.values()[index];
}

/// Sends one key value after the other: as a fraction passes the keys, or step by step in a ring. Surplus
/// keys and key values are ignored.
template <class ListField, class OutField>
class SequencerProc : public Proc
{
public:
    using Proc::Proc;

    void fieldChanged(Field& field, double time) override
    {
        static const Part setFraction("set_fraction");
        static const Part next("next");
        static const Part previous("previous");
        if (setFraction.is(field))
            sendAt(setFraction.read<SFFloat>(node()).value(), time);
        else if (next.is(field) && next.read<SFBool>(node()).value())
            sendNeighbour(true, time);
        else if (previous.is(field) && previous.read<SFBool>(node()).value())
            sendNeighbour(false, time);
    }

private:
    static const ListField& values(const Node& node)
    {
        static const Part keyValue("keyValue");
        return keyValue.read<ListField>(node);
    }

    /// The value of the last key that \a fraction has reached; that of the first one before it.
    void sendAt(float fraction, double time)
    {
        static const Part key("key");
        const std::vector<float>& keys = key.read<MFFloat>(node()).values();
        const std::size_t count = std::min<std::size_t>(keys.size(), values(node()).size());
        if (count == 0 || !std::isfinite(fraction))
            return;
        const auto end = keys.begin() + static_cast<std::ptrdiff_t>(count);
        const auto after = std::upper_bound(keys.begin(), end, fraction);
        send(after == keys.begin() ? 0 : static_cast<std::size_t>(after - keys.begin()) - 1, time);
    }

    void sendNeighbour(bool next, double time)
    {
        const std::size_t count = values(node()).size();
        if (count == 0)
            return;
        const std::size_t at = std::min(_at, count - 1);
        send((next ? at + 1 : at + count - 1) % count, time);
    }

    void send(std::size_t at, double time)
    {
        static const Part valueChanged("value_changed");
        _at = at;
        valueChanged.edit<OutField>(node()).setValue(time, keyValueAt(values(node()), at), Field::EVENT_CT);
    }

    std::size_t _at = 0; ///< of the value that was sent last
};

const ProcRegistration filter("BooleanFilter", makeProc<BooleanFilterProc>);
const ProcRegistration toggle("BooleanToggle", makeProc<BooleanToggleProc>);
const ProcRegistration booleanTrigger("BooleanTrigger", makeProc<BooleanTriggerProc>);
const ProcRegistration integerTrigger("IntegerTrigger", makeProc<IntegerTriggerProc>);
const ProcRegistration timeTrigger("TimeTrigger", makeProc<TimeTriggerProc>);
const ProcRegistration booleans("BooleanSequencer", makeProc<SequencerProc<MFBool, SFBool>>);
const ProcRegistration integers("IntegerSequencer", makeProc<SequencerProc<MFInt32, SFInt32>>);

} // namespace

} // namespace Orvane
