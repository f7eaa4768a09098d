#include "ScriptWorld.h"
#include <QTest>

using namespace Orvane;

/// The values of scripts: what they are made of, what they can do, and how they go into fields and out.
class tst_ScriptValues : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { System::the().init(0, nullptr, 382); }
    void cleanupTestCase() { System::the().exit(); }

    void expressions_data();
    void expressions();
    void everyTypeGoesInAndOut_data();
    void everyTypeGoesInAndOut();
    void partOfAnOutputIsAnEvent();
    void elementBehindTheEndMakesTheListGrow();
    void partOfAnElementIsWritten();
    void valueOfAnEventIsACopy();
    void valueOfAFieldShowsTheField();
    void listsAreArrays();
    void whatIsNotUtf8InTheGraphIsInScripts();
};

void tst_ScriptValues::expressions_data()
{
    QTest::addColumn<QByteArray>("code");
    QTest::addColumn<QByteArray>("value");
    const auto row = [](const char* code, const char* value) {
        QTest::newRow(code) << QByteArray(code) << QByteArray(value);
    };
    // Vectors
    row("new SFVec3f()", "0 0 0");
    row("new SFVec2f(1, 2)", "1 2");
    row("new SFVec4d(1, 2, 3, 4)", "1 2 3 4");
    row("SFVec3f(1, 2, 3)", "1 2 3");
    row("new SFVec3f([1, 2, 3])", "1 2 3");
    row("new SFVec3f(1, 2, 3).add(new SFVec3f(1, 1, 1))", "2 3 4");
    row("new SFVec3f(1, 2, 3).subtract(new SFVec3f(1, 1, 1))", "0 1 2");
    row("new SFVec3f(1, 2, 3).multiply(2)", "2 4 6");
    row("new SFVec3f(2, 4, 6).divide(2)", "1 2 3");
    row("new SFVec3f(1, 2, 3).negate()", "-1 -2 -3");
    row("new SFVec3f(1, 2, 3).dot(new SFVec3f(4, 5, 6))", "32");
    row("new SFVec3f(1, 0, 0).cross(new SFVec3f(0, 1, 0))", "0 0 1");
    row("new SFVec3f(3, 4, 0).length()", "5");
    row("new SFVec3f(3, 0, 4).normalize()", "0.6 0 0.8");
    row("new SFVec3f().normalize()", "0 0 0");
    row("new SFVec2d(1, 1).lerp(new SFVec2d(3, 5), 0.5)", "2 3");
    row("new SFVec3f(1, 2, 3)[1]", "2");
    row("(function () { var v = new SFVec3f(1, 2, 3); v[2] = 9; return v.z; })()", "9");
    row("new SFVec3f(1, 2, 3) instanceof SFVec3f", "true");
    row("new SFVec3f(1, 2, 3).equals(new SFVec3f(1, 2, 3))", "true");
    row("new SFVec3f(0.1, 0.2, 0.3)", "0.1 0.2 0.3");
    // Colours
    row("new SFColor(1, 0.5, 0.25)", "1 0.5 0.25");
    row("new SFColorRGBA()", "0 0 0 1");
    row("new SFColor(0, 1, 0).getHSV()[0].toFixed(4)", "2.0944");
    row("(function () { var c = new SFColor(); c.setHSV(Math.PI * 4 / 3, 1, 1); return [c.r, c.g, "
        "c.b].map(Math.round); })()",
        "0,0,1");
    // Rotations
    row("new SFRotation()", "0 0 1 0");
    row("new SFRotation(0, 1, 0, 2)", "0 1 0 2");
    row("new SFRotation(new SFVec3f(0, 1, 0), 2)", "0 1 0 2");
    row("new SFRotation(new SFVec3f(1, 0, 0), new SFVec3f(0, 1, 0))", "0 0 1 1.570796");
    row("new SFRotation(new SFVec3f(1, 0, 0), new SFVec3f(-1, 0, 0)).angle.toFixed(5)", "3.14159");
    row("new SFRotation(0, 1, 0, 2).getAxis()", "0 1 0");
    row("new SFRotation(0, 1, 0, 2).inverse()", "0 1 0 -2");
    row("new SFRotation(0, 0, 1, 1).multiply(new SFRotation(0, 0, 1, 0.5))", "0 0 1 1.5");
    row("new SFRotation(0, 0, 1, Math.PI / 2).multVec(new SFVec3f(1, 0, 0)).y.toFixed(5)", "1.00000");
    row("new SFRotation(0, 0, 1, Math.PI / 2).multiply(new SFRotation(1, 0, 0, Math.PI / 2)).multVec(new "
        "SFVec3f(1, 0, 0)).z.toFixed(5)",
        "1.00000");
    row("new SFRotation(0, 0, 1, 0).slerp(new SFRotation(0, 0, 1, 2), 0.5)", "0 0 1 1");
    row("new SFRotation(1, 0, 0, 1) instanceof SFRotation", "true");
    // Matrices
    row("new VrmlMatrix()", "1 0 0 0 0 1 0 0 0 0 1 0 0 0 0 1");
    row("new SFMatrix3f(1, 2, 3, 4, 5, 6, 7, 8, 10).determinant()", "-3");
    row("new SFMatrix3f(1, 2, 3, 4, 5, 6, 7, 8, 9).transpose()", "1 4 7 2 5 8 3 6 9");
    row("new SFMatrix3d(2, 0, 0, 0, 4, 0, 0, 0, 8).inverse()", "0.5 0 0 0 0.25 0 0 0 0.125");
    row("new VrmlMatrix(1,2,3,4, 5,6,7,8, 9,10,11,12, 13,14,15,16)[1][2]", "7");
    row("new VrmlMatrix(1,0,0,0, 0,1,0,0, 0,0,1,0, 5,6,7,1).multVecMatrix(new SFVec3f(1, 1, 1))", "6 7 8");
    row("new VrmlMatrix(1,0,0,5, 0,1,0,6, 0,0,1,7, 0,0,0,1).multMatrixVec(new SFVec3f(1, 1, 1))", "6 7 8");
    row("(function () { var m = new SFMatrix4f(), t = new SFVec3f(), r = new SFRotation(), s = new SFVec3f();"
        "m.setTransform(new SFVec3f(1, 2, 3), new SFRotation(0, 1, 0, 1), new SFVec3f(2, 3, 4)); "
        "m.getTransform(t, r, s);"
        "return [t, r, s.x.toFixed(4), s.y.toFixed(4), s.z.toFixed(4)].join(); })()",
        "1 2 3,0 1 0 1,2.0000,3.0000,4.0000");
    row("new X3DMatrix3().multLeft(new X3DMatrix3(2, 0, 0, 0, 2, 0, 0, 0, 2))[2][2]", "2");
    row("new SFMatrix4d().length", "4");
    // Single values of the language
    row("SFInt32(5.7)", "5");
    row("SFTime()", "0");
    row("new SFFloat(2) + 1", "3");
    row("SFBool(0)", "false");
    row("SFString(12) + 1", "121");
    row("TRUE && !FALSE", "true");
    row("new SFImage(1, 2, 3, new MFInt32(4, 5))", "1 2 3 4 5");
    row("new SFImage(7, 2, 3).x", "7");
    // Lists
    row("new MFFloat(1, 2, 3)", "[1, 2, 3]");
    row("new MFFloat([1, 2, 3])", "[1, 2, 3]");
    row("MFInt32(1.9, -1.9, 1e20)", "[1, -1, 2147483647]");
    row("new MFString('a', 'b').length", "2");
    row("new MFVec3f(new SFVec3f(1, 2, 3), [4, 5, 6])", "[1 2 3, 4 5 6]");
    row("new MFVec2f(new MFVec2f([[1, 2]]))", "[1 2]");
    row("new MFBool(true, false, 1)", "[TRUE, FALSE, TRUE]");
    row("new MFRotation(new SFRotation(1, 0, 0, 2))[0].angle", "2");
    row("new MFColor(new SFColor(1, 0.5, 0))[0].g", "0.5");
    row("new MFMatrix3f(new SFMatrix3f())[0][1][1]", "1");
    row("new MFImage(new SFImage(1, 1, 1, [7]))[0].array[0]", "7");
    row("new MFFloat(1, 2)[5]", "undefined");
    row("new MFNode(new SFNode('Box {}'), null).length", "2");
    row("new MFNode(new SFNode('Box {}'))", "[Box]");
    row("new MFFloat() instanceof MFFloat", "true");
    row("(function () { var m = new MFInt32(1, 2, 3); m.length = 5; return m; })()", "[1, 2, 3, 0, 0]");
    row("(function () { var m = new MFInt32(1, 2, 3); m.length = 1; return m; })()", "[1]");
    row("(function () { var m = new MFString(); m[2] = 'c'; return m; })()", "[\"\", \"\", \"c\"]");
    row("(function () { var m = new MFVec2f(); m[1][0] = 4; return m; })()", "[0 0, 4 0]");
    row("(function () { var s = 0; for (var i in new MFInt32(5, 6)) s += i; return s; })()", "001");
    row("1 in new MFInt32(5, 6)", "true");
    row("2 in new MFInt32(5, 6)", "false");
}

void tst_ScriptValues::expressions()
{
    QFETCH(QByteArray, code);
    QFETCH(QByteArray, value);
    ScriptWorld world(ScriptWorld::script("", "print(" + code.replace('"', "\\\"").toStdString() + ");"));
    QCOMPARE(world.log(), Lines({value}));
}

void tst_ScriptValues::everyTypeGoesInAndOut_data()
{
    QTest::addColumn<QByteArray>("type");
    QTest::addColumn<QByteArray>("value");
    const auto row = [](const char* type, const char* value) {
        QTest::newRow(type) << QByteArray(type) << QByteArray(value);
    };
    row("SFBool", "TRUE");
    row("MFBool", "TRUE, FALSE");
    row("SFColor", "1 0.5 0");
    row("MFColor", "1 0.5 0, 0 0 1");
    row("SFColorRGBA", "1 0.5 0 0.25");
    row("MFColorRGBA", "1 0.5 0 0.25, 0 0 0 1");
    row("SFDouble", "1.0000000001");
    row("MFDouble", "1.0000000001, 2");
    row("SFFloat", "1.5");
    row("MFFloat", "1.5, -2");
    row("SFImage", "2 1 1 0xFF 0x10");
    row("MFImage", "1 1 1 0xFF, 1 1 3 0x102030");
    row("SFInt32", "-7");
    row("MFInt32", "-7, 8");
    row("SFMatrix3d", "1 2 3 4 5 6 7 8 9");
    row("MFMatrix3d", "1 2 3 4 5 6 7 8 9, 9 8 7 6 5 4 3 2 1");
    row("SFMatrix3f", "1 2 3 4 5 6 7 8 9");
    row("MFMatrix3f", "1 2 3 4 5 6 7 8 9");
    row("SFMatrix4d", "1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16");
    row("MFMatrix4d", "1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16");
    row("SFMatrix4f", "1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16");
    row("MFMatrix4f", "1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16");
    row("SFRotation", "1 0 0 2");
    row("MFRotation", "1 0 0 2, 0 1 0 1");
    row("SFString", "a text");
    row("MFString", "\"a\", \"b \\\"c\\\"\"");
    row("SFTime", "12.25");
    row("MFTime", "12.25, 13");
    row("SFVec2d", "1 2");
    row("MFVec2d", "1 2, 3 4");
    row("SFVec2f", "1 2");
    row("MFVec2f", "1 2, 3 4");
    row("SFVec3d", "1 2 3");
    row("MFVec3d", "1 2 3, 4 5 6");
    row("SFVec3f", "1 2 3");
    row("MFVec3f", "1 2 3, 4 5 6");
    row("SFVec4d", "1 2 3 4");
    row("MFVec4d", "1 2 3 4, 5 6 7 8");
    row("SFVec4f", "1 2 3 4");
    row("MFVec4f", "1 2 3 4, 5 6 7 8");
    row("SFNode", "G");
    row("MFNode", "G, H");
}

void tst_ScriptValues::everyTypeGoesInAndOut()
{
    QFETCH(QByteArray, type);
    QFETCH(QByteArray, value);
    const std::string name = type.toStdString();
    // By the value of an event, by a variable of the script, and by a field of another node.
    ScriptWorld world(
        "DEF G Group {} DEF H Group {}" +
        ScriptWorld::script("inputOnly " + name + " in_ outputOnly " + name + " out outputOnly " + name +
                                " again initializeOnly SFNode other DEF O Script { inputOutput " + name +
                                " far " +
                                (name == "SFNode"            ? "NULL "
                                 : name.substr(0, 2) == "MF" ? "[] "
                                                             : "") +
                                "} outputOnly SFInt32 count",
                            "function in_(v) { out = v; again = out; other.far = again; count = 1; }"));
    if (!world.ok()) // single values need one in the text
        QSKIP("covered by the list of the type");
    world.log();
    world.set("S", "in_", value.constData());
    QCOMPARE(world.log(), Lines());
    QCOMPARE(world.get("S", "count"), QByteArray("1"));
    QCOMPARE(world.get("S", "out"), world.get("S", "in_"));
    QCOMPARE(world.get("S", "again"), world.get("S", "in_"));
    QCOMPARE(world.get("O", "far"), world.get("S", "in_"));
    QVERIFY(!world.get("S", "out").isEmpty());
}

void tst_ScriptValues::partOfAnOutputIsAnEvent()
{
    ScriptWorld world(ScriptWorld::script("inputOnly SFFloat go outputOnly SFVec3f place",
                                          "function go(v) { place[0] = v; place.y = 2 * v; }") +
                      "DEF T Transform {} ROUTE S.place TO T.translation");
    world.set("S", "go", "3");
    QCOMPARE(world.get("T", "translation"), QByteArray("3 6 0"));
}

void tst_ScriptValues::elementBehindTheEndMakesTheListGrow()
{
    ScriptWorld world(
        ScriptWorld::script("inputOnly SFInt32 go outputOnly MFInt32 list",
                            "function go(v) { list[list.length] = v; list.push(v + 1); }") +
        ScriptWorld::script("inputOnly MFInt32 list", "function list(v) { print(v); }").replace(4, 1, "R") +
        "ROUTE S.list TO R.list");
    world.set("S", "go", "3");
    world.set("S", "go", "5");
    QCOMPARE(world.log(), Lines({"[3, 4]", "[3, 4, 5, 6]"}));
}

void tst_ScriptValues::partOfAnElementIsWritten()
{
    ScriptWorld world("DEF C Coordinate { point [ 1 1 1, 2 2 2 ] }" +
                      ScriptWorld::script("initializeOnly SFNode c USE C inputOnly SFBool go",
                                          "function go() { c.point[1].y = 7; c.point[2].x = 3; }"));
    world.set("S", "go", "TRUE");
    QCOMPARE(world.get("C", "point"), QByteArray("1 1 1, 2 7 2, 3 0 0"));
}

void tst_ScriptValues::valueOfAnEventIsACopy()
{
    ScriptWorld world(
        ScriptWorld::script("inputOnly SFVec3f a inputOnly MFFloat b",
                            "var kept = []; function a(v) { kept.push(v); print(kept.join()); } "
                            "var lists = []; function b(v) { lists.push(v); print(lists.join()); }"));
    world.log();
    world.set("S", "a", "1 2 3");
    world.set("S", "a", "4 5 6");
    QCOMPARE(world.log(), Lines({"1 2 3", "1 2 3,4 5 6"}));
    world.set("S", "b", "1");
    world.set("S", "b", "2 3");
    QCOMPARE(world.log(), Lines({"[1]", "[1],[2, 3]"}));
}

void tst_ScriptValues::valueOfAFieldShowsTheField()
{
    ScriptWorld world(
        "DEF T Transform {}" +
        ScriptWorld::script(
            "initializeOnly SFNode t USE T inputOnly SFBool go",
            "var place = t.translation, copy = place.copy(); function go(v) { if (v) place.x = 5; "
            "print(place, copy, t.translation instanceof SFVec3f); }"));
    world.log();
    world.set("S", "go", "TRUE");
    QCOMPARE(world.get("T", "translation"), QByteArray("5 0 0"));
    world.set("T", "translation", "1 2 3");
    world.set("S", "go", "FALSE");
    QCOMPARE(world.log(), Lines({"5 0 0 0 0 0 true", "1 2 3 0 0 0 true"}));
}

void tst_ScriptValues::listsAreArrays()
{
    ScriptWorld world(ScriptWorld::script(
        "outputOnly MFInt32 m",
        "m = [3, 1, 2]; m.sort(); print(m, m.indexOf(2), m.slice(1), m.map(function (v) { return v * 2; }));"
        "m.unshift(0); m.splice(1, 1); m.reverse(); print(m, m.pop(), m.shift(), m);"));
    QCOMPARE(world.log(), Lines({"[1, 2, 3] 1 2,3 2,4,6", "[2] 0 3 [2]"}));
    QCOMPARE(world.get("S", "m"), QByteArray("2"));
}

void tst_ScriptValues::whatIsNotUtf8InTheGraphIsInScripts()
{
    ScriptWorld world(
        ScriptWorld::script("inputOnly SFString go outputOnly SFString back outputOnly MFString list",
                            "function go(v) { print(v.length); back = v + '\xC3\xA4'; list = new MFString(v, "
                            "'\xE2\x82\xAC'); }"));
    world.log();
    world.set("S", "go", "\xE4");
    QCOMPARE(world.log(), Lines({"1"}));
    QCOMPARE(world.get("S", "back"), QByteArray("\xE4\xE4"));
    QCOMPARE(world.get("S", "list"), QByteArray("\"\xE4\", \"\xE2\x82\xAC\""));
}

QTEST_GUILESS_MAIN(tst_ScriptValues)
#include "tst_ScriptValues.moc"
