#pragma once

#include "base/Proc.h"
#include <OpenSG/OSGDirectionalLight.h>
#include <OpenSG/OSGLine.h>
#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGOrthographicCamera.h>
#include <OpenSG/OSGPerspectiveCamera.h>
#include <OpenSG/OSGRefPtr.h>
#include <OpenSG/OSGTransform.h>
#include <OpenSG/OSGViewport.h>
#include <OpenSG/OSGVisitSubTree.h>
#include <OpenSG/OSGWindow.h>
#include <Orvane/ViewareaProc.h>
#include <memory>
#include <utility>
#include <vector>

namespace osg {
class RenderAction;
}

namespace Orvane {

struct SceneView;
class SceneProc;
class ViewareaInput;
class ViewpointProc;

/// Behaviour of a viewarea: the OpenSG viewport, its camera, and the head light that goes with the camera.
/// Draws whatever scene its context has at the moment, as its navigator wants it seen.
class ORVANE_API ViewareaBehaviour final : public ViewareaProc, public Proc
{
public:
    explicit ViewareaBehaviour(Node& viewarea);
    ~ViewareaBehaviour() override;

    NodeProc* nodeProc() override { return this; }
    void start(double time) override;
    void fieldChanged(Field& field, double time) override;

    std::string sensorDescription() const override;

    /// Puts the viewport into a window, behind its other ports; a null window takes it out.
    void setWindow(const osg::WindowPtr& window);

    /// Brings viewport, camera, background and lights in step with fields and scene. Called before each
    /// picture.
    void prepare();

    /// Draws what the scene shows of itself in mirrors and the like. Called after `prepare`.
    void drawInnerPictures(osg::RenderAction& action) const;

    bool isEnabled() const;
    /// True when the node runs and its viewport stands in a window.
    bool isShown() const { return _input && _viewport != osg::NullFC; }

    /// What takes the input that is meant for this viewarea; there once the node runs.
    ViewareaInput& input() const { return *_input; }

    /// True when a place of the window, in pixels from its upper left corner, lies in the viewport.
    bool contains(int x, int y) const;

    /// Asks for a new picture of this viewarea's window.
    void redraw();
    /// True since `redraw`, until the picture is prepared.
    bool needsDrawing() const { return _redraw; }

    /// The viewport, in a window or not.
    osg::ViewportPtr port() const { return osg::ViewportPtr(_port.get()); }
    /// The behaviour of the scene that is shown; null when there is none.
    SceneProc* scene() const;
    /// The viewpoint through which is looked: the viewarea's own one, else the bound one; may be null.
    ViewpointProc* viewpoint() const;
    /// Looks through another viewpoint: binds it, or makes it the viewarea's own one if that has one.
    void look(ViewpointProc& viewpoint, double time);
    /// What the scene's nodes ask for, before the navigator has its say.
    SceneView plainView(const SceneProc& scene) const;

    /// The ray through a place of the window, as last drawn. False outside of the viewport.
    bool viewRay(int x, int y, osg::Line& ray) const;

    /// The chain of nodes from the scene down to the shape under a place of the window, in pixels from its
    /// upper left corner; empty when nothing is there or the place lies outside of the viewport.
    std::vector<Node*> pick(int x, int y) const;

    /// Tells the viewarea whether the pointer is over a sensor. True when that is news.
    bool setOverSensor(bool over) { return std::exchange(_overSensor, over) != over; }

private:
    void placeViewport();
    osg::Vec2f pixels() const;
    void followView(const SceneView& view);
    void aimCamera(const SceneView& view, const osg::NodePtr& sceneRoot);

    osg::RefPtr<osg::ViewportPtr> _port;
    osg::RefPtr<osg::PerspectiveCameraPtr> _camera;
    osg::RefPtr<osg::OrthographicCameraPtr> _parallelCamera;
    osg::RefPtr<osg::NodePtr> _beacon;
    osg::RefPtr<osg::TransformPtr> _beaconTransform;
    osg::RefPtr<osg::NodePtr> _root; ///< the head light, over a reference to the scene's tree
    osg::RefPtr<osg::DirectionalLightPtr> _headlight;
    osg::RefPtr<osg::VisitSubTreePtr> _scene;
    std::unique_ptr<ViewareaInput> _input;
    osg::WindowPtr _window; ///< not counted: the window behaviour takes the viewport out before it lets go
    bool _redraw = true;
};

} // namespace Orvane
