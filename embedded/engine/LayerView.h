#pragma once

#include "core/SceneState.h"
#include "core/SurfacePart.h"
#include "core/ViewFollower.h"
#include <OpenSG/OSGBackground.h>
#include <OpenSG/OSGDirectionalLight.h>
#include <OpenSG/OSGLine.h>
#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGOrthographicCamera.h>
#include <OpenSG/OSGPerspectiveCamera.h>
#include <OpenSG/OSGRefPtr.h>
#include <OpenSG/OSGTransform.h>
#include <OpenSG/OSGViewport.h>
#include <OpenSG/OSGVisitSubTree.h>
#include <memory>

namespace osg {
class RenderAction;
}

namespace Orvane {

struct SceneView;
class SceneLayer;

/// Shows a layer of a scene in a viewarea: an OpenSG viewport, its camera, and the head light that goes with
/// the camera.
class LayerView
{
public:
    /// \a viewarea outlives the view.
    explicit LayerView(const Proc& viewarea);
    ~LayerView();
    LayerView(const LayerView&) = delete;
    LayerView& operator=(const LayerView&) = delete;

    /// The viewport, in a window or not.
    osg::ViewportPtr port() const { return osg::ViewportPtr(_port.get()); }

    /// Shows a layer from now on; null shows nothing.
    void show(SceneLayer* layer);
    /// The layer that is shown; null when there is none, or none any more.
    SceneLayer* layer() const;

    /// Puts the viewport where the part of its viewarea that the layer wants lies in the window.
    void place(const SurfacePart& viewarea);
    /// Brings viewport, camera and lights in step with what is to be seen, before \a background.
    void aim(const SceneView& view, const osg::BackgroundPtr& background);
    /// Draws what is drawn before each picture of the layer, in the context of a window.
    void drawInnerPictures(const osg::WindowPtr& window, osg::RenderAction& action, double time) const;
    /// Nothing of the layer is shown until the next `aim`.
    void hide();

    /// True when a place of the window, in pixels from its upper left corner, lies in the viewport.
    bool contains(int x, int y) const;
    /// The ray through a place of the window, as last drawn, also beside the viewport. False without a
    /// window.
    bool findRay(int x, int y, osg::Line& ray) const;

private:
    class Port;

    void follow(const SceneView& view);
    void followAgain() const;
    void aimCamera(const SceneView& view, const osg::NodePtr& layerRoot);
    osg::Vec2f pixels() const;

    const Proc& _viewarea;
    osg::RefPtr<osg::ViewportPtr> _port;
    osg::RefPtr<osg::PerspectiveCameraPtr> _camera;
    osg::RefPtr<osg::OrthographicCameraPtr> _parallelCamera;
    osg::RefPtr<osg::NodePtr> _beacon;
    osg::RefPtr<osg::TransformPtr> _beaconTransform;
    osg::RefPtr<osg::NodePtr> _root; ///< the head light, over a reference to the layer's tree
    osg::RefPtr<osg::DirectionalLightPtr> _headlight;
    osg::RefPtr<osg::VisitSubTreePtr> _content;
    osg::RefPtr<osg::BackgroundPtr> _background; ///< of the layer, whether it fills or not
    unsigned long long _layerId = 0;
    std::weak_ptr<SceneState> _state; ///< of the layer
    DrawnView _drawn;
};

} // namespace Orvane
