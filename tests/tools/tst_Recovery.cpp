// A workbench that is killed, and what the next one brings back.
#include "Author.h"
#include "Autosave.h"
#include "SceneEditing.h"
#include <QProcess>
#include <QSettings>
#include <QStandardPaths>
#include <csignal>
#include <cstdio>

class tst_Recovery : public QObject
{
    Q_OBJECT

public:
    QString folder() const { return _folder.path(); }

private slots:
    void init();

    void changesOfAFileAreOfferedAtTheStart();
    void changesOfANewSceneAreOfferedAtTheStart();
    void openingTheFileOffersThemToo();
    void changesThatAreRefusedForNowAreKept();
    void discardedChangesAreNotOfferedAgain();
    void thoseOfALivingProgramAreLeftAlone();
    void whatWasSavedIsNotOffered();

private:
    /// Another workbench changes a scene, and is killed when it has had the time for a copy.
    void changeAndDie(const QString& file);

    QTemporaryDir _folder;
    QString _file;
};

/// What all the programs of this test have in common.
static void useSettingsIn(const QString& folder)
{
    QCoreApplication::setOrganizationName(QStringLiteral("orvane-test"));
    QCoreApplication::setApplicationName(QStringLiteral("recovery"));
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, folder);
    qputenv("XDG_DATA_HOME", QFile::encodeName(folder));
}

/// The workbench that is killed: it opens the file, or none, adds a node, and says so when the copy is
/// written.
static int workUntilKilled(const QString& file)
{
    Author author;
    if (!QTest::qWaitForWindowExposed(&author.window))
        return 1;
    DocumentFile& document = *author.window.document();
    if (file.isEmpty())
        author.key(Qt::Key_N, Qt::ControlModifier);
    else if (!document.openByUser(file))
        return 1;
    author.run();
    if (!author.window.editing()->addNode(QStringLiteral("Transform"), QStringLiteral("Unsaved")))
        return 1;
    emit author.window.findChild<Autosave*>()->due();
    std::puts("ready");
    std::fflush(stdout);
    return QApplication::exec();
}

void tst_Recovery::init()
{
    QSettings().clear();
    QFile::remove(Autosave::copyOf(QString()));
    _file = _folder.filePath(QStringLiteral("scene.x3d"));
    QFile::remove(Autosave::copyOf(_file));
    QFile file(_file);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("<X3D version='4.0'><Scene><Transform DEF='T'/></Scene></X3D>");
}

void tst_Recovery::changeAndDie(const QString& file)
{
    QProcess other;
    other.start(QCoreApplication::applicationFilePath(), {QStringLiteral("--work"), _folder.path(), file});
    QVERIFY(other.waitForStarted());
    QByteArray said;
    while (!said.contains("ready") && other.waitForReadyRead(30000))
        said += other.readAllStandardOutput();
    QVERIFY2(said.contains("ready"), other.readAllStandardError().constData());
    QCOMPARE(::kill(static_cast<pid_t>(other.processId()), SIGKILL), 0);
    QVERIFY(other.waitForFinished());
    QCOMPARE(other.exitStatus(), QProcess::CrashExit);
    QVERIFY(!Author::read(_file).contains("Unsaved"));
}

void tst_Recovery::changesOfAFileAreOfferedAtTheStart()
{
    changeAndDie(_file);
    Author author;
    QString asked;
    Author::answer(QMessageBox::Yes, &asked);
    author.window.document()->recover();
    QVERIFY2(asked.contains(QStringLiteral("scene.x3d")), qPrintable(asked));
    QVERIFY(author.find("Unsaved"));
    QVERIFY(author.find("T"));
    QCOMPARE(author.window.document()->file(), _file);
    QVERIFY(author.window.isWindowModified());
    QVERIFY(author.window.document()->save());
    QVERIFY(Author::read(_file).contains("Unsaved"));
    QVERIFY(Autosave::leftCopies().isEmpty());
    QVERIFY(!QFile::exists(Autosave::copyOf(_file)));
}

void tst_Recovery::changesOfANewSceneAreOfferedAtTheStart()
{
    changeAndDie(QString());
    Author author;
    Author::answer(QMessageBox::Yes);
    author.window.document()->recover();
    QVERIFY(author.find("Unsaved"));
    QVERIFY(author.window.document()->file().isEmpty());
    QVERIFY(author.window.isWindowModified());
    Author::answer(QMessageBox::Discard);
    QVERIFY(author.window.close());
    QVERIFY(Autosave::leftCopies().isEmpty());
}

void tst_Recovery::openingTheFileOffersThemToo()
{
    changeAndDie(_file);
    Author author;
    Author::answer(QMessageBox::Yes);
    QVERIFY(author.window.document()->openByUser(_file));
    QVERIFY(author.find("Unsaved"));
    QVERIFY(author.window.isWindowModified());
}

void tst_Recovery::changesThatAreRefusedForNowAreKept()
{
    changeAndDie(_file);
    Author author;
    Author::answer(QMessageBox::No);
    author.window.document()->recover();
    QVERIFY(!author.find("Unsaved"));
    QVERIFY(!author.window.isWindowModified());
    QCOMPARE(Autosave::leftCopies(), QStringList(_file));
    Author::answer(QMessageBox::Yes);
    author.window.document()->recover();
    QVERIFY(author.find("Unsaved"));
}

void tst_Recovery::discardedChangesAreNotOfferedAgain()
{
    changeAndDie(_file);
    Author author;
    Author::answer(QMessageBox::Discard);
    author.window.document()->recover();
    QVERIFY(Autosave::leftCopies().isEmpty());
    QVERIFY(!QFile::exists(Autosave::copyOf(_file)));
    // Nothing is asked; a question would wait for ever.
    author.window.document()->recover();
    QVERIFY(author.window.document()->openByUser(_file));
    QVERIFY(!author.find("Unsaved"));
}

void tst_Recovery::thoseOfALivingProgramAreLeftAlone()
{
    Author first;
    QVERIFY(first.window.document()->openByUser(_file));
    first.select("T");
    QVERIFY(first.window.editing()->rename(QStringLiteral("Changed")));
    emit first.window.findChild<Autosave*>()->due();
    QVERIFY(QFile::exists(Autosave::copyOf(_file)));
    QVERIFY(Autosave::leftCopies().isEmpty());
    first.steps().undo();
}

void tst_Recovery::whatWasSavedIsNotOffered()
{
    changeAndDie(_file);
    // Another program has written the file since.
    QTest::qWait(20);
    QFile file(_file);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("<X3D version='4.0'><Scene><Transform DEF='Later'/></Scene></X3D>");
    file.close();
    Author author;
    author.window.document()->recover();
    QVERIFY(!author.find("Unsaved"));
    QVERIFY(Autosave::leftCopies().isEmpty());
}

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    if (arguments.value(1) == QLatin1String("--work")) {
        useSettingsIn(arguments.value(2));
        return workUntilKilled(arguments.value(3));
    }
    tst_Recovery test;
    useSettingsIn(test.folder());
    return QTest::qExec(&test, argc, argv);
}

#include "tst_Recovery.moc"
