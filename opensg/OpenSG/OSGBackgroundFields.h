#pragma once

#include "OSGAttachmentContainerPtr.h"

namespace osg {

class Background;

using BackgroundPtr = FCPtr<AttachmentContainerPtr, Background>;

} // namespace osg
