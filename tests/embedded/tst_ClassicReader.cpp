#include "ClassicRun.h"
#include <QRegularExpression>
#include <QtTest>

using namespace Orvane;

/// What the readers of the classic encodings tell of a text.
class tst_ClassicReader : public QObject, private ClassicRun
{
    Q_OBJECT

private slots:
    void nodesFieldsAndValuesComeWithTheirPlaces();
    void valuesEndByTheirType_data();
    void valuesEndByTheirType();
    void valuesOfUnknownNodesEndByTheirTokens_data();
    void valuesOfUnknownNodesEndByTheirTokens();
    void commentsAreBlanks();
    void marksOfCommentsInTextsAreText();
    void textsHaveLinesAndEscapes();
    void lineEndsOfOtherSystemsCount();
    void usesAndNullStandForNodes();
    void headOfX3dIsRead();
    void headOfX3dHasNoPlaceInVrml97();
    void statementsStandAnywhere();
    void authorsDeclareFieldsInBothVocabularies();
    void prototypesComeInOrder();
    void prototypesOfPrototypesAreKnownInside();
    void externalPrototypesHaveTheirAddressesFirst();
    void vrml97TellsItsOwnDefaults();
    void headersAreRecognized();
};

void tst_ClassicReader::nodesFieldsAndValuesComeWithTheirPlaces()
{
    const QStringList expected = {
        QStringLiteral("node Transform A  2:1"),
        QStringLiteral("value translation=1 2 3 3:15"),
        QStringLiteral("nodes of children"),
        QStringLiteral("node Shape   4:14"),
        QStringLiteral("nodes of geometry"),
        QStringLiteral("node Box   4:31"),
        QStringLiteral("end"),
        QStringLiteral("end nodes"),
        QStringLiteral("end"),
        QStringLiteral("node Group   5:3"),
        QStringLiteral("end"),
        QStringLiteral("end nodes"),
        QStringLiteral("value bboxCenter=0 0 0 6:14"),
        QStringLiteral("end"),
    };
    QCOMPARE(vrml("DEF A Transform {\n  translation 1 2 3\n  children [ Shape { geometry Box {} },\n  "
                  "Group {}\n] bboxCenter 0 0 0}"),
             expected);
    QCOMPARE(messages(), QStringList());
    QCOMPARE(x3d("DEF A Transform {\n  translation 1 2 3\n  children [ Shape { geometry Box {} },\n  "
                 "Group {}\n] bboxCenter 0 0 0}"),
             expected);
}

void tst_ClassicReader::valuesEndByTheirType_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QStringList>("values");
    const auto row = [](const char* name, const char* body, const char* values) {
        QTest::newRow(name) << QByteArray(body) << lines(values);
    };
    row("signs and points", "Transform { translation +1. -.5 1e5 scale 1E-3 +.5e+2 1 }",
        "translation=+1. -.5 1e5; scale=1E-3 +.5e+2 1");
    row("commas are blanks", "Transform { translation 1,2,,3, scale 1 ,1 1}",
        "translation=1,2,,3; scale=1 ,1 1");
    row("hexadecimal pixels", "PixelTexture { image 2 1 3 0xFF0000 0x00fF00 repeatS FALSE }",
        "image=2 1 3 0xFF0000 0x00fF00; repeatS=FALSE");
    row("list", "Coordinate { point [ 0 0 0, 1 1 1 ] }", "point=0 0 0, 1 1 1");
    row("list without blanks", "IndexedLineSet{coordIndex[0 1 -1]colorIndex[]}",
        "coordIndex=0 1 -1; colorIndex=");
    row("one value of a list", "IndexedLineSet { coordIndex 5 colorIndex 0 }", "coordIndex=5; colorIndex=0");
    row("one value of several numbers", "Coordinate { point 0 1 2 } Color { color 1 0 0 }",
        "point=0 1 2; color=1 0 0");
    row("truth", "Box { solid TRUE } Cone { side false bottom true }", "solid=TRUE; side=false; bottom=true");
    row("list of truth", "BooleanSequencer { keyValue [ TRUE, FALSE true] key [0 .5 1] }",
        "keyValue=TRUE, FALSE true; key=0 .5 1");
    row("one truth of a list", "BooleanSequencer { keyValue TRUE key 0 }", "keyValue=TRUE; key=0");
    row("text", "WorldInfo { title \"a b\" info \"c\" }", "title=a b; info=\"c\"");
    row("empty text", "WorldInfo { title\"\"info[\"\"] }", "title=; info=\"\"");
    row("texts", "WorldInfo { info [ \"a\",\"b]\" \"{\" ] title \"t\" }", "info=\"a\",\"b]\" \"{\"; title=t");
    row("no texts", "WorldInfo { info [ ] }", "info=");
    row("numbers that are none", "Transform { translation 1 2 3.4.5 scale 0x 1 1 }",
        "translation=1 2 3.4.5; scale=0x 1 1");
}

/// The values among the events, without their places.
static QStringList valuesOf(const QStringList& events)
{
    QStringList values;
    for (const QString& event : events)
        if (event.startsWith(QLatin1String("value ")))
            values << event.mid(6).section(QLatin1Char(' '), 0, -2).trimmed();
    return values;
}

void tst_ClassicReader::valuesEndByTheirType()
{
    QFETCH(QByteArray, body);
    QFETCH(QStringList, values);
    QCOMPARE(valuesOf(x3d(body.toStdString())), values);
    QCOMPARE(messages(), QStringList());
    QCOMPARE(valuesOf(vrml(body.toStdString())), values);
}

void tst_ClassicReader::valuesOfUnknownNodesEndByTheirTokens_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QStringList>("events");
    const auto row = [](const char* name, const char* body, const char* events) {
        QTest::newRow(name) << QByteArray(body) << lines(events);
    };
    row("numbers", "a 1 2 3 b 0xFF", "value a=1 2 3 2:10; value b=0xFF 2:18");
    row("list of numbers", "a [ 1, 2 ] b []", "value a=1, 2 2:10; value b= 2:21");
    row("texts", "a \"x\" b [ \"y\" \"z\" ]", "value a=x 2:10; value b=\"y\" \"z\" 2:16");
    row("truth", "a TRUE b [ FALSE ]", "value a=TRUE 2:10; value b=FALSE 2:17");
    row("node", "a Group {} b NULL", "nodes of a; node Group   2:12; end; end nodes; nodes of b; end nodes");
    row("nodes", "a [ Group {} USE G ]", "nodes of a; node Group   2:14; end; use  G ; end nodes");
    row("unknown nodes", "a Wibble { b 1 }",
        "nodes of a; node Wibble   2:12; value b=1 2:21; end; end nodes");
    row("named nodes", "a DEF N Group {} b USE N",
        "nodes of a; node Group N  2:12; end; end nodes; nodes of b; use  N ; end nodes");
    row("words", "a big b 2", "value a=big 2:10; value b=2 2:16");
    row("connection", "a IS b", "is a b");
}

void tst_ClassicReader::valuesOfUnknownNodesEndByTheirTokens()
{
    QFETCH(QByteArray, body);
    QFETCH(QStringList, events);
    QStringList got = x3d("Wobbler{ " + body.toStdString() + " }");
    QCOMPARE(messages(), QStringList());
    QVERIFY(got.size() > 2);
    got.removeFirst();
    got.removeLast();
    QCOMPARE(got, events);
}

void tst_ClassicReader::commentsAreBlanks()
{
    QCOMPARE(valuesOf(vrml("# first\nTransform { # { [ \"\n translation 1 # x\n 2 3#y\n scale 1 1 1 }"
                           "Coordinate { point [ 0 0 0 # a ] \n, 1 1 1 # b\n#c\n ] }\n#last")),
             QStringList({QStringLiteral("translation=1    \n 2 3"), QStringLiteral("scale=1 1 1"),
                          QStringLiteral("point=0 0 0       \n, 1 1 1")}));
    QCOMPARE(messages(), QStringList());
}

void tst_ClassicReader::marksOfCommentsInTextsAreText()
{
    QCOMPARE(
        valuesOf(vrml("Anchor { url \"a.wrl#View\" description \"# no comment\" } Text { string [ \"#1\" # "
                      "comment\n \"2#\" ] }")),
        QStringList({QStringLiteral("url=\"a.wrl#View\""), QStringLiteral("description=# no comment"),
                     QStringLiteral("string=\"#1\"          \n \"2#\"")}));
}

void tst_ClassicReader::textsHaveLinesAndEscapes()
{
    QCOMPARE(valuesOf(x3d("WorldInfo { title \"a \\\"b\\\" \\\\ \\n \n c\" info \"\\\"\" }")),
             QStringList({QStringLiteral("title=a \"b\" \\ \\n \n c"), QStringLiteral("info=\"\\\"\"")}));
    QCOMPARE(valuesOf(x3d("WorldInfo { title \"\\\\\" info [ \"\\\\\" ] }")),
             QStringList({QStringLiteral("title=\\"), QStringLiteral("info=\"\\\\\"")}));
    QCOMPARE(valuesOf(x3d("WorldInfo { title \"\u00e4 \u4e00\" }")),
             QStringList(QStringLiteral("title=\u00e4 \u4e00")));
    // Bytes that are no UTF-8 are Latin-1.
    QCOMPARE(valuesOf(x3d("WorldInfo { title \"\xe4\" }")), QStringList(QStringLiteral("title=\u00e4")));
}

void tst_ClassicReader::lineEndsOfOtherSystemsCount()
{
    for (const char* const end : {"\n", "\r\n", "\r"}) {
        std::string text =
            "\xEF\xBB\xBF#X3D V3.3 utf8|# comment|WorldInfo {|  title \"a|b\"|  info \"c\"|}|Group{}";
        for (std::size_t at = 0; (at = text.find('|', at)) != std::string::npos;)
            text.replace(at, 1, end);
        QVERIFY(readX3d(text));
        QCOMPARE(recorder.events,
                 QStringList({QStringLiteral("node WorldInfo   3:1"), QStringLiteral("value title=a\nb 4:9"),
                              QStringLiteral("value info=\"c\" 6:8"), QStringLiteral("end"),
                              QStringLiteral("node Group   8:1"), QStringLiteral("end")}));
        QCOMPARE(messages(), QStringList());
    }
}

void tst_ClassicReader::usesAndNullStandForNodes()
{
    QCOMPARE(
        x3d("USE A Shape { appearance NULL geometry USE B } Group { children [ USE C USE D ] }"),
        QStringList({QStringLiteral("use  A "), QStringLiteral("node Shape   2:7"),
                     QStringLiteral("nodes of appearance"), QStringLiteral("end nodes"),
                     QStringLiteral("nodes of geometry"), QStringLiteral("use  B "),
                     QStringLiteral("end nodes"), QStringLiteral("end"), QStringLiteral("node Group   2:48"),
                     QStringLiteral("nodes of children"), QStringLiteral("use  C "),
                     QStringLiteral("use  D "), QStringLiteral("end nodes"), QStringLiteral("end")}));
    QCOMPARE(messages(), QStringList());
}

void tst_ClassicReader::headOfX3dIsRead()
{
    const QStringList expected = {QStringLiteral("profile Immersive=3.3"), QStringLiteral("component Text=1"),
                                  QStringLiteral("component Core=2"), QStringLiteral("unit angle=degree"),
                                  QStringLiteral("meta a \"b\"=c d")};
    QCOMPARE(x3d("PROFILE Immersive\nCOMPONENT Text:1 COMPONENT Core : 2 UNIT angle degree 0.0174\nMETA \"a "
                 "\\\"b\\\"\" \"c d\"\n"),
             expected);
    QCOMPARE(messages(), QStringList());
}

void tst_ClassicReader::headOfX3dHasNoPlaceInVrml97()
{
    QCOMPARE(vrml("PROFILE Full\nEXPORT A"),
             QStringList({QStringLiteral("profile Full="), QStringLiteral("export A as ")}));
    QCOMPARE(messages(),
             QStringList({QStringLiteral("2:1: expected a node or statement of VRML97, found \"PROFILE\""),
                          QStringLiteral("3:1: expected a node or statement of VRML97, found \"EXPORT\"")}));
}

void tst_ClassicReader::statementsStandAnywhere()
{
    QCOMPARE(
        x3d("Group { ROUTE A.b TO C.d children [ ROUTE A . b TO C. d Group {} PROTO P [ ] { } ] }\n"
            "IMPORT I.x AS y IMPORT I.z EXPORT x AS y EXPORT z ROUTE a.b.c TO d-e.f"),
        QStringList({QStringLiteral("node Group   2:1"), QStringLiteral("route A.b C.d"),
                     QStringLiteral("nodes of children"), QStringLiteral("route A.b C.d"),
                     QStringLiteral("node Group   2:57"), QStringLiteral("end"), QStringLiteral("proto P"),
                     QStringLiteral("body"), QStringLiteral("end proto"), QStringLiteral("end nodes"),
                     QStringLiteral("end"), QStringLiteral("import I.x as y"),
                     QStringLiteral("import I.z as "), QStringLiteral("export x as y"),
                     QStringLiteral("export z as "), QStringLiteral("route a.b.c d-e.f")}));
    QCOMPARE(messages(), QStringList());
}

void tst_ClassicReader::authorsDeclareFieldsInBothVocabularies()
{
    const auto field = [](const char* name, int type, int access, const char* value) {
        return QStringLiteral("field %1 %2 %3 %4")
            .arg(QString::fromLatin1(name))
            .arg(type)
            .arg(access)
            .arg(QString::fromLatin1(value));
    };
    const QString end = QStringLiteral("end field");
    const QStringList expected = {QStringLiteral("node Script   2:1"),
                                  field("a", SFFLOAT_DT, FIELDP, "1"),
                                  end,
                                  field("b", MFSTRING_DT, FIELDP, "\"x\" \"y\""),
                                  end,
                                  field("c", SFBOOL_DT, EVENTINP, "-"),
                                  end,
                                  field("d", SFTIME_DT, EVENTOUTP, "-"),
                                  end,
                                  field("e", SFNODE_DT, FIELDP, "-"),
                                  QStringLiteral("use  G "),
                                  end,
                                  field("f", MFNODE_DT, FIELDP, "-"),
                                  QStringLiteral("node Group   8:30"),
                                  QStringLiteral("end"),
                                  end,
                                  field("g", SFNODE_DT, EXPOSEDFIELDP, "-"),
                                  end,
                                  field("h", SFSTRING_DT, FIELDP, "-"),
                                  end,
                                  QStringLiteral("is h i"),
                                  field("j", SFINT32_DT, EVENTINP, "-"),
                                  end,
                                  QStringLiteral("is j k"),
                                  QStringLiteral("is url u"),
                                  QStringLiteral("value directOutput=TRUE 12:14"),
                                  QStringLiteral("end")};
    QCOMPARE(
        vrml("Script {\nfield SFFloat a 1\nfield MFString b [ \"x\" \"y\" ] \neventIn SFBool c\neventOut "
             "SFTime d\nfield SFNode e USE G\nfield MFNode f             [ Group {} ]\nexposedField SFNode g "
             "NULL\nfield SFString h IS i\neventIn SFInt32 j IS k url IS u\ndirectOutput TRUE }"),
        expected);
    QCOMPARE(messages(), QStringList());
    QCOMPARE(
        x3d("Script {\ninitializeOnly SFFloat a 1\ninitializeOnly MFString b [ \"x\" \"y\" ] \ninputOnly "
            "SFBool c\noutputOnly SFTime d\ninitializeOnly SFNode e USE G\ninitializeOnly MFNode f    [ "
            "Group {} ]\ninputOutput SFNode g NULL\ninitializeOnly SFString h IS i\ninputOnly SFInt32 j IS "
            "k url IS u\ndirectOutput TRUE }"),
        expected);
    QCOMPARE(messages(), QStringList());
}

void tst_ClassicReader::prototypesComeInOrder()
{
    const QStringList expected = {
        QStringLiteral("proto P"),
        QStringLiteral("field c %1 %2 1 0 0").arg(SFCOLOR_DT).arg(EXPOSEDFIELDP),
        QStringLiteral("end field"),
        QStringLiteral("field n %1 %2 -").arg(MFNODE_DT).arg(FIELDP),
        QStringLiteral("node Box   3:18"),
        QStringLiteral("end"),
        QStringLiteral("end field"),
        QStringLiteral("body"),
        QStringLiteral("node Material M  4:1"),
        QStringLiteral("is diffuseColor c"),
        QStringLiteral("end"),
        QStringLiteral("route M.a M.b"),
        QStringLiteral("end proto"),
        QStringLiteral("instance P I  6:1"),
        QStringLiteral("value c=0 0 1 6:11"),
        QStringLiteral("nodes of n"),
        QStringLiteral("end nodes"),
        QStringLiteral("end"),
    };
    QCOMPARE(vrml("PROTO P [ exposedField SFColor c 1 0 0\nfield MFNode n [ Box {} ] ] {\nDEF M Material { "
                  "diffuseColor IS c }\nROUTE M.a TO M.b }\nDEF I P { c 0 0 1 n NULL }"),
             expected);
    QCOMPARE(messages(), QStringList());
}

void tst_ClassicReader::prototypesOfPrototypesAreKnownInside()
{
    QCOMPARE(x3d("PROTO A [] { PROTO B [] { A {} } B {} } B {} A {}")
                 .filter(QRegularExpression(QStringLiteral("^(node|instance)"))),
             QStringList({QStringLiteral("instance A   2:27"), QStringLiteral("instance B   2:34"),
                          QStringLiteral("node B   2:41"), QStringLiteral("instance A   2:46")}));
    QCOMPARE(messages(), QStringList());
}

void tst_ClassicReader::externalPrototypesHaveTheirAddressesFirst()
{
    const QString field = QStringLiteral("field a %1 %2 -").arg(SFINT32_DT).arg(FIELDP);
    const QStringList expected = {QStringLiteral("extern E \"e.wrl#E\" \"f.wrl\""),
                                  field,
                                  QStringLiteral("end field"),
                                  QStringLiteral("end extern"),
                                  QStringLiteral("instance E   2:64"),
                                  QStringLiteral("end")};
    QCOMPARE(vrml("EXTERNPROTO E [ field SFInt32 a ] [ \"e.wrl#E\" \"f.wrl\" ]        E {}"), expected);
    QCOMPARE(messages(), QStringList());
    QCOMPARE(x3d("EXTERNPROTO E [ ] \"e.wrl\"").value(0), QStringLiteral("extern E \"e.wrl\""));
    QCOMPARE(messages(), QStringList());
}

void tst_ClassicReader::vrml97TellsItsOwnDefaults()
{
    QCOMPARE(valuesOf(vrml("NavigationInfo { speed 2 }")),
             QStringList({QStringLiteral("type=\"WALK\", \"ANY\""), QStringLiteral("speed=2")}));
    QCOMPARE(valuesOf(x3d("NavigationInfo { speed 2 }")), QStringList(QStringLiteral("speed=2")));
    QCOMPARE(valuesOf(vrml("SpotLight {}")).size(), 2);
}

void tst_ClassicReader::headersAreRecognized()
{
    QVERIFY(isClassic("#X3D V3.0 utf8\n"));
    QVERIFY(isClassic("\r\n #X3D V4.0 utf8 more"));
    QVERIFY(!isClassic("#VRML V2.0 utf8\n"));
    QVERIFY(!isClassic("# X3D"));
    QVERIFY(isVrml97("#VRML V2.0 utf8\n"));
    QVERIFY(!isVrml97("#VRML V1.0 ascii\n"));
    QVERIFY(!isVrml97(""));
    QVERIFY(!isVrml97("<X3D/>"));
}

QTEST_APPLESS_MAIN(tst_ClassicReader)
#include "tst_ClassicReader.moc"
