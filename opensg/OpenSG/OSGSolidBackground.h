#pragma once

#include "OSGBackground.h"
#include "OSGColor.h"

namespace osg {

class SolidBackground;
using SolidBackgroundPtr = FCPtr<BackgroundPtr, SolidBackground>;

/// A background of one colour, black at first.
class OSG_SYSTEMLIB_DLLMAPPING SolidBackground : public Background
{
public:
    using Ptr = SolidBackgroundPtr;

    enum : UInt32 { ColorFieldId = AttachmentContainer::NextFieldId, AlphaFieldId, NextFieldId };
    static constexpr BitVector ColorFieldMask = BitVector(1) << ColorFieldId;
    static constexpr BitVector AlphaFieldMask = BitVector(1) << AlphaFieldId;

    static SolidBackgroundPtr create();
    static FieldContainerType& getClassType();
    FieldContainerType& getType() const override;

    const Color3f& getColor() const { return _color; }
    void setColor(const Color3f& color) { _color = color; }
    /// The alpha that the picture gets where nothing else is drawn.
    Real32 getAlpha() const { return _alpha; }
    void setAlpha(Real32 alpha) { _alpha = alpha; }

    void clear(RenderActionBase& action, Viewport& port) override;

protected:
    SolidBackground() = default;

private:
    Color3f _color;
    Real32 _alpha = 1;
};

} // namespace osg
