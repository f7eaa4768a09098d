#include "base/TextCoding.h"
#include <QtTest>

using namespace Orvane;

class tst_TextCoding : public QObject
{
    Q_OBJECT

private slots:
    void wellFormedUtf8IsFound_data();
    void wellFormedUtf8IsFound();
    void graphKeepsLatin1WhereItFits();
    void graphKeepsUtf8WhereLatin1DoesNotFit();
    void graphKeepsUtf8WhereLatin1WouldReadAsUtf8();
    void fileFormOfGraphFormIsTheText();
    void wideTextBecomesUtf8();
};

void tst_TextCoding::wellFormedUtf8IsFound_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("good");
    QTest::newRow("empty") << QByteArray() << true;
    QTest::newRow("ascii of many words") << QByteArray(1000, 'a') << true;
    QTest::newRow("two bytes") << QByteArray("gr\xC3\xBC\xC3\x9F") << true;
    QTest::newRow("four bytes") << QByteArray("\xF0\x9F\x98\x80") << true;
    QTest::newRow("latin-1") << QByteArray("gr\xFC\xDF") << false;
    QTest::newRow("cut at the end") << QByteArray("abc\xE2\x82") << false;
    QTest::newRow("too long a form") << QByteArray("\xC0\x80") << false;
    QTest::newRow("too long a form of three") << QByteArray("\xE0\x80\x80") << false;
    QTest::newRow("surrogate") << QByteArray("\xED\xA0\x80") << false;
    QTest::newRow("beyond the last character") << QByteArray("\xF4\x90\x80\x80") << false;
}

void tst_TextCoding::wellFormedUtf8IsFound()
{
    QFETCH(QByteArray, bytes);
    QTEST(coding::isUtf8({bytes.constData(), static_cast<std::size_t>(bytes.size())}), "good");
}

void tst_TextCoding::graphKeepsLatin1WhereItFits()
{
    QCOMPARE(coding::toGraph("gr\xC3\xBC\xC3\x9F"), std::string("gr\xFC\xDF"));
    QCOMPARE(coding::toGraph("plain"), std::string("plain"));
}

void tst_TextCoding::graphKeepsUtf8WhereLatin1DoesNotFit()
{
    QCOMPARE(coding::toGraph("\xE2\x82\xAC"), std::string("\xE2\x82\xAC"));
}

void tst_TextCoding::graphKeepsUtf8WhereLatin1WouldReadAsUtf8()
{
    // The two characters of the Latin-1 bytes C3 A9.
    QCOMPARE(coding::toGraph("\xC3\x83\xC2\xA9"), std::string("\xC3\x83\xC2\xA9"));
}

void tst_TextCoding::fileFormOfGraphFormIsTheText()
{
    for (const char* text : {"", "plain", "gr\xC3\xBC\xC3\x9F", "\xE2\x82\xAC 5", "\xC3\x83\xC2\xA9"})
        QCOMPARE(coding::toFile(coding::toGraph(text)), std::string(text));
}

void tst_TextCoding::wideTextBecomesUtf8()
{
    const std::string little("a\0\xFC\0\x3D\xD8\x00\xDE", 8);
    QCOMPARE(coding::wideToUtf8(little, 2, false), std::string("a\xC3\xBC\xF0\x9F\x98\x80"));
    QCOMPARE(coding::wideToUtf8(std::string("\0\0\0a", 4), 4, true), std::string("a"));
    QCOMPARE(coding::wideToUtf8(std::string("\xD8\0", 2), 2, true), std::string("\xEF\xBF\xBD"));
}

QTEST_APPLESS_MAIN(tst_TextCoding)
#include "tst_TextCoding.moc"
