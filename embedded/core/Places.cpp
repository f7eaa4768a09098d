#include "core/Places.h"
#include "core/GroupProc.h"
#include "core/SceneLayer.h"

namespace Orvane {

namespace {

constexpr std::size_t MostPlaces = 1024;
/// More groups than this are not gone through in search of ways to the scene.
constexpr std::size_t MostSteps = 65536;

} // namespace

std::vector<osg::Matrix> placesOf(const ElementProc& element)
{
    struct Step
    {
        const ElementProc* element;
        osg::Matrix toHere; ///< from the system of the group that the search began with
    };

    const std::shared_ptr<SceneState> layer = SceneState::of(element.node());
    std::vector<osg::Matrix> places;
    std::vector<Step> open{{&element, osg::Matrix()}};
    for (std::size_t step = 0; !open.empty() && step < MostSteps && places.size() < MostPlaces; ++step) {
        const Step current = open.back();
        open.pop_back();
        for (const Use* use = current.element->uses(); use; use = use->next()) {
            const auto* const group = dynamic_cast<const GroupProc*>(use->user());
            if (!group)
                continue;
            osg::Matrix toAbove;
            group->accumulate(toAbove);
            toAbove.mult(current.toHere);
            const auto* const top = dynamic_cast<const SceneLayer*>(group);
            if (!top)
                open.push_back({group, toAbove});
            else if (&top->state() == layer.get())
                places.push_back(toAbove);
        }
    }
    return places;
}

} // namespace Orvane
