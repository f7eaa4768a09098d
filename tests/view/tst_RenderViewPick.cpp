#include "LogCapture.h"
#include "TestWindow.h"
#include <OpenSG/OSGGeometry.h>
#include <OpenSG/OSGPassiveWindow.h>
#include <OpenSG/OSGPerspectiveCamera.h>
#include <OpenSG/OSGTransform.h>
#include <OpenSG/OSGViewport.h>
#include <Orvane/MFNode.h>
#include <Orvane/Scene.h>
#include <QtTest>
#include <cmath>
#include <limits>

using namespace Orvane::Qt4;

namespace {

/// A triangle with a normal of its own at each corner, below a transform.
class Triangle
{
public:
    explicit Triangle(const osg::Matrix& matrix, int triangles = 1)
    {
        const osg::GeoPTypesPtr types = osg::GeoPTypes::create();
        const osg::GeoPLengthsPtr lengths = osg::GeoPLengths::create();
        const osg::GeoPositionsPtr positions = osg::GeoPositions::create();
        const osg::GeoNormalsPtr normals = osg::GeoNormals::create();
        types->push_back(osg::Geometry::TRIANGLES);
        lengths->push_back(3 * static_cast<osg::UInt32>(triangles));
        for (int i = 0; i < triangles; ++i) {
            // The later ones lie beside the first.
            const float x = 4.0F * static_cast<float>(i);
            positions->push_back(osg::Pnt3f(x - 1.0F, -1.0F, 0.0F));
            positions->push_back(osg::Pnt3f(x + 1.0F, -1.0F, 0.0F));
            positions->push_back(osg::Pnt3f(x - 1.0F, 1.0F, 0.0F));
            normals->push_back(osg::Vec3f(0, 0, 1));
            normals->push_back(osg::Vec3f(1, 0, 0));
            normals->push_back(osg::Vec3f(0, 1, 0));
        }
        const osg::GeometryPtr geometry = osg::Geometry::create();
        geometry->setTypes(types);
        geometry->setLengths(lengths);
        geometry->setPositions(positions);
        geometry->setNormals(normals);

        const osg::TransformPtr transform = osg::Transform::create();
        transform->setMatrix(matrix);
        root = osg::makeNodeFor(transform);
        node = osg::makeNodeFor(geometry);
        root->addChild(node);
        osg::addRefCP(root);
    }
    Triangle(const Triangle&) = delete;
    Triangle& operator=(const Triangle&) = delete;
    ~Triangle() { osg::subRefCP(root); }

    osg::NodePtr root;
    osg::NodePtr node;
};

/// A view in picking mode whose window shows a 200 by 100 viewport of a camera at z = 10.
struct Fixture
{
    Fixture()
        : context(Orvane::Context::create())
        , window(std::make_unique<TestWindow>(context))
        , viewarea(std::make_unique<Tiny::TinyViewarea>(context))
        , view(new QorRenderView(&window->proc, nullptr))
    {
        Orvane::Scene::create(context, nullptr, Orvane::HOST_NC);
        Tiny::link(&window->node, "viewareas", viewarea.get());

        osg::Matrix place;
        place.setTranslate(0, 0, 10);
        const osg::TransformPtr transform = osg::Transform::create();
        transform->setMatrix(place);
        beacon = osg::makeNodeFor(transform);
        osg::addRefCP(beacon);
        const osg::PerspectiveCameraPtr perspective = osg::PerspectiveCamera::create();
        perspective->setFov(1.0F);
        perspective->setNear(1.0F);
        perspective->setFar(100.0F);
        perspective->setBeacon(beacon);
        camera = perspective;
        osg::addRefCP(camera);
        viewport = osg::Viewport::create();
        osg::addRefCP(viewport);
        viewport->setSize(0, 0, 1, 1);
        viewport->setCamera(camera);
        osgWindow = osg::PassiveWindow::create();
        osg::addRefCP(osgWindow);
        osgWindow->setSize(200, 100);
        osgWindow->addPort(viewport);
        viewarea->proc.setViewport(viewport);

        view->setMouseMode(QorRenderView::PickMode);
        QObject::connect(view, &QorRenderView::nodePickedHierachy,
                         [this](const std::vector<Orvane::Node*>& chain) {
                             order += 'h';
                             nodes = chain;
                         });
        QObject::connect(view, &QorRenderView::nodePickedHitData, [this](osg::Pnt3f at, osg::Vec3f towards) {
            order += 'd';
            point = at;
            normal = towards;
        });
    }
    ~Fixture()
    {
        delete view;
        viewarea->proc.setViewport(osg::NullFC);
        osgWindow->clearPorts();
        osg::subRefCP(osgWindow);
        osg::subRefCP(camera);
        osg::subRefCP(beacon);
        window.reset();
        viewarea.reset();
        context->subRef();
    }

    void press(const QPointF& place = QPointF(100, 50))
    {
        QMouseEvent event(QEvent::MouseButtonPress, place, Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(view.data(), &event);
        accepted = event.isAccepted();
    }
    /// The next pick hits \a triangle of \a node.
    void hit(const osg::NodePtr& node, unsigned int triangle = 0)
    {
        Tiny::Pick& pick = Tiny::pick();
        pick.hit = true;
        pick.nodes = {context->findRoot(Orvane::Scene::_type)};
        pick.point = osg::Pnt3f(7, 8, 9);
        pick.normal = osg::Vec3f(0, -1, 0);
        pick.osgNode = node;
        pick.triangle = triangle;
    }
    /// Where the ray of the last press crosses the plane z = 0 of a coordinate system.
    static osg::Pnt3f crossing(const osg::Matrix& toObject)
    {
        osg::Pnt3f origin;
        osg::Vec3f direction;
        toObject.multMatrixPnt(Tiny::pick().ray.getPosition(), origin);
        toObject.multMatrixVec(Tiny::pick().ray.getDirection(), direction);
        return origin + direction * (-origin[2] / direction[2]);
    }

    Orvane::Context* context;
    std::unique_ptr<TestWindow> window;
    std::unique_ptr<Tiny::TinyViewarea> viewarea;
    QPointer<QorRenderView> view;
    osg::NodePtr beacon;
    osg::CameraPtr camera;
    osg::ViewportPtr viewport;
    osg::WindowPtr osgWindow;

    QByteArray order;
    std::vector<Orvane::Node*> nodes;
    osg::Pnt3f point;
    osg::Vec3f normal;
    bool accepted = false;
};

bool close(const osg::Vec3f& a, const osg::Vec3f& b)
{
    return a.equals(b, 1e-4F);
}

} // namespace

class tst_RenderViewPick : public QObject
{
    Q_OBJECT

private slots:
    void init() { Tiny::reset(); }

    void theRayGoesThroughThePixel();
    void aMissEmitsNothing();
    void aHitWithoutNodesEmitsNothing();
    void aHitEmitsChainThenData();
    void theNormalIsInterpolatedOverTheCorners();
    void theNormalGoesByTheTransposedInverse();
    void aSingularTransformCountsAsIdentity();
    void laterTrianglesAreSought();
    void aZeroNormalIsNotScaled();
    void onlyANormalOfNoLengthIsLeftUnscaled_data();
    void onlyANormalOfNoLengthIsLeftUnscaled();
    void withoutATriangleThePickedNormalIsSent_data();
    void withoutATriangleThePickedNormalIsSent();
    void missingPiecesDoNothing_data();
    void missingPiecesDoNothing();
    void theSceneIsThatOfTheWindowsContext();
    void aHostMayDeleteTheViewInTheFirstSignal();
    void aHostMayChangeTheSceneInTheFirstSignal();
    void onlyAPlainLeftPressPicks();
};

void tst_RenderViewPick::theRayGoesThroughThePixel()
{
    Fixture f;
    f.press(QPointF(100, 51));
    QVERIFY(f.accepted);
    const osg::Pnt3f middle = Fixture::crossing(osg::Matrix::identity());
    QVERIFY(std::abs(middle[0]) < 1e-3F);
    QVERIFY(std::abs(middle[1]) < 1e-3F);
    f.press(QPointF(150, 26));
    const osg::Pnt3f upperRight = Fixture::crossing(osg::Matrix::identity());
    QVERIFY(upperRight[0] > 1.0F);
    QVERIFY(upperRight[1] > 1.0F);
}

void tst_RenderViewPick::aMissEmitsNothing()
{
    Fixture f;
    LogCapture log;
    f.press();
    QCOMPARE(f.order, QByteArray());
    QCOMPARE(log.take(), QByteArrayList());
    QVERIFY(f.accepted);
    QCOMPARE(f.window->proc.takeCalls(), std::vector<std::string>());
}

void tst_RenderViewPick::aHitWithoutNodesEmitsNothing()
{
    Fixture f;
    const Triangle triangle(osg::Matrix::identity());
    f.hit(triangle.node);
    Tiny::pick().nodes.clear();
    LogCapture log;
    f.press();
    QCOMPARE(f.order, QByteArray());
    QCOMPARE(log.take(), QByteArrayList());
}

void tst_RenderViewPick::aHitEmitsChainThenData()
{
    Fixture f;
    const Triangle triangle(osg::Matrix::identity());
    f.hit(triangle.node);
    LogCapture log(osg::LOG_NOTICE);
    f.press();
    QCOMPARE(log.take(), QByteArrayList{"3 QorRenderView::mouseReleaseEvent: node picked\n."});
    QCOMPARE(f.order, QByteArray("hd"));
    QCOMPARE(f.nodes, Tiny::pick().nodes);
    // The point is the one that the runtime told, not where the ray meets the triangle.
    QVERIFY(f.point == osg::Pnt3f(7, 8, 9));
}

void tst_RenderViewPick::theNormalIsInterpolatedOverTheCorners()
{
    Fixture f;
    const Triangle triangle(osg::Matrix::identity());
    f.hit(triangle.node);
    // A little left of and below the middle.
    f.press(QPointF(96, 53));
    const osg::Pnt3f at = Fixture::crossing(osg::Matrix::identity());
    const float u = (at[0] + 1.0F) / 2.0F;
    const float v = (at[1] + 1.0F) / 2.0F;
    QVERIFY(u > 0.1F && v > 0.1F && u + v < 0.95F);
    osg::Vec3f expected(u, v, 1.0F - u - v);
    expected.normalize();
    QVERIFY(close(f.normal, expected));
    QVERIFY(std::abs(f.normal.length() - 1.0F) < 1e-4F);
}

void tst_RenderViewPick::theNormalGoesByTheTransposedInverse()
{
    Fixture f;
    osg::Matrix matrix;
    // Stretched along x, sheared and moved.
    matrix.setValue(4, 0, 0, 1, 1, 1, 0, 0, 0, 0, 1, 1, 0, 0, 0, 1);
    const Triangle triangle(matrix);
    f.hit(triangle.node);
    f.press();

    osg::Matrix toObject;
    QVERIFY(matrix.inverse(toObject));
    const osg::Pnt3f at = Fixture::crossing(toObject);
    const float u = (at[0] + 1.0F) / 2.0F;
    const float v = (at[1] + 1.0F) / 2.0F;
    const osg::Vec3f m(u, v, 1.0F - u - v);
    osg::Matrix normals = toObject;
    normals.transpose();
    osg::Vec3f expected;
    normals.multMatrixVec(m, expected);
    expected.normalize();
    QVERIFY(close(f.normal, expected));
}

void tst_RenderViewPick::aSingularTransformCountsAsIdentity()
{
    Fixture f;
    osg::Matrix flat;
    flat.setScale(1, 1, 0);
    const Triangle singular(flat);
    const Triangle plain(osg::Matrix::identity());
    f.hit(plain.node);
    f.press(QPointF(97, 52));
    const osg::Vec3f expected = f.normal;
    f.hit(singular.node);
    f.press(QPointF(97, 52));
    QVERIFY(close(f.normal, expected));
}

void tst_RenderViewPick::laterTrianglesAreSought()
{
    Fixture f;
    const Triangle triangles(osg::Matrix::identity(), 3);
    osg::Matrix left;
    left.setTranslate(-8, 0, 0);
    osg::TransformPtr::dcast(triangles.root->getCore())->setMatrix(left);
    f.hit(triangles.node, 2);
    f.press(QPointF(96, 53));
    const osg::Pnt3f at = Fixture::crossing(osg::Matrix::identity());
    osg::Vec3f expected((at[0] + 1) / 2, (at[1] + 1) / 2, 1 - (at[0] + 1) / 2 - (at[1] + 1) / 2);
    expected.normalize();
    QVERIFY(close(f.normal, expected));
}

void tst_RenderViewPick::aZeroNormalIsNotScaled()
{
    Fixture f;
    const Triangle triangle(osg::Matrix::identity());
    osg::GeometryPtr::dcast(triangle.node->getCore())->setNormals(osg::NullFC);
    f.hit(triangle.node);
    f.press();
    QCOMPARE(f.order, QByteArray("hd"));
    QVERIFY(f.normal == osg::Vec3f(0, 0, 0));
}

void tst_RenderViewPick::onlyANormalOfNoLengthIsLeftUnscaled_data()
{
    QTest::addColumn<float>("length");
    QTest::addColumn<float>("sent");
    QTest::newRow("long") << 50.0F << 1.0F;
    QTest::newRow("short") << 2e-6F << 1.0F;
    QTest::newRow("too short") << 5e-7F << 5e-7F;
}

void tst_RenderViewPick::onlyANormalOfNoLengthIsLeftUnscaled()
{
    QFETCH(float, length);
    QFETCH(float, sent);
    Fixture f;
    const Triangle triangle(osg::Matrix::identity());
    const osg::GeometryPtr geometry = osg::GeometryPtr::dcast(triangle.node->getCore());
    for (osg::UInt32 i = 0; i < 3; ++i)
        geometry->getNormals()->setValue(osg::Vec3f(0, length, 0), i);
    f.hit(triangle.node);
    f.press();
    QVERIFY(std::abs(f.normal[1] - sent) < sent * 1e-4F);
}

void tst_RenderViewPick::withoutATriangleThePickedNormalIsSent_data()
{
    QTest::addColumn<QByteArray>("what");
    for (const char* what :
         {"no node", "no core", "no geometry", "no such triangle", "degenerate triangle", "no numbers"})
        QTest::newRow(what) << QByteArray(what);
}

void tst_RenderViewPick::withoutATriangleThePickedNormalIsSent()
{
    QFETCH(QByteArray, what);
    Fixture f;
    const Triangle triangle(osg::Matrix::identity());
    const osg::GeometryPtr geometry = osg::GeometryPtr::dcast(triangle.node->getCore());
    osg::NodePtr empty = osg::Node::create();
    osg::addRefCP(empty);
    if (what == "no node")
        f.hit(osg::NullFC);
    else if (what == "no core")
        f.hit(empty);
    else if (what == "no geometry")
        f.hit(triangle.root);
    else if (what == "no such triangle")
        f.hit(triangle.node, 4000000000U);
    else if (what == "no numbers") {
        geometry->getPositions()->setValue(osg::Pnt3f(std::numeric_limits<float>::quiet_NaN(), 0, 0), 1);
        f.hit(triangle.node);
    } else {
        for (osg::UInt32 i = 0; i < 3; ++i)
            geometry->getPositions()->setValue(osg::Pnt3f(0, 0, 0), i);
        f.hit(triangle.node);
    }
    LogCapture log(osg::LOG_WARNING);
    f.press();
    QCOMPARE(f.order, QByteArray("hd"));
    QVERIFY(f.normal == osg::Vec3f(0, -1, 0));
    // A hit without a triangle is nothing to warn of.
    QCOMPARE(log.take(), QByteArrayList());
    osg::subRefCP(empty);
}

void tst_RenderViewPick::missingPiecesDoNothing_data()
{
    QTest::addColumn<QByteArray>("what");
    for (const char* what :
         {"viewarea", "viewport", "camera", "parent window", "pixels", "scene", "window node"})
        QTest::newRow(what) << QByteArray(what);
}

void tst_RenderViewPick::missingPiecesDoNothing()
{
    QFETCH(QByteArray, what);
    Fixture f;
    const Triangle triangle(osg::Matrix::identity());
    f.hit(triangle.node);
    Tiny::TinyWindowProc withoutNode(nullptr);
    if (what == "viewarea")
        f.window->node.viewareas()->clear();
    else if (what == "viewport")
        f.viewarea->proc.setViewport(osg::NullFC);
    else if (what == "camera")
        f.viewport->setCamera(osg::NullFC);
    else if (what == "parent window") {
        osg::addRefCP(f.viewport);
        f.osgWindow->clearPorts();
        osg::addRefCP(f.viewport);
    } else if (what == "pixels")
        f.viewport->setSize(0, 0, -1, -1);
    else if (what == "scene")
        f.context->removeRoot(Orvane::Scene::_type);
    else {
        delete f.view;
        f.view = new QorRenderView(&withoutNode, nullptr);
        f.view->setMouseMode(QorRenderView::PickMode);
    }
    f.press();
    QVERIFY(f.accepted);
    QCOMPARE(f.order, QByteArray());
    if (what == "parent window") {
        f.osgWindow->addPort(f.viewport);
        osg::subRefCP(f.viewport);
    }
    delete f.view;
}

void tst_RenderViewPick::theSceneIsThatOfTheWindowsContext()
{
    Orvane::Context* older = Orvane::Context::create();
    Orvane::Scene::create(older, nullptr, Orvane::HOST_NC);
    {
        Fixture f;
        const Triangle triangle(osg::Matrix::identity());
        f.hit(triangle.node);
        // The older context's scene must not stand in for it.
        f.context->removeRoot(Orvane::Scene::_type);
        f.press();
        QCOMPARE(f.order, QByteArray());
    }
    older->subRef();
}

void tst_RenderViewPick::aHostMayDeleteTheViewInTheFirstSignal()
{
    Fixture f;
    const Triangle triangle(osg::Matrix::identity());
    f.hit(triangle.node);
    connect(f.view, &QorRenderView::nodePickedHierachy, [&] { delete f.view; });
    f.press();
    QCOMPARE(f.order, QByteArray("h"));
}

void tst_RenderViewPick::aHostMayChangeTheSceneInTheFirstSignal()
{
    Fixture f;
    auto triangle = std::make_unique<Triangle>(osg::Matrix::identity());
    f.hit(triangle->node);
    f.press(QPointF(96, 53));
    const osg::Vec3f expected = f.normal;
    f.hit(triangle->node);
    connect(f.view, &QorRenderView::nodePickedHierachy, [&] { triangle.reset(); });
    f.press(QPointF(96, 53));
    QVERIFY(close(f.normal, expected));
}

void tst_RenderViewPick::onlyAPlainLeftPressPicks()
{
    Fixture f;
    const Triangle triangle(osg::Matrix::identity());
    f.hit(triangle.node);
    const auto send = [&](QEvent::Type type, Qt::MouseButton button, Qt::KeyboardModifiers modifiers) {
        QMouseEvent event(type, QPointF(100, 50), button, button, modifiers);
        QCoreApplication::sendEvent(f.view.data(), &event);
    };
    send(QEvent::MouseButtonPress, Qt::RightButton, Qt::NoModifier);
    send(QEvent::MouseButtonPress, Qt::MiddleButton, Qt::NoModifier);
    send(QEvent::MouseButtonRelease, Qt::LeftButton, Qt::NoModifier);
    send(QEvent::MouseButtonPress, Qt::LeftButton, Qt::ControlModifier);
    f.view->setMouseMode(QorRenderView::NavigationMode);
    send(QEvent::MouseButtonPress, Qt::LeftButton, Qt::NoModifier);
    QCOMPARE(f.order, QByteArray());
}

QTEST_MAIN(tst_RenderViewPick)
#include "tst_RenderViewPick.moc"
