#include "core/KeyDeviceProc.h"
#include "core/Part.h"
#include <Orvane/SFBool.h>
#include <Orvane/SFInt32.h>
#include <Orvane/SFString.h>
#include <algorithm>
#include <string>
#include <vector>

namespace Orvane {

namespace {

const Part actionKeyPressPart("actionKeyPress");
const Part actionKeyReleasePart("actionKeyRelease");
const Part altKeyPart("altKey");
const Part controlKeyPart("controlKey");
const Part deletionAllowedPart("deletionAllowed");
const Part enteredTextPart("enteredText");
const Part finalTextPart("finalText");
const Part isActivePart("isActive");
const Part keyPressPart("keyPress");
const Part keyReleasePart("keyRelease");
const Part shiftKeyPart("shiftKey");

/// The number that a scene knows an action key by; 0 for other keys.
int actionOf(int code)
{
    if (code >= F1_KC && code <= F12_KC)
        return code - F1_KC + 1;
    if (code >= HOME_KC && code <= RIGHT_KC)
        return code - HOME_KC + 13;
    return 0;
}

const Part* modifierOf(int code)
{
    switch (code) {
    case SHIFT_KC:
        return &shiftKeyPart;
    case CONTROL_KC:
        return &controlKeyPart;
    case ALT_KC:
        return &altKeyPart;
    default:
        return nullptr;
    }
}

/// Tells of single keys.
class KeySensorProc : public KeyDeviceProc
{
public:
    using KeyDeviceProc::KeyDeviceProc;

    bool press(int code, double time) override
    {
        if (const Part* const modifier = modifierOf(code))
            modifier->edit<SFBool>(node()).setValue(time, true, Field::EVENT_CT);
        else if (!send(code, keyPressPart, actionKeyPressPart, time))
            return false;
        const int key = keyOf(code);
        if (std::find(_held.begin(), _held.end(), key) == _held.end())
            _held.push_back(key);
        if (_held.size() == 1 && !_active)
            setActive(true, time);
        return true;
    }

    void release(int code, double time) override
    {
        const auto held = std::find(_held.begin(), _held.end(), keyOf(code));
        if (held == _held.end())
            return;
        _held.erase(held);
        if (const Part* const modifier = modifierOf(code))
            modifier->edit<SFBool>(node()).setValue(time, false, Field::EVENT_CT);
        else
            send(code, keyReleasePart, actionKeyReleasePart, time);
        if (_held.empty())
            setActive(false, time);
    }

protected:
    void giveUp(double time) override
    {
        for (const int code : {SHIFT_KC, CONTROL_KC, ALT_KC}) {
            if (std::find(_held.begin(), _held.end(), code) != _held.end())
                modifierOf(code)->edit<SFBool>(node()).setValue(time, false, Field::EVENT_CT);
        }
        _held.clear();
        if (_active)
            setActive(false, time);
    }

private:
    /// A letter is the same key with and without the shift key, which may change while it is held.
    static int keyOf(int code) { return code >= 'A' && code <= 'Z' ? code - 'A' + 'a' : code; }

    bool send(int code, const Part& key, const Part& action, double time)
    {
        if (const int number = actionOf(code)) {
            action.edit<SFInt32>(node()).setValue(time, number, Field::EVENT_CT);
            return true;
        }
        const int character = characterOf(code);
        if (character == 0)
            return false;
        key.edit<SFString>(node()).setValue(time, std::string(1, static_cast<char>(character)),
                                            Field::EVENT_CT);
        return true;
    }

    void setActive(bool active, double time)
    {
        _active = active;
        isActivePart.edit<SFBool>(node()).setValue(time, active, Field::EVENT_CT);
    }

    std::vector<int> _held; ///< keys that are down
    bool _active = false;
};

/// Collects what is typed up to the end of the line.
class StringSensorProc : public KeyDeviceProc
{
public:
    using KeyDeviceProc::KeyDeviceProc;

    bool press(int code, double time) override
    {
        const int character = characterOf(code);
        if (character == '\n')
            finish(time);
        else if (character == '\b')
            removeLast(time);
        else if (character >= ' ' && character != 0x7F)
            append(static_cast<char>(character), time);
        else
            return false;
        return true;
    }

    void release(int, double) override {}

protected:
    void giveUp(double time) override
    {
        _text.clear();
        setActive(false, time);
    }

private:
    /// A line of this many bytes takes no more.
    static constexpr std::size_t LongestText = 65536;

    void append(char character, double time)
    {
        if (_text.size() >= LongestText)
            return;
        setActive(true, time);
        _text += character;
        sendText(time);
    }

    void removeLast(double time)
    {
        if (_text.empty() || !deletionAllowedPart.read<SFBool>(node()).value())
            return;
        _text.pop_back();
        sendText(time);
    }

    void finish(double time)
    {
        finalTextPart.edit<SFString>(node()).setValue(time, _text, Field::EVENT_CT);
        _text.clear();
        sendText(time);
        setActive(false, time);
    }

    void sendText(double time)
    {
        enteredTextPart.edit<SFString>(node()).setValue(time, _text, Field::EVENT_CT);
    }

    void setActive(bool active, double time)
    {
        if (_active == active)
            return;
        _active = active;
        isActivePart.edit<SFBool>(node()).setValue(time, active, Field::EVENT_CT);
    }

    std::string _text;
    bool _active = false;
};

const ProcRegistration keySensor("KeySensor", makeProc<KeySensorProc>);
const ProcRegistration stringSensor("StringSensor", makeProc<StringSensorProc>);

} // namespace

} // namespace Orvane
