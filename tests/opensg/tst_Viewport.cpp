#include <OpenSG/OSGPassiveWindow.h>
#include <OpenSG/OSGRefPtr.h>
#include <OpenSG/OSGViewport.h>

#include <QtTest>

using namespace osg;

Q_DECLARE_METATYPE(osg::Real32)

class tst_Viewport : public QObject
{
    Q_OBJECT

private slots:
    void freshPortIsEmpty()
    {
        const RefPtr<ViewportPtr> port = Viewport::create();
        QCOMPARE(port->getLeft(), 0.F);
        QCOMPARE(port->getTop(), 0.F);
        QVERIFY(!port->getParent() && !port->getCamera() && !port->getRoot() && !port->getBackground());
        QCOMPARE(port->getTravMask(), ~UInt32(0));
        QVERIFY(!port->isFullWindow());
    }

    void pixels_data()
    {
        QTest::addColumn<QVector<float>>("edges"); // left, bottom, right, top
        QTest::addColumn<QVector<int>>("pixels");
        QTest::addColumn<bool>("full");
        QTest::newRow("whole") << QVector<float>{0, 0, 1, 1} << QVector<int>{0, 0, 639, 479} << true;
        QTest::newRow("pixels") << QVector<float>{10, 20, 109.9F, 219} << QVector<int>{10, 20, 109, 219}
                                << false;
        QTest::newRow("right half") << QVector<float>{0.5F, 0, 1, 1} << QVector<int>{320, 0, 639, 479}
                                    << false;
        QTest::newRow("lower third") << QVector<float>{0, 0, 1, 1 / 3.F} << QVector<int>{0, 0, 639, 159}
                                     << false;
        QTest::newRow("one is a fraction")
            << QVector<float>{1, 1, 1, 1} << QVector<int>{640, 480, 639, 479} << false;
        QTest::newRow("mixed") << QVector<float>{2, 0.25F, 1, 300} << QVector<int>{2, 120, 639, 300} << false;
        QTest::newRow("all pixels") << QVector<float>{0, 0, 639, 479} << QVector<int>{0, 0, 639, 479} << true;
        QTest::newRow("nothing") << QVector<float>{0, 0, 0, 0} << QVector<int>{0, 0, -1, -1} << false;
        QTest::newRow("huge") << QVector<float>{0, 0, 1e30F, 1} << QVector<int>{0, 0, 1 << 24, 479} << false;
    }

    void pixels()
    {
        QFETCH(QVector<float>, edges);
        QFETCH(QVector<int>, pixels);
        const RefPtr<PassiveWindowPtr> window = PassiveWindow::create();
        window->setSize(640, 480);
        const RefPtr<ViewportPtr> port = Viewport::create();
        window->addPort(port.get());
        port->setSize(edges[0], edges[1], edges[2], edges[3]);
        QCOMPARE(port->getPixelLeft(), pixels[0]);
        QCOMPARE(port->getPixelBottom(), pixels[1]);
        QCOMPARE(port->getPixelRight(), pixels[2]);
        QCOMPARE(port->getPixelTop(), pixels[3]);
        QCOMPARE(port->getPixelWidth(), pixels[2] - pixels[0] + 1);
        QCOMPARE(port->getPixelHeight(), pixels[3] - pixels[1] + 1);
        QTEST(port->isFullWindow(), "full");
    }

    void fractionWithoutWindowIsZero()
    {
        const RefPtr<ViewportPtr> port = Viewport::create();
        port->setSize(0, 0, 1, 1);
        QCOMPARE(port->getPixelRight(), 0);
        port->setSize(5, 6, 7, 8);
        QCOMPARE(port->getPixelWidth(), 3);
    }

    void withoutContextNothingIsDrawn()
    {
        const RefPtr<ViewportPtr> port = Viewport::create();
        port->render(nullptr);
    }

    void fieldNumbers()
    {
        QCOMPARE(UInt32(Viewport::LeftFieldId), 2U);
        QCOMPARE(UInt32(Viewport::RightFieldId), 3U);
        QCOMPARE(UInt32(Viewport::ParentFieldId), 6U);
        QCOMPARE(UInt32(Viewport::ForegroundsFieldId), 10U);
        QCOMPARE(UInt32(Viewport::DrawTimeFieldId), 12U);
    }
};

QTEST_APPLESS_MAIN(tst_Viewport)
#include "tst_Viewport.moc"
