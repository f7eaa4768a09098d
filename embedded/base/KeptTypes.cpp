#include "base/KeptTypes.h"
#include "base/ContextData.h"
#include "base/Graph.h"
#include "base/SceneLoader.h"
#include "base/TypeData.h"
#include "nodes/Catalogue.h"
#include <algorithm>
#include <iterator>

namespace Orvane {

namespace {

template <std::size_t N>
bool isAnyOf(const NodeType& type, const char* const (&bases)[N])
{
    return std::any_of(std::begin(bases), std::end(bases),
                       [&type](const char* base) { return isOfType(type, base); });
}

/// Nodes that only say something about the scene.
bool isInformation(const NodeType& type)
{
    static constexpr const char* Bases[] = {"X3DMetadataObject"};
    static constexpr std::string_view Names[] = {"ContextSetup", "DISEntityTypeMapping", "GeoMetadata",
                                                 "WorldInfo"};
    return std::find(std::begin(Names), std::end(Names), type.name) != std::end(Names) ||
           isAnyOf(type, Bases);
}

/// True for a type whose nodes are part of what happens and not of what is seen.
bool isOfEvents(const NodeType& type)
{
    static constexpr const char* Seen[] = {"X3DGroupingNode", "X3DShapeNode", "X3DTextureNode"};
    static constexpr const char* Felt[] = {"X3DChaserNode",          "X3DDamperNode",
                                           "X3DInterpolatorNode",    "X3DKeyDeviceSensorNode",
                                           "X3DNBodyCollidableNode", "X3DNBodyCollisionSpaceNode",
                                           "X3DNetworkSensorNode",   "X3DParticlePhysicsModelNode",
                                           "X3DRigidJointNode",      "X3DScriptNode",
                                           "X3DSensorNode",          "X3DSequencerNode",
                                           "X3DSoundNode",           "X3DTimeDependentNode",
                                           "X3DTriggerNode",         "X3DViewpointNode"};
    static constexpr std::string_view Components[] = {"DIS",       "Engine",        "EventUtilities",
                                                      "Followers", "Interpolation", "RigidBodyPhysics",
                                                      "Scripting", "Sound"};
    if (isAnyOf(type, Seen))
        return false;
    const std::string_view component = type.data()->entry->component;
    return isAnyOf(type, Felt) || type.name == "NavigationInfo" || type.name == "AcousticProperties" ||
           std::find(std::begin(Components), std::end(Components), component) != std::end(Components);
}

} // namespace

TypeService serviceOf(const NodeType& type)
{
    if (!type.data()->behaviour->makeProc)
        return isInformation(type) ? TypeService::KEPT : TypeService::TOLD;
    return isOfEvents(type) ? TypeService::ALIVE : TypeService::DRAWN;
}

void tellOfKept(const Node& node)
{
    const NodeType& type = *node.type();
    // Nobody misses anything in a program without pools; of unknown types the loader has told.
    if (!hasBehaviours() || !type.data()->entry || serviceOf(type) != TypeService::TOLD ||
        !contextData(node).toldTypes.insert(&type).second)
        return;
    const std::string_view component = type.data()->entry->component;
    reportMessage(node, LoadMessage::WARNING_LM,
                  type.name + ": nodes of this type are kept and " +
                      (component == "Sound"     ? "not heard"
                       : component == "Shaders" ? "not run"
                       : isOfEvents(type)       ? "do nothing"
                                                : "not drawn"));
}

} // namespace Orvane
