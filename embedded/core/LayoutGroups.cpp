#include "core/ClipEdges.h"
#include "core/FollowedLayer.h"
#include "core/LayerProc.h"
#include "core/LayoutProc.h"
#include "core/ViewportProc.h"
#include <OpenSG/OSGDynamicVolume.h>
#include <OpenSG/OSGTransform.h>
#include <algorithm>
#include <cmath>

namespace Orvane {

namespace {

const Part layoutPart("layout");

/// What has a box on the plane of a layout, in which others have theirs.
class LayoutRegion
{
public:
    virtual ~LayoutRegion() = default;

    /// False for what stands in no layout.
    virtual bool boxIn(const DrawnView& view, LayoutBox& box) const = 0;

protected:
    /// Gives a transform the matrix. True when that is another one.
    static bool setMatrix(osg::NodeCore& core, const osg::Matrix& matrix)
    {
        auto& transform = static_cast<osg::Transform&>(core);
        if (static_cast<const osg::Transform&>(transform).getMatrix() == matrix)
            return false;
        transform.setMatrix(matrix);
        return true;
    }
};

/// A layer whose content stands in a box of its viewport. It is seen without perspective, and no user moves
/// its view. Its units are those of an `OrthoViewpoint`: the shorter side of the viewport is two of them
/// long.
class LayoutLayerProc : public LayerProc, public LayoutRegion, public ViewFollower
{
public:
    explicit LayoutLayerProc(Node& node)
        : LayerProc(node, osg::Transform::create())
    {
    }

    void start(double time) override
    {
        LayerProc::start(time);
        _followed.join(node(), *this);
    }

    bool isNavigable() const override { return false; }

    SceneView view() const override
    {
        const SceneView bound = LayerProc::view();
        SceneView view;
        view.background = bound.background;
        view.headlight = bound.headlight;
        view.orthographic = true;
        // From in front of all that stands there.
        float front = 0.0F;
        const osg::DynamicVolume& volume = root()->getVolume(true);
        if (volume.isValid() && !volume.isEmpty()) {
            osg::Pnt3f low;
            osg::Pnt3f high;
            volume.getBounds(low, high);
            front = std::isfinite(high[2]) ? std::max(front, high[2]) : front;
        }
        view.viewpoint.setTranslate(0.0F, 0.0F, front + 10.0F);
        return view;
    }

    bool boxIn(const DrawnView& view, LayoutBox& box) const override
    {
        LayoutBox surface;
        surface.size = view.pixels * view.pixelSize;
        const auto* const layout = elementOf<LayoutProc>(layoutPart.readNode(node()));
        box = layout ? layout->place(surface, true, view.pixelSize) : surface;
        return true;
    }

    bool follow(const DrawnView& view) override
    {
        LayoutBox box;
        boxIn(view, box);
        return setMatrix(*root()->getCore(), box.matrixIn(LayoutBox()));
    }

private:
    FollowedLayer _followed;
};

/// A group whose content stands in a box of the box that it stands in itself. Outside of all layouts it is a
/// group like others.
class LayoutGroupProc : public GroupProc, public LayoutRegion, public ViewFollower
{
public:
    explicit LayoutGroupProc(Node& node)
        : GroupProc(node, osg::Transform::create())
    {
    }

    void start(double time) override
    {
        GroupProc::start(time);
        _followed.join(node(), *this);
    }

    void update() override
    {
        const SurfacePart part = ViewportProc::partOf(node());
        if (part.isWhole() != _isWhole) {
            _isWhole = part.isWhole();
            askForLights();
        }
        GroupProc::update();
    }

    bool boxIn(const DrawnView& view, LayoutBox& box) const override
    {
        LayoutBox outer;
        if (!outerBox(view, outer))
            return false;
        const auto* const layout = elementOf<LayoutProc>(layoutPart.readNode(node()));
        box = layout ? layout->place(outer, false, view.pixelSize) : outer;
        return true;
    }

    bool follow(const DrawnView& view) override
    {
        LayoutBox outer;
        LayoutBox box;
        osg::Matrix matrix;
        if (outerBox(view, outer) && boxIn(view, box))
            matrix = box.matrixIn(outer);
        const bool changed = setMatrix(*tree()->getCore(), matrix);
        const SurfacePart part = ViewportProc::partOf(node());
        if (part.isWhole() != _isWhole)
            requestUpdate();
        _edges.follow(part, view, toWorld());
        return changed;
    }

protected:
    void collectLights(std::vector<osg::NodeCorePtr>& lights) const override
    {
        _edges.collect(ViewportProc::partOf(node()), lights);
    }

private:
    bool outerBox(const DrawnView& view, LayoutBox& box) const
    {
        // A group may stand in itself.
        constexpr int deepest = 64;
        if (_depth >= deepest)
            return false;
        const GroupProc* group = groupOf(*this);
        for (int depth = 0; group && depth < deepest; ++depth) {
            if (const auto* const region = dynamic_cast<const LayoutRegion*>(group)) {
                ++_depth;
                const bool found = region->boxIn(view, box);
                --_depth;
                return found;
            }
            group = groupOf(*group);
        }
        return false;
    }

    ClipEdges _edges;
    FollowedLayer _followed;
    mutable int _depth = 0; ///< of calls within each other
    bool _isWhole = true;   ///< no viewport cuts the content off
};

const ProcRegistration layoutGroup("LayoutGroup", makeProc<LayoutGroupProc>);
const ProcRegistration layoutLayer("LayoutLayer", makeProc<LayoutLayerProc>);

} // namespace

} // namespace Orvane
