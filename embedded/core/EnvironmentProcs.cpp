#include "core/EnvironmentProcs.h"
#include "core/Part.h"
#include "core/SceneProc.h"
#include "core/UsableValues.h"
#include <Orvane/MFColor.h>
#include <Orvane/MFFloat.h>
#include <Orvane/SFBool.h>
#include <Orvane/SFFloat.h>
#include <algorithm>

namespace Orvane {

namespace {

const Part avatarSizePart("avatarSize");
const Part headlightPart("headlight");
const Part skyColorPart("skyColor");
const Part transparencyPart("transparency");
const Part visibilityLimitPart("visibilityLimit");

const ProcRegistration background("Background", makeProc<BackgroundProc>);
const ProcRegistration textureBackground("TextureBackground", makeProc<BackgroundProc>);
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

BackgroundProc::BackgroundProc(Node& node)
    : BindableProc(node, BindableKind::Background)
    , _background(osg::SolidBackground::create())
{
}

void BackgroundProc::update()
{
    const std::vector<osg::Color3f>& colors = skyColorPart.read<MFColor>(node()).values();
    _background->setColor(colors.empty() ? osg::Color3f() : colors[0]);
    const float transparency = usableNumber(transparencyPart.read<SFFloat>(node()).value(), 0.0F);
    _background->setAlpha(1.0F - std::clamp(transparency, 0.0F, 1.0F));
    BindableProc::update();
}

FogProc::FogProc(Node& node)
    : BindableProc(node, BindableKind::Fog)
{
}

} // namespace Orvane
