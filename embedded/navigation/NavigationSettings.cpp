#include "navigation/NavigationSettings.h"

#include "base/ValueFields.h"
#include "core/Part.h"
#include <Orvane/MFFloat.h>
#include <Orvane/MFString.h>
#include <Orvane/SFFloat.h>
#include <algorithm>
#include <cmath>

namespace Orvane {

namespace {

const Part avatarSizePart("avatarSize");
const Part speedPart("speed");
const Part transitionTimePart("transitionTime");
const Part transitionTypePart("transitionType");
const Part typePart("type");

struct ModeName
{
    const char* name;
    NavigationMode mode;
};

constexpr ModeName modeNames[] = {
    {"EXAMINE", NavigationMode::Examine}, {"WALK", NavigationMode::Walk}, {"FLY", NavigationMode::Fly},
    {"LOOKAT", NavigationMode::LookAt},   {"NONE", NavigationMode::None},
};

constexpr const char* anyType = "ANY";

const std::vector<float> defaultAvatar = {0.25F, 1.6F, 0.75F};

std::vector<std::string> textsOf(const MFString& field)
{
    std::vector<std::string> texts;
    for (unsigned int i = 0; i < field.size(); ++i)
        texts.push_back(field[static_cast<int>(i)]);
    return texts;
}

NavigationMode firstMode(const std::vector<std::string>& types)
{
    for (const std::string& type : types) {
        for (const ModeName& entry : modeNames) {
            if (type == entry.name)
                return entry.mode;
        }
    }
    return NavigationMode::Examine;
}

TransitionType firstTransition(const std::vector<std::string>& types)
{
    for (const std::string& type : types) {
        if (type == "TELEPORT")
            return TransitionType::Teleport;
        if (type == "LINEAR")
            return TransitionType::Linear;
        if (type == "ANIMATE")
            return TransitionType::Animate;
    }
    return TransitionType::Linear;
}

/// A length that somebody wrote, or what it is by default.
double usableLength(const std::vector<float>& values, std::size_t index, double fallback)
{
    if (index >= values.size() || !std::isfinite(values[index]) || !(values[index] > 0.0F))
        return fallback;
    return static_cast<double>(values[index]);
}

} // namespace

const char* nameOf(NavigationMode mode)
{
    const auto* const found = std::find_if(std::begin(modeNames), std::end(modeNames),
                                           [mode](const ModeName& entry) { return entry.mode == mode; });
    return found->name;
}

NavigationSettings NavigationSettings::of(const Node* info)
{
    NavigationSettings result;
    if (!info) {
        result.types = {"EXAMINE", anyType};
        return result;
    }
    result.types = textsOf(typePart.read<MFString>(*info));
    result.mode = firstMode(result.types);
    const float speed = speedPart.read<SFFloat>(*info).value();
    if (std::isfinite(speed) && speed >= 0.0F)
        result.speed = static_cast<double>(speed);
    const std::vector<float>& avatar = avatarSizePart.read<MFFloat>(*info).values();
    result.hasAvatar = avatar != defaultAvatar;
    result.avatarRadius = usableLength(avatar, 0, result.avatarRadius);
    result.avatarHeight = usableLength(avatar, 1, result.avatarHeight);
    result.stepHeight = std::min(usableLength(avatar, 2, result.stepHeight), result.avatarHeight);
    result.transition = firstTransition(textsOf(transitionTypePart.read<MFString>(*info)));
    const double time = transitionTimePart.read<SFTime>(*info).value();
    if (std::isfinite(time) && time >= 0.0)
        result.transitionTime = time;
    if (result.transitionTime == 0.0)
        result.transition = TransitionType::Teleport;
    return result;
}

bool NavigationSettings::allows(NavigationMode wanted) const
{
    return std::any_of(types.begin(), types.end(), [wanted](const std::string& type) {
        return type == anyType || type == nameOf(wanted);
    });
}

double NavigationSettings::speedFor(double sceneDiagonal) const
{
    constexpr double longestCrossing = 120.0; // seconds
    constexpr double shortestCrossing = 1.0;
    if (speed == 0.0 || !(sceneDiagonal > 0.0))
        return speed;
    return std::clamp(speed, sceneDiagonal / longestCrossing, sceneDiagonal / shortestCrossing);
}

void NavigationSettings::fitAvatar(double sceneDiagonal)
{
    constexpr double tallest = 0.25; // of the scene
    if (hasAvatar || !(sceneDiagonal > 0.0))
        return;
    const double factor = std::min(1.0, sceneDiagonal * tallest / avatarHeight);
    avatarRadius *= factor;
    avatarHeight *= factor;
    stepHeight *= factor;
}

} // namespace Orvane
