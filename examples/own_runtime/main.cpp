// A runtime of one's own: a plant of devices, whose readings the widgets show and edit as those of a scene.
//
//   example-own-runtime [--frames N] [--picture FILE]     with --frames it ends after N steps of the plant

#include "Device.h"
#include <Orvane/MFString.h>
#include <Orvane/SFBool.h>
#include <Orvane/SFFloat.h>
#include <QApplication>
#include <QSplitter>
#include <QTimer>
#include <QorNodeItemDelegate.h>
#include <QorObservingNodeEditor.h>
#include <QorObservingScenegraphModel.h>
#include <QorScenegraphTreeView.h>
#include <cstdio>

using namespace Orvane::Qt4;

namespace {

/// The boiler warms up while it is heated, and cools down else.
void step(const Device& boiler)
{
    auto* temperature = boiler.reading<Orvane::SFFloat>("temperature");
    const float change = boiler.reading<Orvane::SFBool>("heating")->value() ? 0.5F : -0.5F;
    temperature->setValue(0.0, temperature->value() + change, Orvane::Field::EVENT_CT);
}

} // namespace

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    int frames = arguments.value(arguments.indexOf(QStringLiteral("--frames")) + 1).toInt();

    Device plant("Plant", "North", {});
    Device* boiler = plant.add("Boiler", "Boiler",
                               {{"temperature", Orvane::SFFLOAT_DT, "20", "Degrees Celsius"},
                                {"heating", Orvane::SFBOOL_DT, "TRUE", "Whether the burner is on"},
                                {"notes", Orvane::MFSTRING_DT, "\"serviced in May\"", "Of the crew"}});
    plant.add("Pump", "Supply", {{"speed", Orvane::SFINT32_DT, "1400", "Turns a minute"}});
    plant.add("Pump", "Return", {{"speed", Orvane::SFINT32_DT, "1350", "Turns a minute"}});

    QSplitter window;
    auto* tree = new QorScenegraphTreeView(&window);
    auto* editor = new QorObservingNodeEditor(&window);
    const auto model = std::make_unique<QorObservingScenegraphModel>(&plant, nullptr);
    tree->setModel(model.get());
    tree->expandAll();
    editor->setNode(boiler);
    QObject::connect(tree, SIGNAL(nodeSelected(Orvane::Node*)), editor, SLOT(setNode(Orvane::Node*)));

    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &window, [&] {
        step(*boiler);
        if (frames > 0 && --frames == 0)
            QApplication::quit();
    });
    timer.start(20);
    window.resize(760, 300);
    window.show();
    const int status = QApplication::exec();
    const int option = arguments.indexOf(QStringLiteral("--picture"));
    if (option > 0)
        window.grab().save(arguments.value(option + 1));
    std::printf("%s degrees\n", boiler->reading<Orvane::SFFloat>("temperature")->valueToString().c_str());
    editor->setNode(nullptr); // before the nodes go
    tree->setModel(nullptr);
    return status;
}
