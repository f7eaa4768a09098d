#include "core/KeyDeviceProc.h"
#include "core/Part.h"
#include <Orvane/SFBool.h>

namespace Orvane {

namespace {

const Part enabledPart("enabled");

} // namespace

int characterOf(int code)
{
    switch (code) {
    case DELETE_KC:
        return 0x7F;
    case ESCAPE_KC:
        return 0x1B;
    case ENTER_KC:
    case '\r':
        return '\n';
    case TAB_KC:
        return '\t';
    case BACKSPACE_KC:
        return '\b';
    case SPACE_KC:
        return ' ';
    default:
        return code >= -128 && code < 256 ? code & 0xFF : 0;
    }
}

KeyDeviceProc::~KeyDeviceProc()
{
    if (_scene)
        _scene->removeKeyDevice(*this);
}

void KeyDeviceProc::start(double)
{
    _scene = SceneState::ofScene(node());
    if (_scene)
        _scene->addKeyDevice(*this);
}

void KeyDeviceProc::fieldChanged(Field& field, double time)
{
    if (enabledPart.is(field) && !isEnabled())
        giveUp(time);
}

bool KeyDeviceProc::isEnabled() const
{
    return enabledPart.read<SFBool>(node()).value();
}

} // namespace Orvane
