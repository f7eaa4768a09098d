// The file of a scene in the workbench: opened, changed, saved, brought back, and asked about.
#include "Autosave.h"
#include "DocumentFile.h"
#include "RecentFiles.h"
#include "SceneEditing.h"
#include "SceneTreeView.h"
#include "Selection.h"
#include "Steps.h"
#include "WorkbenchWindow.h"
#include <Orvane/Context.h>
#include <Orvane/Field.h>
#include <Orvane/Node.h>
#include <QApplication>
#include <QCheckBox>
#include <QCloseEvent>
#include <QDateTime>
#include <QDialogButtonBox>
#include <QDir>
#include <QDropEvent>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QMimeData>
#include <QPushButton>
#include <QSettings>
#include <QStandardPaths>
#include <QStatusBar>
#include <QTemporaryDir>
#include <QTextEdit>
#include <QUrl>
#include <QorFileDialog.h>
#include <QorViewManager.h>
#include <QtTest>
#include <SAI/SAIBrowserRef.h>
#include <functional>

using Orvane::Qt4::QorFileDialog;

class tst_DocumentFile : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void titleTellsTheFileAndChanges();
    void ctrlSWritesTheFileInItsEncoding_data();
    void ctrlSWritesTheFileInItsEncoding();
    void whatWasNotTouchedIsNotLost();
    void saveAsGoesOnWithTheNewFile();
    void exportLeavesTheFile();
    void theLogTellsWhatAFileHasLost();
    void aNewSceneAsksForAFile();
    void closingAsksAboutChanges();
    void aFileThatCannotBeWrittenKeepsTheChanges();
    void aFileOfNoKnownSuffixIsSavedUnderAnother();
    void aFailureIsShownWithItsReason();
    void reloadAsksAndReads();
    void recentFilesAreOpenedFromTheMenu();
    void theMenuForgetsTheOldest();
    void aDroppedFileIsOpened();
    void aCopyIsKeptAgainstLoss();
    void aFileOfNoKnownSuffixHasACopyToo();
    void aCopyThatFailsIsTriedAgain();
    void aCopyIsBroughtBack();
    void aCopyThatIsRefusedGoes();
    void savingTakesTheCopyAway();

private:
    QString write(const QString& name, const char* text);
    static QByteArray read(const QString& name);
    DocumentFile* document() const { return _window->document(); }
    void change();
    void keys(Qt::Key key, Qt::KeyboardModifiers modifiers);
    QString told() const { return _window->statusBar()->currentMessage(); }
    std::string value(const char* field) const;
    std::unique_ptr<WorkbenchWindow> makeWindow();

    QTemporaryDir _settings;
    std::unique_ptr<QTemporaryDir> _folder;
    std::unique_ptr<WorkbenchWindow> _window;
    QString _file;
};

static const char text[] = "<X3D version='4.0'><head><meta name='title' content='My title'/></head><Scene>"
                           "<Transform DEF='T' translation='1 2 3'><Shape><Box/></Shape></Transform>"
                           "<Gadget DEF='Odd' colour='red'/></Scene></X3D>";

/// Answers the next question by one of its buttons.
static void answer(QMessageBox::StandardButton button)
{
    auto* const timer = new QTimer(qApp);
    QObject::connect(timer, &QTimer::timeout, timer, [timer, button] {
        auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        if (!box || !box->button(button))
            return;
        timer->stop();
        timer->deleteLater();
        box->button(button)->click();
    });
    timer->start(10);
}

/// Gives the next file dialog a name.
static void nameFile(const QString& name, const char* box = nullptr)
{
    auto* const timer = new QTimer(qApp);
    QObject::connect(timer, &QTimer::timeout, timer, [timer, name, box] {
        auto* const dialog = qobject_cast<QorFileDialog*>(QApplication::activeModalWidget());
        if (!dialog)
            return;
        timer->stop();
        timer->deleteLater();
        if (box)
            dialog->findChild<QCheckBox*>(QLatin1String(box))->click();
        dialog->selectFile(name);
        dialog->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Save)->click();
    });
    timer->start(10);
}

void tst_DocumentFile::initTestCase()
{
    QCoreApplication::setOrganizationName(QStringLiteral("orvane-test"));
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, _settings.path());
    QStandardPaths::setTestModeEnabled(true);
    QFile::remove(Autosave::copyOf(QString()));
}

std::unique_ptr<WorkbenchWindow> tst_DocumentFile::makeWindow()
{
    auto window = std::make_unique<WorkbenchWindow>(false);
    window->resize(900, 700);
    window->show();
    window->activateWindow();
    return QTest::qWaitForWindowExposed(window.get()) ? std::move(window) : nullptr;
}

void tst_DocumentFile::init()
{
    QSettings().clear();
    _folder = std::make_unique<QTemporaryDir>();
    _window = makeWindow();
    QVERIFY(_window);
    _file = write(QStringLiteral("first.x3d"), text);
    QVERIFY(document()->openByUser(_file));
    _window->viewManager()->runFrame();
    _window->findChild<SceneTreeView*>()->setFocus();
}

void tst_DocumentFile::cleanup()
{
    _window.reset();
}

QString tst_DocumentFile::write(const QString& name, const char* content)
{
    QFile file(_folder->filePath(name));
    return file.open(QIODevice::WriteOnly) && file.write(content) >= 0 ? file.fileName() : QString();
}

QByteArray tst_DocumentFile::read(const QString& name)
{
    QFile file(name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void tst_DocumentFile::change()
{
    QVERIFY(_window->showNode(QStringLiteral("T")));
    QVERIFY(_window->editing()->rename(QStringLiteral("Changed")));
}

void tst_DocumentFile::keys(Qt::Key key, Qt::KeyboardModifiers modifiers)
{
    // Without a window manager nobody makes the window active again once a dialog has closed.
    QApplication::setActiveWindow(_window.get());
    QTest::keyClick(_window->findChild<SceneTreeView*>(), key, modifiers);
}

std::string tst_DocumentFile::value(const char* field) const
{
    _window->showNode(QStringLiteral("T"));
    const Orvane::Node* const node = _window->selection()->node();
    return node ? node->findField(field, Orvane::Node::EXACT_FSO)->valueToString() : std::string();
}

void tst_DocumentFile::titleTellsTheFileAndChanges()
{
    QVERIFY(_window->windowTitle().startsWith(QStringLiteral("first.x3d[*]")));
    QVERIFY(!_window->isWindowModified());
    change();
    QVERIFY(_window->isWindowModified());
    _window->steps()->undo();
    QVERIFY(!_window->isWindowModified());
}

void tst_DocumentFile::ctrlSWritesTheFileInItsEncoding_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("start");
    QTest::newRow("XML") << QStringLiteral("a.x3d") << QByteArray("<?xml");
    QTest::newRow("classic") << QStringLiteral("a.x3dv") << QByteArray("#X3D V");
    QTest::newRow("VRML97") << QStringLiteral("a.wrl") << QByteArray("#VRML V2.0");
}

void tst_DocumentFile::ctrlSWritesTheFileInItsEncoding()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, start);
    nameFile(_folder->filePath(name));
    QVERIFY(document()->saveAs());
    change();
    keys(Qt::Key_S, Qt::ControlModifier);
    QVERIFY(!_window->isWindowModified());
    const QByteArray written = read(_folder->filePath(name));
    QVERIFY2(written.startsWith(start), written.constData());
    QVERIFY(written.contains("Changed"));
    // It can be gone on with.
    QVERIFY(document()->openByUser(_folder->filePath(name)));
    QVERIFY(_window->showNode(QStringLiteral("Changed")));
}

void tst_DocumentFile::whatWasNotTouchedIsNotLost()
{
    change();
    QVERIFY(document()->save());
    const QByteArray written = read(_file);
    QVERIFY(written.contains("My title"));
    QVERIFY(written.contains("Gadget"));
    QVERIFY(written.contains("red"));
    QVERIFY(written.contains("1 2 3"));
}

void tst_DocumentFile::saveAsGoesOnWithTheNewFile()
{
    const QByteArray before = read(_file);
    change();
    const QString other = _folder->filePath(QStringLiteral("other.x3dv"));
    nameFile(other);
    keys(Qt::Key_S, Qt::ControlModifier | Qt::ShiftModifier);
    QCOMPARE(document()->file(), other);
    QVERIFY(!_window->isWindowModified());
    QVERIFY(_window->windowTitle().startsWith(QStringLiteral("other.x3dv")));
    QVERIFY(read(other).contains("Changed"));
    QCOMPARE(read(_file), before);
    QCOMPARE(RecentFiles::files().first(), other);
}

void tst_DocumentFile::exportLeavesTheFile()
{
    change();
    const QString other = _folder->filePath(QStringLiteral("out.wrl"));
    nameFile(other);
    keys(Qt::Key_E, Qt::ControlModifier);
    QVERIFY(read(other).startsWith("#VRML"));
    QCOMPARE(document()->file(), _file);
    QVERIFY(_window->isWindowModified());
}

void tst_DocumentFile::theLogTellsWhatAFileHasLost()
{
    QVERIFY(document()->openByUser(
        write(QStringLiteral("units.x3d"),
              "<X3D profile='Full' version='3.3'><head><meta name='author' content='somebody'/></head>"
              "<Scene><Group/></Scene></X3D>")));
    const QString other = _folder->filePath(QStringLiteral("out.wrl"));
    nameFile(other);
    keys(Qt::Key_E, Qt::ControlModifier);
    const auto* const log = _window->findChild<QTextEdit*>(QStringLiteral("textView"));
    QTRY_VERIFY(log->toPlainText().contains(other + QStringLiteral(": ")));
}

void tst_DocumentFile::aNewSceneAsksForAFile()
{
    keys(Qt::Key_N, Qt::ControlModifier);
    QVERIFY(document()->file().isEmpty());
    QVERIFY(!_window->showNode(QStringLiteral("T")));
    QVERIFY(_window->editing()->addNode(QStringLiteral("Transform"), QStringLiteral("First")));
    QVERIFY(_window->isWindowModified());
    const QString name = _folder->filePath(QStringLiteral("new.x3d"));
    nameFile(name);
    keys(Qt::Key_S, Qt::ControlModifier);
    QVERIFY(read(name).contains("First"));
    QCOMPARE(document()->file(), name);
}

void tst_DocumentFile::closingAsksAboutChanges()
{
    change();
    answer(QMessageBox::Cancel);
    QVERIFY(!_window->close());
    QVERIFY(_window->isVisible());
    answer(QMessageBox::Save);
    QVERIFY(_window->close());
    QVERIFY(read(_file).contains("Changed"));
    // Without changes there is no question.
    _window = makeWindow();
    QVERIFY(document()->openByUser(_file));
    QVERIFY(_window->close());
}

void tst_DocumentFile::aFileThatCannotBeWrittenKeepsTheChanges()
{
    change();
    QVERIFY(QFile::remove(_file));
    QVERIFY(QDir().mkdir(_file));
    QVERIFY(!document()->save());
    QVERIFY(_window->isWindowModified());
    QVERIFY(told().contains(QStringLiteral("first.x3d")));
    const auto* const box = _window->findChild<QMessageBox*>();
    QVERIFY(box && box->isVisible());
    QVERIFY(box->text().contains(QStringLiteral("first.x3d")));
    QCOMPARE(box->informativeText(), told());
    const auto* const log = _window->findChild<QTextEdit*>(QStringLiteral("textView"));
    QTRY_VERIFY(log->toPlainText().contains(told()));
    delete box;
    // Closing stays as well.
    answer(QMessageBox::Save);
    QVERIFY(!document()->mayClose());
}

void tst_DocumentFile::aFileOfNoKnownSuffixIsSavedUnderAnother()
{
    const QString plain = write(QStringLiteral("plain"), "#VRML V2.0 utf8\nDEF T Transform { }\n");
    QVERIFY(document()->openByUser(plain));
    change();
    const QString other = _folder->filePath(QStringLiteral("plain.wrl"));
    nameFile(other);
    QVERIFY(document()->save());
    QVERIFY(read(other).contains("Changed"));
    QCOMPARE(document()->file(), other);
    QVERIFY(!_window->isWindowModified());
    QVERIFY(!read(plain).contains("Changed"));
}

void tst_DocumentFile::aFailureIsShownWithItsReason()
{
    const QString broken =
        write(QStringLiteral("broken.x3d"), "<X3D version='4.0'><Scene><Group></Scene></X3D>");
    QVERIFY(!document()->openByUser(broken));
    auto* const box = _window->findChild<QMessageBox*>();
    QVERIFY(box);
    QVERIFY(box->isVisible());
    QVERIFY(box->text().contains(QStringLiteral("broken.x3d")));
    QVERIFY2(box->informativeText().contains(QStringLiteral("broken.x3d:1:")),
             qPrintable(box->informativeText()));
    QVERIFY(told().contains(QStringLiteral("broken.x3d:1:")));
    box->close();
    // The scene of before is still there.
    QCOMPARE(document()->file(), _file);
    QVERIFY(_window->showNode(QStringLiteral("T")));
}

void tst_DocumentFile::reloadAsksAndReads()
{
    change();
    write(QStringLiteral("first.x3d"), "<X3D version='4.0'><Scene><Transform DEF='T' translation='7 8 9'/>"
                                       "</Scene></X3D>");
    answer(QMessageBox::Cancel);
    keys(Qt::Key_F5, Qt::NoModifier);
    QVERIFY(_window->showNode(QStringLiteral("Changed")));
    QVERIFY(_window->isWindowModified());
    answer(QMessageBox::Discard);
    keys(Qt::Key_F5, Qt::NoModifier);
    QVERIFY(!_window->showNode(QStringLiteral("Changed")));
    QCOMPARE(value("translation"), std::string("7 8 9"));
    QVERIFY(!_window->isWindowModified());
}

void tst_DocumentFile::recentFilesAreOpenedFromTheMenu()
{
    const QString second = write(QStringLiteral("sec&ond.x3d"), "<X3D version='4.0'><Scene/></X3D>");
    QVERIFY(document()->openByUser(second));
    QCOMPARE(RecentFiles::files(), QStringList({second, _file}));
    QMenu* menu = _window->findChild<RecentFiles*>()->menu();
    QVERIFY(menu->actions().at(0)->text().contains(QStringLiteral("sec&&ond.x3d")));
    menu->actions().at(1)->trigger();
    QCOMPARE(document()->file(), _file);
    // One that is gone is told, and dropped.
    QFile::remove(second);
    menu->actions().at(1)->trigger();
    QVERIFY(_window->findChild<QMessageBox*>());
    QCOMPARE(RecentFiles::files(), QStringList(_file));
    delete _window->findChild<QMessageBox*>();
}

void tst_DocumentFile::theMenuForgetsTheOldest()
{
    RecentFiles recent(_window.get());
    for (int i = 0; i < RecentFiles::most + 5; ++i)
        recent.add(QStringLiteral("/scene%1.x3d").arg(i));
    QCOMPARE(RecentFiles::files().size(), RecentFiles::most);
    QCOMPARE(RecentFiles::files().first(), QStringLiteral("/scene14.x3d"));
    recent.menu()->actions().constLast()->trigger();
    QVERIFY(RecentFiles::files().isEmpty());
}

void tst_DocumentFile::aDroppedFileIsOpened()
{
    const QString second = write(QStringLiteral("dropped.x3d"), "<X3D version='4.0'><Scene/></X3D>");
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(second)});
    QDragEnterEvent enter(QPoint(400, 300), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(_window.get(), &enter);
    QVERIFY(enter.isAccepted());
    QDropEvent drop(QPoint(400, 300), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(_window.get(), &drop);
    QTRY_COMPARE(document()->file(), second);
    // Words are none.
    QMimeData words;
    words.setText(QStringLiteral("words"));
    QDragEnterEvent other(QPoint(400, 300), Qt::CopyAction, &words, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(_window.get(), &other);
    QVERIFY(!other.isAccepted());
}

void tst_DocumentFile::aCopyIsKeptAgainstLoss()
{
    auto* const autosave = _window->findChild<Autosave*>();
    emit autosave->due();
    QVERIFY(!QFile::exists(Autosave::copyOf(_file)));
    const QByteArray before = read(_file);
    change();
    emit autosave->due();
    QVERIFY(read(Autosave::copyOf(_file)).contains("Changed"));
    QCOMPARE(read(_file), before);
    QVERIFY(_window->isWindowModified());
    // What has not changed since is not written again.
    QFile::remove(Autosave::copyOf(_file));
    emit autosave->due();
    QVERIFY(!QFile::exists(Autosave::copyOf(_file)));
}

void tst_DocumentFile::aFileOfNoKnownSuffixHasACopyToo()
{
    const QString plain = write(QStringLiteral("plain"), "#VRML V2.0 utf8\nDEF T Transform { }\n");
    QVERIFY(document()->openByUser(plain));
    QVERIFY(Autosave::copyOf(plain) != Autosave::copyOf(plain + QStringLiteral(".x3d")));
    change();
    emit _window->findChild<Autosave*>()->due();
    QVERIFY2(read(Autosave::copyOf(plain)).contains("Changed"), qPrintable(told()));
}

void tst_DocumentFile::aCopyThatFailsIsTriedAgain()
{
    const QString copy = Autosave::copyOf(_file);
    QVERIFY(QDir().mkdir(copy));
    change();
    emit _window->findChild<Autosave*>()->due();
    QVERIFY2(told().contains(copy), qPrintable(told()));
    QVERIFY(QDir().rmdir(copy));
    emit _window->findChild<Autosave*>()->due();
    QVERIFY(read(copy).contains("Changed"));
}

void tst_DocumentFile::aCopyIsBroughtBack()
{
    change();
    emit _window->findChild<Autosave*>()->due();
    // The program ends without a word.
    _window = makeWindow();
    QFile copy(Autosave::copyOf(_file));
    QVERIFY(copy.open(QIODevice::ReadWrite));
    QVERIFY(copy.setFileTime(QDateTime::currentDateTime().addSecs(10), QFileDevice::FileModificationTime));
    copy.close();
    answer(QMessageBox::Yes);
    QVERIFY(document()->openByUser(_file));
    QVERIFY(_window->showNode(QStringLiteral("Changed")));
    QCOMPARE(document()->file(), _file);
    QVERIFY(_window->isWindowModified());
    QVERIFY(document()->save());
    QVERIFY(read(_file).contains("Changed"));
    QVERIFY(!QFile::exists(Autosave::copyOf(_file)));
}

void tst_DocumentFile::aCopyThatIsRefusedGoes()
{
    QFile copy(Autosave::copyOf(_file));
    QVERIFY(copy.open(QIODevice::WriteOnly));
    copy.write("<X3D version='4.0'><Scene/></X3D>");
    copy.flush();
    QVERIFY(copy.setFileTime(QDateTime::currentDateTime().addSecs(10), QFileDevice::FileModificationTime));
    copy.close();
    answer(QMessageBox::No);
    QVERIFY(document()->openByUser(_file));
    QVERIFY(_window->showNode(QStringLiteral("T")));
    QVERIFY(!QFile::exists(Autosave::copyOf(_file)));
}

void tst_DocumentFile::savingTakesTheCopyAway()
{
    change();
    emit _window->findChild<Autosave*>()->due();
    QVERIFY(QFile::exists(Autosave::copyOf(_file)));
    QVERIFY(document()->save());
    QVERIFY(!QFile::exists(Autosave::copyOf(_file)));
    _window->steps()->undo();
    emit _window->findChild<Autosave*>()->due();
    answer(QMessageBox::Discard);
    QVERIFY(_window->close());
    QVERIFY(!QFile::exists(Autosave::copyOf(_file)));
}

QTEST_MAIN(tst_DocumentFile)
#include "tst_DocumentFile.moc"
