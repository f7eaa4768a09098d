#include "base/ValueFields.h"
#include "base/ValueOrigin.h"
#include "core/ElementProc.h"
#include "core/Part.h"
#include "core/SceneFiles.h"
#include "core/SoundFile.h"
#include "core/TimedRun.h"
#include <Orvane/Context.h>
#include <Orvane/MFString.h>
#include <Orvane/SFBool.h>
#include <Orvane/SFFloat.h>
#include <cmath>

namespace Orvane {

namespace {

const Part durationPart("duration_changed");
const Part loadPart("load");
const Part pitchPart("pitch");
const Part urlPart("url");

/// Behaviour of an `AudioClip`: runs for as long as its recording would be heard.
class AudioClipProc : public ElementProc, private TimedRun
{
public:
    explicit AudioClipProc(Node& node)
        : ElementProc(node)
        , TimedRun(node)
    {
    }

    void start(double time) override
    {
        load(time, true);
        setTicking(true);
    }

    void fieldChanged(Field& field, double time) override
    {
        if (urlPart.is(field) || loadPart.is(field)) {
            end(time);
            load(time, false);
        } else if (!concerns(field) && !pitchPart.is(field))
            return;
        tick(time);
    }

    void childrenChanged(Field&) override {}

    void tick(double time) override
    {
        const double next = evaluate(time);
        setTicking(next < Never);
        if (next < Never)
            requestFrame(next - time);
    }

private:
    double cycleInterval() override
    {
        const double pitch = static_cast<double>(pitchPart.read<SFFloat>(node()).value());
        return std::isfinite(pitch) && pitch > 0.0 ? _duration / pitch : 0.0;
    }

    double pace() const override { return 0.1; }

    /// Takes the first recording of the addresses. The loader has told of files that are not there if they
    /// are \a loaded.
    void load(double time, bool loaded)
    {
        _duration = 0.0;
        const auto& urls = urlPart.read<MFString>(node());
        if (loadPart.read<SFBool>(node()).value() && urls.size() > 0) {
            bool hasFound = false;
            for (int i = 0; i < static_cast<int>(urls.size()) && !(_duration > 0.0); ++i)
                hasFound = read(urls, urls[i]) || hasFound;
            if (!(_duration > 0.0) && (hasFound || !loaded))
                complain("url", "expected a sound file that can be read, found " + quotedAddresses(urls));
        }
        const double told = _duration > 0.0 ? _duration : -1.0;
        auto& field = durationPart.edit<SFTime>(node());
        if (field.value() != told)
            field.setValue(time, told, Field::EVENT_CT);
    }

    /// Reads the recording of an address. False when the address leads nowhere.
    bool read(const MFString& urls, const std::string& address)
    {
        std::string mimeType;
        std::vector<std::uint8_t> data;
        if (readDataAddress(address, mimeType, data)) {
            _duration = soundDuration(data);
            return true;
        }
        const std::string file = localFileOf(valueOrigin(urls), address);
        if (file.empty())
            return false;
        _duration = soundDuration(file);
        return true;
    }

    double _duration = 0.0; ///< seconds of the recording; 0 while there is none
};

const ProcRegistration audioClip("AudioClip", makeProc<AudioClipProc>);

} // namespace

} // namespace Orvane
