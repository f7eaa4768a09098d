#pragma once

#include "OSGGroup.h"
#include "OSGVector.h"

namespace osg {

class ClipPlane;
using ClipPlanePtr = FCPtr<NodeCorePtr, ClipPlane>;

/// The core of a node of whose children only what lies on one side of a plane is drawn and hit. Of more than
/// six planes over a shape the inner ones do not count.
class OSG_SYSTEMLIB_DLLMAPPING ClipPlane : public NodeCore
{
public:
    using Ptr = ClipPlanePtr;

    static ClipPlanePtr create();
    static FieldContainerType& getClassType();
    FieldContainerType& getType() const override;

    /// Points with a x + b y + c z + d >= 0 are seen, in the system of the node.
    const Vec4f& getPlane() const { return _plane; }
    void setPlane(const Vec4f& plane) { _plane = plane; }
    bool getOn() const { return _on; }
    void setOn(bool on) { _on = on; }

    /// Sets GL's plane `index` with `toEye`, from the node's system to the camera's, as modelview matrix.
    void activate(UInt32 index, const Matrix& toEye) const;

    void renderEnter(RenderAction& action) override;
    void renderLeave(RenderAction& action) override;
    void intersect(IntersectAction& action) override;
    void intersectLeave(IntersectAction& action) override;

protected:
    ClipPlane() = default;

private:
    Vec4f _plane = {0, 1, 0, 0};
    bool _on = true;
};

} // namespace osg
