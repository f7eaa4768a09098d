#pragma once

#include "core/BindableStack.h"
#include <OpenSG/OSGMatrix.h>
#include <OpenSG/OSGNodeCore.h>
#include <OpenSG/OSGRefPtr.h>
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
class LayerSetProc;
class Node;
class Proc;
class SceneLayer;
class ViewFollower;
struct DrawnView;

enum class BindableKind { Viewpoint, NavigationInfo, Background, Fog };

/// What the nodes of one layer share: its stacks of bindable nodes, its views, and its lights that shine on
/// all of it. A scene is a layer itself, of all that stands outside of `Layer` nodes; its state also has what
/// the layers have in common. It lives as long as the layer's behaviour or a node that takes part.
class ORVANE_API SceneState
{
public:
    /// The state of the layer in which \a node stands, by the first place where it is used; null when it
    /// stands in no scene.
    static std::shared_ptr<SceneState> of(Node& node);
    /// The same by those places alone where a node is more than known: scripts and sensors only know theirs.
    /// Null when there are none.
    static std::shared_ptr<SceneState> seatOf(Node& node);
    /// Those of all layers in which it stands, by whatever place.
    static std::vector<std::shared_ptr<SceneState>> allOf(Node& node);
    /// The state of the scene in which \a node stands, in whatever layer; null when it stands in none.
    static std::shared_ptr<SceneState> ofScene(Node& node);

    BindableStack& stack(BindableKind kind) { return _stacks[static_cast<std::size_t>(kind)]; }

    /// The layer's own behaviour, which shows the lights; null while it does not run.
    void setLayer(SceneLayer* layer) { _layer = layer; }
    SceneLayer* layer() const { return _layer; }

    /// Where the layer is looked at from, in world coordinates.
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
    /// Suits to a view, before its picture is drawn, what depends on it. \a follower is only compared.
    void followView(const DrawnView& view, const void* follower = nullptr);
    /// Who called `followView` last.
    const void* followed() const { return _followed; }

    /// What is drawn before each picture of the scene.
    const std::vector<InnerPicture*>& innerPictures() const { return _innerPictures; }
    void addInnerPicture(InnerPicture& picture) { _innerPictures.push_back(&picture); }
    void removeInnerPicture(InnerPicture& picture);

    // The sets of layers of a scene, in the order in which they came.
    void addLayerSet(LayerSetProc& set) { _layerSets.push_back(&set); }
    void removeLayerSet(LayerSetProc& set);
    const std::vector<LayerSetProc*>& layerSets() const { return _layerSets; }

    // Keys and sensors are those of a whole scene.
    void addKeyDevice(KeyDeviceProc& device) { _keyDevices.push_back(&device); }
    void removeKeyDevice(KeyDeviceProc& device);
    /// Hands a key to all sensors of the keyboard that are switched on. True when one of them keeps it to the
    /// scene.
    bool pressKey(int code, double time);
    void releaseKey(int code, double time);

    /// A sensor has come, gone, or was switched on or off.
    void sensorsChanged() { ++_sensorVersion; }
    unsigned long sensorVersion() const { return _sensorVersion; }

    /// Sets the lights with which a group lights the whole layer, in place of those that it had.
    void setGlobalLights(const GroupProc& group, const std::vector<osg::NodeCorePtr>& lights);
    /// Has the layer in which \a node stands look anew at which lights are to be seen. Cheap while no node at
    /// all lights a whole scene.
    static void askForGlobalLights(Node& node);
    /// Adds the lights of those groups that are shown.
    void collectLights(std::vector<osg::NodeCorePtr>& lights) const;

    /// The lights over the whole layer, or its fog, have changed.
    void askForLights();

private:
    static std::shared_ptr<SceneState> ofLayer(const Node& layer);
    static bool isRootOfLayer(const osg::NodePtr& root);

    struct GroupLights
    {
        const GroupProc* group;
        std::vector<osg::RefPtr<osg::NodeCorePtr>> lights; ///< a light may die before its group tells
    };

    std::array<BindableStack, 4> _stacks;
    std::vector<GroupLights> _lights;
    SceneLayer* _layer = nullptr;
    const Proc* _viewer = nullptr; ///< the preferred view
    osg::Matrix _viewerToWorld;
    bool _viewerPlaced = false;
    unsigned long _sensorVersion = 0;
    unsigned long _viewVersion = 0;
    std::vector<std::pair<const Proc*, osg::Matrix>> _viewVolumes;
    std::vector<KeyDeviceProc*> _keyDevices;
    std::vector<ViewFollower*> _viewFollowers;
    std::vector<InnerPicture*> _innerPictures;
    const void* _followed = nullptr;
    std::vector<LayerSetProc*> _layerSets;
};

} // namespace Orvane
