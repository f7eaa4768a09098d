// Code that was written in the panel of code and not applied: it is a change like the others, and is not
// lost.
#include "Author.h"
#include "CodeDock.h"
#include "FindBar.h"
#include "SceneEditing.h"
#include <QPushButton>
#include <QorCodeWidget.h>

class tst_UnappliedCode : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { _author.reset(); }

    void windowShowsThatThereIsSome();
    void savingAppliesIt();
    void aFileThatCannotBeWrittenKeepsIt();
    void closingAsksAboutIt();
    void openingAsksAboutIt();
    void aFailedOpenKeepsIt();
    void deletingTheNodeAsksAboutIt();
    void itWaitsForTheReturnOfItsNode();
    void applyIsAStep();
    void ctrlFFindsInIt();

private:
    CodeDock* dock() const { return _author->window.findChild<CodeDock*>(); }
    QTextEdit* edit() const { return dock()->codeWidget()->findChild<QTextEdit*>(QStringLiteral("code")); }
    /// Opens the code of a node and writes a line in front of it.
    void type(const char* node, const QString& line = QStringLiteral("// new"));

    std::unique_ptr<Author> _author;
};

static const char scene[] =
    "<X3D version='4.0' profile='Full'><Scene><Group DEF='G'>"
    "<Script DEF='First' url='\"ecmascript: function initialize() {}\"'/></Group>"
    "<Script DEF='Second' url='\"ecmascript: function initialize() { var a; var A; }\"'/>"
    "<Script DEF='Filed' url='\"code.js\"'/></Scene></X3D>";

void tst_UnappliedCode::init()
{
    _author = std::make_unique<Author>();
    _author->write(QStringLiteral("code.js"), "function initialize() {}\n");
    QVERIFY(_author->open(QStringLiteral("scene.x3d"), scene));
}

void tst_UnappliedCode::type(const char* node, const QString& line)
{
    QVERIFY(_author->select(node));
    edit()->setFocus();
    edit()->moveCursor(QTextCursor::Start);
    QTest::keyClicks(edit(), line);
    QTest::keyClick(edit(), Qt::Key_Return);
}

void tst_UnappliedCode::windowShowsThatThereIsSome()
{
    QVERIFY(!_author->window.isWindowModified());
    type("First");
    QVERIFY(_author->window.isWindowModified());
    QCOMPARE(dock()->unapplied(), QStringList(QStringLiteral("First")));
    _author->select("Second");
    QVERIFY(_author->window.isWindowModified());
    _author->select("First");
    edit()->undo();
    edit()->undo();
    QVERIFY(!edit()->document()->isModified());
    QVERIFY(!_author->window.isWindowModified());
}

void tst_UnappliedCode::savingAppliesIt()
{
    type("First");
    type("Second", QStringLiteral("// more"));
    type("Filed", QStringLiteral("// on disk"));
    _author->key(Qt::Key_S, Qt::ControlModifier);
    QVERIFY(!_author->window.isWindowModified());
    const QByteArray written = Author::read(_author->path(QStringLiteral("scene.x3d")));
    QVERIFY(written.contains("// new"));
    QVERIFY(written.contains("// more"));
    QVERIFY(written.contains("code.js"));
    QVERIFY(Author::read(_author->path(QStringLiteral("code.js"))).startsWith("// on disk\nfunction"));
}

void tst_UnappliedCode::aFileThatCannotBeWrittenKeepsIt()
{
    type("Filed");
    QVERIFY(QFile::remove(_author->path(QStringLiteral("code.js"))));
    QVERIFY(QDir().mkdir(_author->path(QStringLiteral("code.js"))));
    QVERIFY(!_author->window.document()->save());
    QVERIFY(_author->told().contains(QStringLiteral("Filed")));
    QVERIFY(_author->window.isWindowModified());
    QVERIFY(edit()->toPlainText().startsWith(QStringLiteral("// new")));
}

void tst_UnappliedCode::closingAsksAboutIt()
{
    type("First");
    QString asked;
    Author::answer(QMessageBox::Cancel, &asked);
    QVERIFY(!_author->window.close());
    QVERIFY2(asked.contains(QStringLiteral("First")), qPrintable(asked));
    QVERIFY(edit()->toPlainText().startsWith(QStringLiteral("// new")));
    Author::answer(QMessageBox::Save);
    QVERIFY(_author->window.close());
    QVERIFY(Author::read(_author->path(QStringLiteral("scene.x3d"))).contains("// new"));
}

void tst_UnappliedCode::openingAsksAboutIt()
{
    type("First");
    const QString other = _author->write(QStringLiteral("other.x3d"), "<X3D version='4.0'><Scene/></X3D>");
    Author::answer(QMessageBox::Cancel);
    QVERIFY(!_author->window.document()->openByUser(other));
    QVERIFY(_author->find("First"));
    Author::answer(QMessageBox::Discard);
    QVERIFY(_author->window.document()->openByUser(other));
    QVERIFY(!_author->window.isWindowModified());
    QVERIFY(!Author::read(_author->path(QStringLiteral("scene.x3d"))).contains("// new"));
}

void tst_UnappliedCode::aFailedOpenKeepsIt()
{
    type("First");
    const QString broken = _author->write(QStringLiteral("broken.x3d"), "<X3D version='4.0'><Scene>");
    Author::answer(QMessageBox::Discard);
    QVERIFY(!_author->window.document()->openByUser(broken));
    delete _author->window.findChild<QMessageBox*>();
    QVERIFY(_author->window.isWindowModified());
    QVERIFY(edit()->toPlainText().startsWith(QStringLiteral("// new")));
}

void tst_UnappliedCode::deletingTheNodeAsksAboutIt()
{
    type("First");
    _author->select("G");
    QString asked;
    Author::answer(QMessageBox::Cancel, &asked);
    _author->key(Qt::Key_Delete);
    QVERIFY(asked.contains(QStringLiteral("First")));
    QVERIFY(_author->find("First"));
    QCOMPARE(dock()->unapplied().size(), 1);

    Author::answer(QMessageBox::Apply);
    _author->key(Qt::Key_Delete);
    QVERIFY(!_author->find("First"));
    _author->steps().undo();
    QVERIFY(_author->value("First", "url").find("// new") != std::string::npos);

    type("First", QStringLiteral("// other"));
    _author->select("G");
    Author::answer(QMessageBox::Discard);
    _author->key(Qt::Key_Delete);
    QVERIFY(!_author->find("First"));
    _author->steps().undo();
    QVERIFY(_author->value("First", "url").find("// other") == std::string::npos);
    // Others go without a question.
    type("Second");
    _author->select("Filed");
    _author->key(Qt::Key_Delete);
    QVERIFY(!_author->find("Filed"));
}

void tst_UnappliedCode::itWaitsForTheReturnOfItsNode()
{
    _author->select("G");
    QVERIFY(_author->window.editing()->addNode(QStringLiteral("Script"), QStringLiteral("Added")));
    type("Added");
    _author->steps().undo();
    QVERIFY(!_author->find("Added"));
    QVERIFY(dock()->unapplied().isEmpty());
    QVERIFY(!_author->window.isWindowModified());
    QVERIFY(!dock()->codeWidget()->codeNode());
    _author->steps().redo();
    QCOMPARE(dock()->unapplied(), QStringList(QStringLiteral("Added")));
    _author->select("G");
    _author->select("Added");
    QVERIFY(edit()->toPlainText().startsWith(QStringLiteral("// new")));
}

void tst_UnappliedCode::applyIsAStep()
{
    const QByteArray before = _author->saved();
    type("First");
    QCOMPARE(_author->steps().count(), 0);
    for (QPushButton* const button : dock()->codeWidget()->findChildren<QPushButton*>())
        if (button->text() == QLatin1String("Apply"))
            QTest::mouseClick(button, Qt::LeftButton);
    QCOMPARE(_author->steps().count(), 1);
    const QByteArray after = _author->saved();
    QVERIFY(after.contains("// new"));
    QVERIFY(dock()->unapplied().isEmpty());
    QVERIFY(_author->window.isWindowModified());
    _author->steps().undo();
    _author->run();
    QCOMPARE(_author->saved(), before);
    QVERIFY(!edit()->toPlainText().contains(QStringLiteral("// new")));
    QVERIFY(!_author->window.isWindowModified());
    _author->steps().redo();
    _author->run();
    QCOMPARE(_author->saved(), after);
    QVERIFY(edit()->toPlainText().startsWith(QStringLiteral("// new")));
}

void tst_UnappliedCode::ctrlFFindsInIt()
{
    _author->select("Second");
    edit()->setFocus();
    edit()->moveCursor(QTextCursor::Start);
    QTest::keyClick(edit(), Qt::Key_F, Qt::ControlModifier);
    FindBar* const bar = dock()->findBar();
    QVERIFY(bar->isVisible());
    QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("var a"));
    QCOMPARE(bar->outcome(), QStringLiteral("1 of 2"));
    const int first = edit()->textCursor().selectionStart();
    QCOMPARE(edit()->textCursor().selectedText(), QStringLiteral("var a"));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    QCOMPARE(edit()->textCursor().selectedText(), QStringLiteral("var A"));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_F3);
    QCOMPARE(edit()->textCursor().selectionStart(), first);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_F3, Qt::ShiftModifier);
    QCOMPARE(bar->outcome(), QStringLiteral("2 of 2"));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
    QVERIFY(!bar->isVisible());
    QCOMPARE(QApplication::focusWidget(), edit());
    QVERIFY(!_author->window.isWindowModified());
    // Nothing is found where there is no code.
    QVERIFY(_author->open(QStringLiteral("none.x3d"), "<X3D version='4.0'><Scene/></X3D>"));
    bar->open();
    emit bar->wanted(FindBar::Next);
    QCOMPARE(bar->outcome(), QStringLiteral("None"));
}

QTEST_MAIN(tst_UnappliedCode)
#include "tst_UnappliedCode.moc"
