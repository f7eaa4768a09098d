#include "OpenSG/OSGBaseFunctions.h"
#include "OpenSG/OSGLog.h"

#include <cstdlib>
#include <memory>
#include <strings.h>

#ifndef OSG_DEFAULT_LOG_LEVEL
#define OSG_DEFAULT_LOG_LEVEL LOG_WARNING
#endif
#ifndef OSG_DEFAULT_LOG_TYPE
#define OSG_DEFAULT_LOG_TYPE LOG_STDERR
#endif
#ifndef OSG_DEFAULT_LOG_HEADER_ELEM
#define OSG_DEFAULT_LOG_HEADER_ELEM LOG_TYPE_HEADER
#endif

namespace osg {

LogP osgLogP = nullptr;

namespace {

/// Set after osgLogP, and what a thread that finds a log is synchronised by.
std::atomic<bool> logIsThere{false};

template <class T>
struct NamedValue
{
    const Char8* name;
    T value;
};

const NamedValue<LogLevel> levels[] = {{"log", LOG_LOG},       {"fatal", LOG_FATAL}, {"warning", LOG_WARNING},
                                       {"notice", LOG_NOTICE}, {"info", LOG_INFO},   {"debug", LOG_DEBUG}};

const NamedValue<LogType> types[] = {{"none", LOG_NONE},     {"-", LOG_STDOUT},  {"stdout", LOG_STDOUT},
                                     {"stderr", LOG_STDERR}, {"file", LOG_FILE}, {"buffer", LOG_BUFFER}};

/// The variable's text; null when it is not set or empty.
const Char8* environment(const Char8* variable)
{
    const Char8* const text = std::getenv(variable);
    return text && *text ? text : nullptr;
}

/// Reads a whole text as a decimal number.
bool readNumber(const Char8* text, long& number)
{
    Char8* end = nullptr;
    number = std::strtol(text, &end, 10);
    return end != text && *end == '\0';
}

/// The value of a table that text asks for, by name in any case or by (clamped) position.
template <class T, std::size_t N>
T lookUp(const NamedValue<T> (&table)[N], const Char8* text, T unknown)
{
    long number;
    if (readNumber(text, number))
        return table[osgClamp(0L, number, static_cast<long>(N) - 1)].value;
    for (const NamedValue<T>& entry : table) {
        if (strcasecmp(entry.name, text) == 0)
            return entry.value;
    }
    return unknown;
}

/// Says in the log itself that a setting came from outside the program.
void tell(Log& log, const Char8* operation, const Char8* variable, const Char8* value)
{
    log.doLog("%s: set by envvar %s '%s'.\n", operation, variable, value);
}

void configureLevel(Log& log)
{
    const Char8* const text = environment("OSG_LOG_LEVEL");
    log.setLogLevel(text ? lookUp(levels, text, LOG_DEBUG) : OSG_DEFAULT_LOG_LEVEL, true);
    if (text)
        tell(log, "OSGLog::setLogLevel", "OSG_LOG_LEVEL", text);
}

void configureFile(Log& log)
{
    const Char8* const text = environment("OSG_LOG_FILE");
    log.setLogFile(text, true);
    if (text)
        tell(log, "Log::setLogFile", "OSG_LOG_FILE", text);
}

void configureType(Log& log)
{
    const Char8* const text = environment("OSG_LOG_TYPE");
    log.setLogType(text ? lookUp(types, text, LOG_STDERR) : OSG_DEFAULT_LOG_TYPE, true);
    if (text)
        tell(log, "Log::setLogType", "OSG_LOG_TYPE", text);
}

void configureHeader(Log& log)
{
    const Char8* const text = environment("OSG_LOG_HEADER");
    long mask = 0;
    const bool valid = text && readNumber(text, mask);
    if (!valid)
        mask = OSG_DEFAULT_LOG_HEADER_ELEM;
    log.setHeaderElem(static_cast<UInt32>(mask), true);
    if (valid)
        tell(log, "Log::setHeaderElem", "OSG_LOG_HEADER", text);
}

} // namespace

void doInitLog()
{
    if (logIsThere.load(std::memory_order_acquire))
        return;
    // The log's own lock, and no second one: a thread that holds it may find that there is no log.
    const LogLock guard;
    if (osgLogP)
        return;
    auto log = std::make_unique<Log>();
    configureLevel(*log);
    // The type comes after the file, so that a file alone is opened but takes no messages.
    configureFile(*log);
    configureType(*log);
    configureHeader(*log);
    osgLogP = log.release();
    logIsThere.store(true, std::memory_order_release);
}

void doExitLog()
{
    const LogLock guard;
    logIsThere.store(false, std::memory_order_release);
    delete osgLogP;
    osgLogP = nullptr;
}

} // namespace osg
