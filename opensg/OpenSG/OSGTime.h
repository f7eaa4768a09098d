#pragma once

#include "OSGBaseTypes.h"

namespace osg {

/// Seconds since 1970, with the clock's fraction.
OSG_BASE_DLLMAPPING Time getSystemTime();

} // namespace osg
