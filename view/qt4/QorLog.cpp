#include "QorLog.h"

#include <OpenSG/OSGLock.h>

namespace Orvane::Qt4 {

const char LogModuleName[] = "ViewQt4";

QorLogLine::QorLogLine(osg::LogLevel level, const char* module, const char* file, unsigned int line,
                       const char* function)
{
    osg::doInitLog();
    if (osg::osgLogP->getLogLevel() < level)
        return;

    _lock = osg::Log::_pLogLock;
    if (_lock)
        _lock->aquire();

    _open = osg::osgLogP->checkModule(module);
    if (_open)
        osg::osgLogP->doHeader(level, module, file, line, function);
}

QorLogLine::~QorLogLine()
{
    if (_lock)
        _lock->release();
}

} // namespace Orvane::Qt4
