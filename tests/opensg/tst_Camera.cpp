#include <OpenSG/OSGLine.h>
#include <OpenSG/OSGMatrixCamera.h>
#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGOrthographicCamera.h>
#include <OpenSG/OSGPassiveWindow.h>
#include <OpenSG/OSGPerspectiveCamera.h>
#include <OpenSG/OSGRefPtr.h>
#include <OpenSG/OSGTransform.h>
#include <OpenSG/OSGViewport.h>

#include <QtTest>

#include <cmath>

using namespace osg;

namespace {

// A window of 200 x 100 with one port, and a camera at (0, 0, 5).
struct Scene
{
    explicit Scene(const CameraPtr& viewer)
        : camera(viewer)
        , beacon(makeNodeFor(place))
    {
        Matrix matrix;
        matrix.setTranslate(0, 0, 5);
        place->setMatrix(matrix);
        camera->setBeacon(beacon.get());
        camera->setNear(1);
        camera->setFar(101);
        window->setSize(200, 100);
        window->addPort(port.get());
        port->setSize(0, 0, 1, 1);
        port->setCamera(camera.get());
    }

    RefPtr<PassiveWindowPtr> window = PassiveWindow::create();
    RefPtr<ViewportPtr> port = Viewport::create();
    RefPtr<TransformPtr> place = Transform::create();
    RefPtr<CameraPtr> camera;
    RefPtr<NodePtr> beacon;
};

PerspectiveCameraPtr perspective(float fov)
{
    const PerspectiveCameraPtr camera = PerspectiveCamera::create();
    camera->setFov(fov);
    return camera;
}

bool near(const Pnt3f& a, const Pnt3f& b)
{
    return a.equals(b, 1e-4f);
}

} // namespace

class tst_Camera : public QObject
{
    Q_OBJECT

private slots:
    void rayOfTheMiddleStartsOnTheNearPlane()
    {
        const Scene scene(perspective(Pi / 2));
        Line line;
        Real32 t = 0;
        // A full window is counted from y - 1, so that row 51 is the middle.
        QVERIFY(scene.camera->calcViewRay(line, 100, 51, *scene.port, &t));
        QVERIFY(near(line.getPosition(), Pnt3f(0, 0, 4)));
        QVERIFY(near(line.getDirection(), Pnt3f(0, 0, -1)));
        QVERIFY(std::abs(t - 100) < 0.01f);
    }

    void rayOfTheUpperLeft()
    {
        const Scene scene(perspective(Pi / 2));
        Line line;
        QVERIFY(scene.camera->calcViewRay(line, 0, 1, *scene.port));
        // On the near plane, at a distance of 1, the view is 2 high and 4 wide.
        QVERIFY(near(line.getPosition(), Pnt3f(-2, 1, 4)));
        Vec3f direction(-2, 1, -1);
        direction.normalize();
        QVERIFY(near(line.getDirection(), direction));
    }

    void rowZeroLiesOneRowAboveTheTop()
    {
        const Scene scene(perspective(Pi / 2));
        Line line;
        QVERIFY(scene.camera->calcViewRay(line, 100, 0, *scene.port));
        QVERIFY(near(line.getPosition(), Pnt3f(0, 1.02f, 4)));
    }

    void rayOfAPartOfTheWindow()
    {
        const Scene scene(perspective(Pi / 2));
        // The right half, lower 50 rows: a square of 100 x 50 pixels from (100, 0).
        scene.port->setSize(100, 0, 199, 49);
        Line line;
        // Window rows count from above: row 100 - 49 = 51 is the top edge, 76 the middle.
        QVERIFY(scene.camera->calcViewRay(line, 150, 76, *scene.port));
        QVERIFY(near(line.getPosition(), Pnt3f(0, 0, 4)));
        QVERIFY(scene.camera->calcViewRay(line, 200, 101, *scene.port));
        QVERIFY(near(line.getPosition(), Pnt3f(2, -1, 4)));
    }

    void rayFollowsTheBeacon()
    {
        const Scene scene(perspective(Pi / 2));
        Matrix matrix;
        matrix.setTransform(Pnt3f(1, 2, 3), Quaternion(Vec3f(0, 1, 0), Pi / 2));
        scene.place->setMatrix(matrix);
        Line line;
        QVERIFY(scene.camera->calcViewRay(line, 100, 51, *scene.port));
        QVERIFY(near(line.getPosition(), Pnt3f(0, 2, 3)));
        QVERIFY(near(line.getDirection(), Pnt3f(-1, 0, 0)));
    }

    void rayKeepsItsDirectionForPlanesFarApart()
    {
        const Scene scene(perspective(Pi / 2));
        scene.camera->setNear(0.01f);
        scene.camera->setFar(100000);
        Line line;
        QVERIFY(scene.camera->calcViewRay(line, 150, 51, *scene.port));
        // Half way to the right edge the slope is 1.
        QVERIFY(near(line.getDirection(), Pnt3f(std::sqrt(0.5f), 0, -std::sqrt(0.5f))));
    }

    void portWithoutPixelsOrWindowHasNoRay()
    {
        const Scene scene(perspective(1));
        Line line;
        scene.port->setSize(0, 0, 0, 0);
        QVERIFY(!scene.camera->calcViewRay(line, 0, 0, *scene.port));
        const RefPtr<ViewportPtr> lost = Viewport::create();
        lost->setSize(0, 0, 100, 100);
        QVERIFY(!scene.camera->calcViewRay(line, 0, 0, *lost));
    }

    void fovAbovePiCountsAsDegrees()
    {
        Matrix radians;
        Matrix degrees;
        const Scene a(perspective(Pi / 3));
        const Scene b(perspective(60));
        a.camera->getProjection(radians, 200, 100);
        b.camera->getProjection(degrees, 200, 100);
        QVERIFY(radians == degrees);
        QVERIFY(std::abs(radians[1][1] - std::sqrt(3.f)) < 1e-5f);
        QVERIFY(std::abs(radians[0][0] - std::sqrt(3.f) / 2) < 1e-5f);
    }

    void illegalValuesGiveTheIdentity()
    {
        const Scene scene(perspective(1));
        Matrix matrix;
        const auto isIdentity = [&] {
            matrix.setTranslate(1, 1, 1);
            scene.camera->getProjection(matrix, 100, 100);
            return matrix == Matrix::identity();
        };
        QVERIFY(!isIdentity());
        scene.camera->setNear(0);
        QVERIFY(isIdentity());
        scene.camera->setNear(200);
        QVERIFY(isIdentity());
        scene.camera->setNear(1);
        PerspectiveCameraPtr::dcast(scene.camera.get())->setFov(-1);
        QVERIFY(isIdentity());
    }

    void withoutBeaconTheMatrixStays()
    {
        const RefPtr<PerspectiveCameraPtr> camera = perspective(1);
        Matrix matrix;
        matrix.setTranslate(1, 2, 3);
        camera->getViewing(matrix, 10, 10);
        QVERIFY(matrix[3] == Vec4f(1, 2, 3, 1));
    }

    void frustumHoldsWhatIsInView()
    {
        const Scene scene(perspective(Pi / 2));
        FrustumVolume frustum;
        scene.camera->getFrustum(frustum, *scene.port);
        QVERIFY(frustum.intersect(Pnt3f(0, 0, 0)));
        QVERIFY(frustum.intersect(Pnt3f(9, 4.9f, 0)));
        QVERIFY(!frustum.intersect(Pnt3f(0, 5.1f, 0)));
        QVERIFY(!frustum.intersect(Pnt3f(0, 0, 4.5f)));
        QVERIFY(!frustum.intersect(Pnt3f(0, 0, -97)));
    }

    void orthographicRaysAreParallel()
    {
        const OrthographicCameraPtr camera = OrthographicCamera::create();
        camera->setVerticalSize(10);
        const Scene scene(camera);
        Line line;
        QVERIFY(scene.camera->calcViewRay(line, 0, 1, *scene.port));
        QVERIFY(near(line.getPosition(), Pnt3f(-10, 5, 4)));
        QVERIFY(near(line.getDirection(), Pnt3f(0, 0, -1)));
    }

    void matrixCameraTakesWhatItIsGiven()
    {
        const RefPtr<MatrixCameraPtr> camera = MatrixCamera::create();
        Matrix matrix;
        matrix.setTranslate(0, 0, -5);
        camera->setModelviewMatrix(matrix);
        Matrix result;
        camera->getViewing(result, 1, 1);
        QVERIFY(result == matrix);
    }

    void fieldNumbers()
    {
        QCOMPARE(UInt32(Camera::BeaconFieldId), 2U);
        QCOMPARE(UInt32(Camera::FarFieldId), 4U);
    }
};

QTEST_APPLESS_MAIN(tst_Camera)
#include "tst_Camera.moc"
