// How the workbench looks and is reached: keys for every command, colours that can be read on light and dark
// grounds, sizes that follow the font.
#include "CodeDock.h"
#include "GraphDock.h"
#include "Icons.h"
#include "LogDock.h"
#include "NodeDock.h"
#include "RouteCanvas.h"
#include "WorkbenchWindow.h"
#include <OpenSG/OSGLog.h>
#include <Orvane/Node.h>
#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QDockWidget>
#include <QHash>
#include <QMenu>
#include <QMenuBar>
#include <QPainter>
#include <QTemporaryDir>
#include <QTextBlock>
#include <QTextEdit>
#include <QToolBar>
#include <QTreeWidget>
#include <QorCodeWidget.h>
#include <QorGraphNodeView.h>
#include <QorNodeEditorTreeView.h>
#include <QorWindowToolbar.h>
#include <QtTest>
#include <algorithm>
#include <cmath>
#include <functional>

class tst_WorkbenchLooks : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void everyCommandHasAKeyOrALetterOfItsOwn();
    void noTwoCommandsHaveTheSameKeys();
    void theListOfKeysShowsEveryCommand();
    void theDocumentHasEveryCommand();
    void everyButtonOfTheToolBarIsInTheMenus();
    void aKeyLeadsToThePanelBehindAnother();
    void aKeyGoesToAPanelBeforeItPutsItAway_data();
    void aKeyGoesToAPanelBeforeItPutsItAway();
    void theTickPutsAPanelAway();
    void theKeyOfTheViewLeadsToIt();
    void theMenuOfTitleBarsHasTheOrderOfTheView();
    void commandsThatCannotWorkAreGrey();
    void namesOfRouteBoxesHaveRoom();
    void codeCanBeRead_data();
    void codeCanBeRead();
    void logCanBeRead_data();
    void logCanBeRead();
    void rowsThatWaitCanBeRead_data();
    void rowsThatWaitCanBeRead();
    void iconsAreDrawnInTheColourOfTheWriting();
    void panelsAreAsWideAsTheirFontAsks();

private:
    void open();
    QTextEdit* code() const
    {
        return _window->findChild<CodeDock*>()->codeWidget()->findChild<QTextEdit*>(QStringLiteral("code"));
    }

    std::unique_ptr<WorkbenchWindow> _window;
    QTemporaryDir _folder;
};

static QString plain(const QAction* action)
{
    QString text = action->text();
    return text.remove(QLatin1Char('&'));
}

/// Calls \a then for each command of the menus, with the menu that it stands in.
static void forEachCommand(const QMenu* menu, const std::function<void(const QMenu*, QAction*)>& then)
{
    const auto actions = menu->actions();
    for (QAction* action : actions) {
        if (action->isSeparator())
            continue;
        then(menu, action);
        if (action->menu() && !action->menu()->property("isListOfFiles").toBool())
            forEachCommand(action->menu(), then);
    }
}

static void forEachCommand(const QMenuBar* bar, const std::function<void(const QMenu*, QAction*)>& then)
{
    const auto actions = bar->actions();
    for (const QAction* action : actions)
        forEachCommand(action->menu(), then);
}

/// How well two colours can be told apart, from 1 to 21.
static double contrast(const QColor& a, const QColor& b)
{
    const auto luminance = [](const QColor& color) {
        const auto linear = [](double value) {
            return value <= 0.03928 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
        };
        return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
               0.0722 * linear(color.blueF());
    };
    const double first = luminance(a) + 0.05;
    const double second = luminance(b) + 0.05;
    return std::max(first, second) / std::min(first, second);
}

/// The colours of the writing of a text, as they are painted.
static QList<QColor> colorsOf(const QTextEdit* edit)
{
    QList<QColor> colors;
    for (QTextBlock block = edit->document()->begin(); block.isValid(); block = block.next()) {
        int covered = 0;
        const auto formats = block.layout()->formats();
        for (const QTextLayout::FormatRange& range : formats) {
            colors << range.format.foreground().color();
            covered += range.length;
        }
        if (covered < block.length() - 1) {
            const QBrush own = block.begin().fragment().charFormat().foreground();
            colors << (own.style() == Qt::NoBrush ? edit->palette().color(QPalette::Text) : own.color());
        }
    }
    return colors;
}

void tst_WorkbenchLooks::initTestCase()
{
    QFile file(_folder.filePath(QStringLiteral("scene.x3d")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(
        "<X3D version='4.0'><Scene><Script DEF='S'><field name='n' type='SFFloat' accessType='inputOutput' "
        "value='1'/><![CDATA[ecmascript:\n// Words about it.\nfunction initialize() {\n"
        "    if (n > 0)\n        print(Browser.getName());\n}\n/* more */\n]]></Script>"
        "<Shape><IndexedLineSet DEF='L' coordIndex='" +
        QByteArray("0 1 -1 ").repeated(20) + "'/></Shape></Scene></X3D>");
}

void tst_WorkbenchLooks::init()
{
    _window = std::make_unique<WorkbenchWindow>(false);
    _window->resize(1100, 760);
    _window->show();
    QVERIFY(QTest::qWaitForWindowActive(_window.get()));
}

void tst_WorkbenchLooks::cleanup()
{
    _window->setDark(false);
    _window.reset();
}

void tst_WorkbenchLooks::open()
{
    QVERIFY(_window->open(_folder.filePath(QStringLiteral("scene.x3d"))));
    QVERIFY(_window->showNode(QStringLiteral("S")));
}

void tst_WorkbenchLooks::everyCommandHasAKeyOrALetterOfItsOwn()
{
    QHash<const QMenu*, QStringList> letters;
    forEachCommand(_window->menuBar(), [&](const QMenu* menu, QAction* action) {
        static const QRegularExpression mark(QStringLiteral("&(\\w)"));
        const QString letter = mark.match(action->text()).captured(1).toLower();
        QVERIFY2(!letter.isEmpty() || !action->shortcut().isEmpty(), qPrintable(action->text()));
        QVERIFY2(letter.isEmpty() || !letters[menu].contains(letter), qPrintable(action->text()));
        letters[menu] << letter;
    });
    QVERIFY(letters.size() >= 5);
}

void tst_WorkbenchLooks::noTwoCommandsHaveTheSameKeys()
{
    QStringList keys;
    forEachCommand(_window->menuBar(), [&](const QMenu*, QAction* action) {
        const QString own = action->shortcut().toString();
        QVERIFY2(own.isEmpty() || !keys.contains(own), qPrintable(action->text()));
        keys << own;
    });
    QVERIFY(keys.contains(QStringLiteral("Ctrl+O")));
}

void tst_WorkbenchLooks::theListOfKeysShowsEveryCommand()
{
    QStringList wanted;
    forEachCommand(_window->menuBar(), [&](const QMenu*, QAction* action) {
        wanted << plain(action) + QLatin1Char('|') + action->shortcut().toString(QKeySequence::NativeText);
    });
    QStringList shown;
    QTimer::singleShot(100, this, [&] {
        auto* const dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        QVERIFY(dialog);
        auto* const list = dialog->findChild<QTreeWidget*>();
        for (QTreeWidgetItemIterator each(list); *each; ++each)
            shown << (*each)->text(0) + QLatin1Char('|') + (*each)->text(1);
        dialog->reject();
    });
    QTest::keyClick(_window.get(), Qt::Key_F1);
    for (const QString& each : qAsConst(wanted))
        QVERIFY2(shown.contains(each), qPrintable(each));
}

void tst_WorkbenchLooks::theDocumentHasEveryCommand()
{
    QFile document(qEnvironmentVariable("ORVANE_SOURCE_DIR") + QStringLiteral("/docs/workbench.md"));
    QVERIFY(document.open(QIODevice::ReadOnly));
    const QStringList lines = QString::fromUtf8(document.readAll()).split(QLatin1Char('\n'));
    forEachCommand(_window->menuBar(), [&](const QMenu* menu, QAction* action) {
        if (action->menu() && !action->menu()->property("isListOfFiles").toBool())
            return;
        const bool isBelow = menu->menuAction() && menu->title() == QLatin1String("Route bo&xes");
        const QString start = QStringLiteral("| %1%2 | %3")
                                  .arg(isBelow ? QStringLiteral("Route boxes: ") : QString(), plain(action),
                                       action->shortcut().toString());
        QVERIFY2(std::any_of(lines.begin(), lines.end(),
                             [&](const QString& line) { return line.startsWith(start); }),
                 qPrintable(start));
    });
}

void tst_WorkbenchLooks::everyButtonOfTheToolBarIsInTheMenus()
{
    QList<QAction*> inMenus;
    forEachCommand(_window->menuBar(), [&](const QMenu*, QAction* action) { inMenus << action; });
    const auto bars = _window->findChildren<QToolBar*>();
    QCOMPARE(bars.size(), 2);
    int buttons = 0;
    for (const QToolBar* bar : bars) {
        const auto actions = bar->actions();
        for (QAction* action : actions) {
            if (action->isSeparator())
                continue;
            QVERIFY2(inMenus.contains(action), qPrintable(action->text()));
            ++buttons;
        }
    }
    QVERIFY(buttons >= 10);
}

void tst_WorkbenchLooks::aKeyLeadsToThePanelBehindAnother()
{
    auto* const log = _window->findChild<LogDock*>();
    auto* const routes = _window->findChild<GraphDock*>();
    const auto isSeen = [](const QWidget* panel) { return !panel->visibleRegion().isEmpty(); };
    QTest::keyClick(_window.get(), Qt::Key_5, Qt::ControlModifier);
    QTRY_VERIFY(isSeen(routes) && !isSeen(log));
    QTest::keyClick(_window.get(), Qt::Key_4, Qt::ControlModifier);
    QTRY_VERIFY(isSeen(log) && !isSeen(routes));
    QVERIFY(log->isAncestorOf(QApplication::focusWidget()));
    QTest::keyClick(_window.get(), Qt::Key_4, Qt::ControlModifier);
    QTRY_VERIFY(log->isHidden());
    QTest::keyClick(_window.get(), Qt::Key_4, Qt::ControlModifier);
    QTRY_VERIFY(isSeen(log));
}

void tst_WorkbenchLooks::aKeyGoesToAPanelBeforeItPutsItAway_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<QString>("panel");
    QTest::addColumn<QByteArray>("part");
    const auto row = [](int key, const char* panel, const char* part) {
        QTest::newRow(panel) << key << QString::fromLatin1(panel) << QByteArray(part);
    };
    row(Qt::Key_1, "SceneDock", "SceneTreeView");
    row(Qt::Key_2, "NodeDock", "QTreeView");
    row(Qt::Key_3, "CodeDock", "QTextEdit");
    row(Qt::Key_4, "LogDock", "QTextEdit");
    row(Qt::Key_5, "GraphDock", "RouteCanvas");
    row(Qt::Key_6, "TableDock", "QDockWidget"); // it has no table yet
}

void tst_WorkbenchLooks::aKeyGoesToAPanelBeforeItPutsItAway()
{
    QFETCH(int, key);
    QFETCH(QString, panel);
    QFETCH(QByteArray, part);
    open();
    QApplication::setActiveWindow(_window.get());
    auto* const dock = _window->findChild<QDockWidget*>(panel);
    dock->show();
    dock->raise();
    QTRY_VERIFY(!dock->visibleRegion().isEmpty());
    const auto hasFocus = [dock] {
        const QWidget* const focus = QApplication::focusWidget();
        return dock == focus || dock->isAncestorOf(focus);
    };
    const auto press = [&](Qt::Key pressed) { QTest::keyClick(_window.get(), pressed, Qt::ControlModifier); };
    press(Qt::Key_0);
    QVERIFY(!hasFocus());
    press(static_cast<Qt::Key>(key));
    QVERIFY(!dock->isHidden());
    QTRY_VERIFY(hasFocus());
    QVERIFY2(QApplication::focusWidget()->inherits(part.constData()),
             QApplication::focusWidget()->metaObject()->className());
    press(static_cast<Qt::Key>(key));
    QVERIFY(dock->isHidden());
    press(static_cast<Qt::Key>(key));
    QVERIFY(!dock->isHidden());
    QTRY_VERIFY(hasFocus());
}

void tst_WorkbenchLooks::theTickPutsAPanelAway()
{
    auto* const dock = _window->findChild<QDockWidget*>(QStringLiteral("SceneDock"));
    QTest::keyClick(_window.get(), Qt::Key_0, Qt::ControlModifier);
    QVERIFY(!dock->isHidden());
    dock->toggleViewAction()->trigger();
    QVERIFY(dock->isHidden());
}

void tst_WorkbenchLooks::theKeyOfTheViewLeadsToIt()
{
    open();
    code()->setFocus();
    QTest::keyClick(code(), Qt::Key_0, Qt::ControlModifier);
    // A busy desktop takes its time to make the window active.
    QTRY_VERIFY(QApplication::focusWidget() &&
                _window->centralWidget()->isAncestorOf(QApplication::focusWidget()));
}

void tst_WorkbenchLooks::theMenuOfTitleBarsHasTheOrderOfTheView()
{
    QStringList panels;
    forEachCommand(_window->menuBar(), [&](const QMenu*, QAction* action) {
        for (const QDockWidget* const dock : _window->findChildren<QDockWidget*>()) {
            if (dock->toggleViewAction() == action)
                panels << plain(action);
        }
    });
    QCOMPARE(panels.size(), 6);
    const std::unique_ptr<QMenu> menu(_window->createPopupMenu());
    QStringList shown;
    const auto actions = menu->actions();
    for (const QAction* const action : actions) {
        if (!action->isSeparator())
            shown << plain(action);
    }
    QCOMPARE(shown, panels + QStringList{QStringLiteral("Tool bar")});
}

void tst_WorkbenchLooks::commandsThatCannotWorkAreGrey()
{
    const QAction* const apply = _window->findChild<CodeDock*>()->applyAction();
    QVERIFY(!apply->isEnabled());
    open();
    QVERIFY(apply->isEnabled());
}

void tst_WorkbenchLooks::namesOfRouteBoxesHaveRoom()
{
    QFile file(_folder.filePath(QStringLiteral("names.x3d")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(R"(<X3D version='4.0'><Scene><TimeSensor DEF='ClockOfALongNameThatIsRead'/>
<ScalarInterpolator DEF='RampOfALongNameThatIsRead'/><ROUTE fromNode='ClockOfALongNameThatIsRead'
fromField='fraction_changed' toNode='RampOfALongNameThatIsRead' toField='set_fraction'/></Scene></X3D>)");
    file.close();
    QVERIFY(_window->open(file.fileName()));
    _window->showRoutes();
    const RouteCanvas* const canvas = _window->findChild<GraphDock*>()->canvas();
    QCOMPARE(canvas->boxes().size(), std::size_t(2));
    const auto hasRoom = [](const auto* box) {
        const QFontMetricsF metrics(box->font());
        const double name = metrics.horizontalAdvance(QString::fromStdString(box->node()->getIDStr()));
        return box->outputAreaRect().left() - box->inputAreaRect().right() >= name &&
               box->size().height() >= qMin(metrics.height(), 0.78 * 34.0 * 0.6);
    };
    const auto boxes = canvas->boxes();
    QTRY_VERIFY(std::all_of(boxes.begin(), boxes.end(), hasRoom));
}

void tst_WorkbenchLooks::codeCanBeRead_data()
{
    QTest::addColumn<bool>("isDark");
    QTest::newRow("light") << false;
    QTest::newRow("dark") << true;
}

void tst_WorkbenchLooks::codeCanBeRead()
{
    QFETCH(bool, isDark);
    open();
    _window->setDark(!isDark);
    _window->setDark(isDark);
    QTRY_VERIFY(code()->toPlainText().contains(QStringLiteral("\n    if (n > 0)\n        print")));
    const QColor ground = code()->palette().color(QPalette::Base);
    QCOMPARE(ground.lightness() < 100, isDark);
    const QList<QColor> colors = colorsOf(code());
    QVERIFY(colors.size() > 5);
    for (const QColor& color : colors)
        QVERIFY2(contrast(color, ground) >= 4.5, qPrintable(color.name()));
}

void tst_WorkbenchLooks::logCanBeRead_data()
{
    codeCanBeRead_data();
}

void tst_WorkbenchLooks::logCanBeRead()
{
    QFETCH(bool, isDark);
    // Lines that are there already, and later ones.
    _window->setDark(!isDark);
    auto* const pane = _window->findChild<LogDock*>()->findChild<QTextEdit*>();
    const auto sayAll = [](const char* text) {
        const osg::LogLock lock;
        osg::osgLog().setLogLevel(osg::LOG_DEBUG, true);
        for (const osg::LogLevel level :
             {osg::LOG_LOG, osg::LOG_FATAL, osg::LOG_WARNING, osg::LOG_NOTICE, osg::LOG_INFO, osg::LOG_DEBUG})
        {
            osg::osgLog().doHeader(level, "Test", __FILE__, __LINE__);
            osg::osgLog().doLog("%s %d\n", text, static_cast<int>(level));
        }
        osg::osgLog().setLogLevel(osg::LOG_WARNING, true);
    };
    sayAll("before");
    QTRY_VERIFY(pane->toPlainText().contains(QStringLiteral("before 5")));
    _window->setDark(isDark);
    sayAll("after");
    QTRY_VERIFY(pane->toPlainText().contains(QStringLiteral("after 5")));
    const QColor ground = pane->palette().color(QPalette::Base);
    QCOMPARE(ground.lightness() < 100, isDark);
    const QList<QColor> colors = colorsOf(pane);
    QVERIFY(colors.size() >= 12);
    // The library's own colours for lines on white have 4 for pure red, the least of them.
    for (const QColor& color : colors)
        QVERIFY2(contrast(color, ground) >= 3.9, qPrintable(color.name()));
}

void tst_WorkbenchLooks::rowsThatWaitCanBeRead_data()
{
    codeCanBeRead_data();
}

void tst_WorkbenchLooks::rowsThatWaitCanBeRead()
{
    QFETCH(bool, isDark);
    open();
    QVERIFY(_window->showNode(QStringLiteral("L")));
    _window->setDark(!isDark);
    _window->setDark(isDark);
    const auto* const fields =
        _window->findChild<NodeDock*>()->findChild<Orvane::Qt4::QorNodeEditorTreeView*>();
    const QModelIndexList rows =
        fields->model()->match(fields->model()->index(0, 0), Qt::DisplayRole, QStringLiteral("coordIndex"));
    QCOMPARE(rows.size(), 1);
    QStyleOptionViewItem option;
    option.initFrom(fields);
    option.rect = QRect(0, 0, 200, 30);
    QImage image(option.rect.size(), QImage::Format_RGB32);
    const QColor ground = option.palette.color(QPalette::Base);
    image.fill(ground);
    QPainter painter(&image);
    fields->itemDelegate()->paint(&painter, option, rows.first());
    painter.end();
    double best = 0.0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            best = std::max(best, contrast(image.pixelColor(x, y), ground));
    }
    QVERIFY2(best >= 4.5, qPrintable(QString::number(best)));
}

void tst_WorkbenchLooks::iconsAreDrawnInTheColourOfTheWriting()
{
    const auto darkest = [] {
        const QImage image = drawnIcon(Drawing::Save).pixmap(32, 32).toImage();
        int least = 255;
        int most = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                if (image.pixelColor(x, y).alpha() < 200)
                    continue;
                least = std::min(least, image.pixelColor(x, y).lightness());
                most = std::max(most, image.pixelColor(x, y).lightness());
            }
        }
        return std::make_pair(least, most);
    };
    QVERIFY(darkest().second < 100);
    _window->setDark(true);
    QVERIFY(darkest().first > 150);
    // The strip in a view has pictures of its own, for a light ground.
    open();
    const auto strips = _window->findChildren<Orvane::Qt4::QorWindowToolbar*>();
    QVERIFY(!strips.isEmpty());
    QVERIFY(strips.first()->palette().color(QPalette::Button).lightness() > 180);
}

void tst_WorkbenchLooks::panelsAreAsWideAsTheirFontAsks()
{
    const int width = _window->findChild<QDockWidget*>(QStringLiteral("NodeDock"))->width();
    cleanup();
    const QFont before = QApplication::font();
    QFont large = before;
    large.setPointSizeF(before.pointSizeF() * 1.5);
    QApplication::setFont(large);
    init();
    const int wider = _window->findChild<QDockWidget*>(QStringLiteral("NodeDock"))->width();
    QApplication::setFont(before);
    QVERIFY2(wider > width * 5 / 4, qPrintable(QStringLiteral("%1 %2").arg(width).arg(wider)));
}

QTEST_MAIN(tst_WorkbenchLooks)
#include "tst_WorkbenchLooks.moc"
