#include "QorRenderView.h"
#include "QorWindowToolbar.h"
#include "TestWindow.h"
#include <QtCore/QRegularExpression>
#include <QtTest>
#include <QtWidgets/QButtonGroup>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QPushButton>

using namespace Orvane::Qt4;

namespace {

const int ButtonSize = 20;

class Toolbar : public QorWindowToolbar
{
public:
    using QorWindowToolbar::onBtnClicked;
    using QorWindowToolbar::QorWindowToolbar;

    QPushButton* button(const char* name) const
    {
        return findChild<QPushButton*>(QString::fromLatin1(name), Qt::FindDirectChildrenOnly);
    }
    /// The buttons in the order of the layout.
    QList<QPushButton*> row() const
    {
        QList<QPushButton*> buttons;
        for (int i = 0; i < layout()->count(); ++i)
            buttons.append(qobject_cast<QPushButton*>(layout()->itemAt(i)->widget()));
        return buttons;
    }
    QPushButton* toggle() const { return row().last(); }
    QButtonGroup* group() const { return findChild<QButtonGroup*>(); }
};

} // namespace

class tst_QorWindowToolbar : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void withoutMessagesThereIsOnlyTheToggleButton();
    void buttonsStandInTheRuntimesOrderOfMessages();
    void aMessageWithoutAnIconGetsNoButton();
    void buttonsBearNameTipSizeAndIcon();
    void theToggleButtonIsCheckedAndOutsideTheGroup();
    void everyMessageOfTheTableHasAnIcon_data();
    void everyMessageOfTheTableHasAnIcon();
    void aClickSendsTheMessageOfTheButtonsName();
    void aClickFromAnotherButtonIsIgnored();
    void theToggleButtonFoldsTheStripAtTheRightEdge();
    void buttonsVisibleAsksTheFirstButton();
    void aSecondToolbarHasTheSameButtons();
    void messagesThatComeLaterGetNoButton();
    void theStripIsNative();
    void theViewKeepsTheStripAtItsRightEdge();
    void theViewShowsAndHidesTheStrip();
    void aForgottenWindowGetsNoMessage();

private:
    Tiny::TinyWindowProc _proc{nullptr};
};

void tst_QorWindowToolbar::init()
{
    Tiny::reset();
    Tiny::switches().messages = {{"walkNav", "Walk"}, {"zoom", "Zoom"}, {"firstView", "First view"}};
    _proc.takeCalls();
}

void tst_QorWindowToolbar::withoutMessagesThereIsOnlyTheToggleButton()
{
    Tiny::switches().messages.clear();
    QWidget parent;
    Toolbar bar(&parent, &_proc);
    QCOMPARE(bar.row().size(), 1);
    QVERIFY(bar.group()->buttons().isEmpty());
    QVERIFY(!bar.buttonsVisible());
    QCOMPARE(bar.size(), QSize(ButtonSize, ButtonSize));
}

void tst_QorWindowToolbar::buttonsStandInTheRuntimesOrderOfMessages()
{
    Toolbar bar(nullptr, &_proc);
    QStringList names;
    for (QPushButton* button : bar.row())
        names.append(button->objectName());
    QCOMPARE(names, (QStringList{QStringLiteral("walkNav"), QStringLiteral("firstView"), QString()}));
    QCOMPARE(bar.size(), QSize(3 * ButtonSize, ButtonSize));
    QCOMPARE(bar.layout()->contentsMargins(), QMargins());
    QCOMPARE(bar.layout()->spacing(), 0);
    QVERIFY(qobject_cast<QHBoxLayout*>(bar.layout()));
}

void tst_QorWindowToolbar::aMessageWithoutAnIconGetsNoButton()
{
    Toolbar bar(nullptr, &_proc);
    QVERIFY(!bar.button("zoom"));
    QVERIFY(bar.button("walkNav"));
}

void tst_QorWindowToolbar::buttonsBearNameTipSizeAndIcon()
{
    Toolbar bar(nullptr, &_proc);
    QPushButton* button = bar.button("firstView");
    QCOMPARE(button->toolTip(), QStringLiteral("First view"));
    QCOMPARE(button->minimumSize(), QSize(ButtonSize, ButtonSize));
    QCOMPARE(button->maximumSize(), QSize(ButtonSize, ButtonSize));
    QCOMPARE(button->icon().availableSizes(), QList<QSize>{QSize(16, 16)});
    QVERIFY(!button->isCheckable());
    QCOMPARE(bar.group()->buttons().size(), 2);
}

void tst_QorWindowToolbar::theToggleButtonIsCheckedAndOutsideTheGroup()
{
    Toolbar bar(nullptr, &_proc);
    QVERIFY(bar.toggle()->isCheckable());
    QVERIFY(bar.toggle()->isChecked());
    QCOMPARE(bar.toggle()->toolTip(), QStringLiteral("Show/hide window toolbar."));
    QCOMPARE(bar.toggle()->size(), QSize(ButtonSize, ButtonSize));
    QVERIFY(!bar.group()->buttons().contains(bar.toggle()));

    // Four colours: transparent, black, grey, white.
    const QImage icon = bar.toggle()->icon().pixmap(16, 16).toImage().convertToFormat(QImage::Format_ARGB32);
    QCOMPARE(icon.size(), QSize(16, 16));
    QSet<QRgb> colours;
    for (int y = 0; y < icon.height(); ++y) {
        for (int x = 0; x < icon.width(); ++x)
            colours.insert(icon.pixel(x, y));
    }
    QCOMPARE(colours,
             (QSet<QRgb>{qRgba(0, 0, 0, 0), qRgb(0, 0, 0), qRgb(0xa0, 0xa0, 0xa0), qRgb(255, 255, 255)}));
}

void tst_QorWindowToolbar::everyMessageOfTheTableHasAnIcon_data()
{
    QTest::addColumn<int>("colours");
    QTest::addColumn<int>("charactersPerPixel");
    QTest::newRow("toggleHeadlight") << 53 << 1;
    QTest::newRow("toggleDrawVolume") << 4 << 1;
    QTest::newRow("nextInfoScreen") << 4 << 1;
    QTest::newRow("nextDrawMode") << 3 << 1;
    QTest::newRow("nextView") << 5 << 1;
    QTest::newRow("prevView") << 5 << 1;
    QTest::newRow("lastView") << 5 << 1;
    QTest::newRow("firstView") << 5 << 1;
    QTest::newRow("walkNav") << 5 << 1;
    QTest::newRow("flyNav") << 4 << 1;
    QTest::newRow("examineNav") << 4 << 1;
    QTest::newRow("showAll") << 92 << 2;
    QTest::newRow("resetViewPosition") << 4 << 1;
}

void tst_QorWindowToolbar::everyMessageOfTheTableHasAnIcon()
{
    QFETCH(int, colours);
    QFETCH(int, charactersPerPixel);
    const QString name = QString::fromLatin1(QTest::currentDataTag());
    Tiny::switches().messages = {{QTest::currentDataTag(), "tip"}};
    Toolbar bar(nullptr, &_proc);
    QCOMPARE(bar.row().size(), 2);

    const QImage icon =
        bar.row().first()->icon().pixmap(16, 16).toImage().convertToFormat(QImage::Format_ARGB32);
    QCOMPARE(icon.size(), QSize(16, 16));
    QSet<QRgb> seen;
    for (int y = 0; y < 16; ++y) {
        for (int x = 0; x < 16; ++x)
            seen.insert(icon.pixel(x, y));
    }
    QCOMPARE(seen.size(), colours);

    QFile file(QString::fromLocal8Bit(qgetenv("ORVANE_SOURCE_DIR")) + QStringLiteral("/view/qt4/icons/") +
               name + QStringLiteral(".xpm"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QString header = QStringLiteral("\"16 16 %1 %2\"").arg(colours).arg(charactersPerPixel);
    QVERIFY(QString::fromLatin1(file.readAll()).contains(header));
}

void tst_QorWindowToolbar::aClickSendsTheMessageOfTheButtonsName()
{
    Toolbar bar(nullptr, &_proc);
    QTest::mouseClick(bar.button("firstView"), Qt::LeftButton);
    QTest::mouseClick(bar.button("walkNav"), Qt::LeftButton);
    QCOMPARE(_proc.takeCalls(), (std::vector<std::string>{"message firstView", "message walkNav"}));
    bar.button("walkNav")->setObjectName(QStringLiteral("anything"));
    bar.row().first()->click();
    QCOMPARE(_proc.takeCalls(), (std::vector<std::string>{"message anything"}));
    bar.toggle()->click();
    QCOMPARE(_proc.takeCalls(), std::vector<std::string>());
}

void tst_QorWindowToolbar::aClickFromAnotherButtonIsIgnored()
{
    class OtherButton : public QAbstractButton
    {
        void paintEvent(QPaintEvent*) override {}
    };
    Toolbar bar(nullptr, &_proc);
    OtherButton other;
    other.setObjectName(QStringLiteral("walkNav"));
    bar.onBtnClicked(&other);
    bar.onBtnClicked(nullptr);
    QCOMPARE(_proc.takeCalls(), std::vector<std::string>());
}

void tst_QorWindowToolbar::theToggleButtonFoldsTheStripAtTheRightEdge()
{
    QWidget parent;
    parent.resize(300, 200);
    Toolbar bar(&parent, &_proc);
    bar.move(200, 7);
    parent.show();
    QVERIFY(bar.buttonsVisible());

    bar.toggle()->click();
    QVERIFY(!bar.buttonsVisible());
    QVERIFY(!bar.button("walkNav")->isVisible());
    QVERIFY(!bar.button("firstView")->isVisible());
    QVERIFY(bar.toggle()->isVisible());
    QCOMPARE(bar.geometry(), QRect(280, 7, ButtonSize, ButtonSize));

    bar.toggle()->click();
    QVERIFY(bar.buttonsVisible());
    QCOMPARE(bar.geometry(), QRect(240, 7, 3 * ButtonSize, ButtonSize));

    QVERIFY(QMetaObject::invokeMethod(&bar, "setButtonsVisible", Q_ARG(bool, false)));
    QCOMPARE(bar.width(), ButtonSize);
}

void tst_QorWindowToolbar::buttonsVisibleAsksTheFirstButton()
{
    QWidget parent;
    Toolbar bar(&parent, &_proc);
    QVERIFY(!bar.buttonsVisible());
    parent.show();
    QVERIFY(bar.buttonsVisible());
    bar.button("firstView")->hide();
    QVERIFY(bar.buttonsVisible());
    bar.button("walkNav")->hide();
    QVERIFY(!bar.buttonsVisible());
}

void tst_QorWindowToolbar::aSecondToolbarHasTheSameButtons()
{
    Toolbar first(nullptr, &_proc);
    Toolbar second(nullptr, &_proc);
    QCOMPARE(second.row().size(), first.row().size());
    QCOMPARE(second.row().first()->icon().pixmap(16).toImage(),
             first.row().first()->icon().pixmap(16).toImage());
}

void tst_QorWindowToolbar::messagesThatComeLaterGetNoButton()
{
    Toolbar bar(nullptr, &_proc);
    Tiny::switches().messages.push_back({"flyNav", "Fly"});
    bar.setButtonsVisible(true);
    QVERIFY(!bar.button("flyNav"));
}

void tst_QorWindowToolbar::theStripIsNative()
{
    QWidget parent;
    const Toolbar bar(&parent, &_proc);
    QVERIFY(bar.testAttribute(Qt::WA_NativeWindow));
}

void tst_QorWindowToolbar::theViewKeepsTheStripAtItsRightEdge()
{
    QWidget host;
    auto* view = new QorRenderView(&_proc, &host);
    auto* bar = view->findChild<QorWindowToolbar*>();
    QVERIFY(bar);
    QCOMPARE(bar->parentWidget(), view);
    QCOMPARE(view->layout()->indexOf(bar), -1);
    view->resize(300, 200);
    host.show();
    QCOMPARE(bar->geometry(), QRect(240, 0, 60, 20));
    bar->move(0, 11);
    view->resize(500, 100);
    QCOMPARE(bar->pos(), QPoint(440, 11));
}

void tst_QorWindowToolbar::theViewShowsAndHidesTheStrip()
{
    QWidget host;
    auto* view = new QorRenderView(&_proc, &host);
    auto* bar = view->findChild<QorWindowToolbar*>();
    host.show();
    QVERIFY(bar->isVisible());
    view->setToolbar(false);
    QVERIFY(!bar->isVisible());
    view->setToolbar(true);
    QVERIFY(bar->isVisible());
}

void tst_QorWindowToolbar::aForgottenWindowGetsNoMessage()
{
    Toolbar bar(nullptr, &_proc);
    bar.forgetWindowProc();
    bar.button("walkNav")->click();
    QCOMPARE(_proc.takeCalls(), std::vector<std::string>());
}

QTEST_MAIN(tst_QorWindowToolbar)
#include "tst_QorWindowToolbar.moc"
