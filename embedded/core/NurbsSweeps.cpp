#include "core/NurbsProcs.h"
#include "core/Part.h"
#include "core/SpineFrames.h"
#include <Orvane/SFBool.h>
#include <algorithm>

namespace Orvane {

namespace {

const Part ccwPart("ccw");
const Part crossSectionCurvePart("crossSectionCurve");
const Part profileCurvePart("profileCurve");
const Part solidPart("solid");
const Part trajectoryCurvePart("trajectoryCurve");

/// A surface over two curves.
class CurvedSurfaceProc : public MeshProc
{
public:
    using MeshProc::MeshProc;

    bool isSolid() const override { return solidPart.read<SFBool>(node()).value(); }

protected:
    std::vector<osg::Vec2f> trace(Use& use, const Part& part)
    {
        auto* const curve = elementOf<PlaneCurveProc>(part.readNode(node()));
        use.set(*this, curve);
        std::vector<osg::Vec2f> outline;
        if (curve)
            curve->trace(outline);
        return outline;
    }

    /// Shows the surface with \a place(column, row), along the first curve and the second one.
    template <class Place>
    void showGrid(std::size_t columns, std::size_t rows, const Place& place)
    {
        if (columns < 2 || rows < 2) {
            show({});
            return;
        }
        if (columns * rows > MostCorners) {
            complain(nullptr, "expected at most " + std::to_string(MostCorners) +
                                  " corners by both tessellations, found " + std::to_string(columns * rows));
            show({});
            return;
        }
        std::vector<osg::Vec3f> grid;
        std::vector<osg::Vec2f> texCoords;
        for (std::size_t row = 0; row < rows; ++row) {
            for (std::size_t column = 0; column < columns; ++column) {
                grid.push_back(place(column, row));
                texCoords.emplace_back(static_cast<float>(column) / static_cast<float>(columns - 1),
                                       static_cast<float>(row) / static_cast<float>(rows - 1));
            }
        }
        show(smoothGrid(grid, texCoords, columns, ccwPart.read<SFBool>(node()).value()));
    }

private:
    static constexpr std::size_t MostCorners = 1000000;
};

/// Draws a cross-section along a path, on which it stands as that of an extrusion does.
class NurbsSweptSurfaceProc : public CurvedSurfaceProc
{
public:
    using CurvedSurfaceProc::CurvedSurfaceProc;

    void update() override
    {
        const std::vector<osg::Vec2f> section = trace(_section, crossSectionCurvePart);
        auto* const trajectory = elementOf<NurbsProc>(trajectoryCurvePart.readNode(node()));
        _trajectory.set(*this, trajectory);
        std::vector<osg::Vec3f> spine;
        if (trajectory && trajectory->kind() == Surface::LINES) {
            for (const osg::Pnt3f& place : trajectory->geometry()->getPositions()->getField())
                spine.emplace_back(place);
        }
        const std::vector<SpineFrame> frames =
            spine.size() > 1 ? spineFrames(spine) : std::vector<SpineFrame>();
        showGrid(section.size(), frames.size(), [&](std::size_t column, std::size_t row) {
            return spine[row] + frames[row].x * section[column][0] + frames[row].z * section[column][1];
        });
    }

private:
    Use _section;
    Use _trajectory;
};

/// Swings a profile about the y axis: its first coordinate stretches the trajectory in the plane of x and z,
/// its second one is the height.
class NurbsSwungSurfaceProc : public CurvedSurfaceProc
{
public:
    using CurvedSurfaceProc::CurvedSurfaceProc;

    void update() override
    {
        const std::vector<osg::Vec2f> profile = trace(_profile, profileCurvePart);
        const std::vector<osg::Vec2f> trajectory = trace(_trajectory, trajectoryCurvePart);
        showGrid(profile.size(), trajectory.size(), [&](std::size_t column, std::size_t row) {
            const osg::Vec2f& p = profile[column];
            const osg::Vec2f& t = trajectory[row];
            return osg::Vec3f(p[0] * t[0], p[1], p[0] * t[1]);
        });
    }

private:
    Use _profile;
    Use _trajectory;
};

const ProcRegistration swept("NurbsSweptSurface", makeProc<NurbsSweptSurfaceProc>);
const ProcRegistration swung("NurbsSwungSurface", makeProc<NurbsSwungSurfaceProc>);

} // namespace

} // namespace Orvane
