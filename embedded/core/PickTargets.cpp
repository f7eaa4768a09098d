#include "core/PickTargets.h"
#include "core/Convex.h"
#include "core/DoubleMatrix.h"
#include "core/GeometryProc.h"
#include "core/LayerProc.h"
#include "core/SceneLayer.h"
#include "core/ShapeProc.h"
#include <Orvane/MFNode.h>
#include <cmath>

namespace Orvane {

namespace {

const Part geometryPart("geometry");

/// More than this is only reached through groups that are used in each other many times.
constexpr std::size_t MostSteps = 1000000;

/// A group that only some pick sensors look into.
class PickableGroupProc : public GroupProc
{
public:
    using GroupProc::GroupProc;
};

const ProcRegistration pickableGroup("PickableGroup", makeProc<PickableGroupProc>);

bool isPickable(const GroupProc& group)
{
    return dynamic_cast<const PickableGroupProc*>(&group) || dynamic_cast<const LayerProc*>(&group);
}

bool doMeet(const osg::BoxVolume& a, const osg::BoxVolume& b)
{
    for (osg::UInt32 i = 0; i < 3; ++i) {
        if (!(a.getMin()[i] <= b.getMax()[i] && b.getMin()[i] <= a.getMax()[i]))
            return false;
    }
    return true;
}

/// True when what stands below a node, in the system that \a toSensor leads from, may reach into a box.
bool reaches(const osg::NodePtr& root, const osg::Matrix4d& toSensor, const osg::BoxVolume& region)
{
    osg::BoxVolume box;
    box.setEmpty();
    box.extendBy(root->getVolume(true));
    return box.isInfinite() || (!box.isEmpty() && doMeet(boxIn(toSensor, box), region));
}

osg::Matrix4d product(const osg::Matrix4d& a, const osg::Matrix4d& b)
{
    osg::Matrix4d result = a;
    result.mult(b);
    return result;
}

} // namespace

osg::BoxVolume boxIn(const osg::Matrix4d& matrix, const osg::BoxVolume& box)
{
    if (box.isEmpty() || box.isInfinite())
        return box;
    osg::Pnt3f center;
    osg::Vec3f size;
    box.getCenter(center);
    box.getSize(size);
    return Convex::box(osg::Vec3d(osg::Vec3f(center)), osg::Vec3d(size)).in(matrix).bounds();
}

PickTargets::PickTargets(const MFNode& targets, const PickFilter& filter)
    : _filter(filter)
{
    std::vector<const ElementProc*> open;
    for (NodeLink& link : targets) {
        const ElementProc* const target = elementOf(link.node());
        if (target && _targets.insert(target).second)
            open.push_back(target);
    }
    _above = _targets;
    while (!open.empty()) {
        const ElementProc& next = *open.back();
        open.pop_back();
        for (const Use* use = next.uses(); use; use = use->next()) {
            const auto* const group = dynamic_cast<const GroupProc*>(use->user());
            if (group && _above.insert(group).second)
                open.push_back(group);
        }
    }
}

bool PickTargets::collect(SceneLayer& layer, const osg::Matrix4d& toSensor, const osg::BoxVolume& region,
                          std::vector<PickTarget>& found) const
{
    struct Step
    {
        const ElementProc* element;
        osg::NodePtr root;
        osg::Matrix4d toSensor; ///< from the system that the element stands in
        bool isTarget;
        bool isLeft; ///< all below it has been visited
    };

    std::vector<Step> open{{&layer, layer.root(), toSensor, false, false}};
    std::unordered_set<const ElementProc*> way;
    std::vector<ElementProc*> shown;
    for (std::size_t step = 0; !open.empty(); ++step) {
        if (step >= MostSteps)
            return false;
        const Step current = open.back();
        open.pop_back();
        if (current.isLeft) {
            way.erase(current.element);
            continue;
        }
        const Node& node = current.element->node();
        const bool isTarget = current.isTarget || _targets.count(current.element) > 0;
        if ((!isTarget && _above.count(current.element) == 0) ||
            !reaches(current.root, current.toSensor, region))
            continue;
        if (const auto* const group = dynamic_cast<const GroupProc*>(current.element)) {
            if ((isPickable(*group) && !_filter.takes(node)) || !way.insert(group).second)
                continue;
            open.push_back({group, {}, {}, false, true});
            osg::Matrix own;
            group->accumulate(own);
            const osg::Matrix4d below = product(current.toSensor, toDouble(own));
            shown.clear();
            group->collectShown(shown);
            for (auto child = shown.rbegin(); child != shown.rend(); ++child)
                open.push_back({*child, (*child)->tree(), below, isTarget, false});
        } else if (isTarget && dynamic_cast<const ShapeProc*>(current.element)) {
            const auto* const geometry = elementOf<GeometryProc>(geometryPart.readNode(node));
            PickTarget target{&current.element->node(),
                              geometry ? geometry->geometry() : osg::GeometryPtr(),
                              current.toSensor,
                              {}};
            if (target.geometry && target.toSensor.inverse(target.toOwn))
                found.push_back(target);
        }
    }
    return true;
}

} // namespace Orvane
