#pragma once

#include "OSGRenderActionBase.h"
#include "OSGRenderStatistics.h"

#include <memory>
#include <vector>

namespace osg {

class ClipPlane;
class DrawList;
class Fog;
class FrustumVolume;
class Geometry;
class Light;
class Material;
class NodeCore;
class Painter;
class Traversal;

/// Draws a tree: collects what is in view with the lights that reach it, then draws what is opaque, sorted by
/// state, and what is transparent from back to front. While nothing in a tree changes, what was collected is
/// kept. One action may serve many windows and viewports, one after the other. Whoever makes it deletes it.
class OSG_SYSTEMLIB_DLLMAPPING RenderAction : public RenderActionBase
{
public:
    static RenderAction* create();
    ~RenderAction() override;

    /// Draws into the viewport that was set; without one a warning is logged and the answer is Quit.
    ResultE apply(const NodePtr& node) override;

    /// Whether nodes out of view are left out. Default: yes.
    bool getFrustumCulling() const { return _frustumCulling; }
    void setFrustumCulling(bool culling) { _frustumCulling = culling; }
    /// Whether what is transparent is drawn from back to front. Default: yes.
    bool getSortTrans() const { return _sortTrans; }
    void setSortTrans(bool sort) { _sortTrans = sort; }
    /// Whether what is transparent hides what is drawn later behind it. Default: no.
    bool getZWriteTrans() const { return _zWriteTrans; }
    void setZWriteTrans(bool write) { _zWriteTrans = write; }

    const RenderStatistics& getStatistics() const { return _statistics; }
    void resetStatistics() { _statistics = RenderStatistics(); }

    /// For cores, in `renderEnter` and `renderLeave`: from the present node to the world.
    const Matrix& getToWorld() const;
    /// For cores: draws a geometry at the present place.
    void addGeometry(Geometry& geometry);
    /// For cores: a light that shines on all that is added until it is taken away.
    void pushLight(Light& light);
    void popLight();
    /// For cores: a fog, or a plane that cuts, for all that is added until it is taken away.
    void pushFog(const Fog& fog);
    void popFog();
    void pushClipPlane(const ClipPlane& plane);
    void popClipPlane();
    /// For cores: a material that stands in for those of all that is added until it is taken away, if none
    /// does so already; may be null.
    void pushMaterial(const Material* material);
    void popMaterial();

    /// For cores: what this one adds depends on the camera or on time, so that it must be asked in each
    /// frame.
    void setVarying() { _varying = true; }

protected:
    RenderAction();

private:
    friend class Traversal;
    struct Kept;

    Kept& findKept(const Node& root);
    void drawKept(const NodePtr& node, Kept& kept);
    void collect(const NodePtr& node, DrawList& list, bool culling);

    int enter(Node& node, const Matrix& parentToWorld, int parentMark);
    void visit(NodeCore& core);
    void leave(NodeCore& core);

    bool _frustumCulling = true;
    bool _sortTrans = true;
    bool _zWriteTrans = false;
    RenderStatistics _statistics;
    std::unique_ptr<FrustumVolume> _frustum;
    std::unique_ptr<Traversal> _traversal;
    std::unique_ptr<DrawList> _fresh;
    std::unique_ptr<Painter> _painter;
    std::vector<Kept> _kept;

    // While a list is collected.
    DrawList* _target = nullptr;
    bool _culling = true;
    bool _varying = false;
};

} // namespace osg
