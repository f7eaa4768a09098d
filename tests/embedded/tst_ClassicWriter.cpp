#include "LoadedText.h"
#include <Orvane/System.h>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

using namespace Orvane;

/// The texts of both classic encodings. That they read as the same graph is tested by tst_RoundTrip.
class tst_ClassicWriter : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { System::the().init(0, nullptr, 382); }
    void cleanupTestCase() { System::the().exit(); }

    void nodesStandOnLinesOfTheirOwn();
    void valuesHaveTheFormOfTheirType();
    void longListsAreBroken();
    void scriptsDeclareTheirFields();
    void statementsStandInFrontAndBehind();
    void importsFromNoInlineAreKept();
    void headStandsInFront();
    void rootIsWrittenOnlyWhenItBearsSomething();
    void rootIsLeftOutWhenAsked();
    void indentsByTabsWhenAsked();
    void defaultsAreWrittenWhenAsked();
    void typesAndOutputsStandInComments();
    void namesThatCannotBeSaidAreChangedAndTold();
    void namesOfSeveralNodesAreChangedOnlyWhenCalled();
    void vrml97HasItsOwnWords();
    void vrml97DefaultsAreNotLeftToTheReader();
    void vrml97TellsWhatItHasNoWordsFor();
    void vrml97SaysExchangeInComments();
    void instancesThatNobodyMadeKeepWhatTheySay_data();
    void instancesThatNobodyMadeKeepWhatTheySay();
    void packedFileIsPacked_data();
    void packedFileIsPacked();

private:
    QString save(LoadedText& scene, const char* suffix, const SaveOptions& options = SaveOptions());
    /// Without the header and what stands in front of the nodes.
    QString classic(LoadedText& scene, const SaveOptions& options = SaveOptions())
    {
        const QString text = save(scene, ".x3dv", options);
        const QString head = QStringLiteral("#X3D V4.0 utf8\n\nPROFILE Full\n\n");
        return text.startsWith(head) ? text.mid(head.size()) : text;
    }
    QString vrml(LoadedText& scene, const SaveOptions& options = SaveOptions())
    {
        const QString text = save(scene, ".wrl", options);
        const QString head = QStringLiteral("#VRML V2.0 utf8\n\n# PROFILE Full\n\n");
        return text.startsWith(head) ? text.mid(head.size()) : text;
    }
    static QStringList notes(LoadedText& scene)
    {
        QStringList list;
        for (const std::string& note : scene.context().saveNotes())
            list << QString::fromStdString(note);
        return list;
    }

    QTemporaryDir _folder;
};

QString tst_ClassicWriter::save(LoadedText& scene, const char* suffix, const SaveOptions& options)
{
    const QString path = _folder.filePath(QStringLiteral("scene") + QLatin1String(suffix));
    std::string error;
    if (!scene.context().save(path.toStdString(), options, error))
        return QString::fromStdString(error);
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QStringLiteral("no file");
}

void tst_ClassicWriter::nodesStandOnLinesOfTheirOwn()
{
    LoadedText scene("<Transform DEF='T' scale='1 1 2'><Shape><Appearance DEF='A'/><Box/></Shape><Shape>"
                     "<Appearance USE='A'/></Shape></Transform><Group/>");
    QCOMPARE(classic(scene), QStringLiteral("DEF T Transform {\n"
                                            "  scale 1 1 2\n"
                                            "  children [\n"
                                            "    Shape {\n"
                                            "      appearance DEF A Appearance { }\n"
                                            "      geometry Box { }\n"
                                            "    }\n"
                                            "    Shape {\n"
                                            "      appearance USE A\n"
                                            "    }\n"
                                            "  ]\n"
                                            "}\n"
                                            "Group { }\n"));
    QCOMPARE(notes(scene), QStringList());
}

void tst_ClassicWriter::valuesHaveTheFormOfTheirType()
{
    LoadedText scene(
        "<WorldInfo title='a \"b\" \\' info='\"c\" \"d\"'/><LOD range='1 2'/><Anchor url='\"x\"'/>"
        "<Coordinate point='1 2 3 4 5 6'/><TimeSensor loop='true'/><PixelTexture image='1 1 1 7'/>");
    const QString text = classic(scene);
    for (const char* line :
         {"  title \"a \\\"b\\\" \\\\\"\n", "  info [\n    \"c\"\n    \"d\"\n  ]\n", "  range [ 1, 2 ]\n",
          "  url \"x\"\n", "  point [ 1 2 3, 4 5 6 ]\n", "  loop TRUE\n", "  image 1 1 1 "})
        QVERIFY2(text.contains(QLatin1String(line)), qPrintable(text));
}

void tst_ClassicWriter::longListsAreBroken()
{
    QString points;
    for (int i = 0; i < 200; ++i)
        points += QStringLiteral("%1 0 0.5 ").arg(i);
    LoadedText scene("<Coordinate point='" + points.toStdString() + "'/>");
    for (const char* suffix : {".x3d", ".x3dv", ".wrl"}) {
        const QStringList lines = save(scene, suffix).split(QLatin1Char('\n'));
        QVERIFY(lines.size() > 15);
        for (const QString& line : lines) {
            QVERIFY2(line.size() <= 100, qPrintable(line));
            QVERIFY2(!line.endsWith(QLatin1Char(' ')), qPrintable(line));
        }
    }
}

void tst_ClassicWriter::scriptsDeclareTheirFields()
{
    LoadedText scene(
        "<Script mustEvaluate='true'><field name='i' type='SFTime' accessType='inputOnly'/><field "
        "name='n' type='SFNode' accessType='initializeOnly'/><field name='m' type='MFNode' "
        "accessType='inputOutput'><Box/></field><field name='o' type='SFBool' "
        "accessType='outputOnly'/><field name='s' type='SFString' accessType='inputOutput' "
        "value='x'/><![CDATA[ecmascript:\nf(\"a\\n\");]]></Script>");
    QCOMPARE(classic(scene), QStringLiteral("Script {\n"
                                            "  mustEvaluate TRUE\n"
                                            "  inputOnly SFTime i\n"
                                            "  initializeOnly SFNode n NULL\n"
                                            "  inputOutput MFNode m [\n"
                                            "    Box { }\n"
                                            "  ]\n"
                                            "  outputOnly SFBool o\n"
                                            "  inputOutput SFString s \"x\"\n"
                                            "  url \"ecmascript:\n"
                                            "f(\\\"a\\\\n\\\");\"\n"
                                            "}\n"));
}

void tst_ClassicWriter::statementsStandInFrontAndBehind()
{
    LoadedText scene("<Inline DEF='I'/><IMPORT inlineDEF='I' importedDEF='X' AS='Y'/><TimeSensor DEF='T'/>"
                     "<EXPORT localDEF='T' AS='Clock'/><PositionInterpolator DEF='P'/><ROUTE fromNode='T' "
                     "fromField='fraction_changed' toNode='P' toField='set_fraction'/>");
    QVERIFY(classic(scene).endsWith(QLatin1String("\nIMPORT I.X AS Y\nEXPORT T AS Clock\n"
                                                  "ROUTE T.fraction_changed TO P.set_fraction\n")));
}

void tst_ClassicWriter::importsFromNoInlineAreKept()
{
    const std::string nodes = "<Group DEF='G'/><PositionInterpolator DEF='P'/>";
    LoadedText scene(
        nodes + "<IMPORT inlineDEF='G' importedDEF='T'/><IMPORT inlineDEF='None' importedDEF='X' AS='Y'/>"
                "<ROUTE fromNode='T' fromField='fraction_changed' toNode='P' toField='set_fraction'/>");
    QCOMPARE(scene.messages().size(), 2);
    const QString statements = QStringLiteral("\nIMPORT G.T\nIMPORT None.X AS Y\n"
                                              "ROUTE T.fraction_changed TO P.set_fraction\n");
    const QString written = save(scene, ".x3dv");
    QVERIFY2(written.endsWith(statements), qPrintable(written));
    LoadedText again;
    QVERIFY(again.load(written.toStdString()));
    QCOMPARE(again.messages().size(), 2);
    QCOMPARE(save(again, ".x3dv"), written);
    const QString xml = save(scene, ".x3d");
    QVERIFY2(xml.contains(QLatin1String("<IMPORT inlineDEF=\"None\" importedDEF=\"X\" AS=\"Y\"/>")),
             qPrintable(xml));
}

void tst_ClassicWriter::headStandsInFront()
{
    LoadedText scene;
    QVERIFY(scene.load("<X3D profile='Immersive' version='3.3'><head><meta name='title' content='A \"B\"'/>"
                       "<component name='Text' level='2'/><unit category='length' name='inch' "
                       "conversionFactor='0.0254'/></head><Scene/></X3D>"));
    QCOMPARE(save(scene, ".x3dv"), QStringLiteral("#X3D V4.0 utf8\n"
                                                  "\n"
                                                  "PROFILE Immersive\n"
                                                  "COMPONENT Text:2\n"
                                                  "UNIT length inch 0.0254\n"
                                                  "META \"title\" \"A \\\"B\\\"\"\n"
                                                  "\n"));
    QVERIFY(save(scene, ".x3d")
                .contains(QLatin1String(
                    "    <unit category=\"length\" name=\"inch\" conversionFactor=\"0.0254\"/>\n")));
    const QString old = save(scene, ".wrl");
    for (const char* line : {"\n# PROFILE Immersive\n", "\n# COMPONENT Text:2\n",
                             "\n# UNIT length inch 0.0254\n", "\n# META \"title\" \"A \\\"B\\\"\"\n"})
        QVERIFY2(old.contains(QLatin1String(line)), qPrintable(old));
    QCOMPARE(notes(scene),
             (QStringList{QStringLiteral("META: VRML97 has no such statement; written as a comment"),
                          QStringLiteral("UNIT: VRML97 has no such statement; written as a comment")}));
}

void tst_ClassicWriter::rootIsWrittenOnlyWhenItBearsSomething()
{
    LoadedText scene("<Group/>");
    QCOMPARE(classic(scene), QStringLiteral("Group { }\n"));
    std::string error;
    QVERIFY(scene.scene()->findField("visible", Node::EXACT_FSO)->parseValue("FALSE", error));
    QCOMPARE(classic(scene), QStringLiteral("Scene {\n  visible FALSE\n}\nGroup { }\n"));
}

void tst_ClassicWriter::rootIsLeftOutWhenAsked()
{
    LoadedText scene("<Engine><Window/></Engine><MetadataString name='m'/><Group/>");
    SaveOptions options;
    options.skipRoot = true;
    QCOMPARE(classic(scene, options), QStringLiteral("Group { }\n"));
}

void tst_ClassicWriter::indentsByTabsWhenAsked()
{
    LoadedText scene("<Group><Group/></Group>");
    SaveOptions options;
    options.useTabs = true;
    QCOMPARE(classic(scene, options), QStringLiteral("Group {\n\tchildren [\n\t\tGroup { }\n\t]\n}\n"));
}

void tst_ClassicWriter::defaultsAreWrittenWhenAsked()
{
    LoadedText scene("<Shape><Sphere/></Shape>");
    SaveOptions options;
    options.writeDefaultValues = true;
    const QString text = classic(scene, options);
    for (const char* line :
         {"\n    radius 1\n", "\n    solid TRUE\n", "\n  appearance NULL\n", "\n  bboxSize -1 -1 -1\n"})
        QVERIFY2(text.contains(QLatin1String(line)), qPrintable(text));
    LoadedText group("<Group/>");
    QVERIFY(classic(group, options).contains(QLatin1String("\n  children [ ]\n")));
}

void tst_ClassicWriter::typesAndOutputsStandInComments()
{
    LoadedText scene("<Shape><Box/></Shape><TimeSensor/>");
    SaveOptions options;
    options.writeAbstractNodes = true;
    options.writeProcInfo = true;
    const QString text = classic(scene, options);
    QVERIFY2(text.contains(QLatin1String("\n  geometry\n  # Box: X3DGeometryNode")) ||
                 text.contains(QRegularExpression(
                     QStringLiteral("\n  geometry\n +# Box: .*X3DGeometryNode.*\n +Box \\{ \\}\n"))),
             qPrintable(text));
    QVERIFY(text.contains(QLatin1String("\n# TimeSensor.isActive = FALSE\n")));
}

void tst_ClassicWriter::namesThatCannotBeSaidAreChangedAndTold()
{
    LoadedText scene("<Group DEF='a b'/><Group DEF='a_b'/><Group DEF='3x'/><Group DEF='USE'/>");
    QCOMPARE(classic(scene), QStringLiteral("DEF a_b_2 Group { }\nDEF a_b Group { }\nDEF _3x Group { }\n"
                                            "DEF _USE Group { }\n"));
    QCOMPARE(notes(scene),
             (QStringList{QStringLiteral("DEF \"a b\": the encoding has no such name; written as a_b_2"),
                          QStringLiteral("DEF \"3x\": the encoding has no such name; written as _3x"),
                          QStringLiteral("DEF \"USE\": the encoding has no such name; written as _USE")}));
}

void tst_ClassicWriter::namesOfSeveralNodesAreChangedOnlyWhenCalled()
{
    LoadedText scene("<Group DEF='A' bboxSize='1 1 1'/><Group USE='A'/><Group DEF='A' bboxSize='2 2 2'/>"
                     "<Group DEF='A' bboxSize='3 3 3'/><Group USE='A'/>");
    QCOMPARE(classic(scene), QStringLiteral("DEF A_2 Group {\n  bboxSize 1 1 1\n}\nUSE A_2\n"
                                            "DEF A Group {\n  bboxSize 2 2 2\n}\n"
                                            "DEF A Group {\n  bboxSize 3 3 3\n}\nUSE A\n"));
    QCOMPARE(notes(scene),
             QStringList{QStringLiteral("DEF \"A\": several nodes bear this name; written as A_2")});
}

void tst_ClassicWriter::vrml97HasItsOwnWords()
{
    LoadedText scene(
        "<Switch><Group/></Switch><LOD><Group/></LOD><Collision DEF='C' enabled='false'/><Script "
        "DEF='S'><field name='i' type='SFTime' accessType='inputOnly'/><field name='n' "
        "type='SFInt32' accessType='initializeOnly' value='3'/><field name='o' type='SFBool' "
        "accessType='outputOnly'/></Script><ROUTE fromNode='S' fromField='o' toNode='C' "
        "toField='set_enabled'/>");
    QCOMPARE(vrml(scene), QStringLiteral("Switch {\n"
                                         "  choice [\n"
                                         "    Group { }\n"
                                         "  ]\n"
                                         "}\n"
                                         "LOD {\n"
                                         "  level [\n"
                                         "    Group { }\n"
                                         "  ]\n"
                                         "}\n"
                                         "DEF C Collision {\n"
                                         "  collide FALSE\n"
                                         "}\n"
                                         "DEF S Script {\n"
                                         "  eventIn SFTime i\n"
                                         "  field SFInt32 n 3\n"
                                         "  eventOut SFBool o\n"
                                         "}\n"
                                         "ROUTE S.o TO C.set_collide\n"));
}

void tst_ClassicWriter::vrml97DefaultsAreNotLeftToTheReader()
{
    LoadedText scene("<SpotLight/><SpotLight beamWidth='1.570796'/>");
    const QString text = vrml(scene);
    QVERIFY2(text.contains(QLatin1String("  beamWidth 0.589049\n")), qPrintable(text));
    QVERIFY2(text.contains(QLatin1String("  beamWidth 1.570796\n")), qPrintable(text));
    QVERIFY(!classic(scene).contains(QLatin1String("beamWidth 0.589049")));
}

void tst_ClassicWriter::vrml97TellsWhatItHasNoWordsFor()
{
    LoadedText scene("<Shape><Box solid='false'/></Shape><Shape><Box solid='false'/></Shape><Shape><Disk2D/>"
                     "</Shape><Script><field name='d' type='SFDouble' accessType='inputOutput' value='1'/>"
                     "</Script>");
    const QString text = vrml(scene);
    QCOMPARE(
        notes(scene),
        (QStringList{QStringLiteral("Box.solid: VRML97 has no such field; written all the same"),
                     QStringLiteral("Disk2D: VRML97 has no such node; written all the same"),
                     QStringLiteral("SFDouble: VRML97 has no such type; written all the same"),
                     QStringLiteral("exposedField in a Script: VRML97 has only field, eventIn and eventOut "
                                    "there; written all the same")}));
    QCOMPARE(text.count(QLatin1String("solid FALSE")), 2);
    QCOMPARE(text.count(QLatin1String("# Box.solid")), 1);
    QVERIFY2(text.contains(QLatin1String("  geometry\n")), qPrintable(text));
    QVERIFY2(text.contains(QRegularExpression(QStringLiteral("# Disk2D: .*\n +Disk2D \\{ \\}"))),
             qPrintable(text));
    QVERIFY(save(scene, ".x3dv").contains(QLatin1String("Disk2D")));
    QCOMPARE(notes(scene), QStringList());
}

void tst_ClassicWriter::vrml97SaysExchangeInComments()
{
    LoadedText scene("<Inline DEF='I'/><IMPORT inlineDEF='I' importedDEF='X' AS='Y'/><TimeSensor DEF='T'/>"
                     "<EXPORT localDEF='T' AS='Clock'/>");
    const QString text = vrml(scene);
    QVERIFY2(text.contains(QLatin1String("\n# IMPORT I.X AS Y\n")), qPrintable(text));
    QVERIFY2(text.contains(QLatin1String("\n# EXPORT T AS Clock\n")), qPrintable(text));
    QCOMPARE(notes(scene).size(), 2);
}

void tst_ClassicWriter::instancesThatNobodyMadeKeepWhatTheySay_data()
{
    QTest::addColumn<bool>("isMade");
    QTest::newRow("only declared") << false;
    QTest::newRow("made") << true;
}

void tst_ClassicWriter::instancesThatNobodyMadeKeepWhatTheySay()
{
    QFETCH(bool, isMade);
    const QString declarations = QStringLiteral(
        "PROTO Q [\n  inputOutput MFNode parts [\n    Anchor { }\n  ]\n] {\n  Group {\n    children "
        "IS parts\n  }\n}\nPROTO P [ ] {\n  Q { }\n  Q {\n    parts [ ]\n  }\n  Q {\n    parts "
        "[\n      Group { }\n    ]\n  }\n}\n");
    const QString nodes = isMade ? QStringLiteral("P { }\n") : QString();
    LoadedText scene;
    QVERIFY(scene.context().load("scene.x3dv", "#X3D V4.0 utf8\n" + (declarations + nodes).toStdString(),
                                 Context::REPLACE_LT, {}));
    QCOMPARE(scene.messages(), QStringList());
    QCOMPARE(classic(scene), declarations + nodes);
    SaveOptions all;
    all.writeDefaultValues = true;
    QCOMPARE(classic(scene, all).count(QStringLiteral("parts [ ]")), 1);
}

void tst_ClassicWriter::packedFileIsPacked_data()
{
    QTest::addColumn<QString>("suffix");
    for (const char* suffix : {".x3dz", ".x3dvz", ".wrz", ".WRZ"})
        QTest::newRow(suffix) << QString::fromLatin1(suffix);
}

void tst_ClassicWriter::packedFileIsPacked()
{
    QFETCH(QString, suffix);
    LoadedText scene("<Group DEF='G'/>");
    const QString path = _folder.filePath(QStringLiteral("packed") + suffix);
    std::string error;
    QVERIFY2(scene.context().save(path.toStdString(), SaveOptions(), error), error.c_str());
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QVERIFY(file.read(2) == QByteArray("\x1f\x8b"));
    LoadedText again;
    QVERIFY(again.loadFile(path.toStdString()));
    QVERIFY(again.find("G"));
}

QTEST_APPLESS_MAIN(tst_ClassicWriter)
#include "tst_ClassicWriter.moc"
