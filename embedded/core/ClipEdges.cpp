#include "core/ClipEdges.h"
#include "core/ViewFollower.h"

namespace Orvane {

ClipEdges::ClipEdges()
{
    for (osg::RefPtr<osg::ClipPlanePtr>& plane : _planes)
        plane = osg::ClipPlane::create();
}

void ClipEdges::collect(const SurfacePart& part, std::vector<osg::NodeCorePtr>& cores) const
{
    if (part.isWhole())
        return;
    for (const osg::RefPtr<osg::ClipPlanePtr>& plane : _planes)
        cores.push_back(osg::NodeCorePtr(plane.get()));
}

void ClipEdges::follow(const SurfacePart& part, const DrawnView& view, const osg::Matrix& toWorld)
{
    if (part.isWhole())
        return;
    osg::Matrix toCamera;
    if (!view.cameraToWorld.inverse(toCamera))
        return;
    toCamera.mult(toWorld);
    const float edges[] = {part.left, part.right, part.bottom, part.top};
    for (osg::UInt32 i = 0; i < 4; ++i) {
        const osg::UInt32 axis = i / 2;
        const float inwards = i % 2 == 0 ? 1.0F : -1.0F;
        const float place = (2.0F * edges[i] - 1.0F) * 0.5F * view.pixelSize * view.pixels[axis];
        osg::Vec4f plane;
        plane[axis] = inwards;
        // With perspective the plane goes through the eye, else along the view.
        plane[view.hasPerspective ? 2 : 3] = (view.hasPerspective ? place : -place) * inwards;
        osg::Vec4f inGroup;
        for (osg::UInt32 column = 0; column < 4; ++column) {
            inGroup[column] = 0.0F;
            for (osg::UInt32 row = 0; row < 4; ++row)
                inGroup[column] += toCamera[column][row] * plane[row];
        }
        _planes[i]->setPlane(inGroup);
    }
}

} // namespace Orvane
