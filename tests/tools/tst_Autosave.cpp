// Copies against loss that cannot be written, and code in them that was not applied.
#include "Author.h"
#include "Autosave.h"
#include "CodeDock.h"
#include "SceneEditing.h"
#include <QAction>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QSettings>
#include <QorCodeWidget.h>

class tst_Autosave : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup() { _author.reset(); }

    void aFailureIsToldOnce();
    void codeThatWasNotAppliedComesBack();
    void codeThatWasAppliedIsNoLongerKept();
    void codeWithoutANodeGoesToTheLog();
    void brokenCodeFilesDoNoHarm();
    void exportAsksAboutCode();

private:
    /// Opens the scene of this test in another workbench; the one before has ended without a word.
    void openAgain();
    CodeDock* dock() const { return _author->window.findChild<CodeDock*>(); }
    QTextEdit* edit() const { return dock()->codeWidget()->findChild<QTextEdit*>(QStringLiteral("code")); }
    void type(const char* node, const QString& line) const
    {
        QVERIFY(_author->select(node));
        edit()->setFocus();
        edit()->moveCursor(QTextCursor::Start);
        QTest::keyClicks(edit(), line);
        QTest::keyClick(edit(), Qt::Key_Return);
    }
    QString codeCopy() const { return copy() + QStringLiteral(".code"); }
    QString copy() const { return Autosave::copyOf(_author->window.document()->file()); }
    void due() const { emit _author->window.findChild<Autosave*>()->due(); }
    void change(const QString& name) const
    {
        QVERIFY(_author->window.editing()->addNode(QStringLiteral("Transform"), name));
    }

    QTemporaryDir _settings;
    std::unique_ptr<QTemporaryDir> _folder;
    std::unique_ptr<Author> _author;
    QString _file;
};

static const char scene[] =
    "<X3D version='4.0' profile='Full'><Scene><Transform DEF='T'/>"
    "<Script DEF='First' url='\"ecmascript: function initialize() {}\"'/>"
    "<Group DEF='G'><Script url='\"ecmascript: function initialize() { var inner; }\"'/></Group>"
    "<Script DEF='Filed' url='\"code.js\"'/>"
    "<Shape><Appearance><ComposedShader DEF='Shader' language='GLSL'><ShaderPart DEF='Part' "
    "type='VERTEX'><![CDATA[data:text/plain, void main() {}]]></ShaderPart></ComposedShader></Appearance>"
    "</Shape></Scene></X3D>";

void tst_Autosave::initTestCase()
{
    QCoreApplication::setOrganizationName(QStringLiteral("orvane-test"));
    QCoreApplication::setApplicationName(QStringLiteral("autosave"));
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, _settings.path());
    qputenv("XDG_DATA_HOME", QFile::encodeName(_settings.path()));
}

void tst_Autosave::init()
{
    _folder = std::make_unique<QTemporaryDir>();
    _author = std::make_unique<Author>();
    const auto write = [this](const QString& name, const QByteArray& text) {
        QFile file(_folder->filePath(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(text);
    };
    write(QStringLiteral("code.js"), "function initialize() {}\n");
    write(QStringLiteral("scene.x3d"), scene);
    _file = _folder->filePath(QStringLiteral("scene.x3d"));
    QVERIFY(_author->window.document()->openByUser(_file));
    _author->run();
}

void tst_Autosave::openAgain()
{
    _author.reset();
    _author = std::make_unique<Author>();
    QFile written(Autosave::copyOf(_file));
    QVERIFY(written.open(QIODevice::ReadWrite));
    QVERIFY(written.setFileTime(QDateTime::currentDateTime().addSecs(10), QFileDevice::FileModificationTime));
    written.close();
    Author::answer(QMessageBox::Yes);
    QVERIFY(_author->window.document()->openByUser(_file));
    _author->run();
}

void tst_Autosave::aFailureIsToldOnce()
{
    const auto tells = [this] {
        _author->window.statusBar()->clearMessage();
        due();
        return _author->told().contains(copy());
    };
    const auto logged = [this] {
        QTest::qWait(300);
        return _author->log()->toPlainText().count(copy());
    };
    QVERIFY(QDir().mkpath(copy()));
    change(QStringLiteral("New1"));
    QVERIFY(tells());
    const int lines = logged();
    QVERIFY(lines > 0);
    QVERIFY(!tells());
    change(QStringLiteral("New2"));
    QVERIFY(!tells());
    QCOMPARE(logged(), lines);
    // Another cause is news.
    QVERIFY(QDir().rmdir(copy()));
    const QString folder = QFileInfo(copy()).path();
    QVERIFY(QFile::rename(folder, folder + QStringLiteral(".away")));
    QVERIFY(tells());
    QVERIFY(!tells());
    // So is a failure after a success.
    QVERIFY(QFile::rename(folder + QStringLiteral(".away"), folder));
    QVERIFY(!tells());
    QVERIFY(Author::read(copy()).contains("New2"));
    change(QStringLiteral("New3"));
    QVERIFY(QFile::remove(copy()));
    QVERIFY(QDir().mkpath(copy()));
    QVERIFY(tells());
    QVERIFY(!tells());
}

void tst_Autosave::codeThatWasNotAppliedComesBack()
{
    const std::string value = _author->value("First", "url");
    type("First", QStringLiteral("// first ("));
    type("Filed", QStringLiteral("// filed"));
    type("Part", QStringLiteral("// part"));
    Orvane::Node* inner = nullptr;
    std::vector<Orvane::Node*> children;
    _author->find("G")->collectAllChildren(children, 0);
    inner = children.front();
    dock()->openNode(inner);
    QTest::keyClicks(edit(), QStringLiteral("// inner"));
    QCOMPARE(dock()->unapplied().size(), 4);
    QVERIFY(_author->steps().isClean());
    due();
    // What comes later is kept as well.
    type("First", QStringLiteral("// more"));
    due();

    openAgain();
    QCOMPARE(dock()->unapplied().size(), 4);
    QVERIFY(_author->window.isWindowModified());
    QVERIFY2(_author->told().contains(QStringLiteral("not applied")), qPrintable(_author->told()));
    // Nobody has applied it.
    QCOMPARE(_author->value("First", "url"), value);
    QCOMPARE(Author::read(_folder->filePath(QStringLiteral("code.js"))),
             QByteArray("function initialize() {}\n"));
    _author->select("First");
    QVERIFY(edit()->toPlainText().startsWith(QStringLiteral("// more\n// first (\necmascript:")));
    _author->select("Filed");
    QCOMPARE(edit()->toPlainText(), QStringLiteral("// filed\nfunction initialize() {}\n"));
    _author->select("Part");
    QVERIFY(edit()->toPlainText().startsWith(QStringLiteral("// part\n")));
    _author->find("G")->collectAllChildren(children, 0);
    dock()->openNode(children.front());
    QVERIFY(edit()->toPlainText().contains(QStringLiteral("// inner")));
    // The user may take it back, or save it.
    edit()->undo();
    QCOMPARE(dock()->unapplied().size(), 3);
    QVERIFY(_author->window.document()->save());
    QVERIFY(Author::read(_file).contains("// more"));
    QVERIFY(!QFile::exists(codeCopy()));
    QVERIFY(!QFile::exists(copy()));
}

void tst_Autosave::codeThatWasAppliedIsNoLongerKept()
{
    type("First", QStringLiteral("// first"));
    due();
    QVERIFY(QFile::exists(codeCopy()));
    dock()->applyAction()->trigger();
    due();
    QVERIFY(!QFile::exists(codeCopy()));
    QVERIFY(Author::read(copy()).contains("// first"));
    // Nor is a copy of changes that have all been taken back.
    _author->steps().undo();
    due();
    QVERIFY(!QFile::exists(copy()));
}

void tst_Autosave::codeWithoutANodeGoesToTheLog()
{
    type("First", QStringLiteral("// lost line"));
    due();
    QByteArray kept = Author::read(codeCopy());
    kept.replace("First", "Gone");
    QFile file(codeCopy());
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(kept);
    file.close();
    openAgain();
    QVERIFY(dock()->unapplied().isEmpty());
    QTRY_VERIFY(_author->log()->toPlainText().contains(QStringLiteral("// lost line")));
}

void tst_Autosave::brokenCodeFilesDoNoHarm()
{
    type("First", QStringLiteral("// first"));
    change(QStringLiteral("Unsaved"));
    due();
    for (const QByteArray broken : {"", "{", "[1, {}, {\"way\": \"children -1 children 99999999999\"}]",
                                    "[{\"type\": \"Group\", \"way\": \"children 2\"}]"})
    {
        QFile file(codeCopy());
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(broken);
        file.close();
        openAgain();
        QVERIFY(_author->find("Unsaved"));
        QVERIFY(dock()->unapplied().isEmpty());
    }
}

void tst_Autosave::exportAsksAboutCode()
{
    type("First", QStringLiteral("// first"));
    QString asked;
    // Without an answer to export there is no box for a file.
    Author::answer(QMessageBox::Cancel, &asked);
    _author->key(Qt::Key_E, Qt::ControlModifier);
    QVERIFY2(asked.contains(QStringLiteral("First")), qPrintable(asked));
    QCOMPARE(dock()->unapplied().size(), 1);
    const auto exportAs = [this](const QString& name, QMessageBox::StandardButton button) {
        auto* const timer = new QTimer(qApp);
        connect(timer, &QTimer::timeout, timer, [timer, name] {
            auto* const dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
            if (!dialog)
                return;
            timer->deleteLater();
            timer->stop();
            dialog->selectFile(name);
            dialog->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Save)->click();
        });
        timer->start(10);
        Author::answer(button);
        _author->key(Qt::Key_E, Qt::ControlModifier);
        return Author::read(name);
    };
    QVERIFY(!exportAs(_folder->filePath(QStringLiteral("without.x3d")), QMessageBox::Ignore)
                 .contains("// first"));
    QCOMPARE(dock()->unapplied().size(), 1);
    QVERIFY(exportAs(_folder->filePath(QStringLiteral("with.x3d")), QMessageBox::Apply).contains("// first"));
    QVERIFY(dock()->unapplied().isEmpty());
    QCOMPARE(_author->window.document()->file(), _file);
}

QTEST_MAIN(tst_Autosave)
#include "tst_Autosave.moc"
