#include <OpenSG/OSGPassiveWindow.h>
#include <OpenSG/OSGRefPtr.h>
#include <OpenSG/OSGViewport.h>

#include <QtTest>

using namespace osg;

class tst_Window : public QObject
{
    Q_OBJECT

private slots:
    void bothNamesMakeAPassiveWindow()
    {
        const RefPtr<PassiveWindowPtr> a = PassiveWindow::create();
        const RefPtr<WindowPtr> b = WindowPtr(PassiveWindowBase::create());
        QCOMPARE(a->getTypeName(), "PassiveWindow");
        QVERIFY(a->getType() == b->getType());
        QVERIFY(PassiveWindowPtr::dcast(b.get()));
    }

    void freshWindowMayBeDroppedByItsMaker()
    {
        const WindowPtr window = PassiveWindowBase::create();
        QCOMPARE(window->getRefCount(), 0);
        addRefCP(window);
        subRefCP(window);
        QVERIFY(!window);
    }

    void resizeIsPendingUntilGLKnows()
    {
        const RefPtr<PassiveWindowPtr> window = PassiveWindow::create();
        QVERIFY(!window->isResizePending());
        window->setSize(3, 4);
        QVERIFY(!window->isResizePending());
        window->resize(640, 480);
        QCOMPARE(window->getWidth(), UInt16(640));
        QCOMPARE(window->getHeight(), UInt16(480));
        QVERIFY(window->isResizePending() && window->getResizePending());
        window->resizeGL();
        QVERIFY(window->isResizePending());
        window->setResizePending(false);
        QVERIFY(!window->isResizePending());
        window->resize(-5, 100000);
        QCOMPARE(window->getWidth(), UInt16(0));
        QCOMPARE(window->getHeight(), UInt16(0xffff));
    }

    void portsAreNotReferenced()
    {
        const RefPtr<PassiveWindowPtr> window = PassiveWindow::create();
        const RefPtr<ViewportPtr> port = Viewport::create();
        window->addPort(port.get());
        window->addPort(NullFC);
        QCOMPARE(port->getRefCount(), 1);
        QVERIFY(port->getParent() == window);
        QCOMPARE(window->getPort().size(), std::size_t(1));
        window->subPort(port.get());
        QCOMPARE(port->getRefCount(), 1);
        QVERIFY(!port->getParent());
        window->insertPort(5, port.get());
        window->subPort(UInt32(0));
        window->subPort(UInt32(0));
        QVERIFY(window->getPort().empty());
        QVERIFY(!window->getPort(0));
    }

    void clearPortsUnrefsEach()
    {
        const RefPtr<PassiveWindowPtr> window = PassiveWindow::create();
        const RefPtr<ViewportPtr> kept = Viewport::create();
        addRefCP(kept.get());
        window->addPort(kept.get());
        window->addPort(Viewport::create());
        window->clearPorts();
        QVERIFY(window->getPort().empty());
        QCOMPARE(kept->getRefCount(), 1);
        QVERIFY(!kept->getParent());
    }

    void portsKeepTheirOrder()
    {
        const RefPtr<PassiveWindowPtr> window = PassiveWindow::create();
        const RefPtr<ViewportPtr> a = Viewport::create();
        const RefPtr<ViewportPtr> b = Viewport::create();
        const RefPtr<ViewportPtr> c = Viewport::create();
        window->addPort(a.get());
        window->insertPort(0, b.get());
        QVERIFY(window->getPort() == (MFViewportPtr{b.get(), a.get()}));
        window->replacePort(0, c.get());
        window->replacePort(2, b.get());
        QVERIFY(window->getPort() == (MFViewportPtr{c.get(), a.get()}));
        QVERIFY(!b->getParent());
        window->replacePortBy(a.get(), b.get());
        window->replacePortBy(a.get(), c.get());
        QVERIFY(window->getPort() == (MFViewportPtr{c.get(), b.get()}));
    }

    void portAndWindowGoInAnyOrder()
    {
        const RefPtr<ViewportPtr> survivor = Viewport::create();
        {
            const RefPtr<PassiveWindowPtr> window = PassiveWindow::create();
            window->addPort(survivor.get());
            const RefPtr<ViewportPtr> gone = Viewport::create();
            window->addPort(gone.get());
        }
        QVERIFY(!survivor->getParent());
        const RefPtr<PassiveWindowPtr> window = PassiveWindow::create();
        {
            const RefPtr<ViewportPtr> gone = Viewport::create();
            window->addPort(gone.get());
        }
        QVERIFY(window->getPort().empty());
    }

    void framesWithoutContextAreSkipped()
    {
        const RefPtr<PassiveWindowPtr> window = PassiveWindow::create();
        const RefPtr<ViewportPtr> port = Viewport::create();
        window->addPort(port.get());
        window->render();
        window->draw();
        window->frameInit();
        window->frameExit();
        window->init();
    }

    void fieldNumbers()
    {
        QCOMPARE(UInt32(Window::WidthFieldId), 2U);
        QCOMPARE(UInt32(Window::ResizePendingFieldId), 5U);
        QCOMPARE(BitVector(Window::ResizePendingFieldMask), BitVector(32));
    }
};

QTEST_APPLESS_MAIN(tst_Window)
#include "tst_Window.moc"
