#pragma once

#include "base/NodeRef.h"
#include "navigation/NavigationSettings.h"
#include "navigation/Pose.h"
#include "navigation/SceneBounds.h"
#include <unordered_map>

namespace Orvane {

struct SceneView;
class SceneLayer;
class ViewareaBehaviour;
class ViewpointProc;

/// Where the user of a viewarea is in a layer: an offset from the viewpoint, so that a viewpoint that moves
/// carries the user along. Follows the nodes that come to be bound, by a jump or on a way that takes time.
class UserView
{
public:
    /// \a layerId is the id of the layer's node; 0 for that of no scene.
    UserView(ViewareaBehaviour& viewarea, unsigned long long layerId);

    /// Looks at which viewpoint and `NavigationInfo` are bound by now. True when it is a new viewpoint.
    bool follow(double time);
    /// Goes on with a way; at its end the bound `NavigationInfo` sends `transitionComplete`.
    void advance(double time);
    /// Puts the camera of a picture where the user is.
    void aim(SceneView& view);

    /// What the bound `NavigationInfo` asks for.
    const NavigationSettings& settings() const { return _settings; }
    /// True once after another `NavigationInfo` was bound, or other types were written to it.
    bool takeNewTypes();

    /// From the camera to the world.
    Pose pose() const;
    /// The user moves; a way ends. A pose that nobody could stand in changes nothing.
    void move(const Pose& pose);
    /// Makes the window of a view without perspective larger.
    void scale(double factor);
    /// Goes back to where the viewpoint is, in the way that the bound `NavigationInfo` wants.
    void travelBack(double time);
    /// Goes to where all of a box is seen, in the direction in which the user looks.
    void travelToSee(const SceneBounds& bounds, double time);
    /// The same in the direction of a pose.
    void travelToSee(const SceneBounds& bounds, const Pose& direction, double time);
    bool isTravelling() const { return _way.isOn; }

    /// Null when the layer has gone.
    SceneLayer* layer() const;
    /// The view without perspective, and how much larger than asked for its window is.
    bool isParallel() const { return _lens.parallel; }
    /// World units from the middle to the upper edge of the picture: at a distance of 1, or at all with a
    /// view without perspective.
    double halfHeight() const { return _lens.halfHeight * (_lens.parallel ? _offset.scale : 1.0); }
    double halfWidth() const { return halfHeight() * _lens.aspect; }

    /// Against gravity, in the world.
    osg::Vec3d up() const;
    /// The axis about which horizontal drags turn: of those of the viewpoint's system the one that is up in
    /// the picture.
    osg::Vec3d turntableAxis() const;
    /// The point about which its author wants the scene turned. False when none was set.
    bool authoredPivot(osg::Vec3d& pivot) const;

private:
    /// How far the user has gone from the viewpoint.
    struct Offset
    {
        Pose pose; ///< in the system of the viewpoint
        double scale = 1.0;
    };
    /// What is between the camera and the picture.
    struct Lens
    {
        bool parallel = false;
        double halfHeight = 0.4142; ///< as asked for
        double aspect = 1.0;        ///< width of the picture by its height
    };
    struct Way
    {
        bool isOn = false;
        Pose from; ///< in the world
        double fromScale = 1.0;
        double fromField = 0.0; ///< field of view in radians
        double start = 0.0;
        double duration = 0.0;
        bool eased = false;
        double part = 0.0; ///< of the way that lies behind
    };

    ViewpointProc* viewpoint() const;
    Pose base() const;
    osg::Matrix viewpointSystem() const;
    void readLens(const SceneView& view);
    void arrive(ViewpointProc* viewpoint, double time);
    void setOff(const Offset& target, double time);
    Offset seeing(const SceneBounds& bounds, const Pose& direction, const Offset& otherwise) const;
    void tryToSeeAll();
    void complete(double time);
    Node* boundInfo() const;

    ViewareaBehaviour& _viewarea;
    NavigationSettings _settings;
    unsigned long long _layerId;
    bool _isFollowing = false; ///< the layer has been looked at
    unsigned long long _viewpointId = 0;
    unsigned long long _infoId = 0;
    bool _typesAreNew = false;
    bool _wantsAll = false; ///< the viewpoint asks for a view of everything, and nothing has been there yet
    Offset _offset;
    Lens _lens;
    Way _way;
    Pose _shown;              ///< the last pose that was seen
    double _shownField = 0.0; ///< and its field of view
    std::unordered_map<unsigned long long, Offset>
        _kept; ///< of viewpoints that keep the user's offsets, by id
};

} // namespace Orvane
