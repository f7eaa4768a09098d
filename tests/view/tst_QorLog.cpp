#include "LogCapture.h"
#include "QorLog.h"
#include <OpenSG/OSGLock.h>
#include <QtTest>
#include <thread>

using namespace Orvane::Qt4;

class tst_QorLog : public QObject
{
    Q_OBJECT

private slots:
    void moduleWordOfTheLibrary();
    void aLineGoesOutWhenTheLogsLevelIsHighEnough_data();
    void aLineGoesOutWhenTheLogsLevelIsHighEnough();
    void aMissingLogIsMade();
    void headerHasModuleFileLineAndFunction();
    void theModuleIsAnArgument();
    void aModuleThatIsShutOutWritesNeitherHeaderNorText();
    void argumentsAreEvaluatedOnlyForLinesThatGoOut();
    void theLockIsHeldForHeaderAndTextAndReleasedAfterwards();
    void nestedLinesDoNotDeadlock();
};

namespace {

void writeAll()
{
    QOR_LOG("log %d\n", 0);
    QOR_FATAL("fatal %d\n", 1);
    QOR_WARNING("warning %d\n", 2);
    QOR_NOTICE("notice %d\n", 3);
    QOR_INFO("info %d\n", 4);
    QOR_DEBUG("debug %d\n", 5);
}

/// Whether another thread could take the log's lock just now.
bool othersMayLog()
{
    bool obtained = false;
    std::thread([&] {
        obtained = osg::Log::_pLogLock->request();
        if (obtained)
            osg::Log::_pLogLock->release();
    }).join();
    return obtained;
}

int touch(int& count)
{
    return ++count;
}

} // namespace

void tst_QorLog::moduleWordOfTheLibrary()
{
    QCOMPARE(LogModuleName, "ViewQt4");
}

void tst_QorLog::aLineGoesOutWhenTheLogsLevelIsHighEnough_data()
{
    QTest::addColumn<int>("level");
    for (int level = 0; level <= 5; ++level)
        QTest::addRow("%d", level) << level;
}

void tst_QorLog::aLineGoesOutWhenTheLogsLevelIsHighEnough()
{
    QFETCH(int, level);
    const QByteArrayList all = {"0 log 0\n",    "1 fatal 1\n", "2 warning 2\n",
                                "3 notice 3\n", "4 info 4\n",  "5 debug 5\n"};
    LogCapture log(static_cast<osg::LogLevel>(level));
    writeAll();
    QCOMPARE(log.take(), all.mid(0, level + 1));
}

void tst_QorLog::aMissingLogIsMade()
{
    osg::doExitLog();
    QVERIFY(!osg::osgLogP);
    QOR_DEBUG("not written at the level of a new log\n");
    QVERIFY(osg::osgLogP);
}

void tst_QorLog::headerHasModuleFileLineAndFunction()
{
    struct Chunks
    {
        static void receive(const char* data, osg::Int32 size, void* bytes)
        {
            static_cast<QByteArray*>(bytes)->append(data, size);
        }
    };
    osg::doInitLog();
    QByteArray written;
    osg::osgLogP->setLogType(osg::LOG_BUFFER, true);
    osg::osgLogP->getLogBuf().setEnabled(false);
    osg::osgLogP->setHeaderElem(osg::LOG_TYPE_HEADER | osg::LOG_MODULE_HEADER | osg::LOG_FILE_HEADER |
                                    osg::LOG_LINE_HEADER | osg::LOG_FUNCNAME_HEADER,
                                true);
    osg::osgLogP->getLogBuf().setCallback(Chunks::receive, &written);
    const int line = __LINE__ + 1;
    QOR_FATAL("text\n");
    osg::osgLogP->getLogBuf().removeCallback();
    osg::osgLogP->setLogType(osg::LOG_STDERR, true);
    osg::osgLogP->setHeaderElem(osg::LOG_TYPE_HEADER, true);

    QCOMPARE(written, QByteArray("FATAL: ViewQt4: " __FILE__ ":") + QByteArray::number(line) + ": " +
                          __PRETTY_FUNCTION__ + ":  text\n");
}

void tst_QorLog::theModuleIsAnArgument()
{
    LogCapture log;
    QOR_LOG_LINE(osg::LOG_INFO, "Elsewhere", "text %s\n", "here");
    QCOMPARE(log.take(), QByteArrayList{"Elsewhere 4 text here\n"});
}

void tst_QorLog::aModuleThatIsShutOutWritesNeitherHeaderNorText()
{
    LogCapture log;
    osg::osgLogP->delModuleHandling(osg::LOG_MODULE_ALL, true);
    int count = 0;
    QOR_FATAL("text %d\n", touch(count));
    osg::osgLogP->addModuleHandling(osg::LOG_MODULE_ALL, true);
    QCOMPARE(log.take(), QByteArrayList());
    QCOMPARE(count, 0);
    QVERIFY(othersMayLog());
    QOR_FATAL("after\n");
    QCOMPARE(log.take(), QByteArrayList{"1 after\n"});
}

void tst_QorLog::argumentsAreEvaluatedOnlyForLinesThatGoOut()
{
    LogCapture log(osg::LOG_WARNING);
    int count = 0;
    QOR_NOTICE("%d\n", touch(count));
    QCOMPARE(count, 0);
    QOR_WARNING("%d\n", touch(count));
    QCOMPARE(count, 1);
    QCOMPARE(log.take(), QByteArrayList{"2 1\n"});
}

void tst_QorLog::theLockIsHeldForHeaderAndTextAndReleasedAfterwards()
{
    LogCapture log;
    int freeInside = -1;
    QOR_FATAL("%d\n", freeInside = othersMayLog());
    QCOMPARE(freeInside, 0);
    QVERIFY(othersMayLog());
    QCOMPARE(log.take(), QByteArrayList{"1 0\n"});
}

void tst_QorLog::nestedLinesDoNotDeadlock()
{
    LogCapture log;
    const auto inner = [] {
        QOR_FATAL("inner\n");
        return 1;
    };
    QOR_FATAL("outer %d\n", inner());
    QVERIFY(othersMayLog());
}

QTEST_APPLESS_MAIN(tst_QorLog)
#include "tst_QorLog.moc"
