#include "CommandLine.h"
#include "FrameGrabber.h"
#include "Screenshot.h"
#include "WorkbenchWindow.h"

#include <QApplication>
#include <cstdio>

namespace {

int complain(const QString& text, int status)
{
    std::fprintf(stderr, "orvane-workbench: %s\n", text.toLocal8Bit().constData());
    return status;
}

} // namespace

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("orvane-workbench"));

    CommandLine commandLine;
    QString error;
    if (!commandLine.parse(QApplication::arguments(), error))
        return complain(error + QStringLiteral("; see --help"), 2);
    if (commandLine.helpWanted) {
        std::fputs(commandLine.helpText.toLocal8Bit().constData(), stdout);
        return 0;
    }

    const bool interactive = commandLine.screenshot.isEmpty();
    FrameGrabber grabber;
    WorkbenchWindow window(interactive);
    if (commandLine.time >= 0.0)
        window.holdTime(commandLine.time);
    if (!commandLine.scene.isEmpty() && !window.open(commandLine.scene)) {
        complain(window.loadError(), 1);
        if (!interactive)
            return 1;
    }
    if (!interactive) {
        if (!takeScreenshot(window, grabber, commandLine, error))
            return complain(error, 1);
        return 0;
    }
    window.resize(commandLine.size);
    window.show();
    return QApplication::exec();
}
