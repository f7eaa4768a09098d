#pragma once

#include "OSGColor.h"
#include "OSGGroup.h"

namespace osg {

class Fog;
using FogPtr = FCPtr<NodeCorePtr, Fog>;

/// The core of a node whose children fade into a colour with their distance from the viewer. Of several fogs
/// above a shape the nearest one counts. The range is in the system of the beacon, on which no reference is
/// held, and without one in that of the fog's own node.
class OSG_SYSTEMLIB_DLLMAPPING Fog : public NodeCore
{
public:
    using Ptr = FogPtr;

    /// How the share of the colour grows: evenly, or as in real fog, slowly at first.
    enum Mode : UInt32 { LINEAR_MODE, EXPONENTIAL_MODE };

    static FogPtr create();
    static FieldContainerType& getClassType();
    FieldContainerType& getType() const override;

    UInt32 getMode() const { return _mode; }
    void setMode(UInt32 mode) { _mode = mode; }
    const Color3f& getColor() const { return _color; }
    void setColor(const Color3f& color) { _color = color; }
    /// The distance at which nothing but fog is seen; 0 or less means none.
    Real32 getRange() const { return _range; }
    void setRange(Real32 range) { _range = range; }

    const NodePtr& getBeacon() const { return _beacon; }
    void setBeacon(const NodePtr& beacon) { _beacon = beacon; }

    /// Sets GL's fog; \a toWorld leads from the fog's system to the world. With \a byDepth GL is told depths
    /// from 0 to 1, of which 1 stands for the range. False when there is none to set.
    bool activate(const Matrix& toWorld, bool byDepth = false) const;

    void renderEnter(RenderAction& action) override;
    void renderLeave(RenderAction& action) override;

protected:
    Fog() = default;

private:
    UInt32 _mode = LINEAR_MODE;
    Color3f _color = {1, 1, 1};
    Real32 _range = 0;
    NodePtr _beacon;
};

} // namespace osg
