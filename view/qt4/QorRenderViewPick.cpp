// Picking in a render view: the ray through a pixel, and what it hits.

#include "QorLog.h"
#include "QorRenderView.h"
#include "QorSmoothNormal.h"
#include <OpenSG/OSGCamera.h>
#include <OpenSG/OSGLine.h>
#include <OpenSG/OSGViewport.h>
#include <Orvane/MFNode.h>
#include <Orvane/NodeNameSpace.h>
#include <Orvane/SceneBaseNode.h>
#include <Orvane/SceneBaseNodeProc.h>
#include <Orvane/Viewarea.h>
#include <Orvane/ViewareaProc.h>
#include <Orvane/Window.h>
#include <Orvane/WindowProc.h>
#include <QtGui/QMouseEvent>

namespace Orvane::Qt4 {

namespace {

/// The viewport of the first viewarea of a window; null when there is none.
osg::ViewportPtr firstViewport(const Orvane::Window* window)
{
    const Orvane::MFNode* viewareas = window ? window->viewareas() : nullptr;
    if (!viewareas || viewareas->size() == 0)
        return osg::NullFC;
    auto* viewarea = dynamic_cast<Orvane::Viewarea*>(viewareas->elem(0).node());
    Orvane::ViewareaProc* proc = viewarea ? viewarea->getViewareaProc() : nullptr;
    return proc ? proc->vptPtr() : osg::ViewportPtr(osg::NullFC);
}

} // namespace

void QorRenderView::execRayTest(QMouseEvent* event)
{
    Orvane::Window* window = _windowProc ? _windowProc->window() : nullptr;
    const Orvane::NodeNameSpace* names =
        Orvane::NodeNameSpace::findNameSpace(nullptr, "scene", window ? window->context() : nullptr, false);

    const osg::ViewportPtr viewport = firstViewport(window);
    if (!viewport || !viewport->getCamera())
        return;
    osg::Line ray;
    if (!viewport->getCamera()->calcViewRay(ray, event->x(), event->y(), *viewport, nullptr))
        return;

    auto* scene = dynamic_cast<Orvane::SceneBaseNode*>(names ? names->rootNode() : nullptr);
    Orvane::SceneBaseNodeProc* sceneProc = scene ? scene->getSceneBaseNodeProc() : nullptr;
    if (!sceneProc)
        return;
    std::vector<Orvane::Node*> nodes;
    osg::Pnt3f point;
    osg::Vec3f normal;
    osg::NodePtr osgNode;
    unsigned int triangle = 0;
    if (!sceneProc->pick(ray, nodes, &point, &normal, &osgNode, &triangle, nullptr) || nodes.empty())
        return;

    QOR_NOTICE("QorRenderView::mouseReleaseEvent: node picked\n.");
    // A host that reacts to the first signal may change the scene, or end this view.
    const osg::Vec3f smooth = smoothNormal(ray, osgNode, triangle, normal);
    const QPointer<QorRenderView> self(this);
    emit nodePickedHierachy(nodes);
    if (self)
        emit nodePickedHitData(point, smooth);
}

} // namespace Orvane::Qt4
