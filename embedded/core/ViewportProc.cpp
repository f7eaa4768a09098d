#include "core/ViewportProc.h"
#include "core/UsableValues.h"
#include <Orvane/MFFloat.h>
#include <algorithm>

namespace Orvane {

namespace {

const Part clipBoundaryPart("clipBoundary");
const Part viewportPart("viewport");

const ProcRegistration registration("Viewport", makeProc<ViewportProc>);

} // namespace

SurfacePart SurfacePart::of(const std::vector<float>& boundary)
{
    SurfacePart part;
    float* const edges[] = {&part.left, &part.right, &part.bottom, &part.top};
    for (std::size_t i = 0; i < 4 && i < boundary.size(); ++i)
        *edges[i] = std::clamp(usableNumber(boundary[i], *edges[i]), 0.0F, 1.0F);
    return part;
}

void ViewportProc::start(double time)
{
    GroupProc::start(time);
    _followed.join(node(), *this);
    askForLights();
}

void ViewportProc::fieldChanged(Field& field, double time)
{
    GroupProc::fieldChanged(field, time);
    askForLights();
}

void ViewportProc::update()
{
    const std::vector<float>& edges = clipBoundaryPart.read<MFFloat>(node()).values();
    const bool inRange =
        std::all_of(edges.begin(), edges.end(), [](float edge) { return edge >= 0.0F && edge <= 1.0F; });
    if (edges.size() != 4 || !inRange)
        complain("clipBoundary",
                 "expected four numbers from 0 to 1; what is none counts as the surface's edge");
    else if (!(edges[0] < edges[1]) || !(edges[2] < edges[3]))
        complain("clipBoundary", "expected left below right and bottom below top; nothing is seen");
    GroupProc::update();
}

SurfacePart ViewportProc::part() const
{
    return SurfacePart::of(clipBoundaryPart.read<MFFloat>(node()).values());
}

SurfacePart ViewportProc::partOf(const Node& node)
{
    const auto* const viewport = elementOf<ViewportProc>(viewportPart.readNode(node));
    return viewport ? viewport->part() : SurfacePart();
}

void ViewportProc::collectLights(std::vector<osg::NodeCorePtr>& lights) const
{
    _edges.collect(part(), lights);
}

bool ViewportProc::follow(const DrawnView& view)
{
    _edges.follow(part(), view, toWorld());
    return false;
}

} // namespace Orvane
