#include "QorPaintedCell.h"
#include <QtCore/QStringListModel>
#include <QtGui/QColor>
#include <QtGui/QStandardItemModel>
#include <QtTest>

using namespace Orvane::Qt4;

class tst_QorPaintedCell : public QObject
{
    Q_OBJECT

private slots:
    void textIsReadOnce();
    void textIsCutToWhatShows_data();
    void textIsCutToWhatShows();
    void whatIsNoTextStays();
    void otherRolesAreThoseOfTheCell();
};

void tst_QorPaintedCell::textIsReadOnce()
{
    struct Model : QStringListModel
    {
        QVariant data(const QModelIndex& index, int role) const override
        {
            reads += role == Qt::DisplayRole ? 1 : 0;
            return QStringListModel::data(index, role);
        }
        mutable int reads = 0;
    };
    Model model;
    model.setStringList({QStringLiteral("first"), QStringLiteral("second")});
    QorPaintedCell painted;
    for (int row = 0; row < 2; ++row) {
        model.reads = 0;
        const QModelIndex cell = painted.standIn(model.index(row), QSize(100, 20), 16);
        QVERIFY(cell.isValid());
        for (int i = 0; i < 3; ++i)
            QCOMPARE(cell.data().toString(), model.stringList().at(row));
        QCOMPARE(model.reads, 1);
    }
}

void tst_QorPaintedCell::textIsCutToWhatShows_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QString>("shown");
    const auto row = [](const char* name, const char* text, const QSize& size, const char* shown) {
        QTest::newRow(name) << QString::fromUtf8(text) << size << QString::fromUtf8(shown);
    };
    row("empty", "", QSize(4, 10), "");
    row("as many characters as pixels", "abcd", QSize(4, 10), "abcd");
    row("one more", "abcde", QSize(4, 10), "abcd…");
    row("lines, no more characters than pixels in all", "a\nb\nc", QSize(5, 10), "a\nb\nc");
    row("one line fits, the next one begins", "ab\ncd\nef", QSize(4, 10), "ab\ncd\n");
    row("two lines fit", "ab\ncd\nef\ngh", QSize(4, 20), "ab\ncd\nef\n");
    row("each line is cut", "abcdef\nabc\nabcdef", QSize(4, 20), "abcd…\nabc\nabcd…");
    row("empty lines", "\n\n\n\n\n", QSize(4, 10), "\n\n");
    row("no height", "abcde\nabcde", QSize(4, 0), "abcd…\n");
    row("no width", "ab", QSize(0, 10), "…");
    row("negative", "ab", QSize(-5, -50), "");
    QTest::newRow("a megabyte") << QString(1 << 20, QLatin1Char('x')) << QSize(200, 10)
                                << QString(200, QLatin1Char('x')) + QChar(0x2026);
}

void tst_QorPaintedCell::textIsCutToWhatShows()
{
    QFETCH(QString, text);
    QFETCH(QSize, size);
    const QStringListModel model({text});
    QorPaintedCell painted;
    QTEST(painted.standIn(model.index(0), size, 10).data().toString(), "shown");
    // A line height of nothing is no reason to stop.
    QVERIFY(painted.standIn(model.index(0), size, 0).isValid());
}

void tst_QorPaintedCell::whatIsNoTextStays()
{
    QStandardItemModel model(1, 2);
    model.setData(model.index(0, 0), 123456);
    QorPaintedCell painted;
    QCOMPARE(painted.standIn(model.index(0, 0), QSize(2, 10), 10).data(), QVariant(123456));
    QVERIFY(!painted.standIn(model.index(0, 1), QSize(2, 10), 10).data().isValid());
    QVERIFY(!painted.standIn(QModelIndex(), QSize(2, 10), 10).data().isValid());
}

void tst_QorPaintedCell::otherRolesAreThoseOfTheCell()
{
    QStandardItemModel model(1, 1);
    model.setData(model.index(0, 0), QColor(Qt::blue), Qt::ForegroundRole);
    model.setData(model.index(0, 0), Qt::Checked, Qt::CheckStateRole);
    QorPaintedCell painted;
    const QModelIndex cell = painted.standIn(model.index(0, 0), QSize(100, 20), 16);
    QCOMPARE(cell.data(Qt::ForegroundRole).value<QColor>(), QColor(Qt::blue));
    QCOMPARE(cell.data(Qt::CheckStateRole).toInt(), int(Qt::Checked));
    QVERIFY(!cell.data(Qt::DecorationRole).isValid());
}

QTEST_MAIN(tst_QorPaintedCell)
#include "tst_QorPaintedCell.moc"
