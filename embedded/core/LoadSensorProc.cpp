#include "base/Proc.h"
#include "base/ValueFields.h"
#include "base/ValueOrigin.h"
#include "core/AppearanceProcs.h"
#include "core/Part.h"
#include "core/SceneFiles.h"
#include <Orvane/MFNode.h>
#include <Orvane/MFString.h>
#include <Orvane/SFBool.h>
#include <Orvane/SFFloat.h>
#include <algorithm>
#include <utility>

namespace Orvane {

namespace {

const Part childrenPart("children");
const Part durationPart("duration_changed");
const Part enabledPart("enabled");
const Part isActivePart("isActive");
const Part isLoadedPart("isLoaded");
const Part loadPart("load");
const Part loadTimePart("loadTime");
const Part progressPart("progress");
const Part timeOutPart("timeOut");
const Part urlPart("url");

/// Tells when the files of other nodes have been loaded. Files are local and read at once, so that what is
/// waited for is only that somebody sets `load`.
class LoadSensorProc : public Proc
{
public:
    using Proc::Proc;

    void start(double) override { setTicking(true); }

    void tick(double time) override
    {
        constexpr double StandByInterval = 1.0;
        // Whatever changes the nodes asks for frames.
        requestFrame(StandByInterval);
        const bool isEnabled = enabledPart.read<SFBool>(node()).value();
        std::vector<Watched> seen = isEnabled ? look() : std::vector<Watched>();
        if (seen != _seen) {
            // A node takes up what was written to it after this look.
            _seen = std::move(seen);
            _isTold = false;
            requestFrame();
        } else if (!std::exchange(_isTold, true)) {
            _begin = time;
            tell(time);
        } else if (isActivePart.read<SFBool>(node()).value()) {
            waitOn(time);
        }
    }

private:
    enum State { WAITING, LOADED, FAILED };

    /// A watched node: its address, and what has become of it.
    struct Watched
    {
        const Node* node; ///< only compared
        std::vector<std::string> url;
        State state;

        bool operator==(const Watched& other) const
        {
            return node == other.node && url == other.url && state == other.state;
        }
    };

    std::vector<Watched> look() const
    {
        std::vector<Watched> seen;
        for (NodeLink& link : childrenPart.read<MFNode>(node())) {
            Node* const child = resolved(link.node());
            if (!child || !urlPart.isIn(*child))
                continue;
            const auto& urls = urlPart.read<MFString>(*child);
            Watched watched{child, {}, WAITING};
            for (int i = 0; i < static_cast<int>(urls.size()); ++i)
                watched.url.push_back(urls[i]);
            const bool waits =
                urls.size() == 0 || (loadPart.isIn(*child) && !loadPart.read<SFBool>(*child).value());
            watched.state = waits ? WAITING : isLoaded(*child) ? LOADED : FAILED;
            seen.push_back(std::move(watched));
        }
        return seen;
    }

    static bool isLoaded(Node& child)
    {
        if (auto* const texture = procAs<TextureProc>(&child))
            return static_cast<bool>(texture->image());
        if (durationPart.isIn(child))
            return durationPart.read<SFTime>(child).value() >= 0.0;
        const auto& urls = urlPart.read<MFString>(child);
        for (int i = 0; i < static_cast<int>(urls.size()); ++i) {
            std::string mimeType;
            std::vector<std::uint8_t> data;
            if (readDataAddress(urls[i], mimeType, data) || !localFileOf(valueOrigin(urls), urls[i]).empty())
                return true;
        }
        return false;
    }

    std::size_t count(State state) const
    {
        return static_cast<std::size_t>(std::count_if(
            _seen.begin(), _seen.end(), [state](const Watched& watched) { return watched.state == state; }));
    }

    void tell(double time)
    {
        setActive(count(WAITING) > 0 && count(FAILED) == 0, time);
        if (_seen.empty())
            return;
        const float share = static_cast<float>(count(LOADED)) / static_cast<float>(_seen.size());
        progressPart.edit<SFFloat>(node()).setValue(time, share, Field::EVENT_CT);
        if (count(FAILED) > 0) {
            isLoadedPart.edit<SFBool>(node()).setValue(time, false, Field::EVENT_CT);
        } else if (count(LOADED) == _seen.size()) {
            isLoadedPart.edit<SFBool>(node()).setValue(time, true, Field::EVENT_CT);
            loadTimePart.edit<SFTime>(node()).setValue(time, time, Field::EVENT_CT);
        }
    }

    /// Gives up when that takes too long.
    void waitOn(double time)
    {
        const double timeOut = timeOutPart.read<SFTime>(node()).value();
        if (!(timeOut > 0.0))
            return;
        if (time - _begin < timeOut) {
            requestFrame(_begin + timeOut - time);
            return;
        }
        setActive(false, time);
        isLoadedPart.edit<SFBool>(node()).setValue(time, false, Field::EVENT_CT);
    }

    void setActive(bool active, double time)
    {
        auto& field = isActivePart.edit<SFBool>(node());
        if (field.value() != active)
            field.setValue(time, active, Field::EVENT_CT);
    }

    std::vector<Watched> _seen;
    double _begin = 0.0; ///< when the waiting began
    bool _isTold = true;
};

const ProcRegistration loadSensor("LoadSensor", makeProc<LoadSensorProc>);

} // namespace

} // namespace Orvane
