#pragma once

#include "OSGAttachmentContainer.h"
#include "OSGCameraFields.h"
#include "OSGFrustumVolume.h"
#include "OSGMatrix.h"
#include "OSGNodePtr.h"

namespace osg {

class Line;
class Viewport;

/// How a viewport looks at a scene. The camera stands in the system of its beacon, at the origin, and looks
/// along the negative z axis, y up. No reference is held on the beacon.
class OSG_SYSTEMLIB_DLLMAPPING Camera : public AttachmentContainer
{
public:
    using Ptr = CameraPtr;

    enum : UInt32 { BeaconFieldId = AttachmentContainer::NextFieldId, NearFieldId, FarFieldId, NextFieldId };
    static constexpr BitVector BeaconFieldMask = BitVector(1) << BeaconFieldId;
    static constexpr BitVector NearFieldMask = BitVector(1) << NearFieldId;
    static constexpr BitVector FarFieldMask = BitVector(1) << FarFieldId;

    static FieldContainerType& getClassType();
    FieldContainerType& getType() const override;

    const NodePtr& getBeacon() const { return _beacon; }
    void setBeacon(const NodePtr& beacon) { _beacon = beacon; }

    /// Distances of the planes that bound the view, in front of the camera.
    Real32 getNear() const { return _near; }
    void setNear(Real32 distance) { _near = distance; }
    Real32 getFar() const { return _far; }
    void setFar(Real32 distance) { _far = distance; }

    /// From the camera's system to clip space, for a viewport of `width` by `height` pixels.
    virtual void getProjection(Matrix& result, UInt32 width, UInt32 height) const = 0;
    /// What stands between projection and viewing; the identity here.
    virtual void getProjectionTranslation(Matrix& result, UInt32 width, UInt32 height) const;
    /// From world to the camera's system: the inverse of the beacon's matrix. Without a beacon a warning is
    /// logged and `result` stays as it is.
    virtual void getViewing(Matrix& result, UInt32 width, UInt32 height) const;
    /// What is visible, in world coordinates.
    virtual void getFrustum(FrustumVolume& result, const Viewport& port) const;
    /// Projection x projection translation x viewing: from world to clip space.
    virtual void getWorldToScreen(Matrix& result, const Viewport& port) const;

    /// The ray through a pixel, `x` and `y` counted from the upper left of the window. It starts on the near
    /// plane; `t`, if given, receives the distance to the far plane. False when the viewport has no pixels or
    /// stands in no window.
    bool calcViewRay(Line& line, Int32 x, Int32 y, const Viewport& port, Real32* t = nullptr) const;

protected:
    Camera() = default;

private:
    NodePtr _beacon;
    Real32 _near = 0.1f;
    Real32 _far = 10000;
};

} // namespace osg
