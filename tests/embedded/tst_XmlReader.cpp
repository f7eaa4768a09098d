#include "ReaderRun.h"
#include "loader/XmlReader.h"
#include <QtTest>

using namespace Orvane;

/// What the reader of the XML encoding tells of a text.
class tst_XmlReader : public QObject, private ReaderRun
{
    Q_OBJECT

private slots:
    void nodesAndValuesComeWithTheirPlaces();
    void usesComeWithoutContent();
    void headComesBeforeTheScene();
    void declaredFieldsHoldNodes();
    void neighbouringTextsAreOne();
    void commentsAndProcessingInstructionsAreNothing();
    void prototypesComeInOrder();
    void connectionsComeBehindTheFields();
    void statementsAreRead();
    void statementsWithoutTheirAttributesAreTold();
    void entitiesAndLineEndsOfAttributes();
    void entitiesOfTheDocumentAreNotReplaced();
    void generalAttributesAreNothing();
    void sceneMayBeMissingRoundTheNodes();
    void whatIsNoSceneIsRefused_data();
    void whatIsNoSceneIsRefused();
    void readerStopsWhenTheSceneIsGivenUp();
    void deepDocumentsNeedNoStack();

private:
    bool read(const std::string& text) { return ReaderRun::read(readXml, text); }
    QStringList scene(const std::string& nodes);
};

QStringList tst_XmlReader::scene(const std::string& nodes)
{
    if (!read("<X3D><Scene>\n" + nodes + "</Scene></X3D>"))
        return {QStringLiteral("refused")};
    return recorder.events;
}

void tst_XmlReader::nodesAndValuesComeWithTheirPlaces()
{
    const QStringList expected = {
        QStringLiteral("node Group A  2:1"),
        QStringLiteral("node Shape  children 3:3"),
        QStringLiteral("value bboxSize=1 2 3 4:13"),
        QStringLiteral("node Box   5:5"),
        QStringLiteral("end"),
        QStringLiteral("end"),
        QStringLiteral("end"),
    };
    QCOMPARE(scene("<Group DEF='A'>\n  <Shape containerField='children'\n  bboxSize='1 2 3'>\n    "
                   "<Box/></Shape></Group>"),
             expected);
    QVERIFY(report.messages.empty());
}

void tst_XmlReader::usesComeWithoutContent()
{
    QCOMPARE(scene("<Group USE='A' containerField='proxy'><Box/></Group>"),
             QStringList(QStringLiteral("use Group A proxy")));
    QCOMPARE(report.messages.size(), std::size_t(1));
    QCOMPARE(report.messages[0].text, std::string("Group: expected no content with USE, found some"));
}

void tst_XmlReader::headComesBeforeTheScene()
{
    QVERIFY(read("<X3D profile='Full' version='3.3' xmlns:xsd='x' xsd:noNamespaceSchemaLocation='y'><head>"
                 "<component name='Text' level='1'/><unit category='angle' name='degree' "
                 "conversionFactor='0.5'/><meta name='title' content='T'/></head><Scene/></X3D>"));
    const QStringList expected = {QStringLiteral("profile Full=3.3"), QStringLiteral("component Text=1"),
                                  QStringLiteral("unit angle=degree"), QStringLiteral("meta title=T")};
    QCOMPARE(recorder.events, expected);
    QVERIFY(report.messages.empty());
}

void tst_XmlReader::declaredFieldsHoldNodes()
{
    const QStringList expected = {
        QStringLiteral("node Script   2:1"),
        QStringLiteral("field a %1 %2 1").arg(SFFLOAT_DT).arg(FIELDP),
        QStringLiteral("end field"),
        QStringLiteral("field n %1 %2 -").arg(SFNODE_DT).arg(EXPOSEDFIELDP),
        QStringLiteral("use Group G "),
        QStringLiteral("end field"),
        QStringLiteral("end"),
    };
    QCOMPARE(
        scene("<Script><field name='a' type='SFFloat' accessType='initializeOnly' value='1'/><field name='n' "
              "type='SFNode' accessType='inputOutput'><Group USE='G'/></field></Script>"),
        expected);
}

void tst_XmlReader::neighbouringTextsAreOne()
{
    const QStringList expected = {QStringLiteral("node Script   2:1"), QStringLiteral("text a]]>b 2:18"),
                                  QStringLiteral("end")};
    QCOMPARE(scene("<Script><![CDATA[a]]]]><![CDATA[>b]]></Script>"), expected);
}

void tst_XmlReader::commentsAndProcessingInstructionsAreNothing()
{
    QCOMPARE(scene("<!-- c --><?p i?><Group><!-- c --></Group>"),
             QStringList({QStringLiteral("node Group   2:18"), QStringLiteral("end")}));
    QVERIFY(report.messages.empty());
}

void tst_XmlReader::prototypesComeInOrder()
{
    const QStringList expected = {
        QStringLiteral("proto P"),
        QStringLiteral("field c %1 %2 1 0 0").arg(SFCOLOR_DT).arg(EXPOSEDFIELDP),
        QStringLiteral("end field"),
        QStringLiteral("body"),
        QStringLiteral("node Material   2:139"),
        QStringLiteral("is diffuseColor c"),
        QStringLiteral("end"),
        QStringLiteral("end proto"),
        QStringLiteral("extern E \"e.x3d\""),
        QStringLiteral("end extern"),
        QStringLiteral("instance P I  2:290"),
        QStringLiteral("value c=0 0 1 2:350"),
        QStringLiteral("nodes of n"),
        QStringLiteral("node Box   2:379"),
        QStringLiteral("end"),
        QStringLiteral("end nodes"),
        QStringLiteral("end"),
    };
    QCOMPARE(
        scene(
            "<ProtoDeclare name='P'><ProtoInterface><field name='c' type='SFColor' accessType='inputOutput' "
            "value='1 0 0'/></ProtoInterface><ProtoBody><Material><IS><connect nodeField='diffuseColor' "
            "protoField='c'/></IS></Material></ProtoBody></ProtoDeclare><ExternProtoDeclare name='E' "
            "url='\"e.x3d\"'/><ProtoInstance name='P' DEF='I'><fieldValue name='c' value='0 0 "
            "1'/><fieldValue "
            "name='n'><Box/></fieldValue></ProtoInstance>"),
        expected);
}

void tst_XmlReader::connectionsComeBehindTheFields()
{
    const auto body = [this](const std::string& content) {
        QStringList events = scene("<ProtoDeclare name='P'><ProtoInterface/><ProtoBody><Script>" + content +
                                   "</Script></ProtoBody></ProtoDeclare>");
        return events.filter(QRegularExpression(QStringLiteral("^(is|field|node Group) ")));
    };
    const std::string first = "<IS><connect nodeField='a' protoField='x'/></IS>";
    const std::string second = "<IS><connect nodeField='b' protoField='y'/></IS>";
    const std::string fields = "<field name='a' type='SFFloat' accessType='inputOutput'/><Group/>"
                               "<field name='b' type='SFFloat' accessType='inputOutput'/>";
    const QString field = QStringLiteral("field %1 %2 %3 -");
    const QStringList expected = {
        field.arg(QStringLiteral("a")).arg(SFFLOAT_DT).arg(EXPOSEDFIELDP),
        field.arg(QStringLiteral("b")).arg(SFFLOAT_DT).arg(EXPOSEDFIELDP),
        QStringLiteral("is a x"),
        QStringLiteral("is b y"),
    };
    const auto withoutNodes = [](const QStringList& events) {
        return events.filter(QRegularExpression(QStringLiteral("^(is|field) ")));
    };
    QCOMPARE(withoutNodes(body(first + second + fields)), expected);
    QCOMPARE(withoutNodes(body(first + "<Group/>" + fields + second)), expected);
    QCOMPARE(withoutNodes(body(fields + first + second)), expected);
    QCOMPARE(body(first + fields + second).size(), 5);
    QVERIFY(report.messages.empty());
}

void tst_XmlReader::statementsAreRead()
{
    const QStringList expected = {QStringLiteral("route A.b C.d"), QStringLiteral("import I.x as y"),
                                  QStringLiteral("export x as y")};
    QCOMPARE(
        scene(
            "<ROUTE fromNode='A' fromField='b' toNode='C' toField='d'/><IMPORT inlineDEF='I' importedDEF='x' "
            "AS='y'/><EXPORT localDEF='x' AS='y'/>"),
        expected);
}

void tst_XmlReader::statementsWithoutTheirAttributesAreTold()
{
    QCOMPARE(scene("<ROUTE fromNode='A' toNode='C' toField='d'/>"), QStringList());
    QCOMPARE(report.messages.size(), std::size_t(1));
    QCOMPARE(report.messages[0].toString(),
             std::string("file:2:1: ROUTE: expected the attribute fromField, found "
                         "none"));
}

void tst_XmlReader::entitiesAndLineEndsOfAttributes()
{
    QCOMPARE(scene("<Text string='&quot;a&#10;b&quot;&#x20;&lt;&amp;\r\nc'/>").value(1),
             QStringLiteral("value string=\"a\nb\" <& c 2:15"));
}

void tst_XmlReader::entitiesOfTheDocumentAreNotReplaced()
{
    QVERIFY(read(
        "<!DOCTYPE X3D [\n<!ENTITY a \"aaaaaaaa\">\n]><X3D><Scene><WorldInfo title='&a;'/></Scene></X3D>"));
    QCOMPARE(report.messages.size(), std::size_t(1));
    QCOMPARE(report.messages[0].toString(),
             std::string("file:2:1: expected a document type without entities of its "
                         "own, found one, which is not replaced"));
    QVERIFY(recorder.events.contains(QStringLiteral("value title=&a; 3:33")));
}

void tst_XmlReader::generalAttributesAreNothing()
{
    QCOMPARE(scene("<Group id='a' class='b' style='c' xml:lang='d'/>"),
             QStringList({QStringLiteral("node Group   2:1"), QStringLiteral("end")}));
    QVERIFY(report.messages.empty());
}

void tst_XmlReader::sceneMayBeMissingRoundTheNodes()
{
    QVERIFY(read("<X3D><head/><Group/></X3D>"));
    QCOMPARE(recorder.events, QStringList({QStringLiteral("node Group   1:13"), QStringLiteral("end")}));
    QCOMPARE(report.messages.size(), std::size_t(1));
    QCOMPARE(report.messages[0].text, std::string("X3D: expected a Scene, found \"Group\""));
}

void tst_XmlReader::whatIsNoSceneIsRefused_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("message");
    const auto row = [](const char* name, const char* text, const char* message) {
        QTest::newRow(name) << QByteArray(text) << QString::fromLatin1(message);
    };
    row("other root", "<html/>", "file:1:1: expected the root element X3D, found \"html\"");
    row("empty root", "<X3D/>", "file:1:1: expected a Scene in X3D, found none");
    row("only blanks", "   ", "file:1:4: expected the root element X3D, found the end of the file");
    row("wrong end", "<X3D>\n<Scene></X3D>",
        "file:2:10: expected the end tag of the open element, found \"X3D>\"");
    row("cut", "<X3D><Scene>",
        "file:1:13: expected the end tag of the open element, found the end of the file");
    row("cut in an attribute", "<X3D a='b",
        "file:1:10: expected an attribute with its value in quotes, found the end of the file");
    row("cut comment", "<X3D><!-- abc",
        "file:1:14: expected the end of a comment, found the end of the file");
    row("no quotes", "<X3D a=b/>", "file:1:8: expected an attribute with its value in quotes, found \"b/>\"");
}

void tst_XmlReader::whatIsNoSceneIsRefused()
{
    QFETCH(QByteArray, text);
    QVERIFY(!read(text.toStdString()));
    QCOMPARE(report.messages.size(), std::size_t(1));
    QCOMPARE(report.messages[0].severity, LoadMessage::ERROR_LM);
    QTEST(QString::fromStdString(report.messages[0].toString()), "message");
    QVERIFY(recorder.events.isEmpty());
}

void tst_XmlReader::readerStopsWhenTheSceneIsGivenUp()
{
    recorder.nodeLimit = 1;
    QVERIFY(!read("<X3D><Scene><Group/><Group/><Group/></Scene></X3D>"));
    QCOMPARE(recorder.events.filter(QStringLiteral("node")).size(), 2);
    recorder.nodeLimit = 1000000;
}

void tst_XmlReader::deepDocumentsNeedNoStack()
{
    const int depth = 200000;
    std::string text;
    for (int i = 0; i < depth; ++i)
        text += "<Group>";
    for (int i = 0; i < depth; ++i)
        text += "</Group>";
    QCOMPARE(scene(text).size(), 2 * depth);
}

QTEST_APPLESS_MAIN(tst_XmlReader)
#include "tst_XmlReader.moc"
