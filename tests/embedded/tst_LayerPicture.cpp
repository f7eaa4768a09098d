#include "../opensg/GLPicture.h"
#include "LayerScene.h"
#include <QtTest>

using namespace Orvane;

/// What layers look like, in a picture of 200 x 200 pixels.
class tst_LayerPicture : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void laterLayerLiesOnTop();
    void onlyTheLowestBackgroundFills();
    void viewportCutsOff();
    void viewportAmongGroupsCutsOff();
    void whatNoLayerCoversIsBlack();
    void sceneThatIsNotDrawnIsNotSeen();
    void lightsStayInTheirLayer();
    void sharedWorldIsLitInBothLayers();
    void fogStaysInItsLayer();
    void billboardsTurnToTheViewerOfTheirLayer();
    void layoutsSuitEachViewarea();
    void layoutGroupIsCutOffByItsViewport();

private:
    /// The picture of a scene after a few frames.
    QImage draw(const std::string& body)
    {
        LayerScene scene(body, 200, 200);
        scene.run();
        scene.run();
        return _context->picture();
    }
    static bool isColor(const QImage& picture, int x, int y, const QColor& color)
    {
        const QColor seen = picture.pixelColor(x, y);
        const bool same = qAbs(seen.red() - color.red()) < 24 && qAbs(seen.green() - color.green()) < 24 &&
                          qAbs(seen.blue() - color.blue()) < 24;
        if (!same)
            qWarning() << x << y << seen;
        return same;
    }

    std::unique_ptr<GLContext> _context;
};

namespace {

/// A shape of an own colour, whatever the light.
std::string glowing(const char* color, const std::string& geometry)
{
    return "<Shape><Appearance><Material diffuseColor='0 0 0' emissiveColor='" + std::string(color) +
           "'/></Appearance>" + geometry + "</Shape>";
}

std::string lit(const std::string& geometry)
{
    return "<Shape><Appearance><Material diffuseColor='1 1 1'/></Appearance>" + geometry + "</Shape>";
}

const std::string dark = "<NavigationInfo headlight='false'/>";
const std::string wall = "<Box size='60 60 0.1'/>";

} // namespace

void tst_LayerPicture::init()
{
    _context = std::make_unique<GLContext>();
    QVERIFY(_context->isValid());
}

void tst_LayerPicture::cleanup()
{
    _context.reset();
}

void tst_LayerPicture::laterLayerLiesOnTop()
{
    // The box of the scene is nearer, and below all the same.
    const std::string scene = "<Transform translation='0 0 5'>" + glowing("1 0 0", "<Box size='3 3 1'/>") +
                              "</Transform><LayerSet order='%'><Layer>" +
                              glowing("0 1 0", "<Box size='2 20 1'/>") + "</Layer></LayerSet>";
    const auto ordered = [&](const char* order) {
        return std::string(scene).replace(scene.find('%'), 1, order);
    };
    const QImage above = draw(ordered("0 1"));
    QVERIFY(isColor(above, 100, 100, Qt::green));
    QVERIFY(isColor(above, 60, 100, Qt::red));
    QVERIFY(isColor(above, 100, 10, Qt::green));
    const QImage below = draw(ordered("1 0"));
    QVERIFY(isColor(below, 100, 100, Qt::red));
    QVERIFY(isColor(below, 100, 10, Qt::green));
}

void tst_LayerPicture::onlyTheLowestBackgroundFills()
{
    const QImage picture = draw("<Background skyColor='0 0 1'/><LayerSet order='0 1'><Layer><Background "
                                "skyColor='1 0 0'/>" +
                                glowing("0 1 0", "<Box/>") + "</Layer></LayerSet>");
    QVERIFY(isColor(picture, 10, 10, Qt::blue));
    QVERIFY(isColor(picture, 100, 100, Qt::green));
}

void tst_LayerPicture::viewportCutsOff()
{
    const QImage picture = draw(
        "<Background skyColor='0 0 1'/><LayerSet order='0 1'><Layer><Viewport clipBoundary='0.5 0.75 0.25 "
        "1'/>" +
        glowing("0 1 0", wall) + "</Layer></LayerSet>");
    QVERIFY(isColor(picture, 98, 50, Qt::blue));
    QVERIFY(isColor(picture, 102, 50, Qt::green));
    QVERIFY(isColor(picture, 148, 50, Qt::green));
    QVERIFY(isColor(picture, 152, 50, Qt::blue));
    QVERIFY(isColor(picture, 125, 148, Qt::green));
    QVERIFY(isColor(picture, 125, 152, Qt::blue));
    QVERIFY(isColor(picture, 125, 2, Qt::green));
}

void tst_LayerPicture::viewportAmongGroupsCutsOff()
{
    for (const char* const viewpoint : {"<Viewpoint/>", "<OrthoViewpoint fieldOfView='-1 -1 3 3'/>"}) {
        const QImage picture =
            draw("<Background skyColor='0 0 1'/>" + std::string(viewpoint) +
                 "<Transform translation='1 0 -3' scale='3 3 1'><Viewport clipBoundary='0.5 "
                 "0.75 0.25 1'>" +
                 glowing("0 1 0", wall) + "</Viewport></Transform>");
        QVERIFY(isColor(picture, 97, 50, Qt::blue));
        QVERIFY(isColor(picture, 103, 50, Qt::green));
        QVERIFY(isColor(picture, 147, 50, Qt::green));
        QVERIFY(isColor(picture, 153, 50, Qt::blue));
        QVERIFY(isColor(picture, 125, 147, Qt::green));
        QVERIFY(isColor(picture, 125, 153, Qt::blue));
    }
}

void tst_LayerPicture::whatNoLayerCoversIsBlack()
{
    const QImage picture =
        draw("<Background skyColor='0 0 1'/><LayerSet order='1 0'><Layer><Viewport "
             "clipBoundary='0 0.5 0 1'/><Background skyColor='1 0 0'/></Layer></LayerSet>");
    QVERIFY(isColor(picture, 50, 100, Qt::red));
    QVERIFY(isColor(picture, 150, 100, Qt::black));
}

void tst_LayerPicture::sceneThatIsNotDrawnIsNotSeen()
{
    const QImage picture =
        draw("<Background skyColor='0 0 1'/>" + glowing("1 0 0", wall) + "<LayerSet order='1'><Layer>" +
             glowing("0 1 0", "<Box/>") + "</Layer></LayerSet>");
    QVERIFY(isColor(picture, 10, 10, Qt::black));
    QVERIFY(isColor(picture, 100, 100, Qt::green));
    QVERIFY(isColor(draw("<Background skyColor='0 0 1'/><LayerSet order=''/>"), 100, 100, Qt::black));
}

void tst_LayerPicture::lightsStayInTheirLayer()
{
    const std::string light = "<DirectionalLight global='true'/>";
    const auto halves = [&](const std::string& inScene, const std::string& inLayer) {
        return draw(dark + inScene + lit(wall) +
                    "<LayerSet order='0 1'><Layer><Viewport clipBoundary='0 0.5 0 1'/>" + dark + inLayer +
                    lit(wall) + "</Layer></LayerSet>");
    };
    const QImage scene = halves(light, "");
    QVERIFY(isColor(scene, 50, 100, Qt::black));
    QVERIFY(isColor(scene, 150, 100, Qt::white));
    const QImage layer = halves("", light);
    QVERIFY(isColor(layer, 50, 100, Qt::white));
    QVERIFY(isColor(layer, 150, 100, Qt::black));
}

void tst_LayerPicture::sharedWorldIsLitInBothLayers()
{
    const QImage picture =
        draw(dark + "<Group DEF='World'><Group><DirectionalLight global='true'/></Group>" + lit(wall) +
             "</Group><LayerSet order='0 1'><Layer><Viewport clipBoundary='0 0.5 0 1'/>" + dark +
             "<Group USE='World'/></Layer></LayerSet>");
    QVERIFY(isColor(picture, 50, 100, Qt::white));
    QVERIFY(isColor(picture, 150, 100, Qt::white));
}

void tst_LayerPicture::fogStaysInItsLayer()
{
    const QImage picture = draw("<Fog color='1 0 0' visibilityRange='5'/>" + lit(wall) +
                                "<LayerSet order='0 1'><Layer><Viewport clipBoundary='0 0.5 0 1'/>" +
                                lit(wall) + "</Layer></LayerSet>");
    QVERIFY(isColor(picture, 50, 100, Qt::white));
    QVERIFY(isColor(picture, 150, 100, Qt::red));
}

void tst_LayerPicture::billboardsTurnToTheViewerOfTheirLayer()
{
    const std::string board = "<Billboard>" + glowing("0 1 0", "<Box size='2 2 0.02'/>") + "</Billboard>";
    const QImage picture = draw(board +
                                "<LayerSet order='0 1'><Layer><Viewport clipBoundary='0 0.5 0 1'/><Viewpoint "
                                "position='10 0 0' orientation='0 1 0 1.5708'/>" +
                                board + "</Layer></LayerSet>");
    QVERIFY(isColor(picture, 43, 100, Qt::green));
    QVERIFY(isColor(picture, 57, 100, Qt::green));
    QVERIFY(isColor(picture, 110, 100, Qt::green));
}

void tst_LayerPicture::layoutsSuitEachViewarea()
{
    const QImage picture =
        draw("<Engine><Window><Viewarea size='0.25 1'/><Viewarea position='0.25 0' size='0.75 1'/>"
             "</Window></Engine><LayerSet order='0 1'><LayoutLayer><Layout align='\"RIGHT\" "
             "\"TOP\"' size='20 20' sizeUnits='\"PIXEL\"'/>" +
             glowing("0 1 0", "<Rectangle2D size='1 1'/>") + "</LayoutLayer></LayerSet>");
    for (const int right : {50, 200}) {
        QVERIFY(isColor(picture, right - 2, 2, Qt::green));
        QVERIFY(isColor(picture, right - 18, 18, Qt::green));
        QVERIFY(isColor(picture, right - 22, 10, Qt::black));
        QVERIFY(isColor(picture, right - 10, 22, Qt::black));
    }
}

void tst_LayerPicture::layoutGroupIsCutOffByItsViewport()
{
    const QImage picture =
        draw("<LayerSet order='0 1'><LayoutLayer><LayoutGroup><Viewport clipBoundary='0.25 0.5 0 1'/><Layout "
             "size='1 1' sizeUnits='\"FRACTION\"' scaleMode='\"FRACTION\"'/>" +
             glowing("0 1 0", "<Rectangle2D size='1 1'/>") + "</LayoutGroup></LayoutLayer></LayerSet>");
    QVERIFY(isColor(picture, 48, 100, Qt::black));
    QVERIFY(isColor(picture, 52, 100, Qt::green));
    QVERIFY(isColor(picture, 98, 100, Qt::green));
    QVERIFY(isColor(picture, 102, 100, Qt::black));
}

QTEST_MAIN(tst_LayerPicture)
#include "tst_LayerPicture.moc"
