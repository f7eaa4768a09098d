#include "../opensg/LogCollector.h"
#include "BaseTools.h"
#include "base/ValueFields.h"
#include <Orvane/FieldType.h>
#include <Orvane/NodePartDesc.h>
#include <Orvane/SFFloat.h>
#include <Orvane/SFNode.h>
#include <QtTest>
#include <clocale>
#include <cmath>
#include <cstring>

using namespace Orvane;

namespace {

/// A field of any data type, with the node and the context that it needs.
struct LooseField
{
    explicit LooseField(NodePartDataType type)
    {
        const NodeRef node = context.make("Script");
        owner = node;
        field = addField(*node, "loose", type, EXPOSEDFIELDP);
    }

    TestContext context;
    NodeRef owner;
    Field* field = nullptr;
};

} // namespace

class tst_FieldText : public QObject
{
    Q_OBJECT

private slots:
    void everyTypeKeepsItsText_data();
    void everyTypeKeepsItsText();
    void accepts_data();
    void accepts();
    void refuses_data();
    void refuses();
    void refusedTextLeavesTheValueAndLogsOneLine();
    void everyFloatComesBack();
    void numbersKeepTheirPointInAnyLocale();
    void nodeNames();
    void defaultsOfTheCatalogueAllParse();
};

void tst_FieldText::everyTypeKeepsItsText_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("text");
    const auto row = [](NodePartDataType type, const char* text) {
        QTest::addRow("%s %.30s", FieldType::dataTypeName(type).c_str(), text) << int(type) << text;
    };
    row(SFBOOL_DT, "TRUE");
    row(SFBOOL_DT, "FALSE");
    row(MFBOOL_DT, "TRUE, FALSE");
    row(MFBOOL_DT, "");
    row(SFCOLOR_DT, "1 0.5 0.1");
    row(MFCOLOR_DT, "1 0 0, 0 1 0.25");
    row(SFCOLORRGBA_DT, "1 0.5 0.1 0");
    row(MFCOLORRGBA_DT, "1 0 0 1, 0 1 0.25 0");
    row(SFDOUBLE_DT, "0.1");
    row(MFDOUBLE_DT, "0.1, 1e+300, -5e-324");
    row(SFFLOAT_DT, "0.1");
    row(MFFLOAT_DT, "0.1, 3.4028235e+38, 1e-45");
    row(SFIMAGE_DT, "0 0 0");
    row(SFIMAGE_DT, "2 1 1 0x00 0xFF");
    row(SFIMAGE_DT, "1 2 2 0x00FF 0x1234");
    row(SFIMAGE_DT, "1 1 3 0xFF8000");
    row(SFIMAGE_DT, "2 2 4 0xFF8000FF 0x00000000 0x01020304 0xFFFFFFFF");
    row(MFIMAGE_DT, "1 1 1 0x01, 0 0 0, 1 1 3 0xFF8000");
    row(SFINT32_DT, "-2147483648");
    row(MFINT32_DT, "1, -1, 2147483647");
    row(SFMATRIX3F_DT, "1 2 3 4 5 6 7 8 9.5");
    row(MFMATRIX3F_DT, "1 2 3 4 5 6 7 8 9, 1 0 0 0 1 0 0 0 1");
    row(SFMATRIX3D_DT, "1 2 3 4 5 6 7 8 0.1");
    row(MFMATRIX3D_DT, "1 2 3 4 5 6 7 8 9");
    row(SFMATRIX4F_DT, "1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16");
    row(MFMATRIX4F_DT, "1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16");
    row(SFMATRIX4D_DT, "1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 0.1");
    row(MFMATRIX4D_DT, "1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16");
    row(SFNODE_DT, "NULL");
    row(MFNODE_DT, "");
    row(SFROTATION_DT, "0 1 0 1.5708");
    row(MFROTATION_DT, "0 1 0 1.5708, 0 0 1 0");
    row(SFSTRING_DT, "");
    row(SFSTRING_DT, " a \"b\" \\ c, d ");
    row(MFSTRING_DT, "\"a\", \"\", \"b \\\"c\\\" \\\\, d\"");
    row(MFSTRING_DT, "\"line 1\nline 2\"");
    row(SFTIME_DT, "1700000000.25");
    row(MFTIME_DT, "-1, 1700000000.25");
    row(SFVEC2D_DT, "0.1 2");
    row(MFVEC2D_DT, "0.1 2, 3 4");
    row(SFVEC2F_DT, "0.1 2");
    row(MFVEC2F_DT, "0.1 2, 3 4");
    row(SFVEC3D_DT, "0.1 2 3");
    row(MFVEC3D_DT, "0.1 2 3, 4 5 6");
    row(SFVEC3F_DT, "0.1 2 3");
    row(MFVEC3F_DT, "0.1 2 3, 4 5 6");
    row(SFVEC4D_DT, "0.1 2 3 4");
    row(MFVEC4D_DT, "0.1 2 3 4, 5 6 7 8");
    row(SFVEC4F_DT, "0.1 2 3 4");
    row(MFVEC4F_DT, "0.1 2 3 4, 5 6 7 8");
    row(SFFLOAT_DT, "inf");
    row(SFDOUBLE_DT, "-inf");
    row(SFFLOAT_DT, "nan");
}

void tst_FieldText::everyTypeKeepsItsText()
{
    QFETCH(int, type);
    QFETCH(QString, text);
    const LooseField loose(static_cast<NodePartDataType>(type));
    QCOMPARE(int(loose.field->dataType()), type);
    loose.field->setValueByStr(0.0, text.toLatin1().constData());
    QCOMPARE(QString::fromStdString(loose.field->valueToString()), text);
    loose.field->setValueByStr(0.0, loose.field->valueToString().c_str());
    QCOMPARE(QString::fromStdString(loose.field->valueToString()), text);
    QCOMPARE(loose.field->cardinality(), type % 2 == 0 ? 1 : 0);

    const LooseField copy(static_cast<NodePartDataType>(type));
    copy.field->assignValue(*loose.field);
    QCOMPARE(QString::fromStdString(copy.field->valueToString()), text);
    QCOMPARE(copy.field->hasValueOf(*loose.field), text != QLatin1String("nan"));
}

void tst_FieldText::accepts_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("value");
    const auto row = [](NodePartDataType type, const char* text, const char* value) {
        QTest::addRow("%s %.30s", FieldType::dataTypeName(type).c_str(), text) << int(type) << text << value;
    };
    row(SFBOOL_DT, " true\n", "TRUE");
    row(SFBOOL_DT, "False", "FALSE");
    row(SFFLOAT_DT, "+1.", "1");
    row(SFFLOAT_DT, ".5", "0.5");
    row(SFFLOAT_DT, "1.", "1");
    row(SFFLOAT_DT, "-.5e+1", "-5");
    row(SFFLOAT_DT, "1E3", "1000");
    row(SFFLOAT_DT, "1e50", "inf");
    row(SFFLOAT_DT, "1e-60", "0");
    row(SFINT32_DT, "0x1F", "31");
    row(SFINT32_DT, "0XffFFffFF", "-1");
    row(SFINT32_DT, "-0x10", "-16");
    row(SFINT32_DT, "+7", "7");
    row(SFVEC3F_DT, "1,2,3", "1 2 3");
    row(SFVEC3F_DT, " 1 , 2\t\r\n3 ,", "1 2 3");
    row(MFFLOAT_DT, "[1 2, 3]", "1, 2, 3");
    row(MFFLOAT_DT, " [ ] ", "");
    row(MFFLOAT_DT, ",,", "");
    row(MFVEC2F_DT, "1 2 3 4", "1 2, 3 4");
    row(MFVEC2F_DT, "[1 2,3 4,]", "1 2, 3 4");
    row(MFSTRING_DT, "[\"a\" \"b\"]", "\"a\", \"b\"");
    row(MFSTRING_DT, "a.png", "\"a.png\"");
    row(MFSTRING_DT, "\"a\"\"b\"", "\"a\", \"b\"");
    row(SFIMAGE_DT, "1 1 1 255", "1 1 1 0xFF");
    row(SFIMAGE_DT, "0 5 3", "0 0 0");
    row(SFNODE_DT, "  NULL ", "NULL");
    row(MFNODE_DT, "[NULL, NULL]", "");
}

void tst_FieldText::accepts()
{
    QFETCH(int, type);
    QFETCH(QString, text);
    QFETCH(QString, value);
    const LooseField loose(static_cast<NodePartDataType>(type));
    std::string error;
    QVERIFY2(loose.field->parseValue(text.toStdString(), error), error.c_str());
    QCOMPARE(QString::fromStdString(loose.field->valueToString()), value);
}

void tst_FieldText::refuses_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("text");
    const auto row = [](NodePartDataType type, const char* text) {
        QTest::addRow("%s %.30s", FieldType::dataTypeName(type).c_str(), text) << int(type) << text;
    };
    row(SFBOOL_DT, "");
    row(SFBOOL_DT, "yes");
    row(SFBOOL_DT, "TRUE TRUE");
    row(SFFLOAT_DT, "");
    row(SFFLOAT_DT, "red");
    row(SFFLOAT_DT, "1 2");
    row(SFFLOAT_DT, "1x");
    row(SFFLOAT_DT, "+-1");
    row(SFFLOAT_DT, "--1");
    row(SFFLOAT_DT, "+");
    row(SFINT32_DT, "1.5");
    row(SFINT32_DT, "2147483648");
    row(SFINT32_DT, "-2147483649");
    row(SFINT32_DT, "0x100000000");
    row(SFINT32_DT, "0x");
    row(SFINT32_DT, "99999999999999999999999");
    row(SFVEC3F_DT, "1 2");
    row(SFVEC3F_DT, "1 2 3 4");
    row(SFVEC3F_DT, "[1 2 3]");
    row(MFVEC3F_DT, "1 2 3 4");
    row(MFVEC3F_DT, "[1 2 3");
    row(MFVEC3F_DT, "1 2 3]");
    row(MFVEC3F_DT, "[1 2 3] 4");
    row(MFSTRING_DT, "\"a");
    row(MFSTRING_DT, "\"a\\\"");
    row(SFIMAGE_DT, "");
    row(SFIMAGE_DT, "1 1 5 0");
    row(SFIMAGE_DT, "2 2 1 0 0 0");
    row(SFIMAGE_DT, "1 1 1 0 0");
    row(SFIMAGE_DT, "-1 1 1 0");
    row(SFIMAGE_DT, "4294967295 4294967295 4 0");
    row(SFIMAGE_DT, "65536 65536 4 0");
    row(SFNODE_DT, "NoSuchNode");
    row(SFNODE_DT, "Box#999999999");
    row(MFNODE_DT, "NULL, NoSuchNode");
    row(SFROTATION_DT, "0 1 0");
    row(SFMATRIX3F_DT, "1 0 0 0 1 0 0 0");
}

void tst_FieldText::refuses()
{
    QFETCH(int, type);
    QFETCH(QString, text);
    const LooseField loose(static_cast<NodePartDataType>(type));
    const std::string before = loose.field->valueToString();
    std::string error;
    QVERIFY(!loose.field->parseValue(text.toStdString(), error));
    QVERIFY2(error.find("expected ") == 0 && error.find(", found ") != std::string::npos, error.c_str());
    QCOMPARE(loose.field->valueToString(), before);
}

void tst_FieldText::refusedTextLeavesTheValueAndLogsOneLine()
{
    TestContext context;
    Node& transform = context.add("Transform");
    setName(transform, context.scene().nameSpace(), "Mover");
    auto& translation = field<SFVec3f>(transform, "translation");
    translation.setValueByStr(0.0, "1 2 3");

    osg::doInitLog();
    const osg::LogType logType = osg::osgLogP->getLogType();
    QString line;
    {
        LogCollector collector(*osg::osgLogP);
        translation.setValueByStr(0.0, "1 red 3");
        line = QString::fromStdString(collector.take());
    }
    osg::osgLogP->setLogType(logType);

    QCOMPARE(line.count(QLatin1Char('\n')), 1);
    QVERIFY2(line.contains(QLatin1String("\"Mover\"")) && line.contains(QLatin1String("\"translation\"")) &&
                 line.contains(QLatin1String("\"red\"")),
             qPrintable(line));
    QCOMPARE(translation.valueToString(), std::string("1 2 3"));
}

void tst_FieldText::everyFloatComesBack()
{
    const LooseField single(SFFLOAT_DT);
    auto& value = static_cast<SFFloat&>(*single.field);
    for (std::uint32_t bits = 1; bits < 0x7f800000U; bits += 1000003U) {
        float number;
        std::memcpy(&number, &bits, sizeof number);
        value.setValue(0.0, number, Field::LOADER_CT);
        value.setValueByStr(0.0, value.valueToString().c_str());
        QCOMPARE(std::memcmp(&value.value(), &number, sizeof number), 0);
    }
    value.setValue(0.0, -0.0F, Field::LOADER_CT);
    value.setValueByStr(0.0, value.valueToString().c_str());
    QVERIFY(std::signbit(value.value()));
}

/// A host that draws with Qt runs in the locale of its user.
void tst_FieldText::numbersKeepTheirPointInAnyLocale()
{
    const QTemporaryDir folder;
    const QString german = folder.filePath(QStringLiteral("de_DE.UTF-8"));
    if (QProcess::execute(QStringLiteral("localedef"),
                          {QStringLiteral("-i"), QStringLiteral("de_DE"), QStringLiteral("-f"),
                           QStringLiteral("UTF-8"), german}) != 0)
        QSKIP("no locale can be made here");
    qputenv("LOCPATH", folder.path().toLocal8Bit());
    const std::string before = std::setlocale(LC_NUMERIC, nullptr);
    if (!std::setlocale(LC_NUMERIC, "de_DE.UTF-8"))
        QSKIP("the locale that was made is not found");
    const auto restore = qScopeGuard([&] {
        std::setlocale(LC_NUMERIC, before.c_str());
        qunsetenv("LOCPATH");
    });
    QCOMPARE(std::localeconv()->decimal_point, ",");

    const LooseField single(SFFLOAT_DT);
    const LooseField twice(SFDOUBLE_DT);
    std::string error;
    QVERIFY(single.field->parseValue("2.5e-60", error));
    QCOMPARE(single.field->valueToString(), std::string("0"));
    QVERIFY(single.field->parseValue("-2.5", error));
    QCOMPARE(single.field->valueToString(), std::string("-2.5"));
    QVERIFY(twice.field->parseValue("-2.5e400", error));
    QCOMPARE(twice.field->valueToString(), std::string("-inf"));
}

void tst_FieldText::nodeNames()
{
    TestContext context;
    Node& scene = context.scene();
    Node& first = context.add("Shape");
    Node& second = context.add("Shape");
    setName(scene, scene.nameSpace(), "");
    setName(first, scene.nameSpace(), "First one");
    Node& script = context.add("Script");
    setName(script, scene.nameSpace(), "");
    auto& single = static_cast<SFNode&>(*addField(script, "single", SFNODE_DT, EXPOSEDFIELDP));
    auto& list = static_cast<MFNode&>(*addField(script, "list", MFNODE_DT, EXPOSEDFIELDP));

    single.setValueByStr(0.0, "First one");
    QCOMPARE(single.link().node(), &first);
    QCOMPARE(single.valueToString(), std::string("First one"));
    const std::string secondText = "Shape#" + std::to_string(second.ID());
    single.setValueByStr(0.0, secondText.c_str());
    QCOMPARE(single.link().node(), &second);
    QCOMPARE(single.valueToString(), secondText);
    single.setValueByStr(0.0, ("Box#" + std::to_string(second.ID())).c_str());
    QCOMPARE(single.link().node(), &second);
    single.setValueByStr(0.0, "NULL");
    QVERIFY(!single.link().node());

    const std::string text = "First one, " + secondText + ", First one";
    list.setValueByStr(0.0, text.c_str());
    QCOMPARE(list.size(), 3U);
    QCOMPARE(list[1].node(), &second);
    QCOMPARE(list.valueToString(), text);
    list.setValueByStr(0.0, (secondText + " " + secondText).c_str());
    QCOMPARE(list.size(), 2U);
    list.setValueByStr(0.0, "Nobody");
    QCOMPARE(list.size(), 2U);
    list.setValueByStr(0.0, "");
    QCOMPARE(list.size(), 0U);
}

void tst_FieldText::defaultsOfTheCatalogueAllParse()
{
    TestContext context;
    std::vector<NodeType*> types;
    NodeType::getTypeVec(types, 1);
    QVERIFY(types.size() > 200);
    for (NodeType* type : types) {
        const NodeRef node = createNode(*context, *type, HOST_NC);
        for (unsigned int part = 0; part < partCount(*type); ++part) {
            const Field& value = readField(*node, part);
            const NodePartDesc& desc = *partDesc(*type, part);
            const std::string wanted =
                desc.defaultValue.empty() && value.dataType() == SFNODE_DT ? "NULL" : desc.defaultValue;
            if (value.valueToString() == wanted)
                continue;
            const NodeRef other = createNode(*context, *type, HOST_NC);
            std::string error;
            QVERIFY2(editField(*other, part).parseValue(wanted, error),
                     (type->name + "." + desc.name + ": " + error).c_str());
            QVERIFY2(editField(*other, part).hasValueOf(value), (type->name + "." + desc.name).c_str());
        }
    }
}

QTEST_APPLESS_MAIN(tst_FieldText)
#include "tst_FieldText.moc"
