#pragma once

namespace Orvane {

class SceneNavigator;

/// Something that a user asks of a navigator by one message or one key.
struct NavigatorCommand
{
    const char* name;        ///< of the message
    const char* description; ///< tool tip
    int key;                 ///< character that does the same
    void (SceneNavigator::*run)(double time);
};

/// All commands, in the order in which hosts show them.
struct NavigatorCommands
{
    static const NavigatorCommand* begin();
    static const NavigatorCommand* end();
};

} // namespace Orvane
