// The log of the process: what library, runtime and host say, below a view of the scene.
//
//   example-log SCENE [--frames N]     with --frames it ends after N frames

#include "../ExampleHost.h"
#include <OpenSG/OSGLog.h>
#include <QSplitter>
#include <QorLogView.h>

using namespace Orvane::Qt4;

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    const ExampleHost host;
    QSplitter window(Qt::Vertical);
    // Made first, so that it shows what loading says. It takes the log of the whole process over.
    auto* log = new QorLogView(&window);
    log->setLevel(QStringLiteral("INFO"));
    auto* manager = new QorViewManager(&window, host.triggerMode());
    window.insertWidget(0, manager);
    window.setSizes({440, 200});

    if (!host.load(*manager)) {
        osg::osgLog().setLogType(osg::LOG_STDERR, true);
        return 1;
    }
    {
        // A line of the host, as any thread may write one.
        const osg::LogLock lock;
        osg::osgLog().doHeader(osg::LOG_NOTICE, "Example", __FILE__, __LINE__);
        osg::osgLog().doLog("The scene is loaded.\n");
    }
    return host.run(*manager, window);
}
