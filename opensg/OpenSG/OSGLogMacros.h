#pragma once

/// The macros of the process' log, part of OSGLog.h. The S and P families are streams, with and without
/// header: SINFO << x << std::endl. The F and FP families take a format in double parentheses:
/// FINFO(("%d\n", i)). Each holds the log lock until its full expression is over.

/// The module that the macros name; a translation unit may define another one first.
#ifndef OSG_LOG_MODULE
#define OSG_LOG_MODULE "OpenSG"
#endif

#define OSG_LOG_STREAM(header, level)                                                                        \
    (osg::LogLock(), osg::osgStartLog(header, level, OSG_LOG_MODULE, __FILE__, __LINE__, __PRETTY_FUNCTION__))

#define SLOG OSG_LOG_STREAM(true, osg::LOG_LOG)
#define SFATAL OSG_LOG_STREAM(true, osg::LOG_FATAL)
#define SWARNING OSG_LOG_STREAM(true, osg::LOG_WARNING)
#define SNOTICE OSG_LOG_STREAM(true, osg::LOG_NOTICE)
#define SINFO OSG_LOG_STREAM(true, osg::LOG_INFO)

#define PLOG OSG_LOG_STREAM(false, osg::LOG_LOG)
#define PFATAL OSG_LOG_STREAM(false, osg::LOG_FATAL)
#define PWARNING OSG_LOG_STREAM(false, osg::LOG_WARNING)
#define PNOTICE OSG_LOG_STREAM(false, osg::LOG_NOTICE)
#define PINFO OSG_LOG_STREAM(false, osg::LOG_INFO)

// A module that is filtered out loses its header here, not its text.
#define OSG_LOG_FORMAT(header, level, par)                                                                   \
    do {                                                                                                     \
        if (osg::osgLog().checkLevel(level)) {                                                               \
            const osg::LogLock osgLogLock_;                                                                  \
            osg::osgStartLog(header, level, OSG_LOG_MODULE, __FILE__, __LINE__, __PRETTY_FUNCTION__);        \
            osg::osgLog().doLog par;                                                                         \
        }                                                                                                    \
    } while (false)

#define FLOG(par) OSG_LOG_FORMAT(true, osg::LOG_LOG, par)
#define FFATAL(par) OSG_LOG_FORMAT(true, osg::LOG_FATAL, par)
#define FWARNING(par) OSG_LOG_FORMAT(true, osg::LOG_WARNING, par)
#define FNOTICE(par) OSG_LOG_FORMAT(true, osg::LOG_NOTICE, par)
#define FINFO(par) OSG_LOG_FORMAT(true, osg::LOG_INFO, par)

#define FPLOG(par) OSG_LOG_FORMAT(false, osg::LOG_LOG, par)
#define FPFATAL(par) OSG_LOG_FORMAT(false, osg::LOG_FATAL, par)
#define FPWARNING(par) OSG_LOG_FORMAT(false, osg::LOG_WARNING, par)
#define FPNOTICE(par) OSG_LOG_FORMAT(false, osg::LOG_NOTICE, par)
#define FPINFO(par) OSG_LOG_FORMAT(false, osg::LOG_INFO, par)

#ifdef OSG_DEBUG
#define FDEBUG(par) OSG_LOG_FORMAT(true, osg::LOG_DEBUG, par)
#define FPDEBUG(par) OSG_LOG_FORMAT(false, osg::LOG_DEBUG, par)
#else
#define FDEBUG(par)
#define FPDEBUG(par)
#endif

#define FASSERT(condition, doExit)                                                                           \
    do {                                                                                                     \
        if (!(condition))                                                                                    \
            osg::osgAssertFailed(OSG_LOG_MODULE, __FILE__, __LINE__, doExit);                                \
    } while (false)

/// The same, with a text of its own ahead of the report.
#define FFASSERT(condition, doExit, par)                                                                     \
    do {                                                                                                     \
        if (!(condition)) {                                                                                  \
            const osg::LogLock osgLogLock_;                                                                  \
            osg::osgLog().doLog par;                                                                         \
            osg::osgAssertFailed(OSG_LOG_MODULE, __FILE__, __LINE__, doExit);                                \
        }                                                                                                    \
    } while (false)
