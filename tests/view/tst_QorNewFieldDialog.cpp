#include "FieldRows.h"
#include "QorNewFieldDialog.h"
#include <Orvane/FieldType.h>
#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QtTest>

using namespace Orvane;
using namespace Orvane::Qt4;

class tst_QorNewFieldDialog : public QObject
{
    Q_OBJECT

private slots:
    void elementsStandInTheGrid();
    void fieldTypesInOrder();
    void dataTypesInOrder();
    void nodeLabelNamesTheNode();
    void nameEnablesCreate();
    void createAsksAndAccepts();
    void createOnNullNodeOnlyAccepts();
    void createOnDeadNodeOnlyAccepts();
    void cancelRejects();
    void hostMayDeleteTheDialog();
    void partTypeOfText_data();
    void partTypeOfText();
    void hookOfASubclassIsCalled();
    void allTextsCanBeRead();
};

namespace {

/// Column, row, and how many of them an item of a grid takes.
QRect place(const QGridLayout& grid, int item)
{
    int row = 0;
    int column = 0;
    int rows = 0;
    int columns = 0;
    grid.getItemPosition(item, &row, &column, &rows, &columns);
    return {column, row, columns, rows};
}

struct Dialog
{
    explicit Dialog(Node* node)
        : dialog(new QorNewFieldDialog(node, nullptr))
        , grid(qobject_cast<QGridLayout*>(dialog->layout()))
        , asked(dialog.get(),
                SIGNAL(wantsAddField(Orvane::Node*, QString, QString, QString, QString, QString, QString)))
    {
    }

    /// The element of one cell; the label of the node covers cells of others, too.
    template <class T>
    T* at(int row, int column) const
    {
        for (int item = 0; item < grid->count(); ++item) {
            if (place(*grid, item) == QRect(column, row, 1, 1))
                return qobject_cast<T*>(grid->itemAt(item)->widget());
        }
        return nullptr;
    }
    QLabel* nodeLabel() const { return qobject_cast<QLabel*>(grid->itemAt(0)->widget()); }
    QLineEdit* name() const { return at<QLineEdit>(1, 1); }
    QComboBox* fieldType() const { return at<QComboBox>(2, 1); }
    QComboBox* dataType() const { return at<QComboBox>(3, 1); }
    QLineEdit* value() const { return at<QLineEdit>(4, 1); }
    QHBoxLayout* buttons() const
    {
        return qobject_cast<QHBoxLayout*>(grid->itemAt(grid->count() - 1)->layout());
    }
    QPushButton* create() const { return qobject_cast<QPushButton*>(buttons()->itemAt(0)->widget()); }
    QPushButton* cancel() const { return qobject_cast<QPushButton*>(buttons()->itemAt(2)->widget()); }

    std::unique_ptr<QorNewFieldDialog> dialog;
    QGridLayout* grid;
    QSignalSpy asked;
};

std::unique_ptr<Node> makeNode(const char* name = nullptr)
{
    return std::unique_ptr<Node>(Tiny::makeNode(Tiny::makeType("Script", {}), name));
}

} // namespace

void tst_QorNewFieldDialog::elementsStandInTheGrid()
{
    const Dialog shown(nullptr);
    QCOMPARE(shown.dialog->windowTitle(), QStringLiteral("Create new field"));
    QVERIFY(shown.grid);
    QCOMPARE(shown.grid->contentsMargins(), QMargins(6, 6, 6, 6));
    QCOMPARE(shown.grid->spacing(), 6);
    QCOMPARE(shown.grid->count(), 10);

    QGridLayout told;
    QLabel label;
    told.addWidget(&label, 0, 0, 0, 1);
    told.addLayout(new QHBoxLayout, 5, 0, 5, 1);
    QCOMPARE(place(*shown.grid, 0), place(told, 0));
    QCOMPARE(place(*shown.grid, 9), QRect(0, 5, 1, 5));
    for (int item = 1; item < 9; ++item)
        QCOMPARE(place(*shown.grid, item), QRect((item - 1) % 2, 1 + (item - 1) / 2, 1, 1));

    QCOMPARE(shown.at<QLabel>(1, 0)->text(), QStringLiteral("Name:"));
    QCOMPARE(shown.at<QLabel>(2, 0)->text(), QStringLiteral("Field type"));
    QCOMPARE(shown.at<QLabel>(3, 0)->text(), QStringLiteral("Data type"));
    QCOMPARE(shown.at<QLabel>(4, 0)->text(), QStringLiteral("Default value:"));
    QVERIFY(shown.name() && shown.value());
    QCOMPARE(shown.buttons()->count(), 3);
    QCOMPARE(shown.buttons()->itemAt(1)->sizeHint().width(), 16);
    QCOMPARE(shown.create()->text(), QStringLiteral("Create"));
    QCOMPARE(shown.cancel()->text(), QStringLiteral("Cancel"));
}

void tst_QorNewFieldDialog::fieldTypesInOrder()
{
    const Dialog shown(nullptr);
    QStringList texts;
    for (int i = 0; i < shown.fieldType()->count(); ++i)
        texts << shown.fieldType()->itemText(i);
    QCOMPARE(texts, (QStringList{QStringLiteral("Field"), QStringLiteral("EventIn"),
                                 QStringLiteral("EventOut"), QStringLiteral("ExposedField")}));
    QCOMPARE(shown.fieldType()->currentIndex(), 0);
}

void tst_QorNewFieldDialog::dataTypesInOrder()
{
    const Dialog shown(nullptr);
    QCOMPARE(shown.dataType()->count(), 48);
    for (int i = 1; i <= 48; ++i)
        QCOMPARE(shown.dataType()->itemText(i - 1),
                 QString::fromStdString(FieldType::dataTypeName(NodePartDataType(i))));
    QCOMPARE(shown.dataType()->currentText(), QStringLiteral("SFBool"));
}

void tst_QorNewFieldDialog::nodeLabelNamesTheNode()
{
    const auto named = makeNode("<b>Move</b>");
    const Dialog ofNamed(named.get());
    QCOMPARE(ofNamed.nodeLabel()->text(), QStringLiteral("Node: <b>Move</b>"));
    QCOMPARE(ofNamed.nodeLabel()->textFormat(), Qt::PlainText);
    const auto unnamed = makeNode();
    QCOMPARE(Dialog(unnamed.get()).nodeLabel()->text(),
             QStringLiteral("Node: ") + QString::fromStdString(unnamed->getIDStr()));
    QCOMPARE(Dialog(nullptr).nodeLabel()->text(), QStringLiteral("Node: "));
}

void tst_QorNewFieldDialog::nameEnablesCreate()
{
    const Dialog shown(nullptr);
    QVERIFY(!shown.create()->isEnabled());
    QTest::keyClicks(shown.name(), QStringLiteral("a"));
    QVERIFY(shown.create()->isEnabled());
    QTest::keyClick(shown.name(), Qt::Key_Backspace);
    QVERIFY(!shown.create()->isEnabled());
    shown.name()->setText(QStringLiteral(" "));
    QVERIFY(shown.create()->isEnabled());
    shown.value()->setText(QStringLiteral("1"));
    shown.name()->clear();
    QVERIFY(!shown.create()->isEnabled());
    QVERIFY(shown.cancel()->isEnabled());
}

void tst_QorNewFieldDialog::createAsksAndAccepts()
{
    const auto node = makeNode();
    Dialog shown(node.get());
    shown.dialog->show();
    shown.name()->setText(QStringLiteral("speed"));
    shown.value()->setText(QStringLiteral("not a number"));
    shown.fieldType()->setCurrentIndex(3);
    shown.dataType()->setCurrentText(QStringLiteral("SFFloat"));
    shown.create()->click();
    QCOMPARE(shown.dialog->result(), int(QDialog::Accepted));
    QVERIFY(shown.dialog->isHidden());
    QCOMPARE(shown.asked.size(), 1);
    const QVariantList arguments = shown.asked.takeFirst();
    QCOMPARE(arguments.value(0).value<Orvane::Node*>(), node.get());
    QStringList texts;
    for (const QVariant& argument : arguments.mid(1)) {
        texts << argument.toString();
        QVERIFY(!argument.toString().isNull());
    }
    QCOMPARE(texts,
             (QStringList{QStringLiteral("SFFloat"), QStringLiteral("ExposedField"), QStringLiteral("speed"),
                          QStringLiteral("not a number"), QString(), QString()}));
}

void tst_QorNewFieldDialog::createOnNullNodeOnlyAccepts()
{
    Dialog shown(nullptr);
    shown.dialog->show();
    shown.name()->setText(QStringLiteral("x"));
    shown.create()->click();
    QCOMPARE(shown.dialog->result(), int(QDialog::Accepted));
    QVERIFY(shown.dialog->isHidden());
    QVERIFY(shown.asked.isEmpty());
}

void tst_QorNewFieldDialog::createOnDeadNodeOnlyAccepts()
{
    auto node = makeNode();
    Dialog shown(node.get());
    node.reset();
    shown.name()->setText(QStringLiteral("x"));
    shown.create()->click();
    QCOMPARE(shown.dialog->result(), int(QDialog::Accepted));
    QVERIFY(shown.asked.isEmpty());
}

void tst_QorNewFieldDialog::cancelRejects()
{
    const auto node = makeNode();
    Dialog shown(node.get());
    shown.dialog->show();
    shown.name()->setText(QStringLiteral("x"));
    shown.cancel()->click();
    QCOMPARE(shown.dialog->result(), int(QDialog::Rejected));
    QVERIFY(shown.dialog->isHidden());
    QVERIFY(shown.asked.isEmpty());
}

void tst_QorNewFieldDialog::hostMayDeleteTheDialog()
{
    const auto node = makeNode();
    Dialog shown(node.get());
    shown.name()->setText(QStringLiteral("x"));
    connect(shown.dialog.get(), &QorNewFieldDialog::wantsAddField, this, [&] { shown.dialog.reset(); });
    shown.dialog->onCreate();
    QVERIFY(!shown.dialog);
}

void tst_QorNewFieldDialog::partTypeOfText_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("type");
    QTest::newRow("field") << QStringLiteral("Field") << 1;
    QTest::newRow("exposed field") << QStringLiteral("ExposedField") << 7;
    QTest::newRow("event in") << QStringLiteral("EventIn") << 2;
    QTest::newRow("event out") << QStringLiteral("EventOut") << 4;
    QTest::newRow("lower case") << QStringLiteral("field") << 0;
    QTest::newRow("blank") << QStringLiteral("Field ") << 0;
    QTest::newRow("empty") << QString() << 0;
}

void tst_QorNewFieldDialog::partTypeOfText()
{
    QFETCH(QString, text);
    QFETCH(int, type);
    QCOMPARE(int(QorNewFieldDialog::getNodePartType(text)), type);
}

void tst_QorNewFieldDialog::hookOfASubclassIsCalled()
{
    struct Hooked : QorNewFieldDialog
    {
        using QorNewFieldDialog::QorNewFieldDialog;
        void updateButtons() override { ++updates; }
        int updates = 0;
    };
    Hooked dialog(nullptr);
    dialog.onNameChanged(QString());
    QCOMPARE(dialog.updates, 1);
}

void tst_QorNewFieldDialog::allTextsCanBeRead()
{
    const auto node = makeNode("Mover");
    const Dialog shown(node.get());
    shown.dialog->show();
    QVERIFY(QTest::qWaitForWindowExposed(shown.dialog.get()));
    const auto ink = [](const QLabel* label) {
        const QSize size = label->sizeHint();
        return QStyle::alignedRect(Qt::LeftToRight, label->alignment(), size, label->geometry());
    };
    const QRect node0 = ink(shown.nodeLabel());
    for (int row = 1; row <= 4; ++row)
        QVERIFY(!node0.intersects(ink(shown.at<QLabel>(row, 0))));
    QVERIFY(shown.dialog->rect().contains(node0));
}

QTEST_MAIN(tst_QorNewFieldDialog)
#include "tst_QorNewFieldDialog.moc"
