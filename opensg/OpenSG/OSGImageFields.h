#pragma once

#include "OSGAttachmentContainerPtr.h"
#include "OSGRefPtr.h"

namespace osg {

class Image;

using ImagePtr = FCPtr<AttachmentContainerPtr, Image>;
using ImageRefPtr = RefPtr<ImagePtr>;

} // namespace osg
