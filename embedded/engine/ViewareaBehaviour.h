#pragma once

#include "LayerViews.h"
#include "base/Proc.h"
#include "core/Pointer.h"
#include <OpenSG/OSGLine.h>
#include <OpenSG/OSGViewport.h>
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
class SceneLayer;
class SceneProc;
class ViewareaInput;
class ViewpointProc;

/// Behaviour of a viewarea: shows the layers of whatever scene its context has at the moment, as its
/// navigator wants them seen.
class ORVANE_API ViewareaBehaviour final : public ViewareaProc, public Proc
{
public:
    explicit ViewareaBehaviour(Node& viewarea);
    ~ViewareaBehaviour() override;

    NodeProc* nodeProc() override { return this; }
    void start(double time) override;
    void fieldChanged(Field& field, double time) override;

    std::string sensorDescription() const override;
    bool userPlace(osg::Matrix& cameraToWorld) const override;
    bool moveUser(const osg::Matrix& cameraToWorld) override;

    /// Puts the viewports into a window, behind its other ones; a null window takes them out.
    void setWindow(const osg::WindowPtr& window);

    /// Brings viewports, cameras, backgrounds and lights in step with fields and scene. Called before each
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

    /// The viewport of the scene's own layer, in a window or not. It covers the viewarea.
    osg::ViewportPtr port() const { return _views.base().port(); }
    /// That in which a layer is drawn first; that of the viewarea for a layer that is not drawn.
    osg::ViewportPtr portOf(const SceneLayer& layer) const;
    /// Draws over each layer of the scene, and over all of them.
    void addForegrounds(const osg::ForegroundPtr& ofLayers, const osg::ForegroundPtr& ofAll);

    /// The behaviour of the scene that is shown; null when there is none.
    SceneProc* scene() const;
    /// The layer of the scene in which the user navigates; null when there is no scene.
    SceneLayer* activeLayer() const;
    /// The viewpoint through which that layer is looked at; may be null.
    ViewpointProc* viewpoint() const;
    /// The viewpoint through which a layer is looked at: the viewarea's own one when it stands there, else
    /// the bound one; may be null.
    ViewpointProc* viewpoint(const SceneLayer& layer) const;
    /// Looks through another viewpoint: binds it, or makes it the viewarea's own one if that has one.
    void look(ViewpointProc& viewpoint, double time);
    /// What the nodes of a layer ask for, before the navigator has its say.
    SceneView plainView(const SceneLayer& layer) const;

    /// The ray through a place of the window in the layer in which the user navigates, as last drawn. False
    /// outside of its viewport.
    bool viewRay(int x, int y, osg::Line& ray) const;
    /// The rays in all layers that are drawn, of the topmost one first.
    std::vector<LayerRay> rays(int x, int y) const;

    /// The chain of nodes from the scene down to the shape under a place of the window, in pixels from its
    /// upper left corner; empty when nothing is there or the place lies outside of the viewport.
    std::vector<Node*> pick(int x, int y) const;

    /// Tells the viewarea whether the pointer is over a sensor. True when that is news.
    bool setOverSensor(bool over) { return std::exchange(_overSensor, over) != over; }

private:
    SurfacePart part() const;
    ViewpointProc* ownViewpoint(const SceneLayer& layer) const;

    LayerViews _views;
    std::unique_ptr<ViewareaInput> _input;
    bool _redraw = true;
};

} // namespace Orvane
