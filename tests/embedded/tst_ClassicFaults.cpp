#include "ClassicRun.h"
#include <QtTest>

using namespace Orvane;

/// What the readers of the classic encodings say of faults in a text, and what they make of the rest.
class tst_ClassicFaults : public QObject, private ClassicRun
{
    Q_OBJECT

private slots:
    void brokenStatementsCostNoNode_data();
    void brokenStatementsCostNoNode();
    void faultsCostOnlyThemselves_data();
    void faultsCostOnlyThemselves();
    void missingHeaderIsTold();
    void whatIsNoSceneIsRefused_data();
    void whatIsNoSceneIsRefused();
    void readerStopsWhenTheSceneIsGivenUp();
    void deepScenesNeedNoStack();
    void manyForgottenBracketsTakeNoTime();
};

void tst_ClassicFaults::brokenStatementsCostNoNode_data()
{
    QTest::addColumn<QString>("statement");
    for (const char* statement :
         {"PROFILE", "COMPONENT", "COMPONENT Text", "COMPONENT Text:", "UNIT", "UNIT length",
          "UNIT length inch", "META", "META \"title\"", "IMPORT", "IMPORT I.", "IMPORT I.x AS", "EXPORT",
          "EXPORT x AS", "ROUTE", "ROUTE a.b", "ROUTE a.b TO", "ROUTE a.b TO c."})
        QTest::newRow(statement) << QString::fromLatin1(statement);
}

void tst_ClassicFaults::brokenStatementsCostNoNode()
{
    QFETCH(QString, statement);
    const std::string text = statement.toStdString();
    const QStringList group = {QStringLiteral("node Group   3:1"), QStringLiteral("end")};
    QCOMPARE(x3d(text + "\nGroup { }"), group);
    QCOMPARE(messages().size(), 1);
    QCOMPARE(x3d(text + "\nDEF G Group { }"),
             QStringList({QStringLiteral("node Group G  3:1"), QStringLiteral("end")}));
    QCOMPARE(messages().size(), 1);
    QCOMPARE(x3d(text + "\nMETA \"a\" \"b\""), QStringList(QStringLiteral("meta a=b")));
    QCOMPARE(messages().size(), 1);
}

void tst_ClassicFaults::faultsCostOnlyThemselves_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QStringList>("wanted");
    QTest::addColumn<QStringList>("messages");
    const auto row = [](const char* name, const char* body, const char* wanted, const char* messages) {
        QTest::newRow(name) << QByteArray(body) << lines(wanted) << lines(messages);
    };
    row("forgotten bracket", "Coordinate { point [ 0 0 0 }\nGroup {}",
        "value point=0 0 0 2:20; node Group   3:1",
        "2:28: Coordinate.point: expected a number or ], found \"}\"");
    row("forgotten bracket before a field",
        "IndexedLineSet { coordIndex [ 0 1 -1\ncolorIndex [ 0 ] }\nGroup {}",
        "value coordIndex=0 1 -1 2:29; value colorIndex=0 3:12; node Group   4:1",
        "3:1: IndexedLineSet.coordIndex: expected a number or ], found \"colorIndex\"");
    row("word in a list", "IndexedLineSet { coordIndex [ 0 red 1 ] colorIndex 7 }", "value colorIndex=7 2:52",
        "2:33: IndexedLineSet.coordIndex: expected a number or ], found \"red\"");
    row("forgotten bracket of nodes", "Group { children [ Shape {} }\nGroup {}",
        "node Shape   2:20; node Group   3:1", "2:29: children: expected ], found \"}\"");
    row("forgotten bracket of nodes before a field", "Transform { children [ Group {}\nscale 1 1 1 }",
        "value scale=1 1 1 3:7", "3:1: children: expected a node or ], found \"scale\"");
    row("no brackets round numbers", "IndexedLineSet { coordIndex 5 6, -1 colorIndex 0 }",
        "value coordIndex=5 6, -1 2:29; value colorIndex=0 2:48",
        "2:29: IndexedLineSet.coordIndex: expected [ in front of several values, found \"5\"");
    row("no brackets round points", "Coordinate { point 0 0 0 1 1 1 }", "value point=0 0 0 1 1 1 2:20",
        "2:20: Coordinate.point: expected [ in front of several values, found \"0\"");
    row("no brackets round texts", "WorldInfo { info \"a\" \"b\" title \"t\" }",
        "value info=\"a\" \"b\" 2:18; value title=t 2:32",
        "2:18: WorldInfo.info: expected [ in front of several values, found \"\"a\"\"");
    row("forgotten brace", "Group { children [ Shape { geometry Box {} ] bboxSize 1 1 1 }",
        "value bboxSize=1 1 1 2:55", "2:44: Shape: expected }, found \"]\"");
    row("brace too many", "Group {} }\nShape {}", "node Group   2:1; node Shape   3:1",
        "2:10: expected a node or statement, found \"}\"");
    row("value of another type", "Box { size \"a\" solid FALSE }", "value solid=FALSE 2:22",
        "2:12: Box.size: expected a value of type SFVec3f, found the text \"a\"");
    row("word for a number", "Box { size large solid FALSE }", "value solid=FALSE 2:24",
        "2:12: Box.size: expected a value of type SFVec3f, found \"large\"");
    row("forgotten value", "Box { size solid FALSE }", "value solid=FALSE 2:18",
        "2:12: Box.size: expected a value of type SFVec3f, found \"solid\"");
    row("list for a value", "Box { size [ 1 1 1 ] solid FALSE }", "value solid=FALSE 2:28",
        "2:12: Box.size: expected a value of type SFVec3f, found \"[\"");
    row("text without quotes", "WorldInfo { title hello info \"x\" }", "value info=\"x\" 2:30",
        "2:19: WorldInfo.title: expected a text in quotes, found \"hello\"");
    row("number for a node", "Shape { geometry 5 appearance NULL }", "nodes of appearance",
        "2:18: Shape.geometry: expected a node, found \"5\"");
    row("node for a number", "Box { size Group { children [] } solid FALSE }", "value solid=FALSE 2:40",
        "2:12: Box.size: expected a value of type SFVec3f, found \"Group\"");
    row("node without field", "Transform { Shape {} DEF A Group {} scale 1 1 1 }",
        "node Shape   2:13; node Group A  2:22; value scale=1 1 1 2:43",
        "2:13: Transform: expected a field in front of the node, found \"Shape\"; 2:22: Transform: expected "
        "a "
        "field in front of the node, found \"DEF\"");
    row("no brace behind the type", "Box Cone {}", "node Cone   2:5", "2:5: Box: expected {, found \"Cone\"");
    row("words", "so what is this { is it } Group {}", "node Group   2:27",
        "2:4: so: expected {, found \"what\"");
    row("numbers", "1 2 3 Group { 4 5 }", "node Group   2:7",
        "2:1: expected a node or statement, found \"1\"; 2:15: Group: expected a field or }, found \"4\"");
    row("route without its end", "ROUTE A.b C.d\nGroup {}", "node Group   3:1",
        "2:11: ROUTE: expected TO, found \"C.d\"");
    row("route without field", "ROUTE A TO B.c\nGroup {}", "node Group   3:1",
        "2:9: ROUTE: expected node.field, found \"TO\"");
    row("route in a node", "Transform { ROUTE A.b C.d scale 1 1 1 }", "value scale=1 1 1 2:33",
        "2:23: ROUTE: expected TO, found \"C.d\"");
    row("declared field without type", "Script { field SFWibble a 1 url \"x\" }", "value url=\"x\" 2:33",
        "2:16: Script: expected a data type, found \"SFWibble\"");
    row("declared field without value", "Script { field SFInt32 a field SFInt32 b 2 }", "field b 13 1 2",
        "2:26: Script.a: expected a value of type SFInt32, found \"field\"");
    row("prototype without name", "PROTO [ ] { } Group {}", "node Group   2:15",
        "2:7: PROTO: expected a name, found \"[\"");
    row("prototype without body", "PROTO P [ ] Group {}", "end proto; node Group   2:13",
        "2:13: P: expected {, found \"Group\"");
    row("prototype without interface", "PROTO P { Group {} } P {}", "body; instance P   2:22",
        "2:9: P: expected [, found \"{\"");
    row("external prototype without address", "EXTERNPROTO P [ ] Group {}", "extern P ; node Group   2:19",
        "2:19: P: expected its addresses, found \"Group\"");
    row("text that does not end", "Group {} WorldInfo { title \"abc }",
        "node Group   2:1; node WorldInfo   2:10",
        "2:28: WorldInfo.title: expected a closing quote, found the end of the file; 2:34: WorldInfo: "
        "expected } "
        "for the beginning at 2:10, found the end of the file");
    row("end in a list", "Group { children [ Group {}", "node Group   2:20",
        "2:28: children: expected ] for the beginning at 2:9, found the end of the file");
    row("name without node", "DEF A", "", "2:6: expected a node, found the end of the file");
}

void tst_ClassicFaults::faultsCostOnlyThemselves()
{
    QFETCH(QByteArray, body);
    QFETCH(QStringList, wanted);
    QFETCH(QStringList, messages);
    readX3d("#X3D V3.3 utf8\n" + body.toStdString());
    QStringList got = this->messages();
    if (got.value(got.size() - 1).contains(QLatin1String("nodes or statements, found none")))
        got.removeLast();
    QCOMPARE(got, messages);
    int from = 0;
    for (const QString& event : wanted) {
        if (event.isEmpty())
            continue;
        const int at = recorder.events.indexOf(event, from);
        QVERIFY2(at >= 0,
                 qPrintable(event + QLatin1String(" in ") + recorder.events.join(QStringLiteral("; "))));
        from = at + 1;
    }
}

void tst_ClassicFaults::missingHeaderIsTold()
{
    QVERIFY(readX3d("Group {}"));
    QCOMPARE(messages(),
             QStringList(QStringLiteral("1:1: expected the header \"#X3D V4.0 utf8\", found \"Group {}\"")));
    QVERIFY(readVrml("\n#VRML V2.1\nGroup {}"));
    QCOMPARE(messages(), QStringList(QStringLiteral(
                             "1:1: expected the header \"#VRML V2.0 utf8\", found \"#VRML V2.1\"")));
    QVERIFY(readVrml("#VRML V2.0 utf8\n"));
    QCOMPARE(messages(), QStringList());
}

void tst_ClassicFaults::whatIsNoSceneIsRefused_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("words") << QByteArray("#VRML V2.0 utf8\nso what");
    QTest::newRow("no header") << QByteArray("so what");
    QTest::newRow("marks") << QByteArray("#VRML V2.0 utf8\n}}}]]][[[");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("only a name") << QByteArray("#VRML V2.0 utf8\nDEF A");
}

void tst_ClassicFaults::whatIsNoSceneIsRefused()
{
    QFETCH(QByteArray, text);
    QVERIFY(!readVrml(text.toStdString()));
    QVERIFY(!report.messages.empty());
    QCOMPARE(report.messages.back().severity, LoadMessage::ERROR_LM);
    QCOMPARE(messages().constLast(), QStringLiteral("1:1: expected nodes or statements, found none"));
    QVERIFY(recorder.events.isEmpty());
}

void tst_ClassicFaults::readerStopsWhenTheSceneIsGivenUp()
{
    recorder.nodeLimit = 1;
    QVERIFY(!readVrml("#VRML V2.0 utf8\nGroup {} Group {} Group {}"));
    QCOMPARE(recorder.events.filter(QStringLiteral("node")).size(), 2);
    QVERIFY(report.messages.empty());
    recorder.nodeLimit = 1000000;
}

void tst_ClassicFaults::deepScenesNeedNoStack()
{
    const int depth = 200000;
    std::string text;
    for (int i = 0; i < depth; ++i)
        text += "Group{children[";
    QCOMPARE(vrml(text).size(), 4 * depth);
    QCOMPARE(messages().size(), 1);
    text.clear();
    for (int i = 0; i < depth; ++i)
        text += "PROTO P[]{";
    QCOMPARE(vrml(text).size(), 3 * depth);
}

void tst_ClassicFaults::manyForgottenBracketsTakeNoTime()
{
    std::string text = "Group { ";
    for (int i = 0; i < 200000; ++i)
        text += "bboxSize [ 1 ";
    QVERIFY(!vrml(text).isEmpty());
    text = "Coordinate { ";
    for (int i = 0; i < 200000; ++i)
        text += "point [ 1 ";
    QVERIFY(!vrml(text).isEmpty());
    text.clear();
    for (int i = 0; i < 200000; ++i)
        text += "Group { ] ";
    QVERIFY(!vrml(text).isEmpty());
}

QTEST_APPLESS_MAIN(tst_ClassicFaults)
#include "tst_ClassicFaults.moc"
