#pragma once

#include "base/ValueFields.h"
#include "core/Part.h"
#include "core/TimedRun.h"
#include <Orvane/MFString.h>
#include <Orvane/SFBool.h>
#include <Orvane/SFFloat.h>
#include <cmath>

namespace Orvane {

/// What behaviours of recordings have in common: the file of their addresses has a duration, for which they
/// run. \a Base is the behaviour of the node beside that.
template <class Base>
class MediaProc : public Base, protected TimedRun
{
public:
    /// \a speed is the field that tells how fast the recording runs.
    MediaProc(Node& node, const Part& speed)
        : Base(node)
        , TimedRun(node)
        , _speedField(speed)
    {
    }

    void start(double time) override
    {
        load(time, true);
        this->setTicking(true);
        Base::start(time);
    }

    void fieldChanged(Field& field, double time) override
    {
        const bool isOther = _urlField.is(field) || _loadField.is(field);
        if (isOther) {
            end(time);
            load(time, false);
        }
        if (isOther || concerns(field) || _speedField.is(field))
            tick(time);
        else
            Base::fieldChanged(field, time);
    }

    void tick(double time) override
    {
        const double next = evaluate(time);
        this->setTicking(next < Never);
        if (next < Never)
            this->requestFrame(next - time);
    }

protected:
    /// Takes the first recording of the addresses; none when \a urls is null. The loader has told of files
    /// that are not there if they are \a loaded.
    virtual void takeFile(const MFString* urls, bool loaded) = 0;
    /// Seconds of the recording at its usual speed; 0 while there is none.
    virtual double duration() const = 0;
    /// How fast the recording runs, in relation to its usual speed; 0 for what is no number.
    double speed() const
    {
        const float value = _speedField.template read<SFFloat>(this->node()).value();
        return std::isfinite(value) ? static_cast<double>(value) : 0.0;
    }

private:
    void load(double time, bool loaded)
    {
        const bool isWanted = _loadField.template read<SFBool>(this->node()).value();
        takeFile(isWanted ? &_urlField.template read<MFString>(this->node()) : nullptr, loaded);
        const double told = duration() > 0.0 ? duration() : -1.0;
        auto& field = _durationField.template edit<SFTime>(this->node());
        if (field.value() != told)
            field.setValue(time, told, Field::EVENT_CT);
    }

    static inline const Part _durationField{"duration_changed"};
    static inline const Part _loadField{"load"};
    static inline const Part _urlField{"url"};

    const Part& _speedField;
};

} // namespace Orvane
