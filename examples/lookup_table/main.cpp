// A lookup table: its four curves are painted with the mouse, and every stroke shows in the texture that the
// scene calls "Ramp". examples/scenes/ramp.x3d has one.
//
//   example-lookup-table SCENE [--frames N]     with --frames it ends after N frames

#include "../ExampleHost.h"
#include <Orvane/NodeNameSpace.h>
#include <Orvane/SFImage.h>
#include <QSplitter>
#include <QorImgCanvasImpl.h>

using namespace Orvane::Qt4;

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    const ExampleHost host;
    QSplitter window;
    auto* manager = new QorViewManager(&window, host.triggerMode());
    auto* painter = new QorImgCanvasImpl(&window);
    window.setStretchFactor(0, 1);
    window.setSizes({500, 400});

    Orvane::Node* scene = host.load(*manager);
    if (!scene)
        return 1;
    Orvane::Node* texture = Orvane::NodeNameSpace::findNode(scene->nameSpace(), "Ramp");
    auto* field = texture
                      ? dynamic_cast<Orvane::SFImage*>(texture->findField("image", Orvane::Node::EXACT_FSO))
                      : nullptr;
    // The painter takes RGBA of one row, and no reference: the host keeps the image.
    const osg::RefPtr<osg::ImagePtr> table = osg::Image::create();
    if (field && table->set(field->image().rco()) && table->reformat(osg::Image::OSG_RGBA_PF)) {
        painter->setImage(table);
        QObject::connect(painter, &QorImgCanvasImpl::imageChanged, painter, [painter, field] {
            field->setValue(0.0, Orvane::Image(painter->getImage()), Orvane::Field::EXTERNAL_CT);
        });
    }
    return host.run(*manager, window);
}
