#pragma once

#include "QorExport.h"
#include <OpenSG/OSGLog.h>

namespace osg {
class Lock;
}

namespace Orvane::Qt4 {

/// The module word of the library's log lines.
extern QOR_EXPORT const char LogModuleName[];

/// A line on its way into the process log, as the macros below make it. It makes sure that there is a log,
/// asks for level and module, takes the log's lock and writes the header; the lock goes with the object. The
/// text may follow only when the line converts to true.
class QOR_EXPORT QorLogLine
{
public:
    /// Begins a line; all texts are borrowed for the time of the call.
    QorLogLine(osg::LogLevel level, const char* module, const char* file, unsigned int line,
               const char* function);
    QorLogLine(const QorLogLine&) = delete;
    QorLogLine& operator=(const QorLogLine&) = delete;
    ~QorLogLine();

    /// True when the line goes out.
    explicit operator bool() const { return _open; }

private:
    osg::Lock* _lock = nullptr;
    bool _open = false;
};

} // namespace Orvane::Qt4

/// Writes a line of the given module at a level: a format and its arguments, checked as for `printf`. The
/// arguments are evaluated only when the line goes out.
#define QOR_LOG_LINE(level, module, ...)                                                                     \
    do {                                                                                                     \
        const Orvane::Qt4::QorLogLine qorLogLine(level, module, __FILE__, __LINE__, __PRETTY_FUNCTION__);    \
        if (qorLogLine)                                                                                      \
            osg::osgLogP->doLog(__VA_ARGS__);                                                                \
    } while (false)

/// A line that goes out at any level of the log.
#define QOR_LOG(...) QOR_LOG_LINE(osg::LOG_LOG, Orvane::Qt4::LogModuleName, __VA_ARGS__)
/// A plain error; nothing ends because of it.
#define QOR_FATAL(...) QOR_LOG_LINE(osg::LOG_FATAL, Orvane::Qt4::LogModuleName, __VA_ARGS__)
#define QOR_WARNING(...) QOR_LOG_LINE(osg::LOG_WARNING, Orvane::Qt4::LogModuleName, __VA_ARGS__)
/// Tracing of operations.
#define QOR_NOTICE(...) QOR_LOG_LINE(osg::LOG_NOTICE, Orvane::Qt4::LogModuleName, __VA_ARGS__)
#define QOR_INFO(...) QOR_LOG_LINE(osg::LOG_INFO, Orvane::Qt4::LogModuleName, __VA_ARGS__)
#define QOR_DEBUG(...) QOR_LOG_LINE(osg::LOG_DEBUG, Orvane::Qt4::LogModuleName, __VA_ARGS__)
