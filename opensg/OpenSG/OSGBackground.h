#pragma once

#include "OSGAttachmentContainer.h"
#include "OSGBackgroundFields.h"

namespace osg {

class RenderActionBase;
class Viewport;

/// What a viewport shows behind its scene.
class OSG_SYSTEMLIB_DLLMAPPING Background : public AttachmentContainer
{
public:
    using Ptr = BackgroundPtr;

    static FieldContainerType& getClassType();
    FieldContainerType& getType() const override;

    /// Clears depth and stencil of the port's rectangle and covers its colours. GL viewport and scissor box
    /// are set; matrices are to be left as they were found.
    virtual void clear(RenderActionBase& action, Viewport& port) = 0;

protected:
    Background() = default;
};

} // namespace osg
