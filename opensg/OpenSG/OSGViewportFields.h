#pragma once

#include "OSGAttachmentContainerPtr.h"

#include <vector>

namespace osg {

class Viewport;

using ViewportPtr = FCPtr<AttachmentContainerPtr, Viewport>;
using MFViewportPtr = std::vector<ViewportPtr>;

} // namespace osg
