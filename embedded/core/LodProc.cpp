#include "base/ValueFields.h"
#include "core/GroupProc.h"
#include "core/LayerSeat.h"
#include "core/UsableValues.h"
#include <OpenSG/OSGSwitch.h>
#include <Orvane/Context.h>
#include <Orvane/MFFloat.h>
#include <Orvane/SFInt32.h>
#include <algorithm>

namespace Orvane {

namespace {

const Part centerPart("center");
const Part childrenPart("children");
const Part levelChangedPart("level_changed");
const Part rangePart("range");

/// Shows the child that is meant for the distance of the viewer, as it was in the frame before.
class LodProc : public GroupProc
{
public:
    explicit LodProc(Node& node)
        : GroupProc(node, osg::Switch::create())
        , _switch(osg::SwitchPtr::dcast(tree()->getCore()))
    {
    }

    void start(double time) override
    {
        GroupProc::start(time);
        _scene.take(node());
        setTicking(true);
    }

    void tick(double time) override
    {
        // What moves the viewer asks for frames; standing by needs none.
        requestFrame(StandByInterval);
        if (_isPlaced)
            setLevel(time);
    }

    void update() override
    {
        GroupProc::update();
        if (_isPlaced)
            setLevel(context().timeStamp());
        else
            requestUpdate(); // once more when the groups above have taken it in
        _isPlaced = true;
        choose();
    }

protected:
    void contentChanged() override { choose(); }

private:
    static constexpr double StandByInterval = 1.0;

    void setLevel(double time)
    {
        const int level = _scene ? levelAt(_scene->viewer()) : 0;
        if (level == _level)
            return;
        _level = level;
        levelChangedPart.edit<SFInt32>(node()).setValue(time, level, Field::EVENT_CT);
        requestUpdate();
    }

    /// The child for a viewer in world coordinates; -1 when there are no children.
    int levelAt(const osg::Pnt3f& viewer) const
    {
        const int count = static_cast<int>(readField(node(), childrenPart.in(node())).size());
        osg::Matrix toLocal;
        toWorld().inverse(toLocal);
        osg::Pnt3f eye;
        toLocal.multMatrixPnt(viewer, eye);
        const osg::Vec3f center = usableVector(centerPart.read<SFVec3f>(node()).value());
        const float distance = eye.dist(osg::Pnt3f(center));
        const std::vector<float>& ranges = rangePart.read<MFFloat>(node()).values();
        const auto farther =
            std::find_if(ranges.begin(), ranges.end(), [distance](float range) { return distance < range; });
        return std::min(static_cast<int>(farther - ranges.begin()), count - 1);
    }

    void choose()
    {
        const int place = _level >= 0 ? shownPlace(static_cast<std::size_t>(_level)) : -1;
        const osg::Int32 wanted = place >= 0 ? place : osg::Int32(osg::Switch::NONE);
        if (_switch->getChoice() == wanted)
            return;
        _switch->setChoice(wanted);
        SceneState::askForGlobalLights(node());
    }

    osg::SwitchPtr _switch; ///< the core of the tree's root
    LayerSeat _scene;
    int _level = -1;
    bool _isPlaced = false; ///< what stands above the node is known
};

const ProcRegistration registration("LOD", makeProc<LodProc>);

} // namespace

} // namespace Orvane
