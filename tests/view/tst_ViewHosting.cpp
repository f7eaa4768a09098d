#include "LogCapture.h"
#include "QorViewManager.h"
#include "TestWindow.h"
#include <QtTest>
#include <QtWidgets/QGridLayout>
#include <QtWidgets/QVBoxLayout>

using namespace Orvane::Qt4;

namespace {

/// A manager that lets the test at what its subclasses see.
class Manager : public QorViewManager
{
public:
    Manager()
        : QorViewManager(nullptr, ManualTrigger)
        , context(Tiny::lastContext())
    {
    }

    using QorViewManager::deleteRenderView;
    using QorViewManager::newRenderView;
    using QorViewManager::removeRenderView;

    QGridLayout* grid() const { return qobject_cast<QGridLayout*>(layout()); }

    /// Row and column of a view in the grid; (-1, -1) when it is not there.
    QPoint cell(QorRenderView* view) const
    {
        const int index = grid() ? grid()->indexOf(view) : -1;
        if (index < 0)
            return QPoint(-1, -1);
        int row = 0;
        int column = 0;
        int rowSpan = 0;
        int columnSpan = 0;
        grid()->getItemPosition(index, &row, &column, &rowSpan, &columnSpan);
        return QPoint(row, column);
    }

    QorRenderView* viewOf(const TestWindow& window) const
    {
        for (auto* view : findChildren<QorRenderView*>()) {
            if (view->windowProc() == &window.proc)
                return view;
        }
        return nullptr;
    }

    Orvane::Context* context;
};

} // namespace

class tst_ViewHosting : public QObject
{
    Q_OBJECT

private slots:
    void init() { Tiny::reset(); }

    void aWindowBecomesAChildOfTheManagerOfItsContext();
    void aViewUnderAManagerHasNoToolbarAndNoTimer();
    void aWindowWithoutAManagerIsTopLevel();
    void decorationAndFullScreenDecideTheFrame_data();
    void decorationAndFullScreenDecideTheFrame();
    void viewsFillTwoColumnsInOrderOfArrival();
    void theGridHasNoMarginAndTwoPixelsSpacing();
    void adoptionShowsTheManager();
    void onlyViewsOfTheManagerAreAdopted();
    void aViewIsAdoptedWhenItIsFinishedNotWhenItIsAdded();
    void aShownViewIsAdoptedAtOnceAndOnlyOnce();
    void removalEmptiesTheGridAndTheNextViewStartsAnew();
    void removalOfAViewThatWasNeverAdoptedKeepsIt();
    void aSurvivingViewNoLongerCallsItsWindow();
    void deletionIsLoggedOnBothSides();
    void deletionOfAViewElsewhereDeletesIt();
    void deletionOfNoViewDoesNothing();
    void aViewDeletedByItsHostLeavesNoTrace();
    void windowsThatEndWithTheContextAreReleased();
    void viewsThatAreLeftDieWithTheManager();
    void managersOfTwoContextsKeepTheirViewsApart();
};

void tst_ViewHosting::aWindowBecomesAChildOfTheManagerOfItsContext()
{
    Manager manager;
    TestWindow window(manager.context);
    LogCapture log(osg::LOG_NOTICE);
    window.announce();
    QCOMPARE(log.take(),
             (QByteArrayList{"3 WindowObserver::notify() NEW call\n", "3 QorViewManager::newRenderView\n"}));
    QorRenderView* view = manager.viewOf(window);
    QVERIFY(view);
    QCOMPARE(view->parentWidget(), &manager);
    QVERIFY(!view->isWindow());
}

void tst_ViewHosting::aViewUnderAManagerHasNoToolbarAndNoTimer()
{
    Manager manager;
    TestWindow window(manager.context);
    window.announce();
    QorRenderView* view = manager.viewOf(window);
    QVERIFY(!view->isTimerEnabled());
    const QList<QFrame*> frames = view->findChildren<QFrame*>();
    QCOMPARE(frames.size(), 1);
    QCOMPARE(frames.first()->metaObject()->className(), "Orvane::Qt4::QorWindowToolbar");
    QVERIFY(frames.first()->isHidden());
}

void tst_ViewHosting::aWindowWithoutAManagerIsTopLevel()
{
    Manager manager;
    Tiny::TinyWindowProc withoutNode(nullptr);
    TestWindow withoutContext;
    Orvane::Context* foreign = Orvane::Context::create();
    {
        TestWindow ofAnotherContext(foreign);
        for (Orvane::WindowProc* proc : {static_cast<Orvane::WindowProc*>(&withoutNode),
                                         static_cast<Orvane::WindowProc*>(&withoutContext.proc),
                                         static_cast<Orvane::WindowProc*>(&ofAnotherContext.proc)})
        {
            const std::unique_ptr<QorRenderView> view(Manager::newRenderView(proc));
            QVERIFY(!view->parent());
            QVERIFY(view->isWindow());
            QVERIFY(!(view->windowFlags() & Qt::FramelessWindowHint));
        }
    }
    foreign->subRef();
}

void tst_ViewHosting::decorationAndFullScreenDecideTheFrame_data()
{
    QTest::addColumn<bool>("decoration");
    QTest::addColumn<bool>("fullScreen");
    QTest::addColumn<bool>("frameless");
    QTest::newRow("plain") << true << false << false;
    QTest::newRow("undecorated") << false << false << true;
    QTest::newRow("full screen") << true << true << false;
    QTest::newRow("undecorated full screen") << false << true << false;
}

void tst_ViewHosting::decorationAndFullScreenDecideTheFrame()
{
    QFETCH(bool, decoration);
    QFETCH(bool, fullScreen);
    QFETCH(bool, frameless);
    TestWindow window;
    window.node.decorationValue = decoration;
    window.node.fullScreenValue = fullScreen;
    const std::unique_ptr<QorRenderView> view(Manager::newRenderView(&window.proc));
    QCOMPARE(bool(view->windowFlags() & Qt::FramelessWindowHint), frameless);
}

void tst_ViewHosting::viewsFillTwoColumnsInOrderOfArrival()
{
    Manager manager;
    TestWindow windows[3] = {TestWindow(manager.context), TestWindow(manager.context),
                             TestWindow(manager.context)};
    for (TestWindow& window : windows)
        window.announce();
    QCoreApplication::processEvents();
    QCOMPARE(manager.cell(manager.viewOf(windows[0])), QPoint(0, 0));
    QCOMPARE(manager.cell(manager.viewOf(windows[1])), QPoint(0, 1));
    QCOMPARE(manager.cell(manager.viewOf(windows[2])), QPoint(1, 0));
}

void tst_ViewHosting::theGridHasNoMarginAndTwoPixelsSpacing()
{
    Manager manager;
    QVERIFY(!manager.layout());
    TestWindow window(manager.context);
    window.announce();
    QVERIFY(!manager.layout());
    QCoreApplication::processEvents();
    QVERIFY(manager.grid());
    QCOMPARE(manager.grid()->contentsMargins(), QMargins());
    QCOMPARE(manager.grid()->horizontalSpacing(), 2);
    QCOMPARE(manager.grid()->verticalSpacing(), 2);
    QCOMPARE(manager.grid()->itemAt(0)->alignment(), Qt::Alignment());
}

void tst_ViewHosting::adoptionShowsTheManager()
{
    Manager manager;
    QVERIFY(manager.isHidden());
    TestWindow first(manager.context);
    first.announce();
    QCoreApplication::processEvents();
    QVERIFY(manager.isVisible());
    manager.hide();
    TestWindow second(manager.context);
    second.announce();
    QCoreApplication::processEvents();
    QVERIFY(manager.isVisible());
}

void tst_ViewHosting::onlyViewsOfTheManagerAreAdopted()
{
    Manager manager;
    new QFrame(&manager);
    QCoreApplication::processEvents();
    TestWindow window;
    QorRenderView elsewhere(&window.proc, nullptr);
    QChildEvent polished(QEvent::ChildPolished, &elsewhere);
    QCoreApplication::sendEvent(&manager, &polished);
    QVERIFY(!manager.layout());
    QVERIFY(manager.isHidden());
}

void tst_ViewHosting::aViewIsAdoptedWhenItIsFinishedNotWhenItIsAdded()
{
    Manager manager;
    TestWindow window(manager.context);
    window.announce();
    QChildEvent added(QEvent::ChildAdded, manager.viewOf(window));
    QCoreApplication::sendEvent(&manager, &added);
    QVERIFY(!manager.layout());
    QCoreApplication::processEvents();
    QCOMPARE(manager.cell(manager.viewOf(window)), QPoint(0, 0));
}

void tst_ViewHosting::aShownViewIsAdoptedAtOnceAndOnlyOnce()
{
    Manager manager;
    TestWindow window(manager.context);
    window.node.sizeValue = osg::Vec2f(200, 100);
    window.announce();
    window.fire(Orvane::WindowProc::_showWidget);
    QorRenderView* view = manager.viewOf(window);
    QCOMPARE(manager.cell(view), QPoint(0, 0));
    QVERIFY(view->isVisible());
    QCoreApplication::processEvents();
    view->hide();
    view->show();
    QChildEvent polished(QEvent::ChildPolished, view);
    QCoreApplication::sendEvent(&manager, &polished);
    QCOMPARE(manager.grid()->count(), 1);
    QCOMPARE(manager.cell(view), QPoint(0, 0));
    // It stands in the list once, too: nothing is left to remove.
    Manager::deleteRenderView(view);
    QCOMPARE(manager.grid()->count(), 0);
}

void tst_ViewHosting::removalEmptiesTheGridAndTheNextViewStartsAnew()
{
    Manager manager;
    manager.resize(402, 402);
    std::vector<std::unique_ptr<TestWindow>> windows;
    for (int i = 0; i < 3; ++i) {
        windows.push_back(std::make_unique<TestWindow>(manager.context));
        windows.back()->announce();
        windows.back()->fire(Orvane::WindowProc::_showWidget);
    }
    QCoreApplication::processEvents();
    QPointer<QorRenderView> first = manager.viewOf(*windows[0]);
    QorRenderView* second = manager.viewOf(*windows[1]);
    QorRenderView* third = manager.viewOf(*windows[2]);
    const QRect secondPlace = second->geometry();
    const QRect thirdPlace = third->geometry();
    QLayoutItem* item = manager.grid()->itemAt(1);

    windows[0]->end();
    // The items are taken out, not deleted.
    QCOMPARE(item->widget(), second);
    QVERIFY(!first);
    QCOMPARE(manager.grid()->count(), 0);
    QCoreApplication::processEvents();
    QVERIFY(second->isVisible());
    QVERIFY(third->isVisible());
    QCOMPARE(second->parentWidget(), &manager);
    QCOMPARE(second->geometry(), secondPlace);
    QCOMPARE(third->geometry(), thirdPlace);

    TestWindow fourth(manager.context);
    fourth.announce();
    QCoreApplication::processEvents();
    QCOMPARE(manager.cell(manager.viewOf(fourth)), QPoint(0, 0));
    QCOMPARE(manager.grid()->count(), 1);

    // Those outside the grid can still be removed.
    QPointer<QorRenderView> gone = second;
    windows[1]->end();
    QVERIFY(!gone);
    QCOMPARE(manager.grid()->count(), 0);
}

void tst_ViewHosting::removalOfAViewThatWasNeverAdoptedKeepsIt()
{
    Manager manager;
    TestWindow window(manager.context);
    window.announce();
    QPointer<QorRenderView> view = manager.viewOf(window);
    view->setTimerEnabled(true);
    LogCapture log(osg::LOG_FATAL);
    manager.removeRenderView(view);
    QCOMPARE(log.take(), QByteArrayList{QByteArray("1 QorViewManager::removeRenderView: view=0x") +
                                        QByteArray::number(quintptr(view.data()), 16) +
                                        " not in _renderViews container. Cleanup bug?\n"});
    QVERIFY(view);
    QVERIFY(!view->isTimerEnabled());
}

void tst_ViewHosting::aSurvivingViewNoLongerCallsItsWindow()
{
    Manager manager;
    QPointer<QorRenderView> view;
    {
        TestWindow window(manager.context);
        window.announce();
        view = manager.viewOf(window);
        // Ended before the event loop told the manager of its new child.
        window.end();
        QVERIFY(view);
        QVERIFY(!view->windowProc());
        QVERIFY(!window.proc.winPtr());
        window.proc.takeCalls();

        QTest::mouseClick(view, Qt::LeftButton);
        QTest::mouseMove(view, QPoint(5, 5));
        QTest::keyClick(view.data(), Qt::Key_A);
        QTest::keyClick(view.data(), Qt::Key_F1);
        view->updateGL();
        view->resize(50, 60);
        QCOMPARE(window.proc.takeCalls(), std::vector<std::string>());
    }
    QCoreApplication::processEvents();
    // The manager has taken it in after all, and it dies with it.
    QCOMPARE(manager.cell(view), QPoint(0, 0));
}

void tst_ViewHosting::deletionIsLoggedOnBothSides()
{
    Manager manager;
    TestWindow window(manager.context);
    window.announce();
    QCoreApplication::processEvents();
    LogCapture log(osg::LOG_NOTICE);
    window.end();
    QCOMPARE(log.take(), (QByteArrayList{"3 WindowObserver::notify() DELETE call\n",
                                         "3 QorViewManager::deleteRenderView\n",
                                         "3 QorViewManager::deleteRenderView: leaving\n"}));
}

void tst_ViewHosting::deletionOfAViewElsewhereDeletesIt()
{
    Manager manager;
    TestWindow window(manager.context);
    window.announce();
    QCoreApplication::processEvents();
    QPointer<QorRenderView> view = manager.viewOf(window);
    QWidget host;
    view->setParent(&host);
    Manager::deleteRenderView(view);
    QVERIFY(!view);

    QPointer<QorRenderView> topLevel = new QorRenderView(&window.proc, nullptr);
    Manager::deleteRenderView(topLevel);
    QVERIFY(!topLevel);
}

void tst_ViewHosting::deletionOfNoViewDoesNothing()
{
    LogCapture log(osg::LOG_NOTICE);
    Manager::deleteRenderView(nullptr);
    QCOMPARE(log.take(), (QByteArrayList{"3 QorViewManager::deleteRenderView\n",
                                         "3 QorViewManager::deleteRenderView: leaving\n"}));
}

void tst_ViewHosting::aViewDeletedByItsHostLeavesNoTrace()
{
    Manager manager;
    TestWindow first(manager.context);
    first.announce();
    QCoreApplication::processEvents();
    delete manager.viewOf(first);
    QCOMPARE(manager.grid()->count(), 0);
    QVERIFY(!first.proc.winPtr());

    TestWindow second(manager.context);
    second.announce();
    QCoreApplication::processEvents();
    QCOMPARE(manager.cell(manager.viewOf(second)), QPoint(0, 0));
    first.end();
    QCOMPARE(manager.cell(manager.viewOf(second)), QPoint(0, 0));
}

void tst_ViewHosting::windowsThatEndWithTheContextAreReleased()
{
    auto manager = std::make_unique<Manager>();
    TestWindow adopted(manager->context);
    adopted.announce();
    QCoreApplication::processEvents();
    TestWindow fresh(manager->context);
    fresh.announce();
    QPointer<QorRenderView> adoptedView = manager->viewOf(adopted);
    bool goneInTime = false;
    Tiny::switches().onEnd = [&](Orvane::Context*) {
        adopted.end();
        goneInTime = !adoptedView;
        fresh.end();
    };
    manager.reset();
    QVERIFY(goneInTime);
}

void tst_ViewHosting::viewsThatAreLeftDieWithTheManager()
{
    auto manager = std::make_unique<Manager>();
    TestWindow window(manager->context);
    window.announce();
    QCoreApplication::processEvents();
    QPointer<QorRenderView> view = manager->viewOf(window);
    manager.reset();
    QVERIFY(!view);
    QVERIFY(!window.proc.winPtr());
}

void tst_ViewHosting::managersOfTwoContextsKeepTheirViewsApart()
{
    Manager one;
    Manager two;
    TestWindow ofTwo(two.context);
    TestWindow ofOne(one.context);
    ofTwo.announce();
    ofOne.announce();
    QCoreApplication::processEvents();
    QVERIFY(one.viewOf(ofOne));
    QVERIFY(two.viewOf(ofTwo));
    QCOMPARE(one.findChildren<QorRenderView*>().size(), 1);
    QCOMPARE(two.findChildren<QorRenderView*>().size(), 1);
}

QTEST_MAIN(tst_ViewHosting)
#include "tst_ViewHosting.moc"
