#pragma once

#include "OSGBackground.h"
#include "OSGColor.h"
#include "OSGNodePtr.h"
#include "OSGTextureChunk.h"
#include "OSGVector.h"

#include <vector>

namespace osg {

class SkyBackground;
using SkyBackgroundPtr = FCPtr<BackgroundPtr, SkyBackground>;

/// A sky around the viewer, who never comes nearer to it: rings of colours from above and from below, and a
/// box of six textures in front of them. It is turned with its beacon, on which no reference is held.
class OSG_SYSTEMLIB_DLLMAPPING SkyBackground : public Background
{
public:
    using Ptr = SkyBackgroundPtr;

    enum : UInt32 {
        SphereResFieldId = AttachmentContainer::NextFieldId,
        SkyColorFieldId,
        SkyAngleFieldId,
        GroundColorFieldId,
        GroundAngleFieldId,
        TexturesFieldId,
        BeaconFieldId,
        AlphaFieldId,
        NextFieldId
    };

    /// The sides of the box, as seen by a viewer inside who looks along -z, y up.
    enum Side : UInt32 { BACK_SIDE, BOTTOM_SIDE, FRONT_SIDE, LEFT_SIDE, RIGHT_SIDE, TOP_SIDE, SIDE_COUNT };

    static SkyBackgroundPtr create();
    static FieldContainerType& getClassType();
    FieldContainerType& getType() const override;

    /// The colours of the sky: the first one right above, the others at angles from there, in radians, which
    /// do not fall. Below the last angle the last colour goes on. Black when there is none.
    void setSky(const std::vector<Color3f>& colors, const std::vector<Real32>& angles);
    const std::vector<Color3f>& getSkyColor() const { return _skyColor; }
    const std::vector<Real32>& getSkyAngle() const { return _skyAngle; }
    /// The same for the ground, from right below; it ends at the last angle.
    void setGround(const std::vector<Color3f>& colors, const std::vector<Real32>& angles);
    const std::vector<Color3f>& getGroundColor() const { return _groundColor; }
    const std::vector<Real32>& getGroundAngle() const { return _groundAngle; }

    /// The picture on a side of the box; null for none. A reference is held on it.
    void setTexture(Side side, const TextureChunkPtr& texture);
    const TextureChunkPtr& getTexture(Side side) const { return _textures[side]; }

    const NodePtr& getBeacon() const { return _beacon; }
    void setBeacon(const NodePtr& beacon) { _beacon = beacon; }

    /// The alpha that the picture gets where only colours of the sky are seen.
    Real32 getAlpha() const { return _alpha; }
    void setAlpha(Real32 alpha);

    void clear(RenderActionBase& action, Viewport& port) override;

protected:
    SkyBackground() = default;
    ~SkyBackground() override;

private:
    struct Vertex
    {
        Pnt3f position;
        Color4f color;
    };

    void layRings();
    void addRings(const std::vector<Color3f>& colors, const std::vector<Real32>& angles, bool isGround);
    void addBand(Real32 upper, Real32 lower, const Color4f& upperColor, const Color4f& lowerColor, bool down);
    void drawBox(RenderActionBase& action) const;
    bool hasBox() const;

    std::vector<Color3f> _skyColor;
    std::vector<Real32> _skyAngle;
    std::vector<Color3f> _groundColor;
    std::vector<Real32> _groundAngle;
    TextureChunkPtr _textures[SIDE_COUNT];
    NodePtr _beacon;
    Real32 _alpha = 1;
    std::vector<Vertex> _rings; ///< triangles; empty when one colour covers all
    bool _ringsChanged = false;
};

} // namespace osg
