// Saving a scene: the file dialog knows the formats of the runtime and the options of its writers, and a
// colour button gives the scene a background.
//
//   example-save SCENE [--frames N]     with --frames it ends after N frames

#include "../ExampleHost.h"
#include <Orvane/Field.h>
#include <Orvane/Node.h>
#include <QColorDialog>
#include <QPushButton>
#include <QVBoxLayout>
#include <QorColorButton.h>
#include <QorFileDialog.h>

using namespace Orvane::Qt4;

namespace {

void saveByDialog(Orvane::Context& context, QWidget* parent)
{
    QorFileDialog dialog(parent);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setNameFilters(QorFileDialog::buildFileFilters());
    if (dialog.exec() != QDialog::Accepted)
        return;
    Orvane::SaveOptions options;
    options.skipRoot = dialog.isSkippingRoot();
    options.useTabs = dialog.isUsingTab();
    options.resolveProtos = dialog.isResolvingProto();
    options.writeProcInfo = dialog.isWritingProcInfo();
    options.writeAbstractNodes = dialog.isWritingAbstract();
    options.writeDefaultValues = dialog.isWritingDefaultValue();
    std::string error;
    if (!context.save(dialog.selectedFiles().value(0).toLocal8Bit().toStdString(), options, error))
        std::fprintf(stderr, "%s\n", error.c_str());
}

/// Gives the background of a scene one colour.
void paintSky(Orvane::Node& scene, const QColor& color)
{
    std::vector<Orvane::Node*> nodes;
    scene.collectAllChildren(nodes, 0);
    for (Orvane::Node* node : nodes) {
        Orvane::Field* sky = node->findField("skyColor", Orvane::Node::EXACT_FSO);
        const QString value =
            QStringLiteral("%1 %2 %3").arg(color.redF()).arg(color.greenF()).arg(color.blueF());
        if (sky)
            sky->setValueByStr(0.0, value.toLatin1().constData());
    }
}

} // namespace

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    const ExampleHost host;
    QWidget window;
    auto* manager = new QorViewManager(&window, host.triggerMode());
    auto* color = new QorColorButton(&window);
    color->setColor(QColor(200, 120, 40));
    auto* save = new QPushButton(QStringLiteral("Save as..."), &window);
    auto* layout = new QVBoxLayout(&window);
    layout->addWidget(manager, 1);
    layout->addWidget(color);
    layout->addWidget(save);

    Orvane::Node* scene = host.load(*manager);
    if (!scene)
        return 1;
    QObject::connect(save, &QPushButton::clicked, &window,
                     [&] { saveByDialog(*ExampleHost::context(*manager), &window); });
    QObject::connect(color, &QAbstractButton::clicked, &window, [&] {
        const QColor chosen = QColorDialog::getColor(color->color(), &window);
        color->setColor(chosen.isValid() ? chosen : color->color());
        paintSky(*scene, color->color());
    });
    return host.run(*manager, window);
}
