#pragma once

#include "core/BindableStack.h"
#include <OpenSG/OSGMatrix.h>
#include <OpenSG/OSGNodeCore.h>
#include <OpenSG/OSGVector.h>
#include <Orvane/Export.h>
#include <array>
#include <memory>
#include <utility>
#include <vector>

namespace Orvane {

class GroupProc;
class InnerPicture;
class KeyDeviceProc;
class Node;
class Proc;
class SceneProc;
class ViewFollower;
struct DrawnView;

enum class BindableKind { Viewpoint, NavigationInfo, Background, Fog };

/// What the nodes of one scene share: its stacks of bindable nodes, and its lights that shine everywhere. It
/// lives as long as the scene's behaviour or a node that takes part.
class ORVANE_API SceneState
{
public:
    /// The state of the scene in which \a node stands; null when it stands in none.
    static std::shared_ptr<SceneState> of(Node& node);

    BindableStack& stack(BindableKind kind) { return _stacks[static_cast<std::size_t>(kind)]; }

    /// The scene's own behaviour, which shows the lights; null while it does not run.
    void setScene(SceneProc* scene) { _scene = scene; }

    /// Where the scene is looked at from, in world coordinates.
    osg::Pnt3f viewer() const;
    /// From the system of the camera to the world: that of the preferred view, as last drawn, or of the bound
    /// viewpoint while nothing is drawn.
    osg::Matrix viewerToWorld() const;
    /// A view tells from where it looks; null when it looks no more. Of several views the first one counts,
    /// until another one is preferred. \a view is only compared.
    void setViewer(const Proc& view, const osg::Matrix* cameraToWorld);
    /// The user moves in this view.
    void preferViewer(const Proc& view);

    /// A view tells which part of the world it shows, by the matrix to clip space; null when it shows no
    /// more. \a view is only compared.
    void setViewVolume(const Proc& view, const osg::Matrix* worldToClip);
    /// True when a box of \a size round \a center, in the system that \a toWorld leads from, may be seen in
    /// one of the views, whatever stands in front of it.
    bool isBoxSeen(const osg::Matrix& toWorld, const osg::Vec3f& center, const osg::Vec3f& size) const;

    /// Changes when the views show another part of the world.
    unsigned long viewVersion() const { return _viewVersion; }

    void addViewFollower(ViewFollower& follower) { _viewFollowers.push_back(&follower); }
    void removeViewFollower(ViewFollower& follower);
    /// Suits to a view, before its picture is drawn, what depends on it.
    void followView(const DrawnView& view);

    /// What is drawn before each picture of the scene.
    const std::vector<InnerPicture*>& innerPictures() const { return _innerPictures; }
    void addInnerPicture(InnerPicture& picture) { _innerPictures.push_back(&picture); }
    void removeInnerPicture(InnerPicture& picture);

    void addKeyDevice(KeyDeviceProc& device) { _keyDevices.push_back(&device); }
    void removeKeyDevice(KeyDeviceProc& device);
    /// Hands a key to all sensors of the keyboard that are switched on. True when one of them keeps it to the
    /// scene.
    bool pressKey(int code, double time);
    void releaseKey(int code, double time);

    /// A sensor has come, gone, or was switched on or off.
    void sensorsChanged() { ++_sensorVersion; }
    unsigned long sensorVersion() const { return _sensorVersion; }

    /// Sets the lights with which a group lights the whole scene, in place of those that it had.
    void setGlobalLights(const GroupProc& group, std::vector<osg::NodeCorePtr> lights);
    /// Has the scene in which \a node stands look anew at which lights are to be seen. Cheap while no node at
    /// all lights a whole scene.
    static void askForGlobalLights(Node& node);
    /// Adds the lights of those groups that are shown.
    void collectLights(std::vector<osg::NodeCorePtr>& lights) const;

    /// The lights over the whole scene, or its fog, have changed.
    void askForLights();

private:
    struct GroupLights
    {
        const GroupProc* group;
        std::vector<osg::NodeCorePtr> lights;
    };

    std::array<BindableStack, 4> _stacks;
    std::vector<GroupLights> _lights;
    SceneProc* _scene = nullptr;
    const Proc* _viewer = nullptr; ///< the preferred view
    osg::Matrix _viewerToWorld;
    bool _viewerPlaced = false;
    unsigned long _sensorVersion = 0;
    unsigned long _viewVersion = 0;
    std::vector<std::pair<const Proc*, osg::Matrix>> _viewVolumes;
    std::vector<KeyDeviceProc*> _keyDevices;
    std::vector<ViewFollower*> _viewFollowers;
    std::vector<InnerPicture*> _innerPictures;
};

} // namespace Orvane
