#include <OpenSG/OSGBaseFunctions.h>

#include <OpenSG/OSGLog.h>

#include <atomic>

namespace osg {

namespace {

std::atomic<bool> running{false};

} // namespace

bool osgInit(Int32, Char8**, UInt16 major, UInt16 minor, UInt16)
{
    if (major != OSG_MAJOR_VERSION || minor != OSG_MINOR_VERSION)
        return false;
    initLog();
    running = true;
    return true;
}

bool osgExit()
{
    if (!running.exchange(false))
        return false;
    doExitLog();
    return true;
}

} // namespace osg
