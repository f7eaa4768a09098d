#include "navigation/NavigatorCommands.h"

#include "navigation/Keys.h"
#include "navigation/SceneNavigator.h"
#include <iterator>

namespace Orvane {

namespace {

using Navigator = SceneNavigator;

// clang-format off
constexpr NavigatorCommand commands[] = {
    {"examineNav",        "Examine: turn the scene round a point.",           '1',          &Navigator::examine},
    {"walkNav",           "Walk: move on the ground, kept off walls.",        '2',          &Navigator::walk},
    {"flyNav",            "Fly: move freely, kept off walls.",                '3',          &Navigator::fly},
    {"lookAtNav",         "Look at: go to the object that is clicked.",       '4',          &Navigator::lookAt},
    {"firstView",         "Go to the first viewpoint.",                       Keys::home,   &Navigator::firstViewpoint},
    {"prevView",          "Go to the previous viewpoint.",                    Keys::pageUp, &Navigator::previousViewpoint},
    {"nextView",          "Go to the next viewpoint.",                        Keys::pageDown, &Navigator::nextViewpoint},
    {"lastView",          "Go to the last viewpoint.",                        Keys::end,    &Navigator::lastViewpoint},
    {"showAll",           "Show the whole scene.",                            'z',          &Navigator::showAll},
    {"resetViewPosition", "Go back to where the viewpoint is.",               'r',          &Navigator::resetPosition},
    {"toggleHeadlight",   "Switch the headlight on or off.",                  'h',          &Navigator::toggleHeadlight},
    {"toggleDrawVolume",  "Show or hide the bounding volumes.",               'b',          &Navigator::toggleVolumes},
    {"nextDrawMode",      "Draw solid, wire or points.",                      'm',          &Navigator::nextDrawMode},
    {"nextInfoScreen",    "Show the next screen of figures, or none.",        'i',          &Navigator::nextInfoScreen},
};
// clang-format on

} // namespace

const NavigatorCommand* NavigatorCommands::begin()
{
    return std::begin(commands);
}

const NavigatorCommand* NavigatorCommands::end()
{
    return std::end(commands);
}

} // namespace Orvane
