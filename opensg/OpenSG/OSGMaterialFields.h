#pragma once

#include "OSGAttachmentContainerPtr.h"

namespace osg {

class Material;

using MaterialPtr = FCPtr<AttachmentContainerPtr, Material>;

} // namespace osg
