#include "LogText.h"
#include "QorLogView.h"
#include <QtTest>
#include <QtWidgets/QTextEdit>
#include <array>
#include <atomic>
#include <thread>
#include <vector>

using namespace Orvane::Qt4;

namespace {

constexpr int threadCount = 8;
constexpr int linesAtOnce = 20000; ///< lines a thread may be ahead of the pane

/// Seconds of the long test; ORVANE_LOG_SECONDS makes it longer.
int seconds()
{
    const int given = qEnvironmentVariableIntValue("ORVANE_LOG_SECONDS");
    return given > 0 ? given : 1;
}

void run(int milliseconds)
{
    QElapsedTimer clock;
    clock.start();
    while (clock.elapsed() < milliseconds)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
}

/// Threads that log as fast as they can: each its number and a count, or all the same text.
class Loggers
{
public:
    enum Text { COUNT, SAME };

    explicit Loggers(Text kind = COUNT)
    {
        for (int i = 0; i < threadCount; ++i)
            _threads.emplace_back([this, i, kind] {
                while (!_stop) {
                    if (kind == COUNT && _sent[i] - _seen > linesAtOnce) {
                        std::this_thread::yield();
                        continue;
                    }
                    const std::string text = std::to_string(i) + " " + std::to_string(_sent[i]) + "\n";
                    logText(osg::LOG_WARNING, kind == COUNT ? text.c_str() : "the same\n");
                    ++_sent[i];
                }
            });
    }
    Loggers(const Loggers&) = delete;
    Loggers& operator=(const Loggers&) = delete;
    ~Loggers() { stop(); }

    void stop()
    {
        _stop = true;
        for (std::thread& thread : _threads)
            thread.join();
        _threads.clear();
    }
    int sent(int thread) const { return _sent[static_cast<std::size_t>(thread)]; }
    /// Tells how many lines of the slowest thread are in the pane.
    void setSeen(int count) { _seen = count; }

private:
    std::atomic<bool> _stop{false};
    std::atomic<int> _seen{0};
    std::array<std::atomic<int>, threadCount> _sent{};
    std::vector<std::thread> _threads;
};

} // namespace

class tst_LogThreads : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void nothingIsLostDoubledOrOutOfOrder();
    void viewsComeAndGoWhileThreadsLog();
    void controlsAreUsedWhileThreadsLog();
};

void tst_LogThreads::init()
{
    osg::doInitLog();
    osg::osgLogP->setLogType(osg::LOG_NONE, true);
    osg::osgLogP->setLogLevel(osg::LOG_NOTICE, true);
    osg::osgLogP->setHeaderElem(osg::LOG_TYPE_HEADER, true);
    osg::osgLogP->getLogBuf().clearChunkBag();
}

void tst_LogThreads::nothingIsLostDoubledOrOutOfOrder()
{
    QorLogView view(nullptr);
    auto* pane = view.findChild<QTextEdit*>(QStringLiteral("textView"));
    std::array<int, threadCount> next{};

    // Takes what stands in the pane, and clears it.
    const auto check = [&] {
        const QString text = pane->toPlainText();
        view.clear();
        for (const QString& line : text.split(QLatin1Char('\n'), Qt::SkipEmptyParts)) {
            const QStringList words = line.split(QLatin1Char(' '), Qt::SkipEmptyParts);
            if (words.size() != 3 || words[0] != QStringLiteral("WARNING:"))
                return false;
            const int thread = words[1].toInt();
            if (thread < 0 || thread >= threadCount ||
                words[2].toInt() != next[static_cast<std::size_t>(thread)])
                return false;
            ++next[static_cast<std::size_t>(thread)];
        }
        return true;
    };

    Loggers loggers;
    QElapsedTimer clock;
    clock.start();
    while (clock.elapsed() < seconds() * 1000) {
        run(50);
        QVERIFY(check());
        loggers.setSeen(*std::min_element(next.begin(), next.end()));
    }
    loggers.stop();
    run(500);
    QVERIFY(check());
    for (int i = 0; i < threadCount; ++i) {
        QVERIFY(loggers.sent(i) > 0);
        QCOMPARE(next[static_cast<std::size_t>(i)], loggers.sent(i));
    }
}

void tst_LogThreads::viewsComeAndGoWhileThreadsLog()
{
    Loggers loggers(Loggers::SAME);
    QElapsedTimer clock;
    clock.start();
    int views = 0;
    for (; clock.elapsed() < seconds() * 300; ++views) {
        QorLogView view(nullptr);
        run(1);
        // What is kept while there is no view must not grow without end.
        osg::osgLogP->setLogType(osg::LOG_NONE);
    }
    loggers.stop();
    QVERIFY(views > 0);
}

void tst_LogThreads::controlsAreUsedWhileThreadsLog()
{
    QorLogView view(nullptr);
    Loggers loggers(Loggers::SAME);
    QElapsedTimer clock;
    clock.start();
    for (int i = 0; clock.elapsed() < seconds() * 300; ++i) {
        view.setLevel(i % 6);
        view.enableTimeStampElement(i % 2 == 0);
        view.enableModuleElement(i % 3 == 0);
        view.clear();
        run(1);
    }
    loggers.stop();
    view.setLevel(3);
    QCOMPARE(osg::osgLogP->getLogLevel(), osg::LOG_NOTICE);
}

QTEST_MAIN(tst_LogThreads)
#include "tst_LogThreads.moc"
