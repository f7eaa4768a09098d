#include "Numbers.h"
#include "ShapeGeometry.h"
#include "core/GeometryProc.h"
#include "core/TextLayout.h"
#include <QtTest>
#include <cmath>

using namespace Orvane;

namespace {

QByteArray text(const QByteArray& fields, const QByteArray& style = QByteArray())
{
    return "DEF S Shape { geometry DEF F Text { " + fields + " fontStyle DEF Y FontStyle { " + style +
           " } } }";
}

osg::Pnt3f low(const CoreScene& scene)
{
    return geometryOf(scene)->getBox().getMin();
}

osg::Pnt3f high(const CoreScene& scene)
{
    return geometryOf(scene)->getBox().getMax();
}

TextLayout layout(const std::vector<std::u32string>& lines, const TextStyle& style)
{
    return layoutText(lines, style);
}

bool isNear(float a, float b)
{
    return std::abs(a - b) < 1e-3F;
}

} // namespace

class tst_Text : public QObject
{
    Q_OBJECT

private slots:
    void lettersStandOnTheBaseLine();
    void lettersHaveHoles();
    void textWithoutStyleIsDrawn();
    void linesFollowEachOther();
    void majorJustification_data();
    void majorJustification();
    void minorJustification_data();
    void minorJustification();
    void rightToLeftRunsTheOtherWay();
    void columnsRunDownAndSideways();
    void lengthStretchesALine();
    void maxExtentSqueezesLongLines();
    void familiesAndStylesDiffer();
    void charactersComeFromAnyText_data();
    void charactersComeFromAnyText();
    void missingCharactersShowSomething();
    void boundsAreSent();
    void styleEditsAreShown();
    void sharedStyleMovesBoth();
    void absurdTextsAreHarmless_data();
    void absurdTextsAreHarmless();
    void textsTooLongAreCutWithAMessage();
};

void tst_Text::lettersStandOnTheBaseLine()
{
    CoreScene scene(text("string \"H\"").constData());
    QVERIFY(isNear(low(scene)[1], 0.0F));
    QVERIFY(high(scene)[1] > 0.6F && high(scene)[1] < 0.9F);
    QVERIFY(low(scene)[0] >= 0.0F);
    for (const DrawnTriangle& triangle : trianglesOf(scene))
        QCOMPARE(triangle.normals[0], osg::Vec3f(0, 0, 1));
    QVERIFY(!scene.procOf<GeometryProc>("F").isSolid());
}

void tst_Text::lettersHaveHoles()
{
    // The sans capital I is a bar, the O a ring: no more of it is filled than half of its box.
    CoreScene scene(text("string \"O\"", "family \"SANS\"").constData());
    const osg::Vec3f size = high(scene) - low(scene);
    const float filled = areaTowards(trianglesOf(scene), osg::Vec3f(0, 0, 1));
    QVERIFY(filled > 0.1F * size[0] * size[1]);
    QVERIFY2(filled < 0.5F * size[0] * size[1], QByteArray::number(double(filled)).constData());
}

void tst_Text::textWithoutStyleIsDrawn()
{
    CoreScene scene("DEF S Shape { geometry DEF F Text { string \"abc\" } }");
    QVERIFY(!trianglesOf(scene).empty());
}

void tst_Text::linesFollowEachOther()
{
    const TextLayout down = layout({U"A", U"A"}, {});
    QCOMPARE(down.glyphs.size(), std::size_t(2));
    QVERIFY(isNear(down.glyphs[0].origin[1], 0.0F));
    QVERIFY(isNear(down.glyphs[1].origin[1], -1.0F));
    TextStyle style;
    style.spacing = 2.0F;
    style.size = 3.0F;
    style.topToBottom = false;
    const TextLayout up = layout({U"A", U"A"}, style);
    QVERIFY(isNear(up.glyphs[0].origin[1], 0.0F));
    QVERIFY(isNear(up.glyphs[1].origin[1], 6.0F));
}

void tst_Text::majorJustification_data()
{
    QTest::addColumn<int>("justify");
    QTest::addColumn<float>("share");
    QTest::newRow("begin") << int(TextStyle::BEGIN) << 0.0F;
    QTest::newRow("first") << int(TextStyle::FIRST) << 0.0F;
    QTest::newRow("middle") << int(TextStyle::MIDDLE) << 0.5F;
    QTest::newRow("end") << int(TextStyle::END) << 1.0F;
}

void tst_Text::majorJustification()
{
    QFETCH(int, justify);
    QFETCH(float, share);
    TextStyle style;
    style.major = TextStyle::Justify(justify);
    const TextLayout set = layout({U"abc", U"a"}, style);
    // Each line is justified by itself.
    QVERIFY(isNear(set.glyphs[0].origin[0], -share * set.lineBounds[0][0]));
    QVERIFY(isNear(set.glyphs[3].origin[0], -share * set.lineBounds[1][0]));
    QVERIFY(set.lineBounds[0][0] > set.lineBounds[1][0]);
}

void tst_Text::minorJustification_data()
{
    QTest::addColumn<int>("justify");
    QTest::addColumn<bool>("down");
    QTest::addColumn<float>("low");
    QTest::addColumn<float>("high");
    const Font& font = Font::find({{"SERIF"}, false, false});
    const float up = font.ascent();
    const float below = font.descent();
    // Two lines, a size of 1 apart.
    QTest::newRow("first") << int(TextStyle::FIRST) << true << -1.0F - below << up;
    QTest::newRow("begin") << int(TextStyle::BEGIN) << true << -1.0F - below - up << 0.0F;
    QTest::newRow("middle") << int(TextStyle::MIDDLE) << true << -0.5F * (1.0F + up + below)
                            << 0.5F * (1.0F + up + below);
    QTest::newRow("end") << int(TextStyle::END) << true << 0.0F << 1.0F + up + below;
    QTest::newRow("first, upwards") << int(TextStyle::FIRST) << false << -below << 1.0F + up;
    QTest::newRow("begin, upwards") << int(TextStyle::BEGIN) << false << 0.0F << 1.0F + up + below;
    QTest::newRow("end, upwards") << int(TextStyle::END) << false << -1.0F - up - below << 0.0F;
}

void tst_Text::minorJustification()
{
    QFETCH(int, justify);
    QFETCH(bool, down);
    QFETCH(float, low);
    QFETCH(float, high);
    TextStyle style;
    style.font.families = {"SERIF"};
    style.minor = TextStyle::Justify(justify);
    style.topToBottom = down;
    const TextLayout set = layout({U"a", U"b"}, style);
    QVERIFY2(isNear(set.low[1], low), QByteArray::number(double(set.low[1])).constData());
    QVERIFY2(isNear(set.high[1], high), QByteArray::number(double(set.high[1])).constData());
}

void tst_Text::rightToLeftRunsTheOtherWay()
{
    TextStyle style;
    style.leftToRight = false;
    const TextLayout set = layout({U"ab"}, style);
    QVERIFY(isNear(set.high[0], 0.0F));
    QVERIFY(set.glyphs[1].origin[0] < set.glyphs[0].origin[0]);
    QVERIFY(isNear(set.glyphs[0].origin[0], -set.glyphs[0].glyph->advance));
}

void tst_Text::columnsRunDownAndSideways()
{
    TextStyle style;
    style.horizontal = false;
    const TextLayout set = layout({U"ab", U"c"}, style);
    QVERIFY(isNear(set.glyphs[1].origin[1], set.glyphs[0].origin[1] - 1.0F));
    QVERIFY(set.glyphs[2].origin[0] > set.glyphs[0].origin[0] + 0.5F);
    QVERIFY(isNear(set.high[1], 0.0F) && isNear(set.low[1], -2.0F));
    style.topToBottom = false;
    style.leftToRight = false;
    const TextLayout other = layout({U"ab", U"c"}, style);
    QVERIFY(other.glyphs[1].origin[1] > other.glyphs[0].origin[1]);
    QVERIFY(other.glyphs[2].origin[0] < other.glyphs[0].origin[0]);
}

void tst_Text::lengthStretchesALine()
{
    TextStyle style;
    style.lengths = {10.0F, 0.0F};
    const TextLayout set = layout({U"abc", U"abc", U"abc"}, style);
    QVERIFY(isNear(set.lineBounds[0][0], 10.0F));
    QVERIFY(isNear(set.lineBounds[1][0], set.lineBounds[2][0]));
    QVERIFY(set.glyphs[0].scale[0] > 1.0F && set.glyphs[0].scale[1] == 1.0F);
}

void tst_Text::maxExtentSqueezesLongLines()
{
    TextStyle style;
    style.maxExtent = 1.0F;
    const TextLayout set = layout({U"abcdef", U"i"}, style);
    QVERIFY(isNear(set.lineBounds[0][0], 1.0F));
    QVERIFY(set.lineBounds[1][0] < 0.6F);
    QCOMPARE(set.glyphs.back().scale[0], 1.0F);
}

void tst_Text::familiesAndStylesDiffer()
{
    const auto widthOf = [](const Font::Wish& wish, const char32_t* letters) {
        TextStyle style;
        style.font = wish;
        return layout({letters}, style).lineBounds[0][0];
    };
    const Font::Wish sans{{"SANS"}, false, false};
    const Font::Wish typewriter{{"TYPEWRITER"}, false, false};
    const Font::Wish bold{{"SANS"}, true, false};
    QVERIFY(isNear(widthOf(typewriter, U"iii"), widthOf(typewriter, U"MMM")));
    QVERIFY(widthOf(sans, U"iii") < 0.6F * widthOf(sans, U"MMM"));
    QVERIFY(widthOf(bold, U"MMM") > widthOf(sans, U"MMM"));
    QVERIFY(!isNear(widthOf({{"SERIF"}, false, false}, U"MMM"), widthOf(sans, U"MMM")));
    // What the system does not have is stood in for.
    QVERIFY(widthOf({{"no such typeface at all", "TYPEWRITER"}, false, false}, U"iii") > 0.0F);
}

void tst_Text::charactersComeFromAnyText_data()
{
    QTest::addColumn<QByteArray>("utf8");
    QTest::addColumn<QVector<uint>>("characters");
    using List = QVector<uint>;
    QTest::newRow("plain") << QByteArray("Ab1") << List{'A', 'b', '1'};
    QTest::newRow("two bytes") << QByteArray("\xC3\xA9") << List{0xE9};
    QTest::newRow("three bytes") << QByteArray("\xE2\x82\xAC") << List{0x20AC};
    QTest::newRow("four bytes") << QByteArray("\xF0\x9F\x98\x80") << List{0x1F600};
    QTest::newRow("control characters") << QByteArray("a\t\nb\x7F") << List{'a', 'b'};
    QTest::newRow("cut short") << QByteArray("\xE2\x82") << List{0xFFFD};
    QTest::newRow("lone follower") << QByteArray("\x82"
                                                 "a")
                                   << List{0xFFFD, 'a'};
    QTest::newRow("beyond all") << QByteArray("\xF7\xBF\xBF\xBF") << List{0xFFFD};
    QTest::newRow("nothing") << QByteArray() << List{};
}

void tst_Text::charactersComeFromAnyText()
{
    QFETCH(QByteArray, utf8);
    QFETCH(QVector<uint>, characters);
    const std::u32string found = charactersOf(utf8.toStdString());
    QCOMPARE(QVector<uint>(found.begin(), found.end()), characters);
}

void tst_Text::missingCharactersShowSomething()
{
    const Font& font = Font::find({{"SERIF"}, false, false});
    QVERIFY(!font.glyph(0x10FFFD).points.empty());
    QVERIFY(font.glyph(' ').points.empty() && font.glyph(' ').advance > 0.0F);
}

void tst_Text::boundsAreSent()
{
    CoreScene scene(text("string [ \"abc\" \"d\" ]", "size 2").constData());
    QCOMPARE(scene.field("F", "lineBounds").size(), 2U);
    const std::string before = scene.get("F", "textBounds");
    QVERIFY(numbersIn(before).at(0) > 1.0);
    scene.set("F", "string", "\"abcabc\"");
    QVERIFY(numbersIn(scene.get("F", "textBounds")).at(0) > numbersIn(before).at(0));
    QCOMPARE(scene.field("F", "lineBounds").size(), 1U);
    // The corner at the left, at the top of the first line.
    QVERIFY(numbersIn(scene.get("F", "origin")).at(1) > 1.0);
}

void tst_Text::styleEditsAreShown()
{
    CoreScene scene(text("string \"H\"").constData());
    const float before = high(scene)[1];
    scene.set("Y", "size", "3");
    QVERIFY(isNear(high(scene)[1], 3.0F * before));
    scene.set("Y", "justify", "\"END\"");
    QVERIFY(high(scene)[0] <= 0.0F);
    scene.set("F", "fontStyle", "NULL");
    QVERIFY(isNear(high(scene)[1], before));
}

void tst_Text::sharedStyleMovesBoth()
{
    CoreScene scene((text("string \"H\"") + "DEF T Shape { geometry Text { string \"H\" fontStyle USE Y } }")
                        .constData());
    scene.set("Y", "size", "2");
    QCOMPARE(geometryOf(scene, "T")->getBox().getMax(), high(scene));
}

void tst_Text::absurdTextsAreHarmless_data()
{
    QTest::addColumn<QByteArray>("scene");
    QTest::newRow("no string") << text("");
    QTest::newRow("empty strings") << text("string [ \"\" \"\" ]");
    QTest::newRow("size 0") << text("string \"a\"", "size 0");
    QTest::newRow("negative size") << text("string \"a\"", "size -2");
    QTest::newRow("huge size") << text("string \"a\"", "size 1e30");
    QTest::newRow("negative spacing") << text("string [ \"a\" \"b\" ]", "spacing -1");
    QTest::newRow("unknown words") << text("string \"a\"", "justify [ \"LEFT\" \"TOP\" ] style HEAVY");
    QTest::newRow("no family") << text("string \"a\"", "family [ ]");
    QTest::newRow("negative length") << text("string \"a\" length -3 maxExtent -1");
}

void tst_Text::absurdTextsAreHarmless()
{
    QFETCH(QByteArray, scene);
    CoreScene loaded(scene.constData());
    for (const osg::Pnt3f& p : geometryOf(loaded)->getPositions()->getField())
        QVERIFY(isDrawable(p));
}

void tst_Text::textsTooLongAreCutWithAMessage()
{
    CoreScene scene(text("string \"" + QByteArray(1100000, ' ') + "\"").constData());
    QCOMPARE(scene.messageCount(), std::size_t(1));
}

QTEST_GUILESS_MAIN(tst_Text)
#include "tst_Text.moc"
