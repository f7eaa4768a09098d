#pragma once

#include <string>
#include <vector>

namespace Orvane {

class Node;

enum class NavigationMode { None, Examine, Walk, Fly, LookAt };

/// The name of a mode in `NavigationInfo.type`.
const char* nameOf(NavigationMode mode);

enum class TransitionType { Teleport, Linear, Animate };

/// What a `NavigationInfo` asks of a navigator, in values that can be worked with.
struct NavigationSettings
{
    /// Reads a `NavigationInfo`; null gives the defaults of the node, fitted to the scene.
    static NavigationSettings of(const Node* info);

    /// True when the user may choose this mode.
    bool allows(NavigationMode mode) const;
    /// Speed in metres a second that suits a scene: crossing it takes neither days nor an instant.
    double speedFor(double sceneDiagonal) const;
    /// Makes the avatar fit into a scene for which nobody has said how large it is.
    void fitAvatar(double sceneDiagonal);

    std::vector<std::string> types; ///< as written, for telling changes
    NavigationMode mode = NavigationMode::Examine;
    double speed = 1.0;
    double avatarRadius = 0.25;
    double avatarHeight = 1.6;
    double stepHeight = 0.75;
    TransitionType transition = TransitionType::Linear;
    double transitionTime = 1.0; ///< seconds
    bool hasAvatar = false;      ///< somebody has written how large the avatar is
};

} // namespace Orvane
