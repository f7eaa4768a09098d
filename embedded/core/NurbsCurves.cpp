#include "core/ListEdit.h"
#include "core/NurbsProcs.h"
#include "core/Part.h"
#include <Orvane/MFNode.h>
#include <Orvane/MFVec2d.h>
#include <Orvane/SFInt32.h>

namespace Orvane {

namespace {

const Part addChildrenPart("addChildren");
const Part childrenPart("children");
const Part controlPointPart("controlPoint");
const Part removeChildrenPart("removeChildren");
const Part tessellationPart("tessellation");

const std::vector<osg::Vec2d>& controlPoints(const Node& node)
{
    return controlPointPart.read<MFVec2d>(node).values();
}

/// Adds a point that is a place in the plane.
void append(std::vector<osg::Vec2f>& outline, float x, float y)
{
    if (isDrawable(x) && isDrawable(y))
        outline.emplace_back(x, y);
}

class NurbsCurve2DProc : public PlaneCurveProc
{
public:
    using PlaneCurveProc::PlaneCurveProc;

    void trace(std::vector<osg::Vec2f>& outline) override
    {
        std::vector<osg::Vec3f> points;
        for (const osg::Vec2d& point : controlPoints(node()))
            points.emplace_back(static_cast<float>(point[0]), static_cast<float>(point[1]), 0.0F);
        NurbsFault fault;
        const std::optional<NurbsLine> line = readNurbsLine(node(), points, fault);
        if (fault.part)
            complain(fault.part, fault.text);
        if (!line)
            return;
        const std::size_t pieces =
            nurbsPieces(tessellationPart.read<SFInt32>(node()).value(), points.size(), MostNurbsLinePieces);
        for (const osg::Vec3f& place : line->sampled(pieces))
            append(outline, place[0], place[1]);
    }
};

class ContourPolyline2DProc : public PlaneCurveProc
{
public:
    using PlaneCurveProc::PlaneCurveProc;

    void trace(std::vector<osg::Vec2f>& outline) override
    {
        for (const osg::Vec2d& point : controlPoints(node()))
            append(outline, static_cast<float>(point[0]), static_cast<float>(point[1]));
    }
};

/// An outline of several curves, each of which goes on where the last one ends.
class Contour2DProc : public PlaneCurveProc
{
public:
    using PlaneCurveProc::PlaneCurveProc;

    void fieldChanged(Field& field, double time) override
    {
        if (!takeListEvent(node(), field, addChildrenPart, removeChildrenPart, childrenPart, time))
            PlaneCurveProc::fieldChanged(field, time);
    }

    void trace(std::vector<osg::Vec2f>& outline) override
    {
        // A contour in itself would have no end.
        if (_isTracing)
            return;
        _isTracing = true;
        const auto& nodes = childrenPart.read<MFNode>(node());
        _children.resize(nodes.size());
        std::size_t i = 0;
        for (NodeLink& link : nodes) {
            auto* const child = elementOf<PlaneCurveProc>(link.node());
            _children[i++].set(*this, child);
            if (child)
                child->trace(outline);
        }
        _isTracing = false;
    }

private:
    std::vector<Use> _children;
    bool _isTracing = false;
};

const ProcRegistration contour("Contour2D", makeProc<Contour2DProc>);
const ProcRegistration curve("NurbsCurve2D", makeProc<NurbsCurve2DProc>);
const ProcRegistration polyline("ContourPolyline2D", makeProc<ContourPolyline2DProc>);

} // namespace

} // namespace Orvane
