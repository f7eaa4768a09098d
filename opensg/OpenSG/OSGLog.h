#pragma once

#include "OSGBaseTypes.h"
#include "OSGLock.h"
#include "OSGLogBuf.h"
#include "OSGTime.h"

#include <atomic>
#include <fstream>
#include <list>
#include <ostream>
#include <string>

namespace osg {

/// Where the log writes.
enum LogType : Int32 { LOG_NONE = 0, LOG_STDOUT = 1, LOG_STDERR = 2, LOG_FILE = 3, LOG_BUFFER = 4 };

/// How grave a message is. A log of a level lets through what has the same level or a lower one.
enum LogLevel : Int32 {
    LOG_LOG = 0,
    LOG_FATAL = 1,
    LOG_WARNING = 2,
    LOG_NOTICE = 3,
    LOG_INFO = 4,
    LOG_DEBUG = 5
};

/// Which modules checkModule lets through.
enum LogModuleHandling : Int32 {
    LOG_MODULE_NONE = 0,
    LOG_MODULE_KNOWN = 1,
    LOG_MODULE_UNKNOWN = 2,
    LOG_MODULE_UNDEFINED = 4,
    LOG_MODULE_ALL = 7
};

/// What a header consists of.
enum LogHeaderElem : Int32 {
    LOG_NONE_HEADER = 0,
    LOG_BEGIN_NEWLINE_HEADER = 1,
    LOG_TYPE_HEADER = 2,
    LOG_TIMESTAMP_HEADER = 4,
    LOG_MODULE_HEADER = 8,
    LOG_FILE_HEADER = 16,
    LOG_LINE_HEADER = 32,
    LOG_FUNCNAME_HEADER = 64,
    LOG_END_NEWLINE_HEADER = 128,
    LOG_ANSICOLOR_HEADER = 4096,
    LOG_COLOR_HEADER = 8192,
    LOG_TAB_HEADER = 16384,
    LOG_ALL_HEADER = 32767
};

/// A log: itself a stream that always writes, and one stream per level that writes only when the log's
/// level lets it. Messages go out under _pLogLock, which every log of the process shares. Setters take that
/// lock themselves; level, type, mask and module handling can be read at any time without it. The force
/// parameters are there for callers of the interface: what a program sets, it gets.
class OSG_BASE_DLLMAPPING Log : public std::ostream
{
public:
    explicit Log(LogType type = LOG_STDERR, LogLevel level = LOG_NOTICE);
    explicit Log(const Char8* fileName, LogLevel level = LOG_NOTICE);
    ~Log() override;

    Log(const Log&) = delete;
    Log& operator=(const Log&) = delete;

    /// Takes and gives back the log lock; nothing while there is none.
    void lock();
    void unlock();

    /// Makes the log lock, which the first log does, and gives it up. Always true.
    static bool initLock();
    static bool finalizeLock();

    /// The header mask, bits of LogHeaderElem.
    virtual void setHeaderElem(UInt32 mask, bool force = false);
    virtual void addHeaderElem(LogHeaderElem element, bool force = false);
    virtual void delHeaderElem(LogHeaderElem element, bool force = false);

    /// Whether the mask has any bit of element.
    virtual bool hasHeaderElem(LogHeaderElem element);

    virtual void addModuleHandling(LogModuleHandling handling, bool force = false);
    virtual void delModuleHandling(LogModuleHandling handling, bool force = false);

    /// Adds to and removes from the known modules; null and empty names are ignored.
    virtual void addModuleName(const Char8* module, bool isStatic = false);
    virtual void delModuleName(const Char8* module);
    bool hasModule(const Char8* module);

    /// Whether messages of the module go out.
    bool checkModule(const Char8* module);

    LogType getLogType() const { return _logType; }
    void setLogType(LogType type, bool force = false);

    /// The level; one outside the enumeration is moved to its nearest end.
    LogLevel getLogLevel() const { return _logLevel; }
    void setLogLevel(LogLevel level, bool force = false);

    /// Whether messages of the level go out.
    bool checkLevel(LogLevel level) const { return _logLevel >= level; }

    /// Closes the log file; a file name other than null or empty is opened anew (what it held is lost) and
    /// becomes the log's goal.
    void setLogFile(const Char8* fileName, bool force = false);

    /// The time that header time stamps count from, the log's birth at first.
    Time getRefTime() const { return _refTime; }
    void setRefTime(Time time) { _refTime = time; }
    void resetRefTime() { _refTime = getSystemTime(); }

    /// The buffer that is written to while the type is LOG_BUFFER.
    LogBuf& getLogBuf() { return _logBuf; }

    /// The stream of a level, and one that swallows everything.
    std::ostream& stream(LogLevel level);
    std::ostream& nilstream() { return _nilStream; }

    /// Writes a header to the stream of the level, and answers the stream. Null strings are left out.
    std::ostream& doHeader(LogLevel level, const Char8* module, const Char8* file, UInt32 line,
                           const Char8* funcName = nullptr);

    /// Writes the formatted text at any level, and flushes. The line end is the caller's.
    void doLog(const Char8* format, ...) __attribute__((format(printf, 2, 3)));

    /// Null before the first log. Named so since callers reach for it.
    static Lock* _pLogLock;

private:
    /// Swallows: the first write fails, and the stream on it writes no more.
    struct NilBuf : std::streambuf
    {
    };

    struct LevelStream : std::ostream
    {
        LevelStream()
            : std::ostream(nullptr)
        {
        }
    };

    void connect();

    std::atomic<LogType> _logType;
    std::atomic<LogLevel> _logLevel;
    std::atomic<UInt32> _headerElem{LOG_TYPE_HEADER};
    std::atomic<UInt32> _moduleHandling{LOG_MODULE_ALL};
    std::atomic<Time> _refTime;
    std::list<std::string> _modules;

    NilBuf _nilBuf;
    std::filebuf _fileBuf;
    LogBuf _logBuf;
    LevelStream _streams[LOG_DEBUG + 1];
    LevelStream _nilStream;
};

typedef Log* LogP;

/// The log of the process. Null until doInitLog, and again after doExitLog.
OSG_BASE_DLLMAPPING extern LogP osgLogP;

/// Makes the log of the process if there is none, with the level, type, file and header mask that the
/// environment variables OSG_LOG_LEVEL, OSG_LOG_TYPE, OSG_LOG_FILE and OSG_LOG_HEADER ask for. Safe from
/// several threads, and cheap when there is a log; a thread that has called it may use osgLogP.
OSG_BASE_DLLMAPPING void doInitLog();

/// Deletes the log of the process; no other thread may be logging. doInitLog makes a new one. A log that
/// nobody deletes works until the process is gone, in the destructors of static objects too.
OSG_BASE_DLLMAPPING void doExitLog();

/// The same as doInitLog. It does not look at osgLogP first, since another thread may be setting it.
inline void initLog()
{
    doInitLog();
}

inline Log& osgLog()
{
    initLog();
    return *osgLogP;
}

/// Holds the log lock, which it makes if need be, for as long as it lives.
class OSG_BASE_DLLMAPPING LogLock
{
public:
    LogLock();
    ~LogLock() { _lock->release(); }

    LogLock(const LogLock&) = delete;
    LogLock& operator=(const LogLock&) = delete;

private:
    Lock* _lock;
};

/// Begins a message in the process' log: the stream of the level, after the header if one is asked for; a
/// stream that swallows everything when the module is filtered out.
OSG_BASE_DLLMAPPING std::ostream& osgStartLog(bool header, LogLevel level, const Char8* module,
                                              const Char8* file, UInt32 line, const Char8* funcName);

/// Reports a failed assertion at level FATAL; ends the process if asked to.
OSG_BASE_DLLMAPPING void osgAssertFailed(const Char8* module, const Char8* file, UInt32 line, bool doExit);

/// Stream manipulator: line end and flush.
OSG_BASE_DLLMAPPING std::ostream& endLog(std::ostream& stream);

/// Writes so many blanks.
OSG_BASE_DLLMAPPING void indentLog(UInt32 indent, std::ostream& stream);

} // namespace osg

#include "OSGLogMacros.h"
