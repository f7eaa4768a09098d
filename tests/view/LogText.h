#pragma once

#include <OpenSG/OSGLog.h>

/// Writes a line into the process log as programs do, under its lock.
inline void logText(osg::LogLevel level, const char* text)
{
    const osg::LogLock lock;
    if (!osg::osgLog().checkLevel(level))
        return;
    osg::osgLog().doHeader(level, "Test", __FILE__, __LINE__);
    osg::osgLog().doLog("%s", text);
}
