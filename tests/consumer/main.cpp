#include <OpenSG/OSGImage.h>
#include <Orvane/Context.h>
#include <QApplication>
#include <QorVersion.h>
#include <QorViewManager.h>
#include <cstdio>

static_assert(QOR_VERSION >= QOR_VERSION_CHECK(0, 1, 0) && sizeof(QOR_VERSION_STR) > 1);

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    Orvane::Qt4::QorViewManager manager(nullptr, Orvane::Qt4::QorViewManager::ManualTrigger);
    const QString scene = QStringLiteral("<X3D version='4.0'><Scene><Transform DEF='Place' "
                                         "translation='1 2 3'/></Scene></X3D>");
    if (!manager.loadContextByString(QStringLiteral("consumer.x3d"), scene))
        return 1;
    manager.runFrame();
    const QString place = manager.getValue(QStringLiteral("Place"), QStringLiteral("translation"));
    std::printf("%s\n", qPrintable(place));
    const osg::ImagePtr image = osg::Image::create();
    osg::addRefCP(image);
    const bool isSized = image->set(osg::Image::OSG_RGB_PF, 4, 2) && image->getSize() == 4 * 2 * 3;
    osg::subRefCP(image);
    return place == QLatin1String("1 2 3") && isSized ? 0 : 1;
}
