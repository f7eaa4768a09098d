#include "QorWordList.h"
#include <QtCore/QRegExp>
#include <QtTest>

using namespace Orvane::Qt4;

class tst_QorWordList : public QObject
{
    Q_OBJECT

private slots:
    void emptyListFindsNothing();
    void patternOfWordsIsRead_data();
    void patternOfWordsIsRead();
    void wholeWordsAreFoundInOrder_data();
    void wholeWordsAreFoundInOrder();
    void wordThatIsCutByTheStartIsNotFound();
    void everyCharacterPartsWordsAsTheExpressionDoes();
    void everyWordOfALongListIsFound();
};

namespace {

/// Places as "0+2 5+3".
template <class Find>
QString placesOf(Find find)
{
    QStringList places;
    for (QorWordList::Place place = find(0); place.index >= 0; place = find(place.index + place.length))
        places << QStringLiteral("%1+%2").arg(place.index).arg(place.length);
    return places.join(QLatin1Char(' '));
}

QString placesOf(const QorWordList& words, const QString& text)
{
    return placesOf([&](int from) { return words.find(text, from); });
}

QString placesOf(const QRegExp& expression, const QString& text)
{
    return placesOf([&](int from) {
        const int index = expression.indexIn(text, from, QRegExp::CaretAtZero);
        return QorWordList::Place{index, expression.matchedLength()};
    });
}

} // namespace

void tst_QorWordList::emptyListFindsNothing()
{
    QVERIFY(QorWordList().isEmpty());
    QVERIFY(QorWordList(QStringList()).isEmpty());
    QCOMPARE(QorWordList().find(QStringLiteral("if"), 0).index, -1);
}

void tst_QorWordList::patternOfWordsIsRead_data()
{
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<bool>("isRead");
    QTest::newRow("words") << QStringLiteral("\\b(if|else)\\b") << true;
    QTest::newRow("one word") << QStringLiteral("\\b(x)\\b") << true;
    QTest::newRow("letters, digits, underscore") << QStringLiteral("\\b(a1|_b|\u00e4)\\b") << true;
    QTest::newRow("empty") << QString() << false;
    QTest::newRow("no words") << QStringLiteral("\\b()\\b") << false;
    QTest::newRow("empty word") << QStringLiteral("\\b(a||b)\\b") << false;
    QTest::newRow("point") << QStringLiteral("\\b(a.b|c)\\b") << false;
    QTest::newRow("hyphen") << QStringLiteral("\\b(a-b)\\b") << false;
    QTest::newRow("blank") << QStringLiteral("\\b(a b)\\b") << false;
    QTest::newRow("group") << QStringLiteral("\\b(a(b)?)\\b") << false;
    QTest::newRow("no end") << QStringLiteral("\\b(a|b)") << false;
    QTest::newRow("no start") << QStringLiteral("(a|b)\\b") << false;
    QTest::newRow("more behind") << QStringLiteral("\\b(a|b)\\b(\\s)*") << false;
    QTest::newRow("overlapping ends") << QStringLiteral("\\b()\\b").mid(0, 5) << false;
}

void tst_QorWordList::patternOfWordsIsRead()
{
    QFETCH(QString, pattern);
    QFETCH(bool, isRead);
    QCOMPARE(!QorWordList::fromPattern(pattern).isEmpty(), isRead);
}

void tst_QorWordList::wholeWordsAreFoundInOrder_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("places");
    QTest::newRow("nothing") << QString() << QString();
    QTest::newRow("alone") << QStringLiteral("if") << QStringLiteral("0+2");
    QTest::newRow("several") << QStringLiteral("if(x)else if") << QStringLiteral("0+2 5+4 10+2");
    QTest::newRow("part of a word") << QStringLiteral("iff gif _if if1 elseif") << QString();
    QTest::newRow("case") << QStringLiteral("If IF if") << QStringLiteral("6+2");
    QTest::newRow("letter beyond ASCII") << QStringLiteral("\u00e4if if\u00df if") << QStringLiteral("8+2");
    QTest::newRow("combining mark") << QStringLiteral("if\u0301 if") << QStringLiteral("4+2");
    QTest::newRow("surrogates") << QStringLiteral("\U0001F600if\U0001F600") << QStringLiteral("2+2");
    QTest::newRow("hyphen") << QStringLiteral("if-else") << QStringLiteral("0+2 3+4");
}

void tst_QorWordList::wholeWordsAreFoundInOrder()
{
    QFETCH(QString, text);
    QFETCH(QString, places);
    const QString pattern = QStringLiteral("\\b(if|else)\\b");
    QCOMPARE(placesOf(QorWordList::fromPattern(pattern), text), places);
    QCOMPARE(placesOf(QRegExp(pattern), text), places);
}

void tst_QorWordList::wordThatIsCutByTheStartIsNotFound()
{
    const QorWordList words({QStringLiteral("if")});
    const QString text = QStringLiteral("gif if");
    QCOMPARE(words.find(text, 1).index, 4);
    QCOMPARE(words.find(text, 4).index, 4);
    QCOMPARE(words.find(text, 5).index, -1);
    QCOMPARE(words.find(text, 6).index, -1);
    QCOMPARE(words.find(text, 100).index, -1);
}

void tst_QorWordList::everyCharacterPartsWordsAsTheExpressionDoes()
{
    const QString pattern = QStringLiteral("\\b(if)\\b");
    const QorWordList words = QorWordList::fromPattern(pattern);
    const QRegExp expression(pattern);
    for (int code = 0; code <= 0xffff; ++code) {
        const QString text = QChar(code) + QStringLiteral("if if") + QChar(code);
        if (placesOf(words, text) != placesOf(expression, text))
            QFAIL(qPrintable(QStringLiteral("character %1").arg(code, 4, 16)));
    }
}

void tst_QorWordList::everyWordOfALongListIsFound()
{
    QStringList list;
    for (int i = 0; i < 5000; ++i)
        list << QStringLiteral("Node%1").arg(i);
    const QorWordList words(list + list);
    for (const QString& word : qAsConst(list))
        QCOMPARE(words.find(QLatin1Char(' ') + word, 0).length, word.size());
    QCOMPARE(words.find(QStringLiteral("Node5000 Node"), 0).index, -1);
}

QTEST_APPLESS_MAIN(tst_QorWordList)
#include "tst_QorWordList.moc"
