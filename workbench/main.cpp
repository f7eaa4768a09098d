#include "CommandLine.h"
#include "DocumentFile.h"
#include "FrameGrabber.h"
#include "Screenshot.h"
#include "WorkbenchWindow.h"

#include <QApplication>
#include <QScreen>
#include <QTimer>
#include <algorithm>
#include <cstdio>

namespace {

int complain(const QString& text, int status)
{
    std::fprintf(stderr, "orvane-workbench: %s\n", text.toLocal8Bit().constData());
    return status;
}

/// The size of a window that nobody has sized yet: as large as its font asks, as far as the screen goes.
QSize firstSize(const QWidget& window, const QSize& usual)
{
    constexpr double usualDpi = 96.0;
    constexpr double share = 0.9;
    const QSize wanted = usual * (window.logicalDpiX() / usualDpi);
    return wanted.boundedTo(window.screen()->availableSize() * share);
}

/// Answers a call for help or for the version. The result is negative when it is none.
int answerInWords(int argc, char** argv)
{
    const QStringList words{QStringLiteral("-h"), QStringLiteral("--help"), QStringLiteral("-v"),
                            QStringLiteral("--version")};
    if (std::none_of(argv + 1, argv + argc,
                     [&](const char* each) { return words.contains(QLatin1String(each)); }))
        return -1;
    const QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("orvane-workbench"));
    CommandLine commandLine;
    QString error;
    if (!commandLine.parse(QCoreApplication::arguments(), error))
        return complain(error + QStringLiteral("; see --help"), 2);
    const QString answer = commandLine.helpWanted ? commandLine.helpText : commandLine.versionText;
    std::fputs(answer.toLocal8Bit().constData(), stdout);
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    // Words need no display.
    if (const int status = answerInWords(argc, argv); status >= 0)
        return status;
    QApplication application(argc, argv);
    QApplication::setOrganizationName(QStringLiteral("orvane"));
    QApplication::setApplicationName(QStringLiteral("orvane-workbench"));
    QGuiApplication::setDesktopFileName(QStringLiteral("orvane-workbench"));
    QApplication::setWindowIcon(QIcon::fromTheme(QStringLiteral("orvane-workbench")));

    CommandLine commandLine;
    QString error;
    if (!commandLine.parse(QApplication::arguments(), error))
        return complain(error + QStringLiteral("; see --help"), 2);

    const bool interactive = commandLine.screenshot.isEmpty();
    FrameGrabber grabber;
    WorkbenchWindow window(interactive);
    if (commandLine.time >= 0.0)
        window.holdTime(commandLine.time);
    if (interactive && (!window.useSettings() || commandLine.isSizeGiven))
        window.resize(commandLine.isSizeGiven ? commandLine.size : firstSize(window, commandLine.size));
    if (commandLine.dark)
        window.showDark(true);
    const auto openScene = [&] {
        if (!commandLine.scene.isEmpty() && !window.open(commandLine.scene))
            return complain(window.loadError(), 1);
        else if (!commandLine.node.isEmpty() && !window.showNode(commandLine.node))
            return complain(QStringLiteral("the scene has no node called \"%1\"").arg(commandLine.node), 1);
        return 0;
    };
    if (!interactive) {
        if (openScene() != 0)
            return 1;
        if (commandLine.routes)
            window.showRoutes();
        return takeScreenshot(window, grabber, commandLine, error) ? 0 : complain(error, 1);
    }
    window.show();
    // The views find a window that is on the screen.
    QTimer::singleShot(0, &window, [&] {
        if (commandLine.scene.isEmpty())
            window.document()->recover();
        const bool isOpen = commandLine.scene.isEmpty() || window.document()->openByUser(commandLine.scene);
        // Who has cancelled a load knows it.
        if (!isOpen && !window.loadError().isEmpty())
            complain(window.loadError(), 1);
        if (!commandLine.node.isEmpty() && !window.showNode(commandLine.node))
            complain(QStringLiteral("the scene has no node called \"%1\"").arg(commandLine.node), 1);
        if (commandLine.routes)
            window.showRoutes();
    });
    return QApplication::exec();
}
