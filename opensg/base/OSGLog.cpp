#include "OpenSG/OSGLog.h"

#include "OpenSG/OSGBaseFunctions.h"

#include <algorithm>
#include <atomic>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <locale.h>

namespace osg {

namespace {

const Char8* const levelNames[] = {"LOG", "FATAL", "WARNING", "NOTICE", "INFO", "DEBUG"};

/// Numbers are logged with a point, whatever the locale of the program's user.
class PlainNumbers
{
public:
    PlainNumbers()
    {
        static const locale_t plain = newlocale(LC_NUMERIC_MASK, "C", nullptr);
        _before = uselocale(plain);
    }
    PlainNumbers(const PlainNumbers&) = delete;
    PlainNumbers& operator=(const PlainNumbers&) = delete;
    ~PlainNumbers() { uselocale(_before); }

private:
    locale_t _before;
};

LogLevel clampLevel(LogLevel level)
{
    return static_cast<LogLevel>(osgClamp<int>(LOG_LOG, level, LOG_DEBUG));
}

/// The escape sequence that colours a level's name; null for a level without colour.
const Char8* colorOf(LogLevel level)
{
    switch (level) {
    case LOG_FATAL:
        return "\x1b[31m";
    case LOG_WARNING:
        return "\x1b[33m";
    default:
        return nullptr;
    }
}

/// Set after _pLogLock, and what a thread that finds a lock is synchronised by.
std::atomic<bool> lockIsThere{false};

bool isGiven(const Char8* text)
{
    return text && *text;
}

} // namespace

Lock* Log::_pLogLock = nullptr;

Log::Log(LogType type, LogLevel level)
    : std::ostream(nullptr)
    , _logType(type)
    , _logLevel(clampLevel(level))
    , _refTime(getSystemTime())
{
    initLock();
    _nilStream.rdbuf(&_nilBuf);
    connect();
}

Log::Log(const Char8* fileName, LogLevel level)
    : Log(LOG_STDERR, level)
{
    setLogFile(fileName, true);
}

Log::~Log() = default;

void Log::lock()
{
    if (_pLogLock)
        _pLogLock->aquire();
}

void Log::unlock()
{
    if (_pLogLock)
        _pLogLock->release();
}

bool Log::initLock()
{
    if (lockIsThere.load(std::memory_order_acquire))
        return true;
    static std::mutex mutex;
    const std::lock_guard<std::mutex> guard(mutex);
    if (!_pLogLock) {
        _pLogLock = Lock::get("OSG::Log::_pLogLock");
        addRefP(_pLogLock);
        lockIsThere.store(true, std::memory_order_release);
    }
    return true;
}

bool Log::finalizeLock()
{
    lockIsThere.store(false, std::memory_order_release);
    subRefP(_pLogLock);
    _pLogLock = nullptr;
    return true;
}

void Log::setHeaderElem(UInt32 mask, bool)
{
    _headerElem = mask;
}

void Log::addHeaderElem(LogHeaderElem element, bool)
{
    _headerElem |= static_cast<UInt32>(element);
}

void Log::delHeaderElem(LogHeaderElem element, bool)
{
    _headerElem &= ~static_cast<UInt32>(element);
}

bool Log::hasHeaderElem(LogHeaderElem element)
{
    return (_headerElem & static_cast<UInt32>(element)) != 0;
}

void Log::addModuleHandling(LogModuleHandling handling, bool)
{
    _moduleHandling |= static_cast<UInt32>(handling);
}

void Log::delModuleHandling(LogModuleHandling handling, bool)
{
    _moduleHandling &= ~static_cast<UInt32>(handling);
}

void Log::addModuleName(const Char8* module, bool)
{
    const LogLock guard;
    if (isGiven(module) && !hasModule(module))
        _modules.emplace_back(module);
}

void Log::delModuleName(const Char8* module)
{
    const LogLock guard;
    if (isGiven(module))
        _modules.remove(module);
}

bool Log::hasModule(const Char8* module)
{
    const LogLock guard;
    return isGiven(module) && std::find(_modules.begin(), _modules.end(), module) != _modules.end();
}

bool Log::checkModule(const Char8* module)
{
    const UInt32 handling = _moduleHandling;
    if (handling == LOG_MODULE_NONE)
        return false;
    if (handling == LOG_MODULE_ALL)
        return true;
    if (!isGiven(module))
        return (handling & LOG_MODULE_UNDEFINED) != 0;
    return (handling & (hasModule(module) ? LOG_MODULE_KNOWN : LOG_MODULE_UNKNOWN)) != 0;
}

void Log::setLogType(LogType type, bool)
{
    const LogLock guard;
    _logType = type;
    connect();
}

void Log::setLogLevel(LogLevel level, bool)
{
    const LogLock guard;
    _logLevel = clampLevel(level);
    connect();
}

void Log::setLogFile(const Char8* fileName, bool)
{
    const LogLock guard;
    _fileBuf.close();
    if (!isGiven(fileName))
        return;
    if (!_fileBuf.open(fileName, std::ios_base::out | std::ios_base::trunc)) {
        doLog("Log::setLogFile: cannot open '%s' for writing.\n", fileName);
        return;
    }
    setLogType(LOG_FILE, true);
}

std::ostream& Log::stream(LogLevel level)
{
    return _streams[clampLevel(level)];
}

std::ostream& Log::doHeader(LogLevel level, const Char8* module, const Char8* file, UInt32 line,
                            const Char8* funcName)
{
    const LogLock guard;
    std::ostream& os = stream(level);
    const UInt32 mask = _headerElem;
    if (mask == LOG_NONE_HEADER)
        return os;
    const Char8* const separator = mask & LOG_TAB_HEADER ? "\t" : ": ";

    if (mask & LOG_BEGIN_NEWLINE_HEADER)
        os << std::endl;
    if (mask & LOG_TYPE_HEADER) {
        const Char8* const color = mask & LOG_COLOR_HEADER ? colorOf(level) : nullptr;
        if (color)
            os << color;
        os << levelNames[clampLevel(level)] << separator;
        if (color)
            os << "\x1b[0m";
    }
    if (mask & LOG_TIMESTAMP_HEADER)
        os << getSystemTime() - getRefTime() << separator;
    if (mask & LOG_MODULE_HEADER && isGiven(module))
        os << module << separator;
    if (mask & LOG_FILE_HEADER && isGiven(file)) {
        os << file;
        if (mask & LOG_LINE_HEADER)
            os << ':' << line;
        os << separator;
    }
    if (mask & LOG_FUNCNAME_HEADER && isGiven(funcName))
        os << funcName << separator;
    if (mask & LOG_END_NEWLINE_HEADER)
        os << std::endl;
    else
        os << ' ';
    return os;
}

void Log::doLog(const Char8* format, ...)
{
    if (!format)
        return;
    const PlainNumbers plainNumbers;
    Char8 shortText[1024];
    va_list arguments;
    va_start(arguments, format);
    const int size = std::vsnprintf(shortText, sizeof shortText, format, arguments);
    va_end(arguments);
    if (size < 0)
        return;

    const Char8* text = shortText;
    std::string longText;
    if (static_cast<std::size_t>(size) >= sizeof shortText) {
        longText.resize(static_cast<std::size_t>(size) + 1);
        va_start(arguments, format);
        std::vsnprintf(longText.data(), longText.size(), format, arguments);
        va_end(arguments);
        text = longText.c_str();
    }

    const LogLock guard;
    *this << text << std::flush;
}

/// Puts all streams onto the buffer that the type names; levels above the log's get the nil buffer.
void Log::connect()
{
    std::streambuf* target = &_nilBuf;
    switch (_logType) {
    case LOG_NONE:
        break;
    case LOG_STDOUT:
        target = std::cout.rdbuf();
        break;
    case LOG_STDERR:
        target = std::cerr.rdbuf();
        break;
    case LOG_FILE:
        target = &_fileBuf;
        break;
    case LOG_BUFFER:
        target = &_logBuf;
        break;
    }
    rdbuf(target);
    for (int level = LOG_LOG; level <= LOG_DEBUG; ++level)
        _streams[level].rdbuf(level <= _logLevel ? target : &_nilBuf);
}

LogLock::LogLock()
{
    Log::initLock();
    _lock = Log::_pLogLock;
    _lock->aquire();
}

std::ostream& osgStartLog(bool header, LogLevel level, const Char8* module, const Char8* file, UInt32 line,
                          const Char8* funcName)
{
    Log& log = osgLog();
    if (!log.checkModule(module))
        return log.nilstream();
    return header ? log.doHeader(level, module, file, line, funcName) : log.stream(level);
}

void osgAssertFailed(const Char8* module, const Char8* file, UInt32 line, bool doExit)
{
    {
        const LogLock guard;
        osgLog().stream(LOG_FATAL) << module << ':' << file << ':' << line
                                   << " FATAL ASSERT: " << (doExit ? "exit system" : "try to keep running")
                                   << std::endl;
    }
    if (doExit)
        std::exit(-1);
}

std::ostream& endLog(std::ostream& stream)
{
    return stream << std::endl;
}

void indentLog(UInt32 indent, std::ostream& stream)
{
    for (UInt32 i = 0; i < indent; ++i)
        stream << ' ';
}

} // namespace osg
