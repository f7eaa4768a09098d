#include "LogCollector.h"

#include <OpenSG/OSGLog.h>

#include <QtTest>

#include <atomic>
#include <iostream>
#include <sstream>
#include <thread>

using namespace osg;

namespace {

/// Logs when the process' static objects die, after main and after everything of this file.
struct LastWords
{
    const char* text = nullptr;
    ~LastWords()
    {
        if (text) {
            FLOG(("%s\n", text));
            SWARNING << text << std::endl;
        }
    }
} lastWords;

} // namespace

class tst_LogInit : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void noLogUntilAsked();
    void secondCallKeepsTheLog();
    void defaultsOfTheLog();
    void exitAndInitFollowEachOther();
    void level_data();
    void level();
    void type_data();
    void type();
    void headerMask_data();
    void headerMask();
    void fileAloneIsOpenedButNotTheGoal();
    void fileWithTypeIsTheGoal();
    void emptyVariablesCountAsMissing();
    void programOverrulesTheEnvironment();
    void plainLogsIgnoreTheEnvironment();
    void logWorksWhileStaticObjectsDie_data();
    void logWorksWhileStaticObjectsDie();
    void habitOfManyThreads();
    void logIsMadeOnceByManyThreads();

private:
    std::string startUpText();
};

void tst_LogInit::init()
{
    for (const char* name : {"OSG_LOG_LEVEL", "OSG_LOG_TYPE", "OSG_LOG_FILE", "OSG_LOG_HEADER"})
        qunsetenv(name);
    doExitLog();
}

void tst_LogInit::cleanup()
{
    init();
}

/// What doInitLog writes to std::cerr.
std::string tst_LogInit::startUpText()
{
    std::ostringstream text;
    std::streambuf* const old = std::cerr.rdbuf(text.rdbuf());
    doInitLog();
    std::cerr.rdbuf(old);
    // The log took the captured buffer, which is about to go.
    osgLogP->setLogType(osgLogP->getLogType());
    return text.str();
}

void tst_LogInit::noLogUntilAsked()
{
    QVERIFY(!osgLogP);
    doInitLog();
    QVERIFY(osgLogP);
    QVERIFY(Log::_pLogLock);
    QCOMPARE(&osgLog(), osgLogP);
    doExitLog();
    QVERIFY(!osgLogP);
    initLog();
    QVERIFY(osgLogP);
}

void tst_LogInit::secondCallKeepsTheLog()
{
    doInitLog();
    Log* const log = osgLogP;
    log->setLogLevel(LOG_INFO);
    doInitLog();
    initLog();
    QCOMPARE(osgLogP, log);
    QCOMPARE(log->getLogLevel(), LOG_INFO);
}

void tst_LogInit::defaultsOfTheLog()
{
    QCOMPARE(startUpText(), std::string());
    QCOMPARE(osgLogP->getLogLevel(), LOG_WARNING);
    QCOMPARE(osgLogP->getLogType(), LOG_STDERR);
    QVERIFY(osgLogP->hasHeaderElem(LOG_TYPE_HEADER));
    QVERIFY(!osgLogP->hasHeaderElem(LogHeaderElem(LOG_ALL_HEADER & ~LOG_TYPE_HEADER)));
}

void tst_LogInit::exitAndInitFollowEachOther()
{
    for (int round = 0; round < 3; ++round) {
        {
            LogCollector collector(osgLog());
            QCOMPARE(osgLogP->getLogLevel(), LOG_WARNING);
            osgLogP->setLogLevel(LOG_DEBUG);
            SINFO << round << std::endl;
            QCOMPARE(collector.take(), "INFO:  " + std::to_string(round) + "\n");
        }
        doExitLog();
        doExitLog();
        QVERIFY(!osgLogP);
        if (round == 1)
            Log::finalizeLock();
    }
    doInitLog();
    QVERIFY(Log::_pLogLock);
}

void tst_LogInit::level_data()
{
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<int>("level");
    QTest::newRow("number") << QByteArray("4") << int(LOG_INFO);
    QTest::newRow("too high") << QByteArray("17") << int(LOG_DEBUG);
    QTest::newRow("too low") << QByteArray("-3") << int(LOG_LOG);
    QTest::newRow("log") << QByteArray("log") << int(LOG_LOG);
    QTest::newRow("fatal") << QByteArray("FATAL") << int(LOG_FATAL);
    QTest::newRow("warning") << QByteArray("warning") << int(LOG_WARNING);
    QTest::newRow("notice") << QByteArray("Notice") << int(LOG_NOTICE);
    QTest::newRow("info") << QByteArray("iNFO") << int(LOG_INFO);
    QTest::newRow("debug") << QByteArray("debug") << int(LOG_DEBUG);
    QTest::newRow("unknown name") << QByteArray("loud") << int(LOG_DEBUG);
}

void tst_LogInit::level()
{
    QFETCH(QByteArray, value);
    QFETCH(int, level);
    qputenv("OSG_LOG_LEVEL", value);
    const std::string text = startUpText();
    QCOMPARE(int(osgLogP->getLogLevel()), level);
    QCOMPARE(QByteArray::fromStdString(text),
             "OSGLog::setLogLevel: set by envvar OSG_LOG_LEVEL '" + value + "'.\n");
}

void tst_LogInit::type_data()
{
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<int>("type");
    QTest::newRow("none") << QByteArray("none") << int(LOG_NONE);
    QTest::newRow("dash") << QByteArray("-") << int(LOG_STDOUT);
    QTest::newRow("stdout") << QByteArray("StdOut") << int(LOG_STDOUT);
    QTest::newRow("stderr") << QByteArray("stderr") << int(LOG_STDERR);
    QTest::newRow("file") << QByteArray("file") << int(LOG_FILE);
    QTest::newRow("buffer") << QByteArray("BUFFER") << int(LOG_BUFFER);
    QTest::newRow("unknown name") << QByteArray("printer") << int(LOG_STDERR);
    // Numbers are positions in the list of names, in which stdout stands twice.
    QTest::newRow("0") << QByteArray("0") << int(LOG_NONE);
    QTest::newRow("1") << QByteArray("1") << int(LOG_STDOUT);
    QTest::newRow("2") << QByteArray("2") << int(LOG_STDOUT);
    QTest::newRow("3") << QByteArray("3") << int(LOG_STDERR);
    QTest::newRow("4") << QByteArray("4") << int(LOG_FILE);
    QTest::newRow("5") << QByteArray("5") << int(LOG_BUFFER);
    QTest::newRow("9") << QByteArray("9") << int(LOG_BUFFER);
    QTest::newRow("-9") << QByteArray("-9") << int(LOG_NONE);
}

void tst_LogInit::type()
{
    QFETCH(QByteArray, value);
    QFETCH(int, type);
    qputenv("OSG_LOG_TYPE", value);
    startUpText();
    QCOMPARE(int(osgLogP->getLogType()), type);
    if (type == LOG_BUFFER) {
        Chunks chunks;
        osgLogP->getLogBuf().setCallback(
            [](const Char8* data, Int32 size, void* to) {
                static_cast<Chunks*>(to)->emplace_back(data, std::size_t(size));
            },
            &chunks, true);
        const std::string name = value.toStdString();
        QCOMPARE(chunks, Chunks({"Log::setLogType: set by envvar OSG_LOG_TYPE '" + name + "'.\n"}));
    }
}

void tst_LogInit::headerMask_data()
{
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<int>("mask");
    QTest::newRow("mask") << QByteArray("56") << 56;
    QTest::newRow("zero") << QByteArray("0") << 0;
    QTest::newRow("no number") << QByteArray("all") << 2;
}

void tst_LogInit::headerMask()
{
    QFETCH(QByteArray, value);
    QFETCH(int, mask);
    qputenv("OSG_LOG_HEADER", value);
    const std::string text = startUpText();
    for (int bit = 1; bit <= LOG_TAB_HEADER; bit *= 2)
        QCOMPARE(osgLogP->hasHeaderElem(LogHeaderElem(bit)), (mask & bit) != 0);
    if (mask != 2)
        QCOMPARE(QByteArray::fromStdString(text),
                 "Log::setHeaderElem: set by envvar OSG_LOG_HEADER '" + value + "'.\n");
}

void tst_LogInit::fileAloneIsOpenedButNotTheGoal()
{
    QTemporaryDir folder;
    const QString name = folder.filePath(QStringLiteral("log.txt"));
    qputenv("OSG_LOG_FILE", QFile::encodeName(name));
    startUpText();
    QCOMPARE(osgLogP->getLogType(), LOG_STDERR);
    QFile file(name);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(),
             "Log::setLogFile: set by envvar OSG_LOG_FILE '" + QFile::encodeName(name) + "'.\n");
}

void tst_LogInit::fileWithTypeIsTheGoal()
{
    QTemporaryDir folder;
    const QString name = folder.filePath(QStringLiteral("log.txt"));
    qputenv("OSG_LOG_FILE", QFile::encodeName(name));
    qputenv("OSG_LOG_TYPE", "file");
    startUpText();
    FWARNING(("text\n"));
    QFile file(name);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QVERIFY(file.readAll().endsWith("WARNING:  text\n"));
}

void tst_LogInit::emptyVariablesCountAsMissing()
{
    for (const char* name : {"OSG_LOG_LEVEL", "OSG_LOG_TYPE", "OSG_LOG_FILE", "OSG_LOG_HEADER"})
        qputenv(name, "");
    QCOMPARE(startUpText(), std::string());
    QCOMPARE(osgLogP->getLogLevel(), LOG_WARNING);
    QCOMPARE(osgLogP->getLogType(), LOG_STDERR);
}

void tst_LogInit::programOverrulesTheEnvironment()
{
    qputenv("OSG_LOG_LEVEL", "debug");
    qputenv("OSG_LOG_HEADER", "0");
    startUpText();
    LogCollector collector(*osgLogP);
    osgLogP->setLogLevel(LOG_FATAL);
    osgLogP->addHeaderElem(LOG_TYPE_HEADER);
    QCOMPARE(osgLogP->getLogLevel(), LOG_FATAL);
    QVERIFY(osgLogP->hasHeaderElem(LOG_TYPE_HEADER));
    QVERIFY(collector.chunks.empty());
}

void tst_LogInit::plainLogsIgnoreTheEnvironment()
{
    qputenv("OSG_LOG_LEVEL", "debug");
    Log log;
    QCOMPARE(log.getLogLevel(), LOG_NOTICE);
    log.setLogLevel(LOG_FATAL);
    QCOMPARE(log.getLogLevel(), LOG_FATAL);
}

void tst_LogInit::logWorksWhileStaticObjectsDie_data()
{
    QTest::addColumn<QString>("argument");
    QTest::newRow("log never used before") << QStringLiteral("--last-words");
    QTest::newRow("log used before") << QStringLiteral("--used-before");
    QTest::newRow("log deleted before") << QStringLiteral("--deleted-before");
}

void tst_LogInit::logWorksWhileStaticObjectsDie()
{
    QFETCH(QString, argument);
    QProcess process;
    process.start(QCoreApplication::applicationFilePath(), {argument});
    QVERIFY(process.waitForFinished());
    QCOMPARE(process.exitStatus(), QProcess::NormalExit);
    QCOMPARE(process.exitCode(), 0);
    QCOMPARE(process.readAllStandardError(), QByteArray("LOG:  farewell\nWARNING:  farewell\n"));
}

void tst_LogInit::habitOfManyThreads()
{
    constexpr int threads = 8;
    constexpr int messages = 400;
    LogCollector collector(osgLog());
    osgLogP->setLogLevel(LOG_INFO);
    osgLogP->getLogBuf().setEnabled(false);

    std::atomic<int> toStart{threads};
    const auto logMuch = [&toStart](int number) {
        // All at once, or the first thread is through before the last one begins.
        --toStart;
        while (toStart > 0)
            std::this_thread::yield();
        for (int i = 0; i < messages; ++i) {
            doInitLog();
            if (!osgLogP->checkLevel(LOG_INFO))
                continue;
            Lock* const lock = Log::_pLogLock;
            lock->aquire();
            if (osgLogP->checkModule("mod")) {
                osgLogP->doHeader(LOG_INFO, "mod", __FILE__, __LINE__, __func__);
                osgLogP->doLog("%d/%d\n", number, i);
            }
            lock->release();
            // Settings change while the others log.
            osgLogP->setLogLevel(i % 2 ? LOG_INFO : LOG_DEBUG);
            osgLogP->addHeaderElem(LOG_MODULE_HEADER);
            osgLogP->delHeaderElem(LOG_MODULE_HEADER);
            osgLogP->hasHeaderElem(LOG_TYPE_HEADER);
            osgLogP->setLogType(LOG_BUFFER);
            osgLogP->getLogType();
            osgLogP->resetRefTime();
            osgLogP->addModuleName("mod");
            osgLogP->delModuleHandling(LOG_MODULE_UNDEFINED);
            osgLogP->addModuleHandling(LOG_MODULE_UNDEFINED);
        }
    };
    std::vector<std::thread> pool;
    for (int number = 0; number < threads; ++number)
        pool.emplace_back(logMuch, number);
    for (std::thread& thread : pool)
        thread.join();

    // One chunk per message, each whole, and the messages of a thread in their order.
    QCOMPARE(collector.chunks.size(), std::size_t(threads * messages));
    int next[threads] = {};
    for (const std::string& chunk : collector.chunks) {
        const QByteArray line = QByteArray::fromStdString(chunk);
        QVERIFY(line.startsWith("INFO:  ") || line.startsWith("INFO: mod:  "));
        const QList<QByteArray> numbers = line.mid(line.indexOf(":  ") + 3).trimmed().split('/');
        QCOMPARE(numbers.size(), 2);
        QCOMPARE(numbers[1].toInt(), next[numbers[0].toInt()]++);
    }
}

void tst_LogInit::logIsMadeOnceByManyThreads()
{
    for (int round = 0; round < 20; ++round) {
        doExitLog();
        std::vector<Log*> found(8);
        std::vector<std::thread> pool;
        for (Log*& log : found) {
            pool.emplace_back([&log] {
                doInitLog();
                log = osgLogP;
            });
        }
        for (std::thread& thread : pool)
            thread.join();
        for (Log* log : found)
            QCOMPARE(log, osgLogP);
        QVERIFY(osgLogP);
    }
}

int main(int argc, char** argv)
{
    const QByteArray argument = argc == 2 ? argv[1] : "";
    if (argument == "--used-before" || argument == "--deleted-before")
        osgLog().setLogLevel(LOG_DEBUG);
    if (argument == "--deleted-before")
        doExitLog();
    if (argument == "--used-before" || argument == "--deleted-before" || argument == "--last-words") {
        lastWords.text = "farewell";
        return 0;
    }
    QCoreApplication application(argc, argv);
    tst_LogInit test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_LogInit.moc"
