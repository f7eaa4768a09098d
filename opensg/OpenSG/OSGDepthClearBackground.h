#pragma once

#include "OSGBackground.h"

namespace osg {

class DepthClearBackground;
using DepthClearBackgroundPtr = FCPtr<BackgroundPtr, DepthClearBackground>;

/// Leaves the colours as they are and clears depth and stencil: what is drawn next lies on top of it all.
class OSG_SYSTEMLIB_DLLMAPPING DepthClearBackground : public Background
{
public:
    using Ptr = DepthClearBackgroundPtr;

    static DepthClearBackgroundPtr create();
    static FieldContainerType& getClassType();
    FieldContainerType& getType() const override;

    void clear(RenderActionBase& action, Viewport& port) override;

protected:
    DepthClearBackground() = default;
};

} // namespace osg
