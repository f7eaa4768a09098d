// Code that is edited and applied in the workbench while its scene runs, seen in the picture.
#include "CodeDock.h"
#include "FrameGrabber.h"
#include "SceneTreeView.h"
#include "Selection.h"
#include "WorkbenchWindow.h"
#include <QComboBox>
#include <QGLWidget>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTextEdit>
#include <QorCodeWidget.h>
#include <QorLogView.h>
#include <QorNewFieldDialog.h>
#include <QorNodeEditor.h>
#include <QorNodeEditorTreeView.h>
#include <QorViewManager.h>
#include <QtTest>

using namespace Orvane::Qt4;

static void pressIn(const QWidget& widget, const char* button)
{
    for (QPushButton* each : widget.findChildren<QPushButton*>()) {
        if (each->text() == QLatin1String(button))
            QTest::mouseClick(each, Qt::LeftButton);
    }
}

/// The box that offers an entry; null when none does.
static QComboBox* boxWith(const QWidget& widget, const QString& entry)
{
    for (QComboBox* box : widget.findChildren<QComboBox*>()) {
        if (box->findText(entry) >= 0)
            return box;
    }
    return nullptr;
}

class tst_CodeInPicture : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void anAppliedScriptChangesThePicture();
    void anAppliedFileChangesThePicture();
    void aFieldAddedToARunningScriptIsUsed();
    void aRemovedFieldIsMissed();
    void codeThatIsWrongIsToldAndMendedAgain();
    void aScriptThatNeverEndsIsStopped();

private:
    void open(const QByteArray& url);
    void runFrames(int count);
    void clickScript();
    QorCodeWidget* widget() const { return _window->findChild<CodeDock*>()->codeWidget(); }
    QTextEdit* edit() const { return widget()->findChildren<QTextEdit*>().last(); }
    void press(const char* button) const { pressIn(*widget(), button); }
    void replace(const char* text, const char* by) const;
    /// The colour of the face that fills the view.
    QColor color() const;
    QString log() const { return _window->findChild<QorLogView*>()->findChild<QTextEdit*>()->toPlainText(); }

    FrameGrabber _grabber; // before the first view manager
    std::unique_ptr<WorkbenchWindow> _window;
    std::unique_ptr<QTemporaryDir> _folder;
};

/// Code that paints the face in a colour, in each frame.
static QByteArray painting(const char* color)
{
    return QByteArray("ecmascript:\nfunction tick(value) {\n  paint = new SFColor(") + color + ");\n}\n";
}

void tst_CodeInPicture::init()
{
    _folder = std::make_unique<QTemporaryDir>();
    _window = std::make_unique<WorkbenchWindow>(false);
    _window->resize(1000, 700);
    _window->show();
    QVERIFY(QTest::qWaitForWindowExposed(_window.get()));
    _grabber.setActive(true);
}

void tst_CodeInPicture::cleanup()
{
    _window.reset();
}

void tst_CodeInPicture::open(const QByteArray& url)
{
    const QString name = _folder->filePath(QStringLiteral("scene.x3dv"));
    QFile file(name);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("#X3D V3.3 utf8\n"
               "Viewpoint { position 0 0 2 }\n"
               "Shape { appearance Appearance { material DEF Look Material { diffuseColor 0 0 0 } }\n"
               "  geometry IndexedFaceSet { solid FALSE coordIndex [0 1 2 3 -1]\n"
               "    coord Coordinate { point [-2 -2 0, 2 -2 0, 2 2 0, -2 2 0] } } }\n"
               "DEF Clock TimeSensor { loop TRUE }\n"
               "DEF Painter Script { inputOnly SFTime tick outputOnly SFColor paint\n"
               "  url \"" +
               url +
               "\" }\n"
               "ROUTE Clock.time TO Painter.tick\n"
               "ROUTE Painter.paint TO Look.emissiveColor\n");
    file.close();
    QVERIFY2(_window->open(name), qPrintable(_window->loadError()));
    runFrames(3);
}

void tst_CodeInPicture::runFrames(int count)
{
    for (int i = 0; i < count; ++i) {
        _window->viewManager()->runFrame();
        QCoreApplication::processEvents();
    }
}

void tst_CodeInPicture::clickScript()
{
    auto* tree = _window->findChild<SceneTreeView*>();
    const QModelIndex root = tree->model()->index(0, 0);
    for (QModelIndex row = root; row.isValid(); row = tree->indexBelow(row)) {
        if (row.sibling(row.row(), 1).data().toString() != QLatin1String("Painter"))
            continue;
        tree->scrollTo(row);
        QTest::mouseClick(tree->viewport(), Qt::LeftButton, Qt::NoModifier, tree->visualRect(row).center());
    }
    QVERIFY(widget()->isEnabled());
    QCOMPARE(widget()->codeNode(), _window->selection()->node());
}

/// Types over the first place where the text stands.
void tst_CodeInPicture::replace(const char* text, const char* by) const
{
    edit()->moveCursor(QTextCursor::Start);
    QVERIFY(edit()->find(QString::fromLatin1(text)));
    QTest::keyClicks(edit(), QString::fromLatin1(by));
}

QColor tst_CodeInPicture::color() const
{
    const QImage picture = _grabber.picture(_window->findChild<QGLWidget*>());
    return picture.isNull() ? QColor() : QColor(picture.pixel(picture.width() / 2, picture.height() / 2));
}

void tst_CodeInPicture::anAppliedScriptChangesThePicture()
{
    open(painting("1, 0, 0"));
    QCOMPARE(color(), QColor(255, 0, 0));
    clickScript();
    replace("1, 0, 0", "0, 0, 1");
    runFrames(3);
    QCOMPARE(color(), QColor(255, 0, 0));
    press("Apply");
    runFrames(2);
    QCOMPARE(color(), QColor(0, 0, 255));
    // And once more, in the same panel.
    replace("0, 0, 1", "0, 1, 0");
    press("Apply");
    runFrames(2);
    QCOMPARE(color(), QColor(0, 255, 0));
}

void tst_CodeInPicture::anAppliedFileChangesThePicture()
{
    QFile code(_folder->filePath(QStringLiteral("paint.js")));
    QVERIFY(code.open(QIODevice::WriteOnly));
    code.write(painting("1, 0, 0").mid(12)); // a file has no prefix
    code.close();
    open("file:paint.js");
    QCOMPARE(color(), QColor(255, 0, 0));
    clickScript();
    const auto labels = widget()->findChildren<QLabel*>();
    QVERIFY(std::any_of(labels.begin(), labels.end(), [](const QLabel* label) {
        return label->text() == QLatin1String("<b>Code [local, external]:</b>");
    }));
    replace("1, 0, 0", "0, 0, 1");
    press("Apply");
    runFrames(2);
    QCOMPARE(color(), QColor(0, 0, 255));
    QVERIFY(code.open(QIODevice::ReadOnly));
    QCOMPARE(code.readAll(), painting("0, 0, 1").mid(12));
}

void tst_CodeInPicture::aFieldAddedToARunningScriptIsUsed()
{
    open(painting("1, 0, 0"));
    clickScript();
    replace("new SFColor(1, 0, 0)", "wanted");
    press("Apply");
    runFrames(2);
    QTRY_VERIFY(log().contains(QStringLiteral("wanted")));
    QTimer::singleShot(0, qApp, [] {
        auto* dialog = qobject_cast<QorNewFieldDialog*>(QApplication::activeModalWidget());
        QVERIFY(dialog);
        const auto edits = dialog->findChildren<QLineEdit*>();
        QTest::keyClicks(edits.at(0), QStringLiteral("wanted"));
        QTest::keyClicks(edits.at(1), QStringLiteral("0 1 0"));
        QComboBox* types = boxWith(*dialog, QStringLiteral("SFColor"));
        QVERIFY(types);
        types->setCurrentText(QStringLiteral("SFColor"));
        pressIn(*dialog, "Create");
    });
    press("+");
    runFrames(2);
    QCOMPARE(color(), QColor(0, 255, 0));
}

void tst_CodeInPicture::aRemovedFieldIsMissed()
{
    open(painting("1, 0, 0"));
    clickScript();
    QTreeView* fields = widget()->findChild<QorNodeEditor*>()->treeView();
    const QModelIndexList found = fields->model()->match(fields->model()->index(0, 0), Qt::DisplayRole,
                                                         QStringLiteral("paint"), 1, Qt::MatchExactly);
    QCOMPARE(found.size(), 1);
    fields->setCurrentIndex(found.first());
    press("-");
    replace("1, 0, 0", "0, 0, 1");
    press("Apply");
    runFrames(2);
    QCOMPARE(color(), QColor(255, 0, 0)); // nothing leads to the look any more
}

void tst_CodeInPicture::codeThatIsWrongIsToldAndMendedAgain()
{
    open(painting("1, 0, 0"));
    clickScript();
    replace("1, 0, 0", "0, 0, 1, (");
    press("Apply");
    runFrames(3);
    QCOMPARE(color(), QColor(255, 0, 0));
    QTRY_VERIFY2(log().contains(QStringLiteral("Script \"Painter\", line 3 of its code: SyntaxError")),
                 qPrintable(log()));
    replace("0, 0, 1, (", "0, 0, 1");
    press("Apply");
    runFrames(2);
    QCOMPARE(color(), QColor(0, 0, 255));
}

void tst_CodeInPicture::aScriptThatNeverEndsIsStopped()
{
    open(painting("1, 0, 0"));
    clickScript();
    replace("paint =", "while (true); paint =");
    press("Apply");
    runFrames(3);
    QCOMPARE(color(), QColor(255, 0, 0));
    QTRY_VERIFY2(log().contains(QStringLiteral("Script \"Painter\"")), qPrintable(log()));
    replace("while (true); paint = new SFColor(1, 0, 0)", "paint = new SFColor(0, 0, 1)");
    press("Apply");
    runFrames(2);
    QCOMPARE(color(), QColor(0, 0, 255));
}

QTEST_MAIN(tst_CodeInPicture)
#include "tst_CodeInPicture.moc"
