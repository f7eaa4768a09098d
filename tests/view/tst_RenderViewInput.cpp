#include "LogCapture.h"
#include "OSCQGLWidget.h"
#include "TestWindow.h"
#include <QtGui/QTouchEvent>
#include <QtTest>
#include <memory>

using namespace Orvane::Qt4;

namespace {

using Calls = std::vector<std::string>;

/// A view over a window in a context whose clock the test sets.
struct Fixture
{
    Fixture()
        : context(Orvane::Context::create())
        , window(std::make_unique<TestWindow>(context))
        , view(std::make_unique<QorRenderView>(&window->proc, nullptr))
        , gl(view->findChild<OSCQGLWidget*>())
    {
        window->proc.takeCalls();
    }
    ~Fixture()
    {
        view.reset();
        window.reset();
        context->subRef();
    }

    Calls calls() { return window->proc.takeCalls(); }

    /// Sends an event to the view itself and tells whether it was accepted.
    template <class Event>
    bool send(Event event)
    {
        event.accept();
        QCoreApplication::sendEvent(view.get(), &event);
        return event.isAccepted();
    }
    bool press(Qt::MouseButton button, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        return send(QMouseEvent(QEvent::MouseButtonPress, QPointF(12, 34), button, button, modifiers));
    }
    bool release(Qt::MouseButton button, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        return send(
            QMouseEvent(QEvent::MouseButtonRelease, QPointF(13, 35), button, Qt::NoButton, modifiers));
    }
    bool move()
    {
        return send(
            QMouseEvent(QEvent::MouseMove, QPointF(14, 36), Qt::NoButton, Qt::NoButton, Qt::NoModifier));
    }
    bool wheel(QPoint angle)
    {
        return send(QWheelEvent(QPointF(15.6, 37.4), QPointF(), QPoint(), angle, Qt::NoButton, Qt::NoModifier,
                                Qt::NoScrollPhase, false));
    }
    bool key(QEvent::Type type, int key, const QString& text = QString(), bool repeat = false)
    {
        return send(QKeyEvent(type, key, Qt::NoModifier, text, repeat));
    }

    Orvane::Context* context;
    std::unique_ptr<TestWindow> window;
    std::unique_ptr<QorRenderView> view;
    OSCQGLWidget* gl;
};

QTouchEvent::TouchPoint touchPoint(int id, QPointF place, double pressure = 0.5)
{
    QTouchEvent::TouchPoint point(id);
    point.setPos(place);
    point.setPressure(pressure);
    return point;
}

bool touch(OSCQGLWidget* gl, QEvent::Type type, const QList<QTouchEvent::TouchPoint>& points)
{
    QTouchEvent event(type, nullptr, Qt::NoModifier, Qt::TouchPointStates(), points);
    event.ignore();
    const bool handled = QCoreApplication::sendEvent(gl, &event);
    return handled && event.isAccepted();
}

} // namespace

class tst_RenderViewInput : public QObject
{
    Q_OBJECT

private slots:
    void init() { Tiny::reset(); }

    void buttonsGoOutInNavigationMode_data();
    void buttonsGoOutInNavigationMode();
    void buttonsStayInTheViewInPickMode();
    void strayButtonsAreLoggedAndIgnored();
    void controlWithLeftBrowsesInAnyMode();
    void controlOnReleaseIsAnOrdinaryRelease();
    void movesGoOutInNavigationMode();
    void movesStopWhenTheWindowHasAnotherView();
    void wheelStepsPressAButton_data();
    void wheelStepsPressAButton();
    void wheelIgnoresTheMouseMode();
    void mappedKeysBearTheRuntimesCodes_data();
    void mappedKeysBearTheRuntimesCodes();
    void arrowsGoOutWithoutSpecialKeys();
    void otherMappedKeysStayWithoutSpecialKeys();
    void textKeysSendTheirFirstByteAndAreIgnored_data();
    void textKeysSendTheirFirstByteAndAreIgnored();
    void aKeyWithoutTextForwardsNothing();
    void repeatedKeysGoOut();
    void touchPointsAreHandedOver();
    void primaryPointsComeFirst();
    void touchPositionsAreRounded();
    void oneTouchUpdatePerFrame();
    void beginAndEndAreAlwaysPassedOn();
    void ordinaryEventsAreSwallowedDuringATouch();
    void mouseEventsOfTheViewAreIgnoredDuringATouch();
    void aCancelledTouchEnds();
    void aTouchBeginWithoutPointsHasNoPrimary();
    void inputThroughTheGlWidgetReachesTheView();
};

void tst_RenderViewInput::buttonsGoOutInNavigationMode_data()
{
    QTest::addColumn<int>("button");
    QTest::addColumn<QByteArray>("number");
    QTest::newRow("left") << int(Qt::LeftButton) << QByteArray("1");
    QTest::newRow("right") << int(Qt::RightButton) << QByteArray("2");
    QTest::newRow("middle") << int(Qt::MiddleButton) << QByteArray("4");
}

void tst_RenderViewInput::buttonsGoOutInNavigationMode()
{
    QFETCH(int, button);
    QFETCH(QByteArray, number);
    Fixture f;
    QVERIFY(f.press(static_cast<Qt::MouseButton>(button)));
    QVERIFY(f.release(static_cast<Qt::MouseButton>(button)));
    QCOMPARE(f.calls(), (Calls{"buttonPress " + number.toStdString() + " 12 34",
                               "buttonRelease " + number.toStdString() + " 13 35"}));
}

void tst_RenderViewInput::buttonsStayInTheViewInPickMode()
{
    Fixture f;
    for (const int mode : {1, 2}) {
        f.view->setMouseMode(static_cast<QorRenderView::MouseMode>(mode));
        for (const Qt::MouseButton button : {Qt::LeftButton, Qt::RightButton, Qt::MiddleButton}) {
            QVERIFY(f.press(button));
            QVERIFY(f.release(button));
        }
        QVERIFY(f.move());
        QCOMPARE(f.calls(), Calls());
    }
}

void tst_RenderViewInput::strayButtonsAreLoggedAndIgnored()
{
    Fixture f;
    LogCapture log(osg::LOG_WARNING);
    QVERIFY(!f.press(Qt::XButton1));
    QVERIFY(!f.release(Qt::XButton2));
    QCOMPARE(log.take(), (QByteArrayList{"2 Invalid mouse button PressEvent: 8\n",
                                         "2 Invalid mouse button ReleaseEvent: 16\n"}));
    // With the control key too, and in the other mode.
    f.view->setMouseMode(QorRenderView::PickMode);
    QVERIFY(!f.press(Qt::XButton1, Qt::ControlModifier));
    QCOMPARE(log.take(), QByteArrayList{"2 Invalid mouse button PressEvent: 8\n"});
    QCOMPARE(f.calls(), Calls());
}

void tst_RenderViewInput::controlWithLeftBrowsesInAnyMode()
{
    Fixture f;
    for (const int mode : {0, 1}) {
        f.view->setMouseMode(static_cast<QorRenderView::MouseMode>(mode));
        QVERIFY(f.press(Qt::LeftButton, Qt::ControlModifier | Qt::ShiftModifier));
        QCOMPARE(f.calls(), (Calls{"browsePickedNode 12 34"}));
    }
    f.view->setMouseMode(QorRenderView::NavigationMode);
    QVERIFY(f.press(Qt::RightButton, Qt::ControlModifier));
    QCOMPARE(f.calls(), (Calls{"buttonPress 2 12 34"}));
}

void tst_RenderViewInput::controlOnReleaseIsAnOrdinaryRelease()
{
    Fixture f;
    QVERIFY(f.release(Qt::LeftButton, Qt::ControlModifier));
    QCOMPARE(f.calls(), (Calls{"buttonRelease 1 13 35"}));
}

void tst_RenderViewInput::movesGoOutInNavigationMode()
{
    Fixture f;
    QVERIFY(f.move());
    QCOMPARE(f.calls(), (Calls{"mouseMove 14 36"}));
}

void tst_RenderViewInput::movesStopWhenTheWindowHasAnotherView()
{
    Fixture f;
    {
        const QorRenderView other(&f.window->proc, nullptr);
        f.calls();
        QVERIFY(f.move());
        QCOMPARE(f.calls(), Calls());
        QVERIFY(f.press(Qt::LeftButton));
        QCOMPARE(f.calls(), (Calls{"buttonPress 1 12 34"}));
    }
}

void tst_RenderViewInput::wheelStepsPressAButton_data()
{
    QTest::addColumn<QPoint>("angle");
    QTest::addColumn<QByteArray>("button");
    QTest::newRow("119") << QPoint(0, 119) << QByteArray();
    QTest::newRow("120") << QPoint(0, 120) << QByteArray("8");
    QTest::newRow("-119") << QPoint(0, -119) << QByteArray();
    QTest::newRow("-120") << QPoint(0, -120) << QByteArray("16");
    QTest::newRow("240") << QPoint(0, 240) << QByteArray("8");
    QTest::newRow("zero") << QPoint(0, 0) << QByteArray();
    QTest::newRow("horizontal") << QPoint(120, 0) << QByteArray("8");
    QTest::newRow("horizontal back") << QPoint(-120, 20) << QByteArray("16");
    QTest::newRow("larger vertical") << QPoint(120, -240) << QByteArray("16");
}

void tst_RenderViewInput::wheelStepsPressAButton()
{
    QFETCH(QPoint, angle);
    QFETCH(QByteArray, button);
    Fixture f;
    QCOMPARE(f.wheel(angle), !button.isEmpty());
    QCOMPARE(f.calls(), button.isEmpty() ? Calls() : Calls{"buttonPress " + button.toStdString() + " 16 37"});
}

void tst_RenderViewInput::wheelIgnoresTheMouseMode()
{
    Fixture f;
    f.view->setMouseMode(QorRenderView::PickMode);
    QVERIFY(f.wheel(QPoint(0, -120)));
    QCOMPARE(f.calls(), (Calls{"buttonPress 16 16 37"}));
}

void tst_RenderViewInput::mappedKeysBearTheRuntimesCodes_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("code");
    const QVector<Qt::Key> keys = {
        Qt::Key_F1,   Qt::Key_F2,       Qt::Key_F3,     Qt::Key_F4,       Qt::Key_F5,     Qt::Key_F6,
        Qt::Key_F7,   Qt::Key_F8,       Qt::Key_F9,     Qt::Key_F10,      Qt::Key_F11,    Qt::Key_F12,
        Qt::Key_Home, Qt::Key_End,      Qt::Key_PageUp, Qt::Key_PageDown, Qt::Key_Up,     Qt::Key_Down,
        Qt::Key_Left, Qt::Key_Right,    Qt::Key_Insert, Qt::Key_Delete,   Qt::Key_Escape, Qt::Key_Enter,
        Qt::Key_Tab,  Qt::Key_Backspace};
    for (int i = 0; i < keys.size(); ++i)
        QTest::newRow(qPrintable(QKeySequence(keys[i]).toString())) << int(keys[i]) << 257 + i;
    QTest::newRow("Space") << int(Qt::Key_Space) << 288;
}

void tst_RenderViewInput::mappedKeysBearTheRuntimesCodes()
{
    QFETCH(int, key);
    QFETCH(int, code);
    Fixture f;
    // Straight to the handler: the tab key would change the focus before.
    class Open : public QorRenderView
    {
    public:
        using QorRenderView::keyPressEvent;
        using QorRenderView::keyReleaseEvent;
    };
    QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, QStringLiteral("x"));
    (f.view.get()->*(&Open::keyPressEvent))(&press);
    QKeyEvent release(QEvent::KeyRelease, key, Qt::NoModifier, QStringLiteral("x"));
    (f.view.get()->*(&Open::keyReleaseEvent))(&release);
    QVERIFY(press.isAccepted());
    QVERIFY(release.isAccepted());
    QCOMPARE(f.calls(), (Calls{"keyPress " + std::to_string(code), "keyRelease " + std::to_string(code)}));
}

void tst_RenderViewInput::arrowsGoOutWithoutSpecialKeys()
{
    Fixture f;
    f.view->enableSpecialKeys(false);
    LogCapture log;
    QVERIFY(f.key(QEvent::KeyPress, Qt::Key_Left));
    QVERIFY(f.key(QEvent::KeyPress, Qt::Key_Right));
    QVERIFY(f.key(QEvent::KeyPress, Qt::Key_Up));
    QVERIFY(f.key(QEvent::KeyRelease, Qt::Key_Down));
    QCOMPARE(f.calls(), (Calls{"keyPress 275", "keyPress 276", "keyPress 273", "keyRelease 274"}));
    QCOMPARE(log.take(), QByteArrayList());
}

void tst_RenderViewInput::otherMappedKeysStayWithoutSpecialKeys()
{
    Fixture f;
    f.view->enableSpecialKeys(false);
    LogCapture log;
    QVERIFY(f.key(QEvent::KeyPress, Qt::Key_F1));
    QVERIFY(f.key(QEvent::KeyRelease, Qt::Key_F1));
    QVERIFY(f.key(QEvent::KeyPress, Qt::Key_PageDown));
    QVERIFY(f.key(QEvent::KeyPress, Qt::Key_Insert));
    QVERIFY(f.key(QEvent::KeyPress, Qt::Key_Space, QStringLiteral(" ")));
    QCOMPARE(f.calls(), Calls());
    const QByteArray press = "3 QorRenderView::keyPressEvent() ignored for special keys\n";
    QCOMPARE(log.take(), (QByteArrayList{press, "3 QorRenderView::keyRelease() ignored for special keys\n",
                                         press, press, press}));
    f.view->enableSpecialKeys(true);
    QVERIFY(f.key(QEvent::KeyPress, Qt::Key_F1));
    QCOMPARE(f.calls(), (Calls{"keyPress 257"}));
}

void tst_RenderViewInput::textKeysSendTheirFirstByteAndAreIgnored_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("code");
    QTest::newRow("a") << int(Qt::Key_A) << QStringLiteral("a") << 97;
    QTest::newRow("A") << int(Qt::Key_A) << QStringLiteral("A") << 65;
    QTest::newRow("return") << int(Qt::Key_Return) << QStringLiteral("\r") << 13;
    QTest::newRow("several") << int(Qt::Key_A) << QStringLiteral("zoo") << 122;
    QTest::newRow("umlaut is negative") << int(Qt::Key_Adiaeresis) << QStringLiteral("ä") << -28;
    QTest::newRow("outside Latin-1") << int(Qt::Key_unknown) << QStringLiteral("€") << 63;
}

void tst_RenderViewInput::textKeysSendTheirFirstByteAndAreIgnored()
{
    QFETCH(int, key);
    QFETCH(QString, text);
    QFETCH(int, code);
    Fixture f;
    // The mode of special keys does not matter here.
    f.view->enableSpecialKeys(false);
    QVERIFY(!f.key(QEvent::KeyPress, key, text));
    QVERIFY(!f.key(QEvent::KeyRelease, key, text));
    QCOMPARE(f.calls(), (Calls{"keyPress " + std::to_string(code), "keyRelease " + std::to_string(code)}));
}

void tst_RenderViewInput::aKeyWithoutTextForwardsNothing()
{
    Fixture f;
    LogCapture log;
    QVERIFY(!f.key(QEvent::KeyPress, Qt::Key_Shift));
    QVERIFY(!f.key(QEvent::KeyRelease, Qt::Key_Shift));
    QVERIFY(!f.key(QEvent::KeyPress, Qt::Key_At, QString(QChar(0))));
    QCOMPARE(f.calls(), Calls());
    QCOMPARE(log.take(), QByteArrayList());
}

void tst_RenderViewInput::repeatedKeysGoOut()
{
    Fixture f;
    f.key(QEvent::KeyPress, Qt::Key_A, QStringLiteral("a"), true);
    f.key(QEvent::KeyPress, Qt::Key_Up, QString(), true);
    QCOMPARE(f.calls(), (Calls{"keyPress 97", "keyPress 273"}));
}

void tst_RenderViewInput::touchPointsAreHandedOver()
{
    Fixture f;
    QVERIFY(touch(f.gl, QEvent::TouchBegin, {touchPoint(7, QPointF(10, 20), 0.25)}));
    QVERIFY(f.gl->isTouchActive());
    Tiny::setTime(f.context, 1.0);
    QVERIFY(touch(f.gl, QEvent::TouchUpdate, {touchPoint(7, QPointF(11, 21), 0.5)}));
    QVERIFY(f.gl->isTouchActive());
    QVERIFY(touch(f.gl, QEvent::TouchEnd, {touchPoint(7, QPointF(12, 22), 0.0)}));
    QVERIFY(!f.gl->isTouchActive());

    const auto& touches = f.window->proc.touches;
    QCOMPARE(touches.size(), std::size_t(3));
    const int states[] = {0, 2, 1};
    for (std::size_t i = 0; i < 3; ++i) {
        QCOMPARE(touches[i].size(), std::size_t(1));
        const Orvane::TouchPointRecord& record = touches[i].front();
        QCOMPARE(record.id, 7);
        QCOMPARE(record.state, states[i]);
        QVERIFY(record.primary);
        QCOMPARE(record.x, 10.0F + static_cast<float>(i));
        QCOMPARE(record.y, 20.0F + static_cast<float>(i));
    }
    QCOMPARE(touches[0].front().pressure, 0.25F);
    QCOMPARE(touches[1].front().pressure, 0.5F);
    QCOMPARE(touches[2].front().pressure, 0.0F);
}

void tst_RenderViewInput::primaryPointsComeFirst()
{
    Fixture f;
    touch(f.gl, QEvent::TouchBegin, {touchPoint(5, QPointF())});
    Tiny::setTime(f.context, 1.0);
    touch(f.gl, QEvent::TouchUpdate,
          {touchPoint(9, QPointF()), touchPoint(3, QPointF()), touchPoint(5, QPointF()),
           touchPoint(1, QPointF())});
    const auto& points = f.window->proc.touches.back();
    QVector<int> ids;
    QVector<bool> primary;
    for (const Orvane::TouchPointRecord& point : points) {
        ids.append(point.id);
        primary.append(point.primary);
    }
    QCOMPARE(ids, (QVector<int>{5, 9, 3, 1}));
    QCOMPARE(primary, (QVector<bool>{true, false, false, false}));
    touch(f.gl, QEvent::TouchEnd, {touchPoint(5, QPointF())});
}

void tst_RenderViewInput::touchPositionsAreRounded()
{
    Fixture f;
    touch(f.gl, QEvent::TouchBegin,
          {touchPoint(1, QPointF(10.5, 10.49)), touchPoint(2, QPointF(-0.5, -0.51))});
    const auto& points = f.window->proc.touches.back();
    QCOMPARE(points[0].x, 11.0F);
    QCOMPARE(points[0].y, 10.0F);
    QCOMPARE(points[1].x, 0.0F);
    QCOMPARE(points[1].y, -1.0F);
    touch(f.gl, QEvent::TouchEnd, {touchPoint(1, QPointF())});
}

void tst_RenderViewInput::oneTouchUpdatePerFrame()
{
    Fixture f;
    Tiny::setTime(f.context, 1.0);
    touch(f.gl, QEvent::TouchBegin, {touchPoint(1, QPointF())});
    const auto update = [&] { return touch(f.gl, QEvent::TouchUpdate, {touchPoint(1, QPointF())}); };
    f.calls();
    // The begin of this very frame counts.
    update();
    QCOMPARE(f.calls(), Calls());
    QTouchEvent dropped(QEvent::TouchUpdate);
    QVERIFY(QCoreApplication::sendEvent(f.gl, &dropped));
    Tiny::setTime(f.context, 2.0);
    QVERIFY(update());
    update();
    QCOMPARE(f.calls(), (Calls{"touchEvent 1"}));
    Tiny::setTime(f.context, 3.0);
    update();
    QCOMPARE(f.calls(), (Calls{"touchEvent 1"}));
    touch(f.gl, QEvent::TouchEnd, {touchPoint(1, QPointF())});
}

void tst_RenderViewInput::beginAndEndAreAlwaysPassedOn()
{
    Fixture f;
    touch(f.gl, QEvent::TouchBegin, {touchPoint(1, QPointF())});
    touch(f.gl, QEvent::TouchEnd, {touchPoint(1, QPointF())});
    touch(f.gl, QEvent::TouchBegin, {touchPoint(1, QPointF())});
    touch(f.gl, QEvent::TouchEnd, {touchPoint(1, QPointF())});
    QCOMPARE(f.calls().size(), std::size_t(4));
}

void tst_RenderViewInput::ordinaryEventsAreSwallowedDuringATouch()
{
    Fixture f;
    Tiny::setTime(f.context, 1.0);
    const auto pressed = [&] {
        QMouseEvent event(QEvent::MouseButtonPress, QPointF(1, 1), Qt::LeftButton, Qt::LeftButton,
                          Qt::NoModifier);
        QCoreApplication::sendEvent(f.gl, &event);
        return !f.calls().empty();
    };
    QVERIFY(pressed());
    touch(f.gl, QEvent::TouchBegin, {touchPoint(1, QPointF())});
    f.calls();
    QVERIFY(!pressed());
    Tiny::setTime(f.context, 2.0);
    QVERIFY(!pressed());
    touch(f.gl, QEvent::TouchEnd, {touchPoint(1, QPointF())});
    f.calls();
    // Until the frame has moved on.
    QVERIFY(!pressed());
    Tiny::setTime(f.context, 2.5);
    QVERIFY(pressed());
}

void tst_RenderViewInput::mouseEventsOfTheViewAreIgnoredDuringATouch()
{
    Fixture f;
    touch(f.gl, QEvent::TouchBegin, {touchPoint(1, QPointF())});
    f.calls();
    LogCapture log;
    QVERIFY(!f.press(Qt::LeftButton));
    QVERIFY(!f.press(Qt::LeftButton, Qt::ControlModifier));
    QVERIFY(!f.press(Qt::XButton1));
    QVERIFY(!f.release(Qt::LeftButton));
    QVERIFY(!f.move());
    QCOMPARE(f.calls(), Calls());
    QCOMPARE(log.take(), QByteArrayList());
    // The wheel is not asked.
    QVERIFY(f.wheel(QPoint(0, 120)));
    QCOMPARE(f.calls(), (Calls{"buttonPress 8 16 37"}));
    touch(f.gl, QEvent::TouchEnd, {touchPoint(1, QPointF())});
    f.calls();
    QVERIFY(f.press(Qt::LeftButton));
    QCOMPARE(f.calls(), (Calls{"buttonPress 1 12 34"}));
}

void tst_RenderViewInput::aCancelledTouchEnds()
{
    Fixture f;
    touch(f.gl, QEvent::TouchBegin, {touchPoint(1, QPointF())});
    QVERIFY(touch(f.gl, QEvent::TouchCancel, {touchPoint(1, QPointF())}));
    QVERIFY(!f.gl->isTouchActive());
    QCOMPARE(f.window->proc.touches.back().front().state, 1);
    touch(f.gl, QEvent::TouchBegin, {touchPoint(1, QPointF())});
    QVERIFY(touch(f.gl, QEvent::TouchCancel, {}));
    QVERIFY(!f.gl->isTouchActive());
    QVERIFY(f.window->proc.touches.back().empty());
}

void tst_RenderViewInput::aTouchBeginWithoutPointsHasNoPrimary()
{
    Fixture f;
    QVERIFY(touch(f.gl, QEvent::TouchBegin, {}));
    Tiny::setTime(f.context, 1.0);
    touch(f.gl, QEvent::TouchUpdate, {touchPoint(0, QPointF())});
    QVERIFY(!f.window->proc.touches.back().front().primary);
    touch(f.gl, QEvent::TouchEnd, {});
}

void tst_RenderViewInput::inputThroughTheGlWidgetReachesTheView()
{
    Fixture f;
    f.view->resize(200, 100);
    f.view->show();
    Tiny::setTime(f.context, 1.0);
    f.calls();
    QTest::mousePress(f.gl, Qt::LeftButton, Qt::NoModifier, QPoint(30, 40));
    QTest::mouseMove(f.gl, QPoint(31, 41));
    QTest::mouseRelease(f.gl, Qt::LeftButton, Qt::NoModifier, QPoint(31, 41));
    Calls calls = f.calls();
    QCOMPARE(calls.front(), std::string("buttonPress 1 30 40"));
    QCOMPARE(calls.back(), std::string("buttonRelease 1 31 41"));
}

QTEST_MAIN(tst_RenderViewInput)
#include "tst_RenderViewInput.moc"
