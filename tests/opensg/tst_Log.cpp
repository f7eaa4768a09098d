#include "LogCollector.h"

#include <OpenSG/OSGLog.h>

#include <QtTest>

#include <iostream>
#include <sstream>

using namespace osg;

namespace {

/// Takes over what goes to std::cout or std::cerr.
class Captured
{
public:
    explicit Captured(std::ostream& stream)
        : _stream(stream)
        , _old(stream.rdbuf(_text.rdbuf()))
    {
    }
    ~Captured() { _stream.rdbuf(_old); }
    std::string text() const { return _text.str(); }

private:
    std::ostream& _stream;
    std::ostringstream _text;
    std::streambuf* _old;
};

QByteArray contentsOf(const QString& fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<no file>");
}

} // namespace

class tst_Log : public QObject
{
    Q_OBJECT

private slots:
    void enumeratorsHaveTheirNumbers();
    void defaultsOfAPlainLog();
    void defaultsOfAFileLog();
    void headerText_data();
    void headerText();
    void levelNames();
    void coloursWrapTheLevelName();
    void timeStampCountsFromTheReferenceTime();
    void missingStringsAreLeftOut();
    void functionNameMayBeLeftOut();
    void manipulatorsStickToTheirLevel();
    void chunksPerMessage_data();
    void chunksPerMessage();
    void headerWithoutTextGoesAheadOfTheNextMessage();
    void headerOfAHigherLevelIsSwallowed();
    void emptyTextGivesNoChunk();
    void doLogFormats();
    void doLogOfLongTexts();
    void doLogIgnoresTheLevel();
    void checkLevelComparesWithTheLogs();
    void levelIsClamped();
    void streamsAboveTheLevelAreDead();
    void raisedLevelWakesTheStreams();
    void typeChoosesTheGoal();
    void typeNoneSwallowsEverything();
    void fileIsTruncatedAndBecomesTheGoal();
    void missingFileNameOnlyCloses();
    void fileThatCannotBeOpenedIsReported();
    void headerMask();
    void moduleHandling();
    void knownModules();
    void moduleNamesAreCopied();
    void nilStreamSwallows();
    void lockIsTheNamedOne();
    void lockIsRecursive();
    void callbackMayLog();
    void manipulatorsOfTheLog();
};

void tst_Log::enumeratorsHaveTheirNumbers()
{
    QCOMPARE(int(LOG_NONE), 0);
    QCOMPARE(int(LOG_STDOUT), 1);
    QCOMPARE(int(LOG_STDERR), 2);
    QCOMPARE(int(LOG_FILE), 3);
    QCOMPARE(int(LOG_BUFFER), 4);
    QCOMPARE(int(LOG_LOG), 0);
    QCOMPARE(int(LOG_FATAL), 1);
    QCOMPARE(int(LOG_WARNING), 2);
    QCOMPARE(int(LOG_NOTICE), 3);
    QCOMPARE(int(LOG_INFO), 4);
    QCOMPARE(int(LOG_DEBUG), 5);
    QCOMPARE(int(LOG_MODULE_UNDEFINED), 4);
    QCOMPARE(int(LOG_MODULE_ALL), LOG_MODULE_KNOWN | LOG_MODULE_UNKNOWN | LOG_MODULE_UNDEFINED);
    QCOMPARE(int(LOG_FUNCNAME_HEADER), 64);
    QCOMPARE(int(LOG_END_NEWLINE_HEADER), 128);
    QCOMPARE(int(LOG_ANSICOLOR_HEADER), 4096);
    QCOMPARE(int(LOG_COLOR_HEADER), 8192);
    QCOMPARE(int(LOG_TAB_HEADER), 16384);
    QCOMPARE(int(LOG_ALL_HEADER), 32767);
}

void tst_Log::defaultsOfAPlainLog()
{
    const Time before = getSystemTime();
    Log log;
    QCOMPARE(log.getLogType(), LOG_STDERR);
    QCOMPARE(log.getLogLevel(), LOG_NOTICE);
    QVERIFY(log.hasHeaderElem(LOG_TYPE_HEADER));
    QVERIFY(!log.hasHeaderElem(LogHeaderElem(LOG_ALL_HEADER & ~LOG_TYPE_HEADER)));
    QVERIFY(log.checkModule(nullptr));
    QVERIFY(log.getRefTime() >= before && log.getRefTime() <= getSystemTime());
    QVERIFY(log.getLogBuf().getEnabled());
}

void tst_Log::defaultsOfAFileLog()
{
    QTemporaryDir folder;
    const QString name = folder.filePath(QStringLiteral("log.txt"));
    Log log(QFile::encodeName(name).constData(), LOG_INFO);
    QCOMPARE(log.getLogType(), LOG_FILE);
    QCOMPARE(log.getLogLevel(), LOG_INFO);
    log.doLog("text\n");
    QCOMPARE(contentsOf(name), QByteArray("text\n"));
}

void tst_Log::headerText_data()
{
    QTest::addColumn<int>("mask");
    QTest::addColumn<QByteArray>("header");
    const int type = LOG_TYPE_HEADER;
    const int tab = LOG_TAB_HEADER;
    QTest::newRow("nothing") << 0 << QByteArray("");
    QTest::newRow("type") << type << QByteArray("WARNING:  ");
    QTest::newRow("type, tab") << (type | tab) << QByteArray("WARNING\t ");
    QTest::newRow("module") << 8 << QByteArray("mod:  ");
    QTest::newRow("file") << 16 << QByteArray("dir/foo.cpp:  ");
    QTest::newRow("line alone") << 32 << QByteArray(" ");
    QTest::newRow("file and line") << 48 << QByteArray("dir/foo.cpp:12:  ");
    QTest::newRow("function") << 64 << QByteArray("f():  ");
    QTest::newRow("tab alone") << tab << QByteArray(" ");
    QTest::newRow("colour alone") << 8192 << QByteArray(" ");
    QTest::newRow("ansi colour alone") << 4096 << QByteArray(" ");
    QTest::newRow("type, module, file, line, function")
        << (2 | 8 | 16 | 32 | 64) << QByteArray("WARNING: mod: dir/foo.cpp:12: f():  ");
    QTest::newRow("the same with tabs")
        << (2 | 8 | 16 | 32 | 64 | tab) << QByteArray("WARNING\tmod\tdir/foo.cpp:12\tf()\t ");
    QTest::newRow("end of line") << (type | 128) << QByteArray("WARNING: \n");
    QTest::newRow("end of line alone") << 128 << QByteArray("\n");
    QTest::newRow("begin of line") << (type | 1) << QByteArray("\nWARNING:  ");
    QTest::newRow("begin of line alone") << 1 << QByteArray("\n ");
    QTest::newRow("begin and end of line") << (1 | 2 | 128) << QByteArray("\nWARNING: \n");
    QTest::newRow("colour") << (type | 8192) << QByteArray("\x1b[33mWARNING: \x1b[0m ");
    QTest::newRow("colour, tab, module")
        << (type | 8 | 8192 | tab) << QByteArray("\x1b[33mWARNING\t\x1b[0mmod\t ");
}

void tst_Log::headerText()
{
    QFETCH(int, mask);
    QFETCH(QByteArray, header);
    Log log;
    LogCollector collector(log);
    log.setHeaderElem(UInt32(mask));
    std::ostream& stream = log.doHeader(LOG_WARNING, "mod", "dir/foo.cpp", 12, "f()");
    QCOMPARE(&stream, &log.stream(LOG_WARNING));
    log.doLog("text\n");
    QCOMPARE(QByteArray::fromStdString(collector.take()), header + "text\n");
}

void tst_Log::levelNames()
{
    Log log(LOG_BUFFER, LOG_DEBUG);
    LogCollector collector(log);
    const char* names[] = {"LOG", "FATAL", "WARNING", "NOTICE", "INFO", "DEBUG"};
    for (int level = LOG_LOG; level <= LOG_DEBUG; ++level) {
        log.doHeader(LogLevel(level), nullptr, nullptr, 0);
        log.doLog("!");
        QCOMPARE(collector.take(), std::string(names[level]) + ":  !");
    }
}

void tst_Log::coloursWrapTheLevelName()
{
    Log log(LOG_BUFFER, LOG_DEBUG);
    LogCollector collector(log);
    log.addHeaderElem(LOG_COLOR_HEADER);
    const std::string expected[] = {
        "LOG: ", "\x1b[31mFATAL: \x1b[0m", "\x1b[33mWARNING: \x1b[0m", "NOTICE: ", "INFO: ", "DEBUG: "};
    for (int level = LOG_LOG; level <= LOG_DEBUG; ++level) {
        log.doHeader(LogLevel(level), nullptr, nullptr, 0);
        log.doLog("!");
        QCOMPARE(collector.take(), expected[level] + " !");
    }
}

void tst_Log::timeStampCountsFromTheReferenceTime()
{
    Log log;
    LogCollector collector(log);
    log.setHeaderElem(LOG_TIMESTAMP_HEADER);
    log.setRefTime(getSystemTime() - 1e6);
    log.doHeader(LOG_LOG, nullptr, nullptr, 0);
    log.doLog("x");
    // Six significant digits, as a stream writes them.
    QCOMPARE(collector.take(), std::string("1e+06:  x"));

    log.resetRefTime();
    QVERIFY(getSystemTime() - log.getRefTime() < 3600);
    log.doHeader(LOG_LOG, nullptr, nullptr, 0);
    log.doLog("x");
    bool isNumber = false;
    const QByteArray text = QByteArray::fromStdString(collector.take());
    QVERIFY(text.endsWith(":  x"));
    const double seconds = text.left(text.size() - 4).toDouble(&isNumber);
    QVERIFY(isNumber && seconds >= 0 && seconds < 3600);
}

void tst_Log::missingStringsAreLeftOut()
{
    Log log;
    LogCollector collector(log);
    log.setHeaderElem(2 | 8 | 16 | 32 | 64);
    log.doHeader(LOG_WARNING, nullptr, nullptr, 12, nullptr);
    log.doLog("!");
    QCOMPARE(collector.take(), std::string("WARNING:  !"));
    log.doHeader(LOG_WARNING, "", "", 12, "");
    log.doLog("!");
    QCOMPARE(collector.take(), std::string("WARNING:  !"));
}

void tst_Log::functionNameMayBeLeftOut()
{
    Log log;
    LogCollector collector(log);
    log.addHeaderElem(LOG_FUNCNAME_HEADER);
    log.doHeader(LOG_WARNING, "mod", "file", 1);
    log.doLog("!");
    QCOMPARE(collector.take(), std::string("WARNING:  !"));
}

void tst_Log::manipulatorsStickToTheirLevel()
{
    Log log;
    LogCollector collector(log);
    log.stream(LOG_WARNING) << std::hex << 255;
    log.stream(LOG_FATAL) << 255;
    log.stream(LOG_WARNING) << 16 << std::flush;
    QCOMPARE(collector.take(), std::string("ff25510"));
}

void tst_Log::chunksPerMessage_data()
{
    QTest::addColumn<int>("mask");
    QTest::addColumn<int>("textSize");
    QTest::addColumn<QVector<int>>("sizes");
    typedef QVector<int> Sizes;
    // The header "WARNING:  " has ten characters.
    QTest::newRow("usual message") << 2 << 5 << Sizes{15};
    QTest::newRow("the longest in one chunk") << 2 << 1013 << Sizes{1023};
    QTest::newRow("one more goes apart") << 2 << 1014 << Sizes{10, 1014};
    QTest::newRow("long text") << 2 << 5000 << Sizes{10, 5000};
    QTest::newRow("long text, no header") << 0 << 5000 << Sizes{5000};
    QTest::newRow("end of line") << (2 | 128) << 5 << Sizes{10, 5};
    QTest::newRow("begin of line") << (1 | 2) << 5 << Sizes{1, 15};
    QTest::newRow("both") << (1 | 2 | 128) << 5 << Sizes{1, 10, 5};
}

void tst_Log::chunksPerMessage()
{
    QFETCH(int, mask);
    QFETCH(int, textSize);
    QFETCH(QVector<int>, sizes);
    Log log;
    LogCollector collector(log);
    log.setHeaderElem(UInt32(mask));
    for (int round = 0; round < 2; ++round) {
        log.doHeader(LOG_WARNING, nullptr, nullptr, 0);
        log.doLog("%s", std::string(std::size_t(textSize), 'x').c_str());
        QVector<int> found;
        for (const std::string& chunk : collector.chunks)
            found << int(chunk.size());
        QCOMPARE(found, sizes);
        collector.chunks.clear();
    }
}

void tst_Log::headerWithoutTextGoesAheadOfTheNextMessage()
{
    Log log;
    LogCollector collector(log);
    log.doHeader(LOG_WARNING, nullptr, nullptr, 0);
    QVERIFY(collector.chunks.empty());
    log.doHeader(LOG_FATAL, nullptr, nullptr, 0);
    log.doLog("text\n");
    QCOMPARE(collector.chunks, Chunks({"WARNING:  FATAL:  text\n"}));
}

void tst_Log::headerOfAHigherLevelIsSwallowed()
{
    Log log(LOG_BUFFER, LOG_WARNING);
    LogCollector collector(log);
    log.doHeader(LOG_NOTICE, nullptr, nullptr, 0);
    log.doLog("text\n");
    QCOMPARE(collector.chunks, Chunks({"text\n"}));
}

void tst_Log::emptyTextGivesNoChunk()
{
    Log log;
    LogCollector collector(log);
    log.doLog("%s", "");
    QVERIFY(collector.chunks.empty());
}

void tst_Log::doLogFormats()
{
    Log log;
    LogCollector collector(log);
    log.doLog("%d %s %.2f|", 7, "seven", 7.0);
    QCOMPARE(collector.take(), std::string("7 seven 7.00|"));
    // The result is a text: a zero ends it.
    log.doLog("a%cb", 0);
    QCOMPARE(collector.take(), std::string("a"));
}

void tst_Log::doLogOfLongTexts()
{
    Log log;
    LogCollector collector(log);
    for (int size : {1022, 1023, 1024, 1025, 100000}) {
        const std::string text(std::size_t(size), 'y');
        log.doLog("%s", text.c_str());
        QCOMPARE(collector.take(), text);
    }
}

void tst_Log::doLogIgnoresTheLevel()
{
    Log log(LOG_BUFFER, LOG_LOG);
    LogCollector collector(log);
    log.doLog("heard");
    QCOMPARE(collector.take(), std::string("heard"));
}

void tst_Log::checkLevelComparesWithTheLogs()
{
    Log log(LOG_STDERR, LOG_NOTICE);
    QVERIFY(log.checkLevel(LOG_LOG));
    QVERIFY(log.checkLevel(LOG_NOTICE));
    QVERIFY(!log.checkLevel(LOG_INFO));
}

void tst_Log::levelIsClamped()
{
    Log log;
    log.setLogLevel(LogLevel(99), true);
    QCOMPARE(log.getLogLevel(), LOG_DEBUG);
    log.setLogLevel(LogLevel(-1));
    QCOMPARE(log.getLogLevel(), LOG_LOG);
    QCOMPARE(Log(LOG_NONE, LogLevel(7)).getLogLevel(), LOG_DEBUG);
    QCOMPARE(&log.stream(LogLevel(99)), &log.stream(LOG_DEBUG));
    QCOMPARE(&log.stream(LogLevel(-5)), &log.stream(LOG_LOG));
}

void tst_Log::streamsAboveTheLevelAreDead()
{
    Log log(LOG_BUFFER, LOG_FATAL);
    LogCollector collector(log);
    for (int level = LOG_LOG; level <= LOG_DEBUG; ++level)
        log.stream(LogLevel(level)) << level << std::flush;
    QCOMPARE(collector.take(), std::string("01"));
}

void tst_Log::raisedLevelWakesTheStreams()
{
    Log log(LOG_BUFFER, LOG_FATAL);
    LogCollector collector(log);
    log.stream(LOG_INFO) << "lost" << std::flush;
    log.setLogLevel(LOG_INFO);
    log.stream(LOG_INFO) << "heard" << std::flush;
    QCOMPARE(collector.take(), std::string("heard"));
}

void tst_Log::typeChoosesTheGoal()
{
    Captured out(std::cout);
    Captured err(std::cerr);
    Log log(LOG_STDOUT);
    LogCollector collector(log);
    log.setLogType(LOG_STDOUT);
    log.doLog("a");
    log.setLogType(LOG_STDERR);
    log.doLog("b");
    log.setLogType(LOG_BUFFER);
    log.doLog("c");
    QCOMPARE(out.text(), std::string("a"));
    QCOMPARE(err.text(), std::string("b"));
    QCOMPARE(collector.take(), std::string("c"));
    QCOMPARE(log.getLogType(), LOG_BUFFER);
}

void tst_Log::typeNoneSwallowsEverything()
{
    Captured out(std::cout);
    Captured err(std::cerr);
    Log log;
    LogCollector collector(log);
    log.setLogType(LOG_NONE);
    log.doHeader(LOG_FATAL, nullptr, nullptr, 0) << "x" << std::flush;
    log.doLog("y");
    log.setLogType(LogType(77));
    log.doLog("z");
    QCOMPARE(out.text() + err.text() + collector.take(), std::string());
    log.setLogType(LOG_BUFFER);
    log.doLog("back");
    QCOMPARE(collector.take(), std::string("back"));
}

void tst_Log::fileIsTruncatedAndBecomesTheGoal()
{
    QTemporaryDir folder;
    const QString name = folder.filePath(QStringLiteral("log.txt"));
    QFile old(name);
    QVERIFY(old.open(QIODevice::WriteOnly));
    old.write("old contents");
    old.close();

    Log log(LOG_NONE);
    log.setLogFile(QFile::encodeName(name).constData());
    QCOMPARE(log.getLogType(), LOG_FILE);
    log.doHeader(LOG_WARNING, nullptr, nullptr, 0);
    log.doLog("new\n");
    QCOMPARE(contentsOf(name), QByteArray("WARNING:  new\n"));
}

void tst_Log::missingFileNameOnlyCloses()
{
    QTemporaryDir folder;
    const QString name = folder.filePath(QStringLiteral("log.txt"));
    Log log(LOG_NONE);
    log.setLogFile(nullptr);
    log.setLogFile("");
    QCOMPARE(log.getLogType(), LOG_NONE);
    log.setLogFile(QFile::encodeName(name).constData());
    log.setLogFile(nullptr);
    log.doLog("lost");
    QCOMPARE(contentsOf(name), QByteArray());
}

void tst_Log::fileThatCannotBeOpenedIsReported()
{
    Log log;
    LogCollector collector(log);
    log.setLogFile("/nonexistent/folder/log.txt");
    QCOMPARE(log.getLogType(), LOG_BUFFER);
    QCOMPARE(collector.take(),
             std::string("Log::setLogFile: cannot open '/nonexistent/folder/log.txt' for writing.\n"));
}

void tst_Log::headerMask()
{
    Log log;
    log.setHeaderElem(LOG_MODULE_HEADER | LOG_FILE_HEADER);
    QVERIFY(!log.hasHeaderElem(LOG_TYPE_HEADER));
    QVERIFY(log.hasHeaderElem(LOG_FILE_HEADER));
    log.addHeaderElem(LOG_LINE_HEADER, true);
    log.delHeaderElem(LOG_FILE_HEADER, true);
    QVERIFY(log.hasHeaderElem(LOG_LINE_HEADER));
    QVERIFY(!log.hasHeaderElem(LOG_FILE_HEADER));
    QVERIFY(log.hasHeaderElem(LOG_MODULE_HEADER));
    // Any bit of the argument will do.
    QVERIFY(log.hasHeaderElem(LogHeaderElem(LOG_MODULE_HEADER | LOG_TIMESTAMP_HEADER)));
}

void tst_Log::moduleHandling()
{
    Log log;
    QVERIFY(log.checkModule(nullptr) && log.checkModule("") && log.checkModule("any"));
    log.delModuleHandling(LOG_MODULE_ALL);
    QVERIFY(!log.checkModule(nullptr) && !log.checkModule("any"));
    log.addModuleHandling(LOG_MODULE_UNDEFINED);
    QVERIFY(log.checkModule(nullptr) && log.checkModule("") && !log.checkModule("any"));
    log.delModuleHandling(LOG_MODULE_UNDEFINED);
    log.addModuleHandling(LOG_MODULE_UNKNOWN);
    QVERIFY(!log.checkModule(nullptr) && log.checkModule("any"));
}

void tst_Log::knownModules()
{
    Log log;
    log.delModuleHandling(LOG_MODULE_ALL);
    log.addModuleHandling(LOG_MODULE_KNOWN);
    log.addModuleName("first");
    log.addModuleName("mine");
    log.addModuleName(nullptr);
    log.addModuleName("");
    QVERIFY(log.hasModule("mine") && log.hasModule("first"));
    QVERIFY(!log.hasModule("other") && !log.hasModule(nullptr) && !log.hasModule(""));
    QVERIFY(log.checkModule("mine"));
    QVERIFY(!log.checkModule("other") && !log.checkModule(nullptr));
    log.delModuleName("mine");
    QVERIFY(!log.checkModule("mine"));
    QVERIFY(log.checkModule("first"));
}

void tst_Log::moduleNamesAreCopied()
{
    Log log;
    char name[] = "mine";
    log.addModuleName(name);
    name[0] = 'x';
    QVERIFY(log.hasModule("mine"));
}

void tst_Log::nilStreamSwallows()
{
    Log log;
    LogCollector collector(log);
    log.nilstream() << "lost" << std::endl;
    log.nilstream() << "lost" << std::endl;
    log.doLog("!");
    QCOMPARE(collector.take(), std::string("!"));
}

void tst_Log::lockIsTheNamedOne()
{
    Log log;
    QVERIFY(Log::_pLogLock);
    QCOMPARE(Lock::find("OSG::Log::_pLogLock"), Log::_pLogLock);
    QVERIFY(Log::initLock());
    Lock* lock = Log::_pLogLock;
    QVERIFY(Log::finalizeLock());
    QVERIFY(!Log::_pLogLock);
    // Without a lock both do nothing.
    log.lock();
    log.unlock();
    QVERIFY(Log::initLock());
    QCOMPARE(Log::_pLogLock, lock);
}

void tst_Log::lockIsRecursive()
{
    Log log;
    LogCollector collector(log);
    log.lock();
    log.lock();
    log.doLog("inside");
    log.unlock();
    log.unlock();
    QCOMPARE(collector.take(), std::string("inside"));
}

void tst_Log::callbackMayLog()
{
    struct Echo
    {
        Log log{LOG_BUFFER};
        Chunks chunks;
        static void call(const Char8* data, Int32 size, void* clientData)
        {
            Echo& echo = *static_cast<Echo*>(clientData);
            if (echo.chunks.empty()) {
                echo.chunks.emplace_back("calling");
                echo.log.doHeader(LOG_FATAL, nullptr, nullptr, 0);
                echo.log.doLog("from the callback");
            }
            echo.chunks.emplace_back(data, std::size_t(size));
        }
    };
    Echo echo;
    echo.log.getLogBuf().setCallback(Echo::call, &echo);
    echo.log.doHeader(LOG_WARNING, nullptr, nullptr, 0);
    echo.log.doLog("message");
    QCOMPARE(echo.chunks, Chunks({"calling", "FATAL:  from the callback", "WARNING:  message"}));
}

void tst_Log::manipulatorsOfTheLog()
{
    std::ostringstream out;
    indentLog(3, out);
    out << 'x' << endLog;
    QCOMPARE(out.str(), std::string("   x\n"));
}

QTEST_APPLESS_MAIN(tst_Log)
#include "tst_Log.moc"
