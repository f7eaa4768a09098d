#include "navigation/ViewDisplay.h"

#include "base/ContextData.h"
#include "core/Part.h"
#include "core/SceneProc.h"
#include "core/ViewpointProc.h"
#include "engine/ViewareaBehaviour.h"
#include "navigation/TextImage.h"
#include "navigation/UserView.h"
#include <OpenSG/OSGImage.h>
#include <OpenSG/OSGPolygonChunk.h>
#include <OpenSG/OSGVisitSubTree.h>
#include <Orvane/Context.h>
#include <Orvane/SFString.h>
#include <algorithm>
#include <cstdarg>
#include <cstdio>

namespace Orvane {

namespace {

const Part descriptionPart("description");

__attribute__((format(printf, 1, 2))) std::string print(const char* format, ...)
{
    char text[160];
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    return text;
}

/// The nodes of OpenSG's graph below a root, each once however often it is referred to.
std::size_t countNodes(const osg::NodePtr& root)
{
    std::vector<osg::NodePtr> open{root};
    std::size_t count = 0;
    while (!open.empty()) {
        const osg::NodePtr node = open.back();
        open.pop_back();
        ++count;
        open.insert(open.end(), node->getChildren().begin(), node->getChildren().end());
    }
    return count;
}

} // namespace

ViewDisplay::ViewDisplay(ViewareaBehaviour& viewarea)
    : _viewarea(viewarea)
    , _volumes(osg::VolumeForeground::create())
    , _info(osg::ImageForeground::create())
{
    _viewarea.addForegrounds(osg::ForegroundPtr(_volumes.get()), osg::ForegroundPtr(_info.get()));
}

void ViewDisplay::toggleHeadlight()
{
    _headlightTurnedOver = !_headlightTurnedOver;
    _viewarea.redraw();
}

void ViewDisplay::toggleVolumes()
{
    _volumes->setActive(!_volumes->getActive());
    _viewarea.redraw();
}

void ViewDisplay::nextDrawMode()
{
    switch (_viewarea.port()->getPolygonMode()) {
    case osg::PolygonChunk::FILL_MODE:
        _viewarea.port()->setPolygonMode(osg::PolygonChunk::LINE_MODE);
        break;
    case osg::PolygonChunk::LINE_MODE:
        _viewarea.port()->setPolygonMode(osg::PolygonChunk::POINT_MODE);
        break;
    default:
        _viewarea.port()->setPolygonMode(osg::PolygonChunk::FILL_MODE);
        break;
    }
    _viewarea.redraw();
}

void ViewDisplay::nextInfoScreen()
{
    _screen = (_screen + 1) % SCREEN_COUNT;
    if (hasInfoScreen())
        return;
    _lines.clear();
    _info->clearImages();
    _viewarea.redraw();
}

void ViewDisplay::refresh(const UserView& view, const char* mode, double speed)
{
    if (!hasInfoScreen())
        return;
    std::vector<std::string> lines =
        _screen == PICTURE_SCREEN ? pictureFigures() : viewFigures(view, mode, speed);
    if (lines == _lines)
        return;
    _lines = std::move(lines);
    constexpr float corner = 8.0F;
    _info->clearImages();
    const osg::ViewportPtr port = _viewarea.port();
    const int width = port->getParent() != osg::NullFC ? port->getPixelWidth() : 0;
    _info->addImage(textImage(_lines, width), osg::Pnt2f(corner, corner));
    _viewarea.redraw();
}

std::vector<std::string> ViewDisplay::pictureFigures() const
{
    const Context& context = _viewarea.context();
    const FrameStatistics drawn = context.frameStatistics();
    const SceneProc* const scene = _viewarea.scene();
    return {
        print("%.0f frames/s", drawn.framesPerSecond),
        print("%zu triangles in %zu draw calls", drawn.triangles, drawn.drawCalls),
        print("%zu nodes", context.data()->nodeCount),
        print("%zu OpenSG nodes", scene ? countNodes(scene->root()) : 0),
    };
}

std::vector<std::string> ViewDisplay::viewFigures(const UserView& view, const char* mode, double speed) const
{
    std::vector<std::string> lines;
    const ViewpointProc* const viewpoint = _viewarea.viewpoint();
    std::string name;
    if (viewpoint)
        name = descriptionPart.read<SFString>(viewpoint->node()).value();
    if (viewpoint && name.empty())
        name = viewpoint->node().getIDStr();
    lines.push_back("viewpoint: " + (name.empty() ? std::string("none") : name));
    const Pose pose = view.pose();
    const osg::Vec3d ahead = pose.forward();
    lines.push_back(print("position: %.6g %.6g %.6g", pose.position[0], pose.position[1], pose.position[2]));
    lines.push_back(print("direction: %.3f %.3f %.3f", ahead[0], ahead[1], ahead[2]));
    lines.push_back(print("navigation: %s, %.4g m/s", mode, speed));
    SceneLayer* const scene = view.layer();
    const SceneBounds bounds = scene ? SceneBounds::of(*scene) : SceneBounds();
    if (bounds.isEmpty) {
        lines.emplace_back("scene: empty");
        return lines;
    }
    const osg::Vec3d size = bounds.high - bounds.low;
    const osg::Vec3d middle = bounds.center();
    lines.push_back(print("scene: %.4g x %.4g x %.4g round %.6g %.6g %.6g", size[0], size[1], size[2],
                          middle[0], middle[1], middle[2]));
    return lines;
}

void ViewDisplay::aim(SceneView& view) const
{
    view.headlight = view.headlight != _headlightTurnedOver;
}

} // namespace Orvane
