// The box in which a node is named: a name that cannot be is told beside it, and nothing typed is lost.
#include "Author.h"
#include <QLabel>
#include <QLineEdit>
#include <functional>

class tst_NodeName : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { _author.reset(); }

    void aNodeIsRenamed();
    void aNameThatCannotBeStaysWithItsReason_data();
    void aNameThatCannotBeStaysWithItsReason();
    void cancelLeavesTheName();
    void anEmptyNameTakesItAway();

private:
    /// Presses F2, and has the box used.
    void rename(const std::function<void(QDialog&, QLineEdit&)>& use);

    std::unique_ptr<Author> _author;
};

void tst_NodeName::init()
{
    _author = std::make_unique<Author>();
    QVERIFY(_author->open(QStringLiteral("scene.x3d"),
                          "<X3D version='4.0' profile='Full'><Scene><Transform DEF='T'/><Group DEF='A'/>"
                          "<PositionInterpolator DEF='Way'/><ROUTE fromNode='Way' fromField='value_changed' "
                          "toNode='T' toField='translation'/></Scene></X3D>"));
    _author->select("T");
}

void tst_NodeName::rename(const std::function<void(QDialog&, QLineEdit&)>& use)
{
    bool isUsed = false;
    QTimer::singleShot(50, qApp, [&] {
        auto* const dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        QVERIFY(dialog);
        auto* const name = dialog->findChild<QLineEdit*>();
        QVERIFY(name);
        isUsed = true;
        use(*dialog, *name);
        if (dialog->isVisible())
            dialog->reject();
    });
    _author->key(Qt::Key_F2);
    QVERIFY(isUsed);
}

void tst_NodeName::aNodeIsRenamed()
{
    const QByteArray before = _author->saved();
    rename([](QDialog& dialog, QLineEdit& name) {
        QCOMPARE(name.text(), QStringLiteral("T"));
        QCOMPARE(name.selectedText(), QStringLiteral("T"));
        QTest::keyClicks(&name, QStringLiteral("Mover"));
        QTest::keyClick(&name, Qt::Key_Return);
        QVERIFY(!dialog.isVisible());
    });
    QVERIFY(_author->find("Mover"));
    QVERIFY(_author->saved().contains("TO Mover."));
    _author->steps().undo();
    QCOMPARE(_author->saved(), before);
}

void tst_NodeName::aNameThatCannotBeStaysWithItsReason_data()
{
    QTest::addColumn<QString>("name");
    for (const char* name : {"two words", "1st", "a.b", "A"})
        QTest::newRow(name) << QString::fromLatin1(name);
}

void tst_NodeName::aNameThatCannotBeStaysWithItsReason()
{
    QFETCH(QString, name);
    rename([&](QDialog& dialog, QLineEdit& line) {
        line.setText(name);
        QTest::keyClick(&line, Qt::Key_Return);
        QVERIFY(dialog.isVisible());
        QCOMPARE(line.text(), name);
        auto* const fault = dialog.findChild<QLabel*>(QStringLiteral("fault"));
        QVERIFY(fault);
        QVERIFY2(fault->text().contains(name), qPrintable(fault->text()));
        QCOMPARE(_author->steps().count(), 0);
        // It is gone on with from there.
        QTest::keyClick(&line, Qt::Key_End);
        QTest::keyClicks(&line, QStringLiteral("x"));
        QVERIFY(fault->text().isEmpty());
        line.setText(QStringLiteral("Better"));
        QTest::keyClick(&line, Qt::Key_Return);
        QVERIFY(!dialog.isVisible());
    });
    QVERIFY(_author->find("Better"));
    QVERIFY(_author->find("A"));
}

void tst_NodeName::cancelLeavesTheName()
{
    rename([](QDialog& dialog, QLineEdit& line) {
        line.setText(QStringLiteral("Other"));
        QTest::keyClick(&dialog, Qt::Key_Escape);
    });
    QVERIFY(_author->find("T"));
    QCOMPARE(_author->steps().count(), 0);
}

void tst_NodeName::anEmptyNameTakesItAway()
{
    rename([](QDialog&, QLineEdit& line) {
        line.clear();
        QTest::keyClick(&line, Qt::Key_Return);
    });
    QVERIFY(!_author->find("T"));
    _author->steps().undo();
    QVERIFY(_author->find("T"));
}

QTEST_MAIN(tst_NodeName)
#include "tst_NodeName.moc"
