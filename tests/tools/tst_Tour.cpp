// A first use of the workbench, from the empty window to the saved scene. All is done by the pointer and the
// keys of the window system, while the scene runs; all is judged by what can be seen: pixels of the screen,
// rows and texts of panels, the file. With ORVANE_TOUR_PICTURES the steps leave pictures in that folder.
#include "../view/RealInput.h"
#include "CodeDock.h"
#include "DocumentFile.h"
#include "GraphDock.h"
#include "LogDock.h"
#include "NodeDock.h"
#include "RouteCanvas.h"
#include "SceneTreeView.h"
#include "TableDock.h"
#include "WorkbenchWindow.h"
#include <OpenSG/OSGCamera.h>
#include <OpenSG/OSGViewport.h>
#include <Orvane/MFNode.h>
#include <Orvane/Node.h>
#include <Orvane/NodeType.h>
#include <Orvane/Viewarea.h>
#include <Orvane/ViewareaProc.h>
#include <Orvane/Window.h>
#include <Orvane/WindowProc.h>
#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QScreen>
#include <QSettings>
#include <QStandardPaths>
#include <QStatusBar>
#include <QTemporaryDir>
#include <QTextBlock>
#include <QTextEdit>
#include <QToolButton>
#include <QorCodeWidget.h>
#include <QorGraphNodeView.h>
#include <QorImgCanvasView.h>
#include <QorNodeEditorTreeView.h>
#include <QorNodeModel.h>
#include <QorRenderView.h>
#include <QorViewManager.h>
#include <QtTest>
#include <functional>

using namespace Orvane::Qt4;
using RealInput::comesTrue;

class tst_Tour : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();

    void theWindowIsEmpty();
    void aSceneIsOpened();
    void aDragTurnsTheView();
    void aPickedNodeIsShownInAllPanels();
    void theCellOfARunningFieldIsRepainted();
    void anEditedValueIsSeenInTheView();
    void anEditIsTakenBackAndMadeAgain();
    void aRouteIsDrawn();
    void aMistakeInAScriptIsFoundByItsLogLine();
    void aScriptIsChanged();
    void aTableIsPainted();
    void theSceneIsSaved();
    void theSavedSceneIsOpenedAgain();
    void darkColoursReachAllPanels();
    void theWindowClosesWithoutAQuestion();

private:
    template <class Widget>
    Widget* the(const char* name = nullptr) const
    {
        return _window->findChild<Widget*>(name ? QString::fromLatin1(name) : QString());
    }
    static QPoint middleOf(const QWidget* widget) { return widget->mapToGlobal(widget->rect().center()); }
    static bool clickOn(const QWidget* widget)
    {
        return widget && widget->isVisible() && RealInput::click(middleOf(widget));
    }
    template <class Button>
    static Button* buttonCalled(const QWidget* parent, const char* text)
    {
        const auto all = parent->findChildren<Button*>();
        for (Button* button : all) {
            if (button->text() == QLatin1String(text) && button->isVisible())
                return button;
        }
        return nullptr;
    }

    // The scene on the screen.
    QorRenderView* view() const { return the<QorRenderView>(); }
    QPoint placeOf(const osg::Pnt3f& point) const;
    QColor colorAt(const osg::Pnt3f& point) const;
    bool isCubeColoured() const;
    osg::Vec3f eye() const;

    // Panels.
    SceneTreeView* tree() const { return the<SceneTreeView>(); }
    QModelIndex rowOf(const QString& name) const;
    bool clickRow(const QString& name) const;
    QorNodeEditorTreeView* fields() const { return the<NodeDock>()->findChild<QorNodeEditorTreeView*>(); }
    QModelIndex valueOf(const QString& field) const;
    QTextEdit* code() const
    {
        return the<CodeDock>()->codeWidget()->findChild<QTextEdit*>(QStringLiteral("code"));
    }
    QString log() const { return the<LogDock>()->findChild<QTextEdit*>()->toPlainText(); }
    RouteCanvas* canvas() const { return the<RouteCanvas>(); }
    QPoint stripOf(const char* name, bool isOutput) const;
    bool writeSecondLine(const QString& text) const;

    // What opens, while a key or a press that opened it waits for its end.
    void whenMenuOpens(const std::function<void(QMenu&)>& then);
    void whenDialogOpens(const std::function<void(QFileDialog&)>& then);
    static bool choose(QMenu& menu, const QString& part);

    /// Leaves a picture of a window when pictures are wanted.
    void show(const char* name) const { show(name, *_window); }
    static void show(const char* name, const QWidget& widget);
    QString file(const char* name) const { return _folder.filePath(QString::fromLatin1(name)); }

    std::unique_ptr<WorkbenchWindow> _window;
    QTemporaryDir _folder{QDir::tempPath() + QStringLiteral("/toys-XXXXXX")};
    bool _isDone = false; ///< what was to be done in a menu or dialog
};

static const osg::Pnt3f onCube(0.55F, 0.7F, 0.83F);
static const osg::Pnt3f onBanner(-2.2F, 1.0F, 0.0F);
static const osg::Pnt3f aboveBall(2.0F, 2.6F, 0.0F);
static const osg::Pnt3f inTheSky(0.0F, 3.4F, 0.0F);

static bool isRed(const QColor& color)
{
    return color.red() > 90 && color.red() > 2 * color.green() && color.red() > 2 * color.blue();
}

void tst_Tour::initTestCase()
{
    QStandardPaths::setTestModeEnabled(true);
    QCoreApplication::setOrganizationName(QStringLiteral("orvane"));
    QCoreApplication::setApplicationName(QStringLiteral("tst_Tour"));
    QSettings().clear();
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    const QString scenes = qEnvironmentVariable("ORVANE_SOURCE_DIR") + QStringLiteral("/examples/scenes/");
    QVERIFY(QFile::copy(scenes + QStringLiteral("toys.x3d"), file("toys.x3d")));
    _window = std::make_unique<WorkbenchWindow>(true);
    _window->useSettings();
    _window->resize(1240, 820);
    _window->move(40, 50);
    _window->show();
    QVERIFY(QTest::qWaitForWindowActive(_window.get()));
}

void tst_Tour::cleanupTestCase()
{
    _window.reset();
    QSettings().clear();
}

// ---- The scene on the screen

static osg::ViewportPtr portOf(const QorRenderView* view)
{
    auto* area = dynamic_cast<Orvane::Viewarea*>(view->windowProc()->window()->viewareas()->elem(0).node());
    return area->getViewareaProc()->vptPtr();
}

QPoint tst_Tour::placeOf(const osg::Pnt3f& point) const
{
    osg::Matrix clip;
    const osg::ViewportPtr port = portOf(view());
    port->getCamera()->getWorldToScreen(clip, *port);
    osg::Pnt3f place = point;
    clip.multFullMatrixPnt(place);
    return view()->mapToGlobal(QPoint(qRound((1.0 + place[0]) / 2.0 * view()->width()),
                                      qRound((1.0 - place[1]) / 2.0 * view()->height())));
}

/// What the screen shows there, whatever lies over it.
QColor tst_Tour::colorAt(const osg::Pnt3f& point) const
{
    const QPoint place = placeOf(point);
    return QColor(
        QGuiApplication::primaryScreen()->grabWindow(0, place.x(), place.y(), 1, 1).toImage().pixel(0, 0));
}

bool tst_Tour::isCubeColoured() const
{
    return colorAt(onCube).hslSaturation() > 80;
}

osg::Vec3f tst_Tour::eye() const
{
    osg::Matrix viewing;
    portOf(view())->getCamera()->getViewing(viewing, 400, 300);
    viewing.invert();
    return osg::Vec3f(viewing[3][0], viewing[3][1], viewing[3][2]);
}

// ---- Panels

QModelIndex tst_Tour::rowOf(const QString& name) const
{
    const QAbstractItemModel* const model = tree()->model();
    for (QModelIndex index = model ? model->index(0, 0) : QModelIndex(); index.isValid();
         index = tree()->indexBelow(index))
    {
        if (index.sibling(index.row(), 1).data().toString() == name)
            return index;
    }
    return {};
}

/// Scrolls, which is no part of the tour, and clicks.
bool tst_Tour::clickRow(const QString& name) const
{
    const QModelIndex row = rowOf(name);
    tree()->scrollTo(row);
    return row.isValid() &&
           RealInput::click(tree()->viewport()->mapToGlobal(tree()->visualRect(row).center()));
}

QModelIndex tst_Tour::valueOf(const QString& field) const
{
    const QAbstractItemModel* const model = fields()->model();
    for (int row = 0; model && row < model->rowCount(); ++row) {
        if (model->index(row, QorNodeModel::FieldName).data().toString() == field)
            return model->index(row, QorNodeModel::FieldValue);
    }
    return {};
}

QPoint tst_Tour::stripOf(const char* name, bool isOutput) const
{
    const auto boxes = canvas()->findChildren<QorGraphNodeView*>();
    for (const QorGraphNodeView* box : boxes) {
        const Orvane::Node* const node = box->node();
        if (!node || !node->name() || *node->name() != name || canvas()->viewOf(node) != box)
            continue;
        const QRectF rect = box->rect();
        // Above the lines, which lie in the middle.
        const QPointF place(isOutput ? rect.right() - 2 : rect.left() + 2, rect.top() + 2);
        return canvas()->mapToGlobal(place.toPoint());
    }
    return {};
}

bool tst_Tour::writeSecondLine(const QString& text) const
{
    return clickOn(code()->viewport()) && RealInput::keys(QStringLiteral("ctrl+Home Down shift+End")) &&
           RealInput::type(text) && clickOn(buttonCalled<QPushButton>(the<CodeDock>(), "Apply"));
}

void tst_Tour::whenMenuOpens(const std::function<void(QMenu&)>& then)
{
    _isDone = false;
    QTimer::singleShot(50, this, [this, then] {
        auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        if (menu && menu->isVisible())
            then(*menu);
        else
            whenMenuOpens(then);
    });
}

void tst_Tour::whenDialogOpens(const std::function<void(QFileDialog&)>& then)
{
    _isDone = false;
    QTimer::singleShot(50, this, [this, then] {
        auto* const dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
        if (dialog && dialog->isActiveWindow())
            then(*dialog);
        else
            whenDialogOpens(then);
    });
}

bool tst_Tour::choose(QMenu& menu, const QString& part)
{
    const auto actions = menu.actions();
    for (QAction* action : actions) {
        if (action->text().contains(part))
            return RealInput::click(menu.mapToGlobal(menu.actionGeometry(action).center()));
    }
    return false;
}

void tst_Tour::show(const char* name, const QWidget& widget)
{
    const QString folder = qEnvironmentVariable("ORVANE_TOUR_PICTURES");
    if (folder.isEmpty())
        return;
    QTest::qWait(700);
    const QRect rect = widget.frameGeometry();
    const QPixmap picture =
        QGuiApplication::primaryScreen()->grabWindow(0, rect.x(), rect.y(), rect.width(), rect.height());
    QVERIFY(picture.save(QStringLiteral("%1/tour-%2.png").arg(folder, QString::fromLatin1(name))));
}

// ---- The tour

void tst_Tour::theWindowIsEmpty()
{
    QVERIFY(_window->windowTitle().startsWith(QStringLiteral("New scene")));
    QVERIFY(!tree()->model() || !rowOf(QStringLiteral("Cube")).isValid());
    show("empty");
}

void tst_Tour::aSceneIsOpened()
{
    whenDialogOpens([this](QFileDialog&) {
        _isDone = RealInput::type(file("toys.x3d")) && RealInput::keys(QStringLiteral("Return"));
    });
    QVERIFY(RealInput::keys(QStringLiteral("ctrl+o")));
    QVERIFY(_isDone);
    QVERIFY(comesTrue([this] { return rowOf(QStringLiteral("Hop")).isValid(); }));
    QVERIFY(_window->windowTitle().startsWith(QStringLiteral("toys.x3d")));
    QVERIFY(!_window->isWindowModified());
    QCOMPARE(log(), QString());
    const auto isSky = [](const QColor& color) { return color.blue() > 150 && color.blue() > color.red(); };
    QVERIFY(comesTrue([&] { return isSky(colorAt(inTheSky)) && colorAt(onCube).red() > 60; }));
    QVERIFY(!isCubeColoured());
    // The ball hops, though not that high.
    QVERIFY(!comesTrue([this] { return isRed(colorAt(aboveBall)); }, 1500));
    show("open");
}

void tst_Tour::aDragTurnsTheView()
{
    const osg::Vec3f before = eye();
    QVERIFY(RealInput::drag(placeOf(inTheSky), QPoint(-120, 20)));
    QVERIFY(comesTrue([&] { return eye()[0] > before[0] + 1.0F; }));
    show("look");
    QVERIFY(RealInput::keys(QStringLiteral("r")));
    QVERIFY(comesTrue([&] { return (eye() - before).length() < 0.05F; }));
}

void tst_Tour::aPickedNodeIsShownInAllPanels()
{
    QVERIFY(!rowOf(QStringLiteral("Cube")).isValid());
    QVERIFY(RealInput::keys(QStringLiteral("ctrl+p")));
    QVERIFY(RealInput::click(placeOf(onCube)));
    QVERIFY(comesTrue([this] { return tree()->currentIndex() == rowOf(QStringLiteral("Cube")); }));
    QVERIFY(rowOf(QStringLiteral("Cube")).isValid());
    QVERIFY(tree()->viewport()->rect().contains(tree()->visualRect(rowOf(QStringLiteral("Cube")))));
    QVERIFY(valueOf(QStringLiteral("appearance")).isValid());
    show("pick");
    QVERIFY(RealInput::keys(QStringLiteral("ctrl+p")));
}

void tst_Tour::theCellOfARunningFieldIsRepainted()
{
    QVERIFY(clickRow(QStringLiteral("Jump")));
    QVERIFY(comesTrue([this] { return valueOf(QStringLiteral("translation")).isValid(); }));
    fields()->scrollTo(valueOf(QStringLiteral("translation")));
    const auto cell = [this] {
        const QRect rect = fields()->visualRect(valueOf(QStringLiteral("translation")));
        const QPoint corner = fields()->viewport()->mapToGlobal(rect.topLeft());
        return QGuiApplication::primaryScreen()
            ->grabWindow(0, corner.x(), corner.y(), rect.width(), rect.height())
            .toImage();
    };
    const QImage before = cell();
    QVERIFY(comesTrue([&] { return cell() != before; }));
}

void tst_Tour::anEditedValueIsSeenInTheView()
{
    QVERIFY(clickRow(QStringLiteral("Place")));
    QVERIFY(comesTrue([this] {
        return valueOf(QStringLiteral("translation")).data().toString() == QLatin1String("0 0.7 0");
    }));
    const QModelIndex cell = valueOf(QStringLiteral("translation"));
    fields()->scrollTo(cell);
    QVERIFY(RealInput::doubleClick(fields()->viewport()->mapToGlobal(fields()->visualRect(cell).center())));
    QVERIFY(comesTrue([&] { return fields()->indexWidget(cell) != nullptr; }));
    QVERIFY(RealInput::keys(QStringLiteral("ctrl+a")) && RealInput::type(QStringLiteral("0 2.2 0")));
    show("edit");
    QVERIFY(RealInput::keys(QStringLiteral("Return")));
    QVERIFY(comesTrue([this] {
        return valueOf(QStringLiteral("translation")).data().toString() == QLatin1String("0 2.2 0");
    }));
    // The cube has gone up; the table is seen where it was.
    QVERIFY(comesTrue([this] {
        const QColor raised = colorAt(onCube + osg::Vec3f(0, 1.5F, 0));
        return raised.hslSaturation() < 40 && raised.lightness() < 220;
    }));
    QVERIFY(_window->isWindowModified());
}

void tst_Tour::anEditIsTakenBackAndMadeAgain()
{
    const auto value = [this] { return valueOf(QStringLiteral("translation")).data().toString(); };
    QVERIFY(RealInput::keys(QStringLiteral("ctrl+z")));
    QVERIFY(comesTrue([&] { return value() == QLatin1String("0 0.7 0"); }));
    QVERIFY(!_window->isWindowModified());
    QVERIFY(RealInput::keys(QStringLiteral("ctrl+shift+z")));
    QVERIFY(comesTrue([&] { return value() == QLatin1String("0 2.2 0"); }));
    QVERIFY(_window->isWindowModified());
    QVERIFY(RealInput::keys(QStringLiteral("ctrl+z")));
    QVERIFY(comesTrue([&] { return value() == QLatin1String("0 0.7 0"); }));
}

void tst_Tour::aRouteIsDrawn()
{
    QVERIFY(RealInput::keys(QStringLiteral("ctrl+5")));
    QVERIFY(comesTrue([this] { return canvas()->isVisible(); }));
    // More room for the boxes.
    const QPoint edge = the<GraphDock>()->mapToGlobal(QPoint(the<GraphDock>()->width() / 3, -2));
    const int before = canvas()->height();
    QVERIFY(RealInput::drag(edge, QPoint(0, -60)));
    QVERIFY(comesTrue([&] { return canvas()->height() > before + 40; }));
    QVERIFY(clickOn(buttonCalled<QToolButton>(the<GraphDock>(), "All routes")));
    QVERIFY(comesTrue([this] { return !stripOf("Colours", true).isNull(); }));
    QVERIFY(stripOf("Paint", false).isNull());
    // The material of the cube joins them.
    QVERIFY(RealInput::keys(QStringLiteral("ctrl+p")) && RealInput::click(placeOf(onCube)) &&
            RealInput::keys(QStringLiteral("ctrl+p")));
    QVERIFY(clickRow(QStringLiteral("Cube")));
    QVERIFY(RealInput::keys(QStringLiteral("asterisk")));
    QVERIFY(comesTrue([this] { return rowOf(QStringLiteral("Paint")).isValid(); }));
    QVERIFY(clickRow(QStringLiteral("Paint")));
    QVERIFY(clickOn(buttonCalled<QToolButton>(the<GraphDock>(), "Add selected")));
    QVERIFY(comesTrue([this] { return !stripOf("Paint", false).isNull(); }));
    QVERIFY(clickOn(buttonCalled<QToolButton>(the<GraphDock>(), "Lay out")));
    whenMenuOpens([this](QMenu& menu) { _isDone = choose(menu, QStringLiteral("value")); });
    QVERIFY(RealInput::click(stripOf("Colours", true)));
    QVERIFY(comesTrue([this] { return _isDone; }));
    QVERIFY(RealInput::moveTo(stripOf("Paint", false) - QPoint(20, 30)));
    QVERIFY(!isCubeColoured());
    whenMenuOpens([this](QMenu& menu) {
        show("route");
        _isDone = choose(menu, QStringLiteral("diffuseColor"));
    });
    QVERIFY(RealInput::click(stripOf("Paint", false)));
    QVERIFY(comesTrue([this] { return _isDone; }));
    QVERIFY(comesTrue([this] { return isCubeColoured(); }));
    QVERIFY(clickOn(buttonCalled<QToolButton>(the<GraphDock>(), "Lay out")));
    show("routed");
}

void tst_Tour::aMistakeInAScriptIsFoundByItsLogLine()
{
    QVERIFY(clickRow(QStringLiteral("Hop")));
    QVERIFY(comesTrue([this] {
        return code()->isVisible() && code()->toPlainText().contains(QStringLiteral("var high = 0.6;"));
    }));
    QVERIFY(writeSecondLine(QStringLiteral("var high = 2 +;")));
    QVERIFY(RealInput::keys(QStringLiteral("ctrl+4")));
    QVERIFY(comesTrue([this] { return log().contains(QStringLiteral("Hop")); }));
    show("mistake");
    // From the line of the log to that of the code.
    auto* const pane = the<LogDock>()->findChild<QTextEdit*>();
    QVERIFY(clickOn(code()->viewport()) && RealInput::keys(QStringLiteral("ctrl+End")));
    QTextCursor line(pane->document()->lastBlock());
    while (!line.block().text().contains(QStringLiteral("Hop")))
        line.movePosition(QTextCursor::PreviousBlock);
    QVERIFY(RealInput::doubleClick(
        pane->viewport()->mapToGlobal(pane->cursorRect(line).center() + QPoint(60, 0))));
    QVERIFY(comesTrue(
        [this] { return code()->textCursor().selectedText() == QLatin1String("var high = 2 +;"); }));
    QVERIFY(code()->hasFocus());
}

void tst_Tour::aScriptIsChanged()
{
    QVERIFY(writeSecondLine(QStringLiteral("var high = 2.1;")));
    QVERIFY(comesTrue([this] { return isRed(colorAt(aboveBall)); }));
    QVERIFY(code()->toPlainText().contains(QStringLiteral("\n    var up = ")));
    show("script");
}

void tst_Tour::aTableIsPainted()
{
    QVERIFY(!isRed(colorAt(onBanner)));
    QVERIFY(RealInput::keys(QStringLiteral("ctrl+p")) && RealInput::click(placeOf(onBanner)) &&
            RealInput::keys(QStringLiteral("ctrl+p")));
    QVERIFY(comesTrue([this] { return tree()->currentIndex() == rowOf(QStringLiteral("Banner")); }));
    QVERIFY(RealInput::keys(QStringLiteral("ctrl+l")));
    auto* const dock = the<TableDock>();
    QVERIFY(comesTrue([&] { return dock->isVisible(); }));
    // Beside the banner.
    dock->move(_window->frameGeometry().right() - dock->frameGeometry().width() - 20, 300);
    QTest::qWait(200);
    auto* const curves = dock->findChild<QorImgCanvasView*>();
    const auto paint = [&](const char* box, double from, double to) {
        auto* const channel = dock->findChild<QCheckBox*>(QString::fromLatin1(box));
        const QPoint start(1, qRound(from * curves->height()));
        const QPoint end(curves->width() - 1, qRound(to * curves->height()));
        return RealInput::click(channel->mapToGlobal(QPoint(8, channel->height() / 2))) &&
               channel->isChecked() && RealInput::drag(curves->mapToGlobal(start), end - start) &&
               RealInput::click(channel->mapToGlobal(QPoint(8, channel->height() / 2)));
    };
    QVERIFY(paint("SetRed", 0.2, 0.05));
    QVERIFY(paint("SetGreen", 0.95, 0.4));
    QVERIFY(paint("SetBlue", 0.9, 0.8));
    QVERIFY(comesTrue([this] { return isRed(colorAt(onBanner)); }));
    show("table");
    QVERIFY(RealInput::keys(QStringLiteral("ctrl+6")));
    QVERIFY(comesTrue([&] { return !dock->isVisible(); }));
}

void tst_Tour::theSceneIsSaved()
{
    QVERIFY(_window->isWindowModified());
    whenDialogOpens([this](QFileDialog& dialog) {
        auto* const tabs = dialog.findChild<QCheckBox*>(QStringLiteral("useTabCheck"));
        _isDone = RealInput::click(tabs->mapToGlobal(QPoint(8, tabs->height() / 2))) && tabs->isChecked() &&
                  clickOn(dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))) &&
                  RealInput::keys(QStringLiteral("ctrl+a")) && RealInput::type(file("mine.x3d"));
        show("save");
        show("options", dialog);
        _isDone = _isDone && RealInput::keys(QStringLiteral("Return"));
    });
    QVERIFY(RealInput::keys(QStringLiteral("ctrl+shift+s")));
    QVERIFY(_isDone);
    QVERIFY(comesTrue([this] { return QFile::exists(file("mine.x3d")) && !_window->isWindowModified(); }));
    QVERIFY(_window->windowTitle().startsWith(QStringLiteral("mine.x3d")));
    QFile saved(file("mine.x3d"));
    QVERIFY(saved.open(QIODevice::ReadOnly));
    const QByteArray text = saved.readAll();
    QVERIFY(text.contains("\n\t"));
    QVERIFY(text.contains("content='A banner, a cube") || text.contains("content=\"A banner, a cube"));
    QVERIFY(text.contains("var high = 2.1;"));
    QVERIFY(text.contains("\n    var up = "));
    QVERIFY(!text.contains("0 2.2 0"));
    const int route = text.indexOf("toNode='Paint'") + text.indexOf("toNode=\"Paint\"") + 1;
    QVERIFY(route > 0);
    QVERIFY(text.mid(text.lastIndexOf("<ROUTE", route), 160).contains("Colours"));
    // The file that was opened is as it was.
    QFile opened(file("toys.x3d"));
    QVERIFY(opened.open(QIODevice::ReadOnly));
    QVERIFY(opened.readAll().contains("var high = 0.6;"));
}

void tst_Tour::theSavedSceneIsOpenedAgain()
{
    QVERIFY(RealInput::keys(QStringLiteral("ctrl+n")));
    QVERIFY(comesTrue([this] { return !rowOf(QStringLiteral("Hop")).isValid(); }));
    QVERIFY(_window->windowTitle().startsWith(QStringLiteral("New scene")));
    QVERIFY(RealInput::keys(QStringLiteral("alt+f r 1")));
    QVERIFY(comesTrue([this] { return rowOf(QStringLiteral("Hop")).isValid(); }));
    QVERIFY(_window->windowTitle().startsWith(QStringLiteral("mine.x3d")));
    QVERIFY(comesTrue([this] { return isCubeColoured(); }));
    QVERIFY(comesTrue([this] { return isRed(colorAt(onBanner)); }));
    QVERIFY(comesTrue([this] { return isRed(colorAt(aboveBall)); }));
    show("again");
}

void tst_Tour::darkColoursReachAllPanels()
{
    QVERIFY(clickRow(QStringLiteral("Hop")));
    QVERIFY(comesTrue([this] { return code()->isVisible(); }));
    QVERIFY(RealInput::keys(QStringLiteral("alt+v d")));
    // Grounds are dark, writing is light.
    const QList<const QWidget*> panels{tree()->viewport(), fields()->viewport(), code()->viewport(),
                                       the<LogDock>()->findChild<QTextEdit*>()->viewport()};
    for (const QWidget* panel : panels) {
        QVERIFY(comesTrue([&] {
            const QPoint corner = panel->mapToGlobal(QPoint(0, 0));
            const QImage seen = QGuiApplication::primaryScreen()
                                    ->grabWindow(0, corner.x(), corner.y(), panel->width(), panel->height())
                                    .toImage();
            return QColor(seen.pixel(seen.width() - 3, seen.height() - 3)).lightness() < 80;
        }));
    }
    show("dark");
}

void tst_Tour::theWindowClosesWithoutAQuestion()
{
    QVERIFY(RealInput::keys(QStringLiteral("ctrl+q")));
    QVERIFY(comesTrue([this] { return !_window->isVisible(); }));
    QCOMPARE(QSettings().value(QStringLiteral("recentFiles")).toStringList().value(0), file("mine.x3d"));
}

QTEST_MAIN(tst_Tour)
#include "tst_Tour.moc"
