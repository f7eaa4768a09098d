// FDEBUG and FPDEBUG are there in debug builds only.
#define OSG_DEBUG
#define OSG_LOG_MODULE "Mine"

#include "LogCollector.h"

#include <OpenSG/OSGLog.h>

#include <QtTest>

#include <thread>

using namespace osg;

class tst_LogMacros : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void streamsWithHeader();
    void streamsWithoutHeader();
    void formatsWithHeader();
    void formatsWithoutHeader();
    void nothingIsFormattedAboveTheLevel();
    void filteredModuleSilencesStreams();
    void filteredModuleTakesOnlyTheHeaderOfFormats();
    void headerNamesModuleFileLineAndFunction();
    void macrosStandInBranches();
    void lockIsFreeAfterwards();
    void failedAssertion();
    void failedAssertionEndsTheProcess();
};

void tst_LogMacros::init()
{
    doExitLog();
    osgLog().setLogLevel(LOG_DEBUG);
}

void tst_LogMacros::streamsWithHeader()
{
    LogCollector collector(osgLog());
    SLOG << 1 << std::endl;
    SFATAL << 2 << endLog;
    SWARNING << 3 << std::endl;
    SNOTICE << 4 << std::endl;
    SINFO << 5 << std::endl;
    QCOMPARE(collector.chunks,
             Chunks({"LOG:  1\n", "FATAL:  2\n", "WARNING:  3\n", "NOTICE:  4\n", "INFO:  5\n"}));
    collector.chunks.clear();
    osgLog().setLogLevel(LOG_WARNING);
    SNOTICE << "lost" << std::endl;
    SWARNING << "heard\n";
    QVERIFY(collector.chunks.empty());
    SWARNING << std::flush;
    QCOMPARE(collector.chunks, Chunks({"WARNING:  heard\nWARNING:  "}));
}

void tst_LogMacros::streamsWithoutHeader()
{
    LogCollector collector(osgLog());
    PLOG << 1 << std::flush;
    PFATAL << 2 << std::flush;
    PWARNING << 3 << std::flush;
    PNOTICE << 4 << std::flush;
    PINFO << 5 << std::flush;
    QCOMPARE(collector.chunks, Chunks({"1", "2", "3", "4", "5"}));
}

void tst_LogMacros::formatsWithHeader()
{
    LogCollector collector(osgLog());
    FLOG(("%d\n", 1));
    FFATAL(("%d\n", 2));
    FWARNING(("%d\n", 3));
    FNOTICE(("%d\n", 4));
    FINFO(("%d\n", 5));
    FDEBUG(("%d\n", 6));
    QCOMPARE(collector.chunks, Chunks({"LOG:  1\n", "FATAL:  2\n", "WARNING:  3\n", "NOTICE:  4\n",
                                       "INFO:  5\n", "DEBUG:  6\n"}));
}

void tst_LogMacros::formatsWithoutHeader()
{
    LogCollector collector(osgLog());
    FPLOG(("%d", 1));
    FPFATAL(("%d", 2));
    FPWARNING(("%d", 3));
    FPNOTICE(("%d", 4));
    FPINFO(("%d", 5));
    FPDEBUG(("%d", 6));
    QCOMPARE(collector.chunks, Chunks({"1", "2", "3", "4", "5", "6"}));
}

void tst_LogMacros::nothingIsFormattedAboveTheLevel()
{
    LogCollector collector(osgLog());
    osgLog().setLogLevel(LOG_WARNING);
    int calls = 0;
    const auto count = [&] { return ++calls; };
    FNOTICE(("%d", count()));
    FPINFO(("%d", count()));
    QCOMPARE(calls, 0);
    FWARNING(("%d", count()));
    QCOMPARE(calls, 1);
    QCOMPARE(collector.take(), std::string("WARNING:  1"));
}

void tst_LogMacros::filteredModuleSilencesStreams()
{
    LogCollector collector(osgLog());
    osgLog().delModuleHandling(LOG_MODULE_UNKNOWN);
    SWARNING << "lost" << std::endl;
    PWARNING << "lost" << std::endl;
    QVERIFY(collector.chunks.empty());
    osgLog().addModuleName("Mine");
    SWARNING << "heard" << std::endl;
    QCOMPARE(collector.take(), std::string("WARNING:  heard\n"));
}

void tst_LogMacros::filteredModuleTakesOnlyTheHeaderOfFormats()
{
    LogCollector collector(osgLog());
    osgLog().delModuleHandling(LOG_MODULE_UNKNOWN);
    FWARNING(("heard\n"));
    QCOMPARE(collector.take(), std::string("heard\n"));
}

void tst_LogMacros::headerNamesModuleFileLineAndFunction()
{
    LogCollector collector(osgLog());
    osgLog().setHeaderElem(LOG_MODULE_HEADER | LOG_FILE_HEADER | LOG_LINE_HEADER | LOG_FUNCNAME_HEADER);
    const int line = __LINE__ + 1;
    SWARNING << std::endl;
    const std::string expected =
        "Mine: " __FILE__ ":" + std::to_string(line) + ": " + __PRETTY_FUNCTION__ + ":  \n";
    QCOMPARE(collector.take(), expected);
}

void tst_LogMacros::macrosStandInBranches()
{
    LogCollector collector(osgLog());
    for (int i = 0; i < 2; ++i) {
        if (i == 0)
            FWARNING(("zero"));
        else
            FWARNING(("one"));
    }
    QCOMPARE(collector.take(), std::string("WARNING:  zeroWARNING:  one"));
}

void tst_LogMacros::lockIsFreeAfterwards()
{
    LogCollector collector(osgLog());
    SWARNING << "x" << std::endl;
    FWARNING(("x"));
    bool obtained = false;
    std::thread([&] {
        obtained = Log::_pLogLock->request();
        if (obtained)
            Log::_pLogLock->release();
    }).join();
    QVERIFY(obtained);
}

void tst_LogMacros::failedAssertion()
{
    LogCollector collector(osgLog());
    FASSERT(1 + 1 == 2, true);
    FFASSERT(1 + 1 == 2, true, ("%s", "lost"));
    QVERIFY(collector.chunks.empty());
    const std::string place = "Mine:" __FILE__ ":";
    const std::string first = std::to_string(__LINE__ + 1);
    FASSERT(1 + 1 == 3, false);
    QCOMPARE(collector.take(), place + first + " FATAL ASSERT: try to keep running\n");
    const std::string second = std::to_string(__LINE__ + 1);
    FFASSERT(1 + 1 == 3, false, ("because %d\n", 2));
    QCOMPARE(collector.take(), "because 2\n" + place + second + " FATAL ASSERT: try to keep running\n");
}

void tst_LogMacros::failedAssertionEndsTheProcess()
{
    QProcess process;
    process.start(QCoreApplication::applicationFilePath(), {QStringLiteral("--fail-assertion")});
    QVERIFY(process.waitForFinished());
    QCOMPARE(process.exitStatus(), QProcess::NormalExit);
    QCOMPARE(process.exitCode(), 255);
    QVERIFY(process.readAllStandardError().endsWith(" FATAL ASSERT: exit system\n"));
}

int main(int argc, char** argv)
{
    if (argc == 2 && QByteArray(argv[1]) == "--fail-assertion") {
        FASSERT(argc == 1, true);
        return 0;
    }
    QCoreApplication application(argc, argv);
    tst_LogMacros test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_LogMacros.moc"
