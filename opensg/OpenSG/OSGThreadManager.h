#pragma once

#include "OSGBaseTypes.h"

namespace osg {

/// What is known about threads as a whole. The slice keeps one copy of every container, which all aspects
/// share; the number of aspects is what programs expect that ask for it.
class ThreadManager
{
public:
    /// The number of aspects that a thread may be given: 0 to one less.
    static UInt32 getNumAspects() { return 2; }
};

} // namespace osg
