// A host without a view manager: it makes the context itself, lets the views appear in a widget of its own,
// and runs the frames from its own timer.
//
//   example-own-frames SCENE [--frames N]     with --frames it ends after N frames

#include <Orvane/Context.h>
#include <Orvane/ContextSetup.h>
#include <Orvane/Engine.h>
#include <Orvane/Scene.h>
#include <Orvane/System.h>
#include <QApplication>
#include <QSplitter>
#include <QTimer>
#include <QorRenderView.h>
#include <algorithm>
#include <cstdio>

namespace {

template <class Root>
void ensureRoot(Orvane::Context& context)
{
    if (!dynamic_cast<Root*>(context.findRoot(Root::_type)))
        Root::create(&context, nullptr, Orvane::HOST_NC);
}

} // namespace

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() < 2) {
        std::fprintf(stderr, "usage: example-own-frames SCENE [--frames N]\n");
        return 2;
    }
    const int option = arguments.indexOf(QStringLiteral("--frames"));
    int frames = option > 0 ? arguments.value(option + 1).toInt() : -1;

    QSplitter host; // gives each view that appears in it a place
    host.resize(800, 600);
    host.show();
    Orvane::System::the().init(0, nullptr, 382);
    Orvane::Qt4::QorRenderView::connectObserver(&host);
    Orvane::Context* context = Orvane::Context::create();
    const std::string scene = arguments.at(1).toLocal8Bit().toStdString();
    int status = 1;
    if (context->load(scene, Orvane::Context::REPLACE_LT, {})) {
        ensureRoot<Orvane::ContextSetup>(*context);
        ensureRoot<Orvane::Engine>(*context);
        ensureRoot<Orvane::Scene>(*context);
        context->setRootState(0.0, Orvane::RUNNING_NS);

        QTimer timer;
        timer.setSingleShot(true);
        QObject::connect(&timer, &QTimer::timeout, [&] {
            const double wait = context->runFrame();
            if (frames > 0 && --frames == 0)
                QApplication::quit();
            timer.start(std::max(1, static_cast<int>(wait * 1000.0)));
        });
        timer.start(0);
        status = QApplication::exec();
    } else {
        std::fprintf(stderr, "%s cannot be loaded\n", scene.c_str());
    }
    context->subRef();
    Orvane::System::the().exit();
    return status;
}
