#pragma once

#include "OSGAttachmentContainerPtr.h"

namespace osg {

class Window;

using WindowPtr = FCPtr<AttachmentContainerPtr, Window>;

} // namespace osg
