#pragma once

#include "OSGNodeCore.h"

namespace osg {

class Drawable;
using DrawablePtr = FCPtr<NodeCorePtr, Drawable>;

/// The core of a node that shows something itself.
class OSG_SYSTEMLIB_DLLMAPPING Drawable : public NodeCore
{
public:
    using Ptr = DrawablePtr;

    static FieldContainerType& getClassType();
    FieldContainerType& getType() const override;

protected:
    Drawable() = default;
};

} // namespace osg
