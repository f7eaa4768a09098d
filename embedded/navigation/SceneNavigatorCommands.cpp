// What messages and keys ask of a navigator.

#include "core/SceneLayer.h"
#include "core/ViewpointProc.h"
#include "engine/ViewareaBehaviour.h"
#include "navigation/SceneNavigator.h"
#include <algorithm>

namespace Orvane {

void SceneNavigator::setMode(NavigationMode mode)
{
    if (mode == _mode)
        return;
    _mode = mode;
    _drag.reset();
    _pinch.reset();
    _keys.releaseAll();
    _travel.stop();
    _hasWalked = false;
}

void SceneNavigator::choose(NavigationMode mode)
{
    if (_view->settings().allows(mode))
        setMode(mode);
}

void SceneNavigator::examine(double)
{
    choose(NavigationMode::Examine);
}

void SceneNavigator::walk(double)
{
    choose(NavigationMode::Walk);
}

void SceneNavigator::fly(double)
{
    choose(NavigationMode::Fly);
}

void SceneNavigator::lookAt(double)
{
    choose(NavigationMode::LookAt);
}

void SceneNavigator::firstViewpoint(double time)
{
    goToViewpoint([](std::size_t, std::size_t) { return std::size_t(0); }, time);
}

void SceneNavigator::previousViewpoint(double time)
{
    goToViewpoint([](std::size_t now, std::size_t count) { return (now > 0 ? now : count) - 1; }, time);
}

void SceneNavigator::nextViewpoint(double time)
{
    goToViewpoint([](std::size_t now, std::size_t count) { return now + 1 < count ? now + 1 : 0; }, time);
}

void SceneNavigator::lastViewpoint(double time)
{
    goToViewpoint([](std::size_t, std::size_t count) { return count - 1; }, time);
}

// The choice is among the viewpoints that are offered; at present it may be none of them that is looked
// through.
void SceneNavigator::goToViewpoint(std::size_t (*choice)(std::size_t now, std::size_t count), double time)
{
    SceneLayer* const scene = _viewarea.activeLayer();
    if (!scene)
        return;
    const osg::Pnt3f viewer(osg::Pnt3d(_view->pose().position));
    std::vector<ViewpointProc*> offered;
    for (BindableProc* bindable : scene->stack(BindableKind::Viewpoint).all()) {
        auto* const viewpoint = static_cast<ViewpointProc*>(bindable);
        if (viewpoint->isOfferedTo(viewer))
            offered.push_back(viewpoint);
    }
    if (offered.empty())
        return;
    const auto now = std::find(offered.begin(), offered.end(), _viewarea.viewpoint()) - offered.begin();
    ViewpointProc& chosen = *offered[choice(static_cast<std::size_t>(now), offered.size())];
    if (&chosen == _viewarea.viewpoint())
        _view->travelBack(time);
    else
        _viewarea.look(chosen, time);
}

void SceneNavigator::showAll(double time)
{
    if (SceneLayer* const scene = _viewarea.activeLayer())
        _view->travelToSee(SceneBounds::of(*scene), time);
}

void SceneNavigator::resetPosition(double time)
{
    _view->travelBack(time);
}

void SceneNavigator::toggleHeadlight(double)
{
    _display.toggleHeadlight();
}

void SceneNavigator::toggleVolumes(double)
{
    _display.toggleVolumes();
}

void SceneNavigator::nextDrawMode(double)
{
    _display.nextDrawMode();
}

void SceneNavigator::nextInfoScreen(double)
{
    _display.nextInfoScreen();
}

} // namespace Orvane
