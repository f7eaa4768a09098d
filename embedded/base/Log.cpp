#include "base/Log.h"
#include <OpenSG/OSGLog.h>
#include <Orvane/LogModule.h>
#include <cstdarg>
#include <cstdio>
#include <vector>

namespace Orvane {

const char LogModuleName[] = "Orvane";

bool isLogged(int level)
{
    osg::doInitLog();
    return osg::osgLogP->getLogLevel() >= level;
}

void logLine(int level, const char* file, int line, const char* function, const char* format, ...)
{
    if (!isLogged(level))
        return;

    std::va_list arguments;
    va_start(arguments, format);
    std::va_list copy;
    va_copy(copy, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, copy);
    va_end(copy);
    std::vector<char> text(static_cast<std::size_t>(length < 0 ? 0 : length) + 1);
    std::vsnprintf(text.data(), text.size(), format, arguments);
    va_end(arguments);

    const osg::LogLock lock;
    if (!osg::osgLogP->checkModule(LogModuleName))
        return;
    osg::osgLogP->doHeader(static_cast<osg::LogLevel>(level), LogModuleName, file,
                           static_cast<osg::UInt32>(line), function);
    osg::osgLogP->doLog("%s", text.data());
}

} // namespace Orvane
