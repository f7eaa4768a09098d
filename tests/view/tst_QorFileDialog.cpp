#include "QorFileDialog.h"
#include "tinyruntime/Tiny.h"
#include <QtTest>
#include <QtWidgets/QCheckBox>

using Orvane::Qt4::QorFileDialog;

class tst_QorFileDialog : public QObject
{
    Q_OBJECT

private slots:
    void boxesAreOffAndLabelled();
    void settersAndBoxesAreOne_data();
    void settersAndBoxesAreOne();
    void userSeesAndClicksTheBoxes();
    void filtersAreThoseOfTheRuntime();
    void withoutFormatsTheFilterIsEmpty();
    void nothingElseIsSetUp();
};

using Getter = bool (QorFileDialog::*)() const;
using Setter = void (QorFileDialog::*)(bool);
Q_DECLARE_METATYPE(Getter)
Q_DECLARE_METATYPE(Setter)

void tst_QorFileDialog::boxesAreOffAndLabelled()
{
    const QorFileDialog dialog(nullptr);
    const char* const boxes[][2] = {{"skipRootCheck", "Skip root"},
                                    {"useTabCheck", "Use tabs"},
                                    {"resolveProtoCheck", "Resolve protos"},
                                    {"writeProcInfoCheck", "Write proc info"},
                                    {"writeAbstractCheck", "Write abstract nodes"},
                                    {"writeDefaultValueCheck", "Write default values"}};
    for (const auto& box : boxes) {
        const auto* check = dialog.findChild<QCheckBox*>(QLatin1String(box[0]));
        QVERIFY(check);
        QCOMPARE(check->text(), QLatin1String(box[1]));
        QVERIFY(!check->isChecked());
    }
}

void tst_QorFileDialog::settersAndBoxesAreOne_data()
{
    QTest::addColumn<QString>("box");
    QTest::addColumn<Getter>("getter");
    QTest::addColumn<Setter>("setter");
    const auto row = [](const char* box, Getter getter, Setter setter) {
        QTest::newRow(box) << QString::fromLatin1(box) << getter << setter;
    };
    row("skipRootCheck", &QorFileDialog::isSkippingRoot, &QorFileDialog::setSkipRoot);
    row("useTabCheck", &QorFileDialog::isUsingTab, &QorFileDialog::setUseTab);
    row("resolveProtoCheck", &QorFileDialog::isResolvingProto, &QorFileDialog::setResolveProto);
    row("writeProcInfoCheck", &QorFileDialog::isWritingProcInfo, &QorFileDialog::setWriteProcInfo);
    row("writeAbstractCheck", &QorFileDialog::isWritingAbstract, &QorFileDialog::setWriteAbstract);
    row("writeDefaultValueCheck", &QorFileDialog::isWritingDefaultValue,
        &QorFileDialog::setWriteDefaultValue);
}

void tst_QorFileDialog::settersAndBoxesAreOne()
{
    QFETCH(QString, box);
    QFETCH(Getter, getter);
    QFETCH(Setter, setter);
    QorFileDialog dialog;
    auto* check = dialog.findChild<QCheckBox*>(box);
    QVERIFY(check);
    (dialog.*setter)(true);
    QVERIFY((dialog.*getter)());
    int checked = 0;
    for (const char* name : {"skipRootCheck", "useTabCheck", "resolveProtoCheck", "writeProcInfoCheck",
                             "writeAbstractCheck", "writeDefaultValueCheck"})
        checked += dialog.findChild<QCheckBox*>(QLatin1String(name))->isChecked() ? 1 : 0;
    QCOMPARE(checked, 1);
    check->click();
    QVERIFY(!(dialog.*getter)());
    (dialog.*setter)(true);
    (dialog.*setter)(false);
    QVERIFY(!check->isChecked());
}

void tst_QorFileDialog::userSeesAndClicksTheBoxes()
{
    QorFileDialog dialog;
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    auto* check = dialog.findChild<QCheckBox*>(QStringLiteral("useTabCheck"));
    QVERIFY(check->isVisible());
    QVERIFY(dialog.rect().contains(check->geometry()));
    QTest::mouseClick(check, Qt::LeftButton, {}, QPoint(8, check->height() / 2));
    QVERIFY(dialog.isUsingTab());
}

void tst_QorFileDialog::nothingElseIsSetUp()
{
    const QorFileDialog dialog;
    QCOMPARE(dialog.nameFilters().size(), 1); // Qt's own for every dialog
    QCOMPARE(dialog.acceptMode(), QFileDialog::AcceptOpen);
}

void tst_QorFileDialog::filtersAreThoseOfTheRuntime()
{
    QCOMPARE(QorFileDialog::buildFileFilters(),
             QStringList({QStringLiteral("All files (*.*)"),
                          QStringLiteral("All valid files ( *.one *.two *.zwei)"),
                          QStringLiteral("Tiny one (*.one)"), QStringLiteral("Tiny two (*.two *.zwei)")}));
}

void tst_QorFileDialog::withoutFormatsTheFilterIsEmpty()
{
    Tiny::switches().noFormats = true;
    QCOMPARE(QorFileDialog::buildFileFilters(),
             QStringList({QStringLiteral("All files (*.*)"), QStringLiteral("All valid files ()")}));
    Tiny::reset();
}

QTEST_MAIN(tst_QorFileDialog)
#include "tst_QorFileDialog.moc"
