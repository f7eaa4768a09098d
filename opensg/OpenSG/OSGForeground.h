#pragma once

#include "OSGAttachmentContainer.h"

#include <vector>

namespace osg {

class Foreground;
class RenderActionBase;
class Viewport;

using ForegroundPtr = FCPtr<AttachmentContainerPtr, Foreground>;
using MFForegroundPtr = std::vector<ForegroundPtr>;

/// Something that a viewport draws over its scene.
class OSG_SYSTEMLIB_DLLMAPPING Foreground : public AttachmentContainer
{
public:
    using Ptr = ForegroundPtr;

    static FieldContainerType& getClassType();
    FieldContainerType& getType() const override;

    /// Draws over the finished picture of `port`, whose GL viewport is set.
    virtual void draw(RenderActionBase& action, Viewport& port) = 0;

protected:
    Foreground() = default;
};

} // namespace osg
