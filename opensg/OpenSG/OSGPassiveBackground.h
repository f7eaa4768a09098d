#pragma once

#include "OSGBackground.h"

namespace osg {

class PassiveBackground;
using PassiveBackgroundPtr = FCPtr<BackgroundPtr, PassiveBackground>;

/// Leaves everything as it is.
class OSG_SYSTEMLIB_DLLMAPPING PassiveBackground : public Background
{
public:
    using Ptr = PassiveBackgroundPtr;

    static PassiveBackgroundPtr create();
    static FieldContainerType& getClassType();
    FieldContainerType& getType() const override;

    void clear(RenderActionBase& action, Viewport& port) override;

protected:
    PassiveBackground() = default;
};

} // namespace osg
