#pragma once

#include "OSGAttachmentContainerPtr.h"

namespace osg {

class Camera;

using CameraPtr = FCPtr<AttachmentContainerPtr, Camera>;

} // namespace osg
