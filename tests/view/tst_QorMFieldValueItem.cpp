#include "QorMFieldItem.h"
#include "QorMFieldValueItem.h"
#include "QorNodeModel.h"
#include "SaidField.h"
#include <QtTest>

using namespace Orvane::Qt4;

class tst_QorMFieldValueItem : public QObject
{
    Q_OBJECT

private slots:
    void itShowsItsNumberAndItsText();
    void everythingElseIsInvalid();
    void theTextIsThatOfTheParentsCache();
    void aValueBehindTheCacheIsEmpty();
    void withoutAFieldOfManyValuesTheTextStays();
};

void tst_QorMFieldValueItem::itShowsItsNumberAndItsText()
{
    SaidField field("7, 8", 2);
    QorMFieldItem list(&field, nullptr);
    QorMFieldValueItem item(1, &field, &list);
    QCOMPARE(item.index(), 1);
    QCOMPARE(item.field(), &field);
    QCOMPARE(item.parent(), &list);
    QCOMPARE(item.childCount(), 0);
    QCOMPARE(item.columnCount(), 10);
    QCOMPARE(item.data(QorNodeModel::FieldName, Qt::DisplayRole), QVariant(QStringLiteral("1")));
    QCOMPARE(item.data(QorNodeModel::FieldValue, Qt::DisplayRole), QVariant(QStringLiteral(" 8")));
}

void tst_QorMFieldValueItem::everythingElseIsInvalid()
{
    SaidField field("7", 1);
    QorMFieldItem list(&field, nullptr);
    QorFieldItem* item = list.child(0);
    for (int column = -1; column <= 10; ++column) {
        QVERIFY(!item->data(column, Qt::ToolTipRole).isValid());
        QVERIFY(!item->data(column, Qt::EditRole).isValid());
        if (column != QorNodeModel::FieldName && column != QorNodeModel::FieldValue)
            QVERIFY(!item->data(column, Qt::DisplayRole).isValid());
    }
}

void tst_QorMFieldValueItem::theTextIsThatOfTheParentsCache()
{
    SaidField field("7", 1);
    QorMFieldItem list(&field, nullptr);
    QorMFieldValueItem* item = list.child(0)->toMFieldValueItem();
    field.text = "9";
    item->updateCache();
    QCOMPARE(item->data(QorNodeModel::FieldValue, Qt::DisplayRole).toString(), QStringLiteral("7"));
    list.updateCache();
    QCOMPARE(item->data(QorNodeModel::FieldValue, Qt::DisplayRole).toString(), QStringLiteral("7"));
    item->updateCache();
    QCOMPARE(item->data(QorNodeModel::FieldValue, Qt::DisplayRole).toString(), QStringLiteral("9"));
}

void tst_QorMFieldValueItem::aValueBehindTheCacheIsEmpty()
{
    SaidField field("7", 1);
    QorMFieldItem list(&field, nullptr);
    QorMFieldValueItem item(1, &field, &list);
    QVERIFY(item.data(QorNodeModel::FieldValue, Qt::DisplayRole).toString().isEmpty());
}

void tst_QorMFieldValueItem::withoutAFieldOfManyValuesTheTextStays()
{
    SaidField field("7", 1);
    QorFieldItem other(&field, nullptr);
    QorMFieldValueItem misplaced(0, &field, &other);
    QVERIFY(misplaced.data(QorNodeModel::FieldValue, Qt::DisplayRole).toString().isEmpty());
    QorMFieldValueItem alone(0, &field, nullptr);
    alone.updateCache();
    QVERIFY(alone.data(QorNodeModel::FieldValue, Qt::DisplayRole).toString().isEmpty());
}

QTEST_APPLESS_MAIN(tst_QorMFieldValueItem)
#include "tst_QorMFieldValueItem.moc"
