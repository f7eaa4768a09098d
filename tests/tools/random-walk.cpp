// Uses the workbench at random, for hours if need be: see `--help`.
#include "RandomUser.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDesktopServices>
#include <QElapsedTimer>
#include <QFile>
#include <QSettings>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <unistd.h>

namespace {

constexpr unsigned int longestStep = 120; // seconds
constexpr qint64 sampleInterval = 10000;  // ms

void hang(int)
{
    constexpr char text[] = "a step has not ended\n";
    if (write(2, text, sizeof(text) - 1) < 0)
        _exit(1);
    std::abort();
}

/// Memory that the process has in use, in MB.
double residentMemory()
{
    QFile file(QStringLiteral("/proc/self/statm"));
    const double pages = file.open(QIODevice::ReadOnly) ? file.readAll().split(' ').value(1).toDouble() : 0.0;
    return pages * static_cast<double>(sysconf(_SC_PAGESIZE)) / 1048576.0;
}

/// Swallows addresses that would open other programs.
class NoOtherPrograms : public QObject
{
    Q_OBJECT

public:
    NoOtherPrograms()
    {
        for (const char* scheme : {"http", "https", "file", "mailto"})
            QDesktopServices::setUrlHandler(QLatin1String(scheme), this, "swallow");
    }

public slots:
    void swallow(const QUrl&) {}
};

} // namespace

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    QApplication::setOrganizationName(QStringLiteral("orvane-random-walk"));
    QStandardPaths::setTestModeEnabled(true);
    const QTemporaryDir settings;
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, settings.path());
    const NoOtherPrograms swallowed;

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Uses the workbench at random on copies of scenes."));
    parser.addHelpOption();
    const QCommandLineOption seconds(QStringLiteral("seconds"), QStringLiteral("how long"),
                                     QStringLiteral("N"), QStringLiteral("60"));
    const QCommandLineOption steps(QStringLiteral("steps"), QStringLiteral("how many steps at most"),
                                   QStringLiteral("N"), QStringLiteral("1000000000"));
    const QCommandLineOption seed(QStringLiteral("seed"), QStringLiteral("one seed is one run"),
                                  QStringLiteral("S"), QStringLiteral("1"));
    const QCommandLineOption live(QStringLiteral("live"), QStringLiteral("the clock of the machine runs"));
    const QCommandLineOption verbose(QStringLiteral("verbose"), QStringLiteral("tell every step"));
    parser.addOptions({seconds, steps, seed, live, verbose});
    parser.addPositionalArgument(QStringLiteral("scene"), QStringLiteral("scene files"),
                                 QStringLiteral("SCENE..."));
    parser.process(application);
    if (parser.positionalArguments().isEmpty())
        parser.showHelp(2);

    std::signal(SIGALRM, hang);
    const quint32 number = parser.value(seed).toUInt();
    std::printf("seed %u\n", number);
    RandomUser user(number, parser.positionalArguments(), parser.isSet(live));

    QElapsedTimer clock;
    clock.start();
    qint64 nextSample = 0;
    const qint64 end = parser.value(seconds).toLongLong() * 1000;
    const long limit = parser.value(steps).toLong();
    long done = 0;
    while (done < limit && clock.elapsed() < end) {
        alarm(longestStep);
        if (clock.elapsed() >= nextSample) {
            std::printf("%6lld s %8ld steps %8.1f MB  %s\n", clock.elapsed() / 1000, done, residentMemory(),
                        user.scene().toLocal8Bit().constData());
            std::fflush(stdout);
            nextSample += sampleInterval;
        }
        const char* const what = user.step();
        ++done;
        if (parser.isSet(verbose)) {
            std::printf("%ld %s\n", done, what);
            std::fflush(stdout);
        }
    }
    alarm(0);
    std::printf("%ld steps, %d scenes, %d changes, %d dialogs, %d menus, %d saved, %d windows, %.1f MB\n",
                done, user.opened, user.changes, user.dialogs(), user.menus(), user.saved, user.windows,
                residentMemory());
    return 0;
}

#include "random-walk.moc"
