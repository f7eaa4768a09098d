#include "QorWindowPipe.h"
#include <QtTest>

using namespace Orvane::Qt4;

class tst_QorWindowPipe : public QObject
{
    Q_OBJECT

private slots:
    void grammar_data();
    void grammar();
    void partsThatAreLeftOutHaveTheirDefaults();
    void aTextEndsAtItsFirstNull();
    void aLongTextIsRead();
};

void tst_QorWindowPipe::grammar_data()
{
    QTest::addColumn<bool>("fits");
    QTest::addColumn<QVector<int>>("values");
    const auto good = [](const char* text, int width, int height, int depth, int frequency, int screen) {
        QTest::newRow(text) << true << QVector<int>{width, height, depth, frequency, screen};
    };
    const auto bad = [](const char* text) { QTest::newRow(text) << false << QVector<int>(); };
    good("", -1, -1, -1, -1, 0);
    good("1024x768:32@60#1", 1024, 768, 32, 60, 1);
    good("1024x768", 1024, 768, -1, -1, 0);
    good("1024x768#3", 1024, 768, -1, -1, 3);
    good("1024x768@75", 1024, 768, -1, 75, 0);
    good(":16", -1, -1, 16, -1, 0);
    good(":16#2", -1, -1, 16, -1, 2);
    good("@60", -1, -1, -1, 60, 0);
    good("@60#2", -1, -1, -1, 60, 2);
    good("#1", -1, -1, -1, -1, 1);
    good("#0x10", -1, -1, -1, -1, 16);
    good("#010", -1, -1, -1, -1, 8);
    good("#-1", -1, -1, -1, -1, -1);
    good("# 1", -1, -1, -1, -1, 1);
    good("0100x0x20", 64, 32, -1, -1, 0);
    bad("#1:32");
    bad("#1@60");
    bad("#1#2");
    bad("@60:32");
    bad("@60@60");
    bad(":32:32");
    bad(":32 #1");
    bad("1024");
    bad("1024x");
    bad("1024 x768");
    bad("1024x768x32");
    bad("1024y768");
    bad("x768");
    bad("0x0");
    bad("0x10x20");
    bad("09x5");
    bad("#");
    bad(":");
    bad("@");
    bad("#x");
    bad("#1 ");
    bad(" #1");
    bad("A");
    bad("A1x1");
    bad("1x1,");
    bad("\xe4");
    bad("32:1x1");
}

void tst_QorWindowPipe::grammar()
{
    QFETCH(bool, fits);
    QFETCH(QVector<int>, values);
    QorWindowPipe pipe;
    QCOMPARE(pipe.parse(QTest::currentDataTag()), fits);
    if (fits)
        QCOMPARE((QVector<int>{int(pipe.width), int(pipe.height), int(pipe.depth), int(pipe.frequency),
                               int(pipe.screen)}),
                 values);
}

void tst_QorWindowPipe::partsThatAreLeftOutHaveTheirDefaults()
{
    const QorWindowPipe pipe;
    QCOMPARE(pipe.width, -1L);
    QCOMPARE(pipe.height, -1L);
    QCOMPARE(pipe.depth, -1L);
    QCOMPARE(pipe.frequency, -1L);
    QCOMPARE(pipe.screen, 0L);
}

void tst_QorWindowPipe::aTextEndsAtItsFirstNull()
{
    QorWindowPipe pipe;
    QVERIFY(pipe.parse(std::string("#1\0junk", 7)));
    QCOMPARE(pipe.screen, 1L);
}

void tst_QorWindowPipe::aLongTextIsRead()
{
    QorWindowPipe pipe;
    QVERIFY(pipe.parse(std::string(100000, '1') + "x2"));
    QVERIFY(!pipe.parse(std::string(100000, '1')));
    QVERIFY(!pipe.parse(std::string(100000, '#')));
}

QTEST_APPLESS_MAIN(tst_QorWindowPipe)
#include "tst_QorWindowPipe.moc"
