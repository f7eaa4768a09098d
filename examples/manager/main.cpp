// A host with a view manager: the manager owns the scene's context, drives its frames and holds its views.
//
//   example-manager SCENE [--frames N]     with --frames it ends after N frames

#include <QApplication>
#include <QorViewManager.h>
#include <cstdio>

using Orvane::Qt4::QorViewManager;

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() < 2) {
        std::fprintf(stderr, "usage: example-manager SCENE [--frames N]\n");
        return 2;
    }
    const int option = arguments.indexOf(QStringLiteral("--frames"));
    const int frames = option > 0 ? arguments.value(option + 1).toInt() : 0;

    QorViewManager manager(nullptr,
                           frames > 0 ? QorViewManager::ManualTrigger : QorViewManager::TimerTrigger);
    manager.resize(800, 600);
    if (!manager.loadContextByURL(arguments.at(1))) {
        std::fprintf(stderr, "%s cannot be loaded\n", arguments.at(1).toLocal8Bit().constData());
        return 1;
    }
    manager.show();
    if (frames == 0)
        return QApplication::exec();

    // Whoever triggers frames by hand may take the result of runFrame as the wait until the next one.
    for (int i = 0; i < frames; ++i) {
        QApplication::processEvents();
        manager.runFrame();
    }
    std::printf("%d frames\n", frames);
    return 0;
}
