#pragma once

#include <Orvane/Export.h>

namespace Orvane {

/// Writes one line of the runtime to OpenSG's log, if the log's level lets it out. \a level is an
/// `osg::LogLevel`; \a format as in printf, with its own line end.
ORVANE_API void logLine(int level, const char* file, int line, const char* function, const char* format, ...)
    __attribute__((format(printf, 5, 6)));

/// True when a line of \a level goes out; ask before a text is expensive to make.
ORVANE_API bool isLogged(int level);

} // namespace Orvane

#define ORVANE_LOG(level, ...) ::Orvane::logLine(level, __FILE__, __LINE__, __PRETTY_FUNCTION__, __VA_ARGS__)
