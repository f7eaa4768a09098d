#pragma once

#include "OSGBaseTypes.h"
#include "OSGConfig.h"
#include "OSGThreadManager.h"

#include <string>

namespace osg {

/// What the slice knows about the calling thread: its aspect, a number that tells which copy of the
/// containers a thread would see. Every thread starts with aspect 0, whether or not it was announced.
class OSG_SYSTEMLIB_DLLMAPPING ThreadBase
{
public:
    /// The aspect of the calling thread.
    static UInt32 getAspect();

protected:
    ThreadBase() = default;
    ~ThreadBase() = default;
    static void setAspect(UInt32 aspect);
};

using WinThreadBase = ThreadBase;
using PThreadBase = ThreadBase;

/// The name under which programs ask for their own thread: `Thread::getAspect()`.
class Thread : public ThreadBase
{
};

/// A thread that was started by somebody else and is announced under a name. The objects live until the
/// process ends.
class OSG_SYSTEMLIB_DLLMAPPING ExternalThread : public ThreadBase
{
public:
    /// The thread called `name`, made on the first call; null gives the thread without a name.
    static ExternalThread* get(const Char8* name);

    /// Gives the calling thread the number `aspect`; a number beyond the last aspect counts as 0.
    void initialize(UInt32 aspect);
    const Char8* getName() const { return _name.c_str(); }

private:
    explicit ExternalThread(std::string name);

    std::string _name;
};

} // namespace osg
