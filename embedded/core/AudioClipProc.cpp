#include "base/ValueOrigin.h"
#include "core/ElementProc.h"
#include "core/MediaProc.h"
#include "core/SceneFiles.h"
#include "core/SoundFile.h"
#include <Orvane/Context.h>

namespace Orvane {

namespace {

const Part pitchPart("pitch");

/// Behaviour of an `AudioClip`: runs for as long as its recording would be heard.
class AudioClipProc : public MediaProc<ElementProc>
{
public:
    explicit AudioClipProc(Node& node)
        : MediaProc(node, pitchPart)
    {
    }

    void childrenChanged(Field&) override {}

protected:
    void takeFile(const MFString* urls, bool loaded) override
    {
        _duration = 0.0;
        if (!urls || urls->size() == 0)
            return;
        bool hasFound = false;
        for (int i = 0; i < static_cast<int>(urls->size()) && !(_duration > 0.0); ++i)
            hasFound = read(*urls, (*urls)[i]) || hasFound;
        if (!(_duration > 0.0) && (hasFound || !loaded))
            complain("url", "expected a sound file that can be read, found " + quotedAddresses(*urls));
    }

    double duration() const override { return _duration; }

private:
    double cycleInterval() override { return speed() > 0.0 ? _duration / speed() : 0.0; }

    double pace() const override { return 0.1; }

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

    double _duration = 0.0;
};

const ProcRegistration audioClip("AudioClip", makeProc<AudioClipProc>);

} // namespace

} // namespace Orvane
