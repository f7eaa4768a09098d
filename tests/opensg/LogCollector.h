#pragma once

#include <OpenSG/OSGLog.h>

#include <string>
#include <vector>

typedef std::vector<std::string> Chunks;

/// Turns a log into a buffer log and collects its chunks for as long as it lives.
class LogCollector
{
public:
    explicit LogCollector(osg::Log& log)
        : _log(log)
    {
        log.setLogType(osg::LOG_BUFFER, true);
        log.getLogBuf().setCallback(
            [](const osg::Char8* data, osg::Int32 size, void* self) {
                static_cast<LogCollector*>(self)->chunks.emplace_back(data, static_cast<std::size_t>(size));
            },
            this);
    }
    ~LogCollector() { _log.getLogBuf().removeCallback(); }

    LogCollector(const LogCollector&) = delete;
    LogCollector& operator=(const LogCollector&) = delete;

    /// All that came, in one piece; the next call begins anew.
    std::string take()
    {
        std::string result;
        for (const std::string& chunk : chunks)
            result += chunk;
        chunks.clear();
        return result;
    }

    Chunks chunks;

private:
    osg::Log& _log;
};
