#pragma once

#include "LayerView.h"
#include <OpenSG/OSGForeground.h>
#include <OpenSG/OSGWindow.h>
#include <memory>
#include <vector>

namespace Orvane {

class SceneProc;

/// The views of a viewarea: one for each layer that its scene draws, and each time that it does. In the
/// window their ports stand together, the lowest layer first.
class LayerViews
{
public:
    /// \a viewarea outlives the views.
    explicit LayerViews(const Proc& viewarea);
    ~LayerViews();
    LayerViews(const LayerViews&) = delete;
    LayerViews& operator=(const LayerViews&) = delete;

    /// The view of the scene's own layer; it is there always, drawn or not.
    LayerView& base() { return _base; }
    const LayerView& base() const { return _base; }

    /// Puts the ports into a window, behind its other ones; a null window takes them out.
    void setWindow(const osg::WindowPtr& window);
    const osg::WindowPtr& window() const { return _window; }

    /// Shows the layers of a scene, or nothing of no scene, in this part of the window.
    void show(SceneProc* scene, const SurfacePart& viewarea);
    /// Those that are drawn, the lowest one first.
    const std::vector<LayerView*>& drawn() const { return _drawn; }
    /// The view in which a layer is drawn first; null when it is not drawn.
    const LayerView* of(const SceneLayer& layer) const;
    /// What stands behind a layer: its own background, or the layers below it.
    osg::BackgroundPtr backgroundOf(const LayerView& view, const osg::BackgroundPtr& own) const;
    /// Nothing is shown until the next picture.
    void hide();

    /// Draws over each layer, and over all of them.
    void addForegrounds(const osg::ForegroundPtr& ofLayers, const osg::ForegroundPtr& ofAll);

private:
    struct Ground;

    void arrange(bool fillsBehind);
    osg::ViewportPtr ground(std::unique_ptr<Ground>& ground, bool fills);

    const Proc& _viewarea;
    LayerView _base;
    std::vector<std::unique_ptr<LayerView>> _others;
    std::vector<LayerView*> _drawn;
    std::unique_ptr<Ground> _behind; ///< fills what no layer fills; null while there was no need for it
    std::unique_ptr<Ground> _front;  ///< carries what is drawn over several layers
    osg::RefPtr<osg::BackgroundPtr> _lower; ///< leaves what lower layers show
    osg::RefPtr<osg::ForegroundPtr> _ofLayers;
    osg::RefPtr<osg::ForegroundPtr> _ofAll;
    std::vector<osg::ViewportPtr> _ports; ///< as they stand in the window
    SurfacePart _part;
    osg::WindowPtr _window; ///< not counted: the window behaviour takes the ports out before it lets go
};

} // namespace Orvane
