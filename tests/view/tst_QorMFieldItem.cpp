#include "FieldNode.h"
#include "QorMFieldItem.h"
#include "QorMFieldValueItem.h"
#include "QorNodeModel.h"
#include "SaidField.h"
#include <Orvane/MFString.h>
#include <QtTest>

using namespace Orvane;
using namespace Orvane::Qt4;

namespace {

/// Shows what only derived classes see.
class Item : public QorMFieldItem
{
public:
    using QorMFieldItem::mfStringRegExp;
    using QorMFieldItem::QorMFieldItem;
    using QorMFieldItem::regExp;
    using QorMFieldItem::valuesToStringList;
};

QString display(QorFieldItem& item, int column)
{
    return item.data(column, Qt::DisplayRole).toString();
}

QStringList rows(QorFieldItem& item)
{
    QStringList texts;
    for (int i = 0; i < item.childCount(); ++i)
        texts << display(*item.child(i), QorNodeModel::FieldValue);
    return texts;
}

} // namespace

class tst_QorMFieldItem : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();

    void aFieldAtTheThresholdIsFilledAtOnce();
    void aFieldAboveTheThresholdGetsAPlaceholder();
    void anEmptyFieldIsInitialisedWithoutRows();
    void noFieldHasNoRows();
    void theThresholdIs50();
    void aThresholdOfZeroDelaysEveryFieldThatIsNotEmpty();
    void theThresholdLeavesItemsAlone();
    void delayTellsNothingOfTheRows();
    void fillingReadsTheFieldOnce();
    void aDelayedFieldIsNotRead();
    void emptyingAFilledItemKeepsItsCache();
    void droppedRowsStayAlive();
    void unforcedRowsComeBackBelowTheThreshold();
    void forcedRowsReadTheFieldAnew();
    void updateCacheTouchesNoRow();
    void aValueThatIsNotKeptIsNull();
    void theValueColumnIsASummary();
    void theOtherColumnsAreThoseOfTheField();
    void aDelayedFieldWarnsInItsToolTip();
    void otherRolesAreInvalid();
    void showingReadsNoValue();
    void stringsAreTakenOneByOne();
    void textIsSplitAtItsSeparators_data();
    void textIsSplitAtItsSeparators();
    void nothingHasNoValues();
    void theSeparatorsAreExpressions();
};

void tst_QorMFieldItem::cleanup()
{
    QorMFieldItem::setValueCountThreshold(50);
}

void tst_QorMFieldItem::aFieldAtTheThresholdIsFilledAtOnce()
{
    SaidField field(numbersText(50, ","), 50);
    QorFieldItem root(nullptr, nullptr);
    QorMFieldItem item(&field, &root);
    QCOMPARE(item.field(), &field);
    QCOMPARE(item.parent(), &root);
    QVERIFY(item.isInitialised());
    QVERIFY(!item.isInitialisationDelayed());
    QCOMPARE(item.childCount(), 50);
    for (int i = 0; i < 50; ++i) {
        QorMFieldValueItem* value = item.child(i)->toMFieldValueItem();
        QVERIFY(value);
        QCOMPARE(value->index(), i);
        QCOMPARE(value->field(), &field);
        QCOMPARE(value->parent(), &item);
        QCOMPARE(display(*value, QorNodeModel::FieldValue), QString::number(i));
    }
}

void tst_QorMFieldItem::aFieldAboveTheThresholdGetsAPlaceholder()
{
    SaidField field(numbersText(51, ","), 51);
    QorMFieldItem item(&field, nullptr);
    QVERIFY(!item.isInitialised());
    QVERIFY(item.isInitialisationDelayed());
    QCOMPARE(item.childCount(), 1);
    QorMFieldValueItem* placeholder = item.child(0)->toMFieldValueItem();
    QCOMPARE(placeholder->index(), 0);
    QCOMPARE(placeholder->field(), &field);
    QCOMPARE(placeholder->parent(), &item);
    QCOMPARE(display(*placeholder, QorNodeModel::FieldName), QStringLiteral("0"));
    QVERIFY(display(*placeholder, QorNodeModel::FieldValue).isEmpty());
    QVERIFY(item.getStringValue(0).isNull());
}

void tst_QorMFieldItem::anEmptyFieldIsInitialisedWithoutRows()
{
    SaidField field("", 0);
    const QorMFieldItem item(&field, nullptr);
    QVERIFY(item.isInitialised());
    QVERIFY(!item.isInitialisationDelayed());
    QCOMPARE(item.childCount(), 0);
}

void tst_QorMFieldItem::noFieldHasNoRows()
{
    QorMFieldItem::setValueCountThreshold(0);
    const QorMFieldItem item(nullptr, nullptr);
    QVERIFY(!item.isInitialisationDelayed());
    QCOMPARE(item.childCount(), 0);
}

void tst_QorMFieldItem::theThresholdIs50()
{
    QCOMPARE(QorMFieldItem::valueCountThreshold(), 50U);
    QorMFieldItem::setValueCountThreshold(7);
    QCOMPARE(QorMFieldItem::valueCountThreshold(), 7U);
}

void tst_QorMFieldItem::aThresholdOfZeroDelaysEveryFieldThatIsNotEmpty()
{
    QorMFieldItem::setValueCountThreshold(0);
    SaidField one("1", 1);
    const QorMFieldItem delayed(&one, nullptr);
    QVERIFY(delayed.isInitialisationDelayed());
    QVERIFY(!delayed.isInitialised());
    QCOMPARE(delayed.childCount(), 1);
    QCOMPARE(one.conversions, 0);

    SaidField none("", 0);
    const QorMFieldItem empty(&none, nullptr);
    QVERIFY(!empty.isInitialisationDelayed());
    QVERIFY(empty.isInitialised());
    QCOMPARE(empty.childCount(), 0);
}

void tst_QorMFieldItem::theThresholdLeavesItemsAlone()
{
    SaidField field(numbersText(3, ","), 3);
    QorMFieldItem item(&field, nullptr);
    QorMFieldItem::setValueCountThreshold(2);
    QCOMPARE(item.childCount(), 3);
    QVERIFY(item.isInitialisationDelayed());
}

void tst_QorMFieldItem::delayTellsNothingOfTheRows()
{
    SaidField field(numbersText(51, ","), 51);
    QorMFieldItem item(&field, nullptr);
    item.updateChildValues(true);
    QCOMPARE(item.childCount(), 51);
    QVERIFY(item.isInitialised());
    QVERIFY(item.isInitialisationDelayed());
    field.count = 50;
    QVERIFY(!item.isInitialisationDelayed());
}

void tst_QorMFieldItem::fillingReadsTheFieldOnce()
{
    SaidField field(numbersText(1000, ","), 1000);
    QorMFieldItem item(&field, nullptr);
    item.updateChildValues(true);
    QCOMPARE(field.conversions, 1);
    QCOMPARE(item.childCount(), 1000);
    QCOMPARE(display(*item.child(999), QorNodeModel::FieldValue), QStringLiteral("999"));
    QCOMPARE(field.conversions, 1);
}

void tst_QorMFieldItem::aDelayedFieldIsNotRead()
{
    SaidField field(numbersText(1000, ","), 1000);
    QorMFieldItem item(&field, nullptr);
    item.updateChildValues(false);
    QCOMPARE(field.conversions, 0);
}

void tst_QorMFieldItem::emptyingAFilledItemKeepsItsCache()
{
    SaidField field(numbersText(51, ","), 51);
    QorMFieldItem item(&field, nullptr);
    item.updateChildValues(true);
    field.text = "new" + field.text;
    item.updateChildValues(false);
    QVERIFY(item.isInitialised());
    QCOMPARE(rows(item), QStringList{QStringLiteral("0")});
    QCOMPARE(item.getStringValue(50), QStringLiteral("50"));
    QCOMPARE(field.conversions, 1);
}

void tst_QorMFieldItem::droppedRowsStayAlive()
{
    SaidField field(numbersText(3, ","), 3);
    QorMFieldItem item(&field, nullptr);
    const std::unique_ptr<QorFieldItem> dropped[] = {std::unique_ptr<QorFieldItem>(item.child(0)),
                                                     std::unique_ptr<QorFieldItem>(item.child(1)),
                                                     std::unique_ptr<QorFieldItem>(item.child(2))};
    field.text = "7,8,9";
    item.updateChildValues(false);
    QCOMPARE(rows(item), QStringList({QStringLiteral("7"), QStringLiteral("8"), QStringLiteral("9")}));
    QVERIFY(item.child(2) != dropped[2].get());
    QCOMPARE(display(*dropped[2], QorNodeModel::FieldValue), QStringLiteral("2"));
    QCOMPARE(dropped[2]->parent(), &item);
}

void tst_QorMFieldItem::unforcedRowsComeBackBelowTheThreshold()
{
    SaidField field(numbersText(51, ","), 51);
    QorMFieldItem item(&field, nullptr);
    const std::unique_ptr<QorFieldItem> placeholder(item.child(0));
    field.count = 2;
    field.text = numbersText(2, ",");
    item.updateChildValues(false);
    QVERIFY(item.isInitialised());
    QCOMPARE(rows(item), QStringList({QStringLiteral("0"), QStringLiteral("1")}));
}

void tst_QorMFieldItem::forcedRowsReadTheFieldAnew()
{
    SaidField field("1", 1);
    QorMFieldItem item(&field, nullptr);
    const std::unique_ptr<QorFieldItem> dropped(item.child(0));
    field.text = "2";
    item.updateChildValues(true);
    QCOMPARE(rows(item), QStringList{QStringLiteral("2")});
    QCOMPARE(field.conversions, 2);
}

void tst_QorMFieldItem::updateCacheTouchesNoRow()
{
    SaidField field("1,2", 2);
    QorMFieldItem item(&field, nullptr);
    QorFieldItem* first = item.child(0);
    field.text = "3,4";
    item.updateCache();
    QCOMPARE(item.getStringValue(0), QStringLiteral("3"));
    QCOMPARE(item.child(0), first);
    QCOMPARE(rows(item), QStringList({QStringLiteral("1"), QStringLiteral("2")}));

    SaidField large(numbersText(51, ","), 51);
    QorMFieldItem delayed(&large, nullptr);
    delayed.updateCache();
    QCOMPARE(delayed.childCount(), 1);
    QVERIFY(!delayed.isInitialised());
    QCOMPARE(delayed.getStringValue(50), QStringLiteral("50"));
}

void tst_QorMFieldItem::aValueThatIsNotKeptIsNull()
{
    SaidField field("1,,2", 2);
    QorMFieldItem item(&field, nullptr);
    QCOMPARE(item.getStringValue(1), QStringLiteral("2"));
    QVERIFY(item.getStringValue(2).isNull());
    QVERIFY(item.getStringValue(-1).isNull());

    SaidField blank("", 1);
    QorMFieldItem empty(&blank, nullptr);
    QVERIFY(empty.getStringValue(0).isEmpty());
    QVERIFY(!empty.getStringValue(0).isNull());
}

void tst_QorMFieldItem::theValueColumnIsASummary()
{
    SaidField field("1,2", 2);
    QorMFieldItem item(&field, nullptr);
    QCOMPARE(display(item, QorNodeModel::FieldValue), QStringLiteral("2 values [MFVec2f]"));
    field.count = 4000000000U;
    QCOMPARE(display(item, QorNodeModel::FieldValue), QStringLiteral("4000000000 values [MFVec2f]"));
    field.count = 0;
    QCOMPARE(display(item, QorNodeModel::FieldValue), QStringLiteral("0 values [MFVec2f]"));
}

void tst_QorMFieldItem::theOtherColumnsAreThoseOfTheField()
{
    Tiny::Part part;
    part.name = "weights";
    part.dataType = MFFLOAT_DT;
    part.value = "1, 2";
    const FieldNode node({part});
    QorMFieldItem item(node.field(0), nullptr);
    QorFieldItem base(node.field(0), nullptr);
    for (int column = -1; column <= 10; ++column) {
        if (column != QorNodeModel::FieldValue)
            QCOMPARE(item.data(column, Qt::DisplayRole), base.data(column, Qt::DisplayRole));
    }
    QCOMPARE(display(item, QorNodeModel::DefaultValue), QStringLiteral("1, 2"));
}

void tst_QorMFieldItem::aDelayedFieldWarnsInItsToolTip()
{
    SaidField field(numbersText(51, ","), 51);
    field.desc.description = "Weights";
    QorMFieldItem item(&field, nullptr);
    const QString warning = QStringLiteral("This multi field contains 51  values.<br>Updating them "
                                           "automatically is very<br> time consuming and therefore<br>"
                                           "deactivated.");
    for (int column = -1; column <= 10; ++column)
        QCOMPARE(item.data(column, Qt::ToolTipRole).toString(), warning);
    item.updateChildValues(true);
    QCOMPARE(item.data(0, Qt::ToolTipRole).toString(), warning);

    field.count = 50;
    QCOMPARE(item.data(0, Qt::ToolTipRole).toString(),
             QStringLiteral("<b>said</b> <i>[MFVec2f]</i><br />Weights"));
}

void tst_QorMFieldItem::otherRolesAreInvalid()
{
    SaidField field("1", 1);
    QorMFieldItem item(&field, nullptr);
    for (int column = 0; column < 10; ++column) {
        for (int role : {Qt::DecorationRole, Qt::EditRole, Qt::StatusTipRole, Qt::CheckStateRole})
            QVERIFY(!item.data(column, role).isValid());
    }
}

void tst_QorMFieldItem::showingReadsNoValue()
{
    SaidField field(numbersText(3, ","), 3);
    QorMFieldItem item(&field, nullptr);
    field.conversions = 0;
    for (int column = 0; column < 10; ++column) {
        item.data(column, Qt::DisplayRole);
        item.data(column, Qt::ToolTipRole);
        for (int i = 0; i < 3; ++i)
            item.child(i)->data(column, Qt::DisplayRole);
    }
    QCOMPARE(field.conversions, 0);
}

void tst_QorMFieldItem::stringsAreTakenOneByOne()
{
    Tiny::Part part;
    part.dataType = MFSTRING_DT;
    const FieldNode node({part});
    auto& field = node.as<MFString>(0);
    const std::string texts[] = {"a, b\tc\n",   "", "\"quoted\"", std::string("x\0y", 3), "\xe4",
                                 "\xe6\xbc\xa2"};
    for (const std::string& text : texts)
        field.addValue(text);
    QorMFieldItem item(&field, nullptr);
    const QStringList expected = {QStringLiteral("a, b\tc\n"),  QString(),
                                  QStringLiteral("\"quoted\""), QString::fromLatin1("x\0y", 3),
                                  QString(QChar(0xe4)),         QString(QChar(0x6f22))};
    QCOMPARE(rows(item), expected);
}

void tst_QorMFieldItem::textIsSplitAtItsSeparators_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<unsigned int>("size");
    QTest::addColumn<QString>("values");
    const auto row = [](const char* name, const char* text, unsigned int size, const char* values) {
        QTest::newRow(name) << QByteArray(text) << size << QString::fromLatin1(values);
    };
    row("commas", "1,2,3", 3, "1|2|3");
    row("comma with a blank, tab", "1, 2\t3", 3, "1| 2|3");
    row("blanks are part of a value", "0.1 0.2 0.3, 1 1 1", 2, "0.1 0.2 0.3| 1 1 1");
    row("line ends", "1\n2\r3\r\n4", 4, "1|2|3|4");
    row("a run of separators is one", "1,\t\n,2", 2, "1|2");
    row("a separator in front gives an empty part", ",1,2", 3, "|1|2");
    row("a separator behind gives an empty part", "1,2,", 3, "1|2|");
    row("seven parts of three values", "1,2,3,4,5,6,7", 3, "12|34|56");
    row("equal shares", "1,2,3,4", 2, "12|34");
    row("fewer parts than values", "1,2", 3, "||");
    row("no text, one value", "", 1, "");
    row("no text, two values", "", 2, "|");
    row("one value of the whole text", "1 2 3", 1, "1 2 3");
    row("eight-bit text", "\xe4,\xf6", 2, "\xe4|\xf6");
}

void tst_QorMFieldItem::textIsSplitAtItsSeparators()
{
    QFETCH(QByteArray, text);
    QFETCH(unsigned int, size);
    SaidField field(text.toStdString(), size);
    QorMFieldItem item(&field, nullptr);
    QTEST(rows(item).join(QLatin1Char('|')), "values");
    QCOMPARE(item.childCount(), static_cast<int>(size));
}

void tst_QorMFieldItem::nothingHasNoValues()
{
    SaidField field("1,2", 0);
    Item item(&field, nullptr);
    QVERIFY(item.valuesToStringList(nullptr).isEmpty());
    QVERIFY(item.valuesToStringList(&field).isEmpty());
    QCOMPARE(field.conversions, 0);
}

void tst_QorMFieldItem::theSeparatorsAreExpressions()
{
    QCOMPARE(Item::regExp.pattern(), QStringLiteral(R"((?:\n|\r|\t|,)+)"));
    QCOMPARE(Item::mfStringRegExp.pattern(), QStringLiteral(R"x((?:")+)x"));
    for (const QRegExp& expression : {Item::regExp, Item::mfStringRegExp}) {
        QVERIFY(expression.isValid());
        QCOMPARE(expression.caseSensitivity(), Qt::CaseSensitive);
        QCOMPARE(expression.patternSyntax(), QRegExp::RegExp);
    }
}

QTEST_APPLESS_MAIN(tst_QorMFieldItem)
#include "tst_QorMFieldItem.moc"
