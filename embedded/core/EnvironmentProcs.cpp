#include "core/EnvironmentProcs.h"
#include "base/ValueFields.h"
#include "core/FogValues.h"
#include "core/GroupProc.h"
#include "core/Part.h"
#include "core/SceneProc.h"
#include "core/UsableValues.h"
#include <Orvane/MFFloat.h>
#include <Orvane/SFBool.h>
#include <Orvane/SFFloat.h>
#include <Orvane/SFString.h>
#include <algorithm>

namespace Orvane {

namespace {

const Part avatarSizePart("avatarSize");
const Part colorPart("color");
const Part fogTypePart("fogType");
const Part headlightPart("headlight");
const Part visibilityLimitPart("visibilityLimit");
const Part visibilityRangePart("visibilityRange");

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

void applyFog(const Node& node, const osg::FogPtr& fog)
{
    fog->setMode(fogTypePart.read<SFString>(node).value() == "EXPONENTIAL" ? osg::Fog::EXPONENTIAL_MODE
                                                                           : osg::Fog::LINEAR_MODE);
    fog->setColor(colorPart.read<SFColor>(node).value());
    fog->setRange(usableNumber(visibilityRangePart.read<SFFloat>(node).value(), 0.0F));
}

FogProc::FogProc(Node& node)
    : BindableProc(node, BindableKind::Fog)
    , _fog(osg::Fog::create())
{
}

FogProc::~FogProc()
{
    if (scene())
        scene()->askForLights();
}

void FogProc::update()
{
    applyFog(node(), _fog.get());
    BindableProc::update();
}

void FogProc::setBound(bool bound, double time)
{
    BindableProc::setBound(bound, time);
    scene()->askForLights();
}

osg::NodeCorePtr FogProc::core() const
{
    const GroupProc* const group = groupOf(*this);
    _fog->setBeacon(group ? group->tree() : osg::NodePtr());
    return osg::NodeCorePtr(_fog.get());
}

} // namespace Orvane
