#include "core/EnvironmentProcs.h"
#include "core/Part.h"
#include "core/SceneProc.h"
#include "core/UsableValues.h"
#include <Orvane/MFFloat.h>
#include <Orvane/SFBool.h>
#include <Orvane/SFFloat.h>
#include <algorithm>

namespace Orvane {

namespace {

const Part avatarSizePart("avatarSize");
const Part headlightPart("headlight");
const Part visibilityLimitPart("visibilityLimit");

const ProcRegistration fog("Fog", makeProc<FogProc>);
const ProcRegistration navigationInfo("NavigationInfo", makeProc<NavigationInfoProc>);

} // namespace

NavigationInfoProc::NavigationInfoProc(Node& node)
    : BindableProc(node, BindableKind::NavigationInfo)
{
}

void NavigationInfoProc::describe(SceneView& view) const
{
    view.headlight = headlightPart.read<SFBool>(node()).value();
    const std::vector<float>& sizes = avatarSizePart.read<MFFloat>(node()).values();
    if (!sizes.empty() && isDrawable(sizes[0]) && sizes[0] > 0.0F)
        view.avatarRadius = sizes[0];
    view.visibilityLimit =
        std::max(0.0F, usableNumber(visibilityLimitPart.read<SFFloat>(node()).value(), 0.0F));
}

FogProc::FogProc(Node& node)
    : BindableProc(node, BindableKind::Fog)
{
}

} // namespace Orvane
