#pragma once

#include <OpenSG/OSGLog.h>
#include <QtCore/QByteArrayList>
#include <string>
#include <vector>

/// Takes over the process log while it lives, and gives its lines as level number, blank and text, such as
/// "3 WindowObserver::notify() NEW call\n". Lines of another module than the library's have the module in
/// front.
class LogCapture
{
public:
    explicit LogCapture(osg::LogLevel level = osg::LOG_DEBUG, std::vector<std::string>* trace = nullptr)
        : _trace(trace)
    {
        osg::doInitLog();
        osg::osgLogP->setLogType(osg::LOG_BUFFER, true);
        osg::osgLogP->setLogLevel(level, true);
        osg::osgLogP->setHeaderElem(osg::LOG_TYPE_HEADER | osg::LOG_MODULE_HEADER | osg::LOG_TAB_HEADER,
                                    true);
        osg::osgLogP->getLogBuf().setEnabled(false);
        osg::osgLogP->getLogBuf().setCallback(receive, this);
    }
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;
    ~LogCapture()
    {
        osg::osgLogP->getLogBuf().removeCallback();
        osg::osgLogP->setLogType(osg::LOG_STDERR, true);
        osg::osgLogP->setLogLevel(osg::LOG_WARNING, true);
        osg::osgLogP->setHeaderElem(osg::LOG_TYPE_HEADER, true);
    }

    /// The lines since the last call.
    QByteArrayList take()
    {
        QByteArrayList lines;
        lines.swap(_lines);
        return lines;
    }

private:
    static void receive(const char* data, osg::Int32 size, void* self)
    {
        static const QByteArrayList names = {"LOG", "FATAL", "WARNING", "NOTICE", "INFO", "DEBUG"};
        const QByteArray chunk(data, size);
        const int first = chunk.indexOf('\t');
        const int second = chunk.indexOf('\t', first + 1);
        const QByteArray module = chunk.mid(first + 1, second - first - 1);
        QByteArray line = QByteArray::number(names.indexOf(chunk.left(first))) + chunk.mid(second + 1);
        if (module != "ViewQt4")
            line.prepend(module + " ");
        auto* capture = static_cast<LogCapture*>(self);
        capture->_lines.append(line);
        if (capture->_trace)
            capture->_trace->push_back(line.toStdString());
    }

    QByteArrayList _lines;
    std::vector<std::string>* _trace;
};
