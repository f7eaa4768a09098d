#include "nodes/Catalogue.h"
#include <QtTest>
#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <set>

using namespace Orvane;
using namespace Orvane::catalogue;

namespace {

QString text(std::string_view view)
{
    return QString::fromLatin1(view.data(), static_cast<int>(view.size()));
}

std::string_view view(const QByteArray& bytes)
{
    return {bytes.constData(), static_cast<std::size_t>(bytes.size())};
}

QByteArray nameOfType(NodePartDataType type)
{
    static const char* const names[] = {"Bool",     "Color",    "ColorRGBA", "Double",   "Float",    "Image",
                                        "Int32",    "Matrix3d", "Matrix3f",  "Matrix4d", "Matrix4f", "Node",
                                        "Rotation", "String",   "Time",      "Vec2d",    "Vec2f",    "Vec3d",
                                        "Vec3f",    "Vec4d",    "Vec4f"};
    return QByteArray(type % 2 ? "SF" : "MF") + names[(type - 1) / 2];
}

/// A field as X3D writes it: type, access, name, default.
QByteArray signature(const PartEntry& part)
{
    static const std::map<NodePartType, QByteArray> access = {
        {FIELDP, "[]"}, {EVENTINP, "[in]"}, {EVENTOUTP, "[out]"}, {EXPOSEDFIELDP, "[in,out]"}};
    QByteArray result =
        nameOfType(part.dataType) + " " + access.at(part.partType) + " " + text(part.name).toLatin1();
    if (!part.defaultValue.empty())
        result += " " + text(part.defaultValue).toLatin1();
    return result;
}

bool isEvent(const PartEntry& part)
{
    return part.partType == EVENTINP || part.partType == EVENTOUTP;
}

bool isNodeField(const PartEntry& part)
{
    return part.dataType == SFNODE_DT || part.dataType == MFNODE_DT;
}

bool isIntegerField(const PartEntry& part)
{
    return part.dataType == SFINT32_DT || part.dataType == MFINT32_DT;
}

/// Numbers in one value of a single type; 0 for the types that are not made of numbers.
int componentCount(int singleType)
{
    switch (singleType) {
    case SFINT32_DT:
    case SFFLOAT_DT:
    case SFDOUBLE_DT:
    case SFTIME_DT:
        return 1;
    case SFVEC2F_DT:
    case SFVEC2D_DT:
        return 2;
    case SFCOLOR_DT:
    case SFVEC3F_DT:
    case SFVEC3D_DT:
    case SFIMAGE_DT:
        return 3;
    case SFCOLORRGBA_DT:
    case SFROTATION_DT:
    case SFVEC4F_DT:
    case SFVEC4D_DT:
        return 4;
    case SFMATRIX3F_DT:
    case SFMATRIX3D_DT:
        return 9;
    case SFMATRIX4F_DT:
    case SFMATRIX4D_DT:
        return 16;
    default:
        return 0;
    }
}

bool isSinglePrecision(int singleType)
{
    return singleType == SFFLOAT_DT || singleType == SFCOLOR_DT || singleType == SFCOLORRGBA_DT ||
           singleType == SFROTATION_DT || singleType == SFVEC2F_DT || singleType == SFVEC3F_DT ||
           singleType == SFVEC4F_DT || singleType == SFMATRIX3F_DT || singleType == SFMATRIX4F_DT;
}

/// True when no shorter decimal number reads back as the same float.
bool isShortest(const QString& number)
{
    const float value = static_cast<float>(number.toDouble());
    for (int digits = 1; digits <= 9; ++digits) {
        const QString shorter = QString::number(static_cast<double>(value), 'g', digits);
        if (static_cast<float>(shorter.toDouble()) == value)
            return shorter.toDouble() == number.toDouble();
    }
    return false;
}

/// The numbers of a default, or an empty list when it does not parse.
QVector<double> numbers(const PartEntry& part)
{
    const int single = (part.dataType - 1) / 2 * 2 + 1;
    QVector<double> result;
    for (const QString& value : text(part.defaultValue).split(QStringLiteral(", "))) {
        const QStringList words = value.split(QLatin1Char(' '));
        if (words.size() != componentCount(single))
            return {};
        for (const QString& word : words) {
            bool ok = false;
            result.append(single == SFINT32_DT || single == SFIMAGE_DT ? word.toInt(&ok)
                                                                       : word.toDouble(&ok));
            if (!ok || (isSinglePrecision(single) && !isShortest(word)))
                return {};
        }
    }
    return result;
}

bool parses(const PartEntry& part)
{
    const bool isMulti = part.dataType % 2 == 0;
    if (isMulti && part.defaultValue.empty())
        return true;
    static const QRegularExpression booleans(QStringLiteral("^(TRUE|FALSE)(, (TRUE|FALSE))*$"));
    static const QRegularExpression strings(QStringLiteral(R"(^"[^"\\]*"(, "[^"\\]*")*$)"));
    switch (part.dataType) {
    case SFBOOL_DT:
    case MFBOOL_DT:
        return booleans.match(text(part.defaultValue)).hasMatch() &&
               (isMulti || part.defaultValue.size() < 6);
    case SFNODE_DT:
        return part.defaultValue == "NULL";
    case MFNODE_DT:
        return false;
    case SFSTRING_DT:
        return part.defaultValue.find('"') == std::string_view::npos;
    case MFSTRING_DT:
        return strings.match(text(part.defaultValue)).hasMatch();
    default:
        return !numbers(part).isEmpty() && (isMulti || part.defaultValue.find(',') == std::string_view::npos);
    }
}

QString place(const NodeEntry& node, const PartEntry& part)
{
    return text(node.name) + QLatin1Char('.') + text(part.name);
}

} // namespace

class tst_Catalogue : public QObject
{
    Q_OBJECT

private slots:
    void holdsEveryNodeOfX3D();
    void componentsHaveTheirNodes_data();
    void componentsHaveTheirNodes();
    void fieldsAreThoseOfX3D_data();
    void fieldsAreThoseOfX3D();
    void limitsAreThoseOfX3D_data();
    void limitsAreThoseOfX3D();
    void closedListsRestrictAndOpenOnesDoNot();
    void sourceTextsAreMarked();
    void windowAndRootNodesAreThere();
    void namesAreUnique();
    void everyTypeIsFoundByItsName();
    void unknownNamesGiveNull();
    void everyNodeTakesMetadata();
    void fieldsStandInAlphabeticalOrder();
    void everyDefaultParses();
    void defaultsRespectTheirRestrictions();
    void onlyNodeFieldsNameNodeTypesAndTheseExist();
    void listsBelongToStringFields();
    void limitsBelongToNumbersAndAreOrdered();
    void basesAreKnownAbstractTypes();
    void derivationIsTransitive();
    void everyContainerFieldTakesItsNode();
    void concreteNodesAreDescribed();
    void fieldsAreDescribed();
    void aliasesLeadToExistingNames();
    void vrml97NamesAreTheAliasesReversed();
    void vrml97DefaultsDifferWhereTheStandardsDo();
};

void tst_Catalogue::holdsEveryNodeOfX3D()
{
    int concrete = 0;
    int abstract = 0;
    for (const NodeEntry& node : allNodes()) {
        if (node.component != "Engine")
            ++(node.isAbstract() ? abstract : concrete);
    }
    QCOMPARE(concrete, 260);
    QCOMPARE(abstract, 75);
}

void tst_Catalogue::componentsHaveTheirNodes_data()
{
    QTest::addColumn<int>("count");
    QTest::newRow("Core") << 7;
    QTest::newRow("Grouping") << 4;
    QTest::newRow("Geometry3D") << 7;
    QTest::newRow("Geometry2D") << 8;
    QTest::newRow("Rendering") << 15;
    QTest::newRow("Shape") << 10;
    QTest::newRow("Lighting") << 4;
    QTest::newRow("Texturing") << 10;
    QTest::newRow("Interpolation") << 13;
    QTest::newRow("PointingDeviceSensor") << 4;
    QTest::newRow("Navigation") << 7;
    QTest::newRow("Followers") << 14;
    QTest::newRow("Sound") << 21;
    QTest::newRow("HAnim") << 6;
    QTest::newRow("Scripting") << 1;
    QTest::newRow("Engine") << 5;
}

void tst_Catalogue::componentsHaveTheirNodes()
{
    QFETCH(int, count);
    int found = 0;
    for (const NodeEntry& node : allNodes())
        found += !node.isAbstract() && text(node.component) == QLatin1String(QTest::currentDataTag());
    QCOMPARE(found, count);
}

void tst_Catalogue::fieldsAreThoseOfX3D_data()
{
    QTest::addColumn<QByteArrayList>("fields");
    const auto row = [](const char* node, QByteArrayList fields) { QTest::newRow(node) << fields; };
    row("Box", {"SFNode [in,out] metadata NULL", "SFVec3f [] size 2 2 2", "SFBool [] solid TRUE"});
    row("Sphere", {"SFNode [in,out] metadata NULL", "SFFloat [] radius 1", "SFBool [] solid TRUE"});
    row("Group",
        {"MFNode [in] addChildren", "SFVec3f [] bboxCenter 0 0 0", "SFBool [in,out] bboxDisplay FALSE",
         "SFVec3f [] bboxSize -1 -1 -1", "MFNode [in,out] children", "SFNode [in,out] metadata NULL",
         "MFNode [in] removeChildren", "SFBool [in,out] visible TRUE"});
    row("Transform",
        {"MFNode [in] addChildren", "SFVec3f [] bboxCenter 0 0 0", "SFBool [in,out] bboxDisplay FALSE",
         "SFVec3f [] bboxSize -1 -1 -1", "SFVec3f [in,out] center 0 0 0", "MFNode [in,out] children",
         "SFNode [in,out] metadata NULL", "MFNode [in] removeChildren",
         "SFRotation [in,out] rotation 0 0 1 0", "SFVec3f [in,out] scale 1 1 1",
         "SFRotation [in,out] scaleOrientation 0 0 1 0", "SFVec3f [in,out] translation 0 0 0",
         "SFBool [in,out] visible TRUE"});
    row("Switch",
        {"MFNode [in] addChildren", "SFVec3f [] bboxCenter 0 0 0", "SFBool [in,out] bboxDisplay FALSE",
         "SFVec3f [] bboxSize -1 -1 -1", "MFNode [in,out] children", "SFNode [in,out] metadata NULL",
         "MFNode [in] removeChildren", "SFBool [in,out] visible TRUE", "SFInt32 [in,out] whichChoice -1"});
    row("Shape", {"SFNode [in,out] appearance NULL", "SFVec3f [] bboxCenter 0 0 0",
                  "SFBool [in,out] bboxDisplay FALSE", "SFVec3f [] bboxSize -1 -1 -1",
                  "SFBool [in,out] castShadow TRUE", "SFNode [in,out] geometry NULL",
                  "SFNode [in,out] metadata NULL", "SFBool [in,out] visible TRUE"});
    row("Coordinate", {"SFNode [in,out] metadata NULL", "MFVec3f [in,out] point"});
    row("PositionInterpolator",
        {"MFFloat [in,out] key", "MFVec3f [in,out] keyValue", "SFNode [in,out] metadata NULL",
         "SFFloat [in] set_fraction 0", "SFVec3f [out] value_changed 0 0 0"});
    row("TimeSensor",
        {"SFTime [in,out] cycleInterval 1", "SFTime [out] cycleTime -1", "SFString [in,out] description",
         "SFTime [out] elapsedTime -1", "SFBool [in,out] enabled TRUE", "SFFloat [out] fraction_changed 0",
         "SFBool [out] isActive FALSE", "SFBool [out] isPaused FALSE", "SFBool [in,out] loop FALSE",
         "SFNode [in,out] metadata NULL", "SFTime [in,out] pauseTime 0", "SFTime [in,out] resumeTime 0",
         "SFTime [in,out] startTime 0", "SFTime [in,out] stopTime 0", "SFTime [out] time -1"});
    row("TouchSensor",
        {"SFString [in,out] description", "SFBool [in,out] enabled TRUE",
         "SFVec3f [out] hitNormal_changed 0 0 0", "SFVec3f [out] hitPoint_changed 0 0 0",
         "SFVec2f [out] hitTexCoord_changed 0 0", "SFBool [out] isActive FALSE", "SFBool [out] isOver FALSE",
         "SFNode [in,out] metadata NULL", "SFTime [out] touchTime -1"});
    row("DirectionalLight",
        {"SFFloat [in,out] ambientIntensity 0", "SFColor [in,out] color 1 1 1",
         "SFVec3f [in,out] direction 0 0 -1", "SFBool [in,out] global FALSE", "SFFloat [in,out] intensity 1",
         "SFNode [in,out] metadata NULL", "SFBool [in,out] on TRUE", "SFFloat [in,out] shadowIntensity 1",
         "SFBool [in,out] shadows FALSE"});
    row("NavigationInfo",
        {"MFFloat [in,out] avatarSize 0.25, 1.6, 0.75", "SFTime [out] bindTime -1",
         "SFBool [in,out] headlight TRUE", "SFBool [out] isBound FALSE", "SFNode [in,out] metadata NULL",
         "SFBool [in] set_bind FALSE", "SFFloat [in,out] speed 1", "SFBool [out] transitionComplete FALSE",
         "SFTime [in,out] transitionTime 1", "MFString [in,out] transitionType \"LINEAR\"",
         "MFString [in,out] type \"EXAMINE\", \"ANY\"", "SFFloat [in,out] visibilityLimit 0"});
    row("Extrusion",
        {"SFBool [] beginCap TRUE", "SFBool [] ccw TRUE", "SFBool [] convex TRUE", "SFFloat [] creaseAngle 0",
         "MFVec2f [] crossSection 1 1, 1 -1, -1 -1, -1 1, 1 1", "SFBool [] endCap TRUE",
         "SFNode [in,out] metadata NULL", "MFRotation [] orientation 0 0 1 0", "MFVec2f [] scale 1 1",
         "MFVec2f [in] set_crossSection", "MFRotation [in] set_orientation", "MFVec2f [in] set_scale",
         "MFVec3f [in] set_spine", "SFBool [] solid TRUE", "MFVec3f [] spine 0 0 0, 0 1 0"});
    row("PixelTexture",
        {"SFString [in,out] description", "SFImage [in,out] image 0 0 0", "SFNode [in,out] metadata NULL",
         "SFBool [] repeatS TRUE", "SFBool [] repeatT TRUE", "SFNode [] textureProperties NULL"});
    row("Script",
        {"SFTime [in,out] autoRefresh 0", "SFTime [in,out] autoRefreshTimeLimit 3600",
         "SFString [in,out] description", "SFBool [] directOutput FALSE", "SFBool [in,out] load TRUE",
         "SFNode [in,out] metadata NULL", "SFBool [] mustEvaluate FALSE", "MFString [in,out] url"});
}

void tst_Catalogue::fieldsAreThoseOfX3D()
{
    QFETCH(QByteArrayList, fields);
    const NodeEntry* node = findNode(QTest::currentDataTag());
    QVERIFY(node);
    QByteArrayList found;
    for (const PartEntry& part : node->parts)
        found.append(signature(part));
    QCOMPARE(found, fields);
}

void tst_Catalogue::limitsAreThoseOfX3D_data()
{
    constexpr double infinity = std::numeric_limits<double>::infinity();
    QTest::addColumn<QByteArray>("node");
    QTest::addColumn<QByteArray>("field");
    QTest::addColumn<double>("minValue");
    QTest::addColumn<double>("maxValue");
    const auto row = [](const char* node, const char* field, double minValue, double maxValue) {
        QTest::addRow("%s.%s", node, field) << QByteArray(node) << QByteArray(field) << minValue << maxValue;
    };
    row("Material", "diffuseColor", 0, 1);
    row("Material", "shininess", 0, 1);
    row("Sphere", "radius", 0, infinity);
    row("TimeSensor", "cycleInterval", 0, infinity);
    row("Viewpoint", "fieldOfView", 0, 3.1416);
    row("SpotLight", "cutOffAngle", 0, 1.570796);
    row("PointLight", "intensity", 0, infinity);
    row("DynamicsCompressor", "reduction", -infinity, 0);
    row("Switch", "whichChoice", -1, 0);
    row("ElevationGrid", "xDimension", 0, 0);
    row("GeneratedCubeMapTexture", "size", 1, 0);
    row("IndexedFaceSet", "coordIndex", -1, 0);
    row("ColorDamper", "order", 0, 5);
    row("HAnimHumanoid", "loa", -1, 4);
}

void tst_Catalogue::limitsAreThoseOfX3D()
{
    QFETCH(QByteArray, node);
    QFETCH(QByteArray, field);
    QFETCH(double, minValue);
    QFETCH(double, maxValue);
    const PartEntry* part = findPart(*findNode(view(node)), view(field));
    QVERIFY(part);
    QCOMPARE(part->restriction.kind, NodePartDesc::MIN_MAX_VR);
    QCOMPARE(part->restriction.minValue, minValue);
    QCOMPARE(part->restriction.maxValue, maxValue);
}

void tst_Catalogue::closedListsRestrictAndOpenOnesDoNot()
{
    const Restriction fogType = findPart(*findNode("Fog"), "fogType")->restriction;
    QCOMPARE(fogType.kind, NodePartDesc::LIST_VR);
    QCOMPARE(listedValues(fogType), (std::vector<std::string_view>{"LINEAR", "EXPONENTIAL"}));

    const Restriction justify = findPart(*findNode("FontStyle"), "justify")->restriction;
    QCOMPARE(listedValues(justify), (std::vector<std::string_view>{"BEGIN", "END", "FIRST", "MIDDLE"}));

    const Restriction version = findPart(*findNode("HAnimHumanoid"), "version")->restriction;
    QCOMPARE(listedValues(version), (std::vector<std::string_view>{"1.0", "2.0"}));

    for (const auto& [node, field] : {std::pair("NavigationInfo", "type"), std::pair("FontStyle", "family"),
                                      std::pair("ComposedShader", "language"), std::pair("Viewpoint", "jump"),
                                      std::pair("MultiTexture", "function"),
                                      std::pair("MultiTexture", "mode"), std::pair("MultiTexture", "source")})
    {
        const Restriction open = findPart(*findNode(node), field)->restriction;
        QCOMPARE(open.kind, NodePartDesc::NONE_VR);
        QVERIFY(listedValues(open).empty());
    }
}

void tst_Catalogue::sourceTextsAreMarked()
{
    for (const NodeEntry& node : allNodes()) {
        const bool holdsSource = node.name == "Script" || node.name == "ShaderPart" ||
                                 node.name == "ShaderProgram" || node.name == "PackagedShader";
        for (const PartEntry& part : node.parts)
            QCOMPARE(part.restriction.kind == NodePartDesc::CDATA_VR, holdsSource && part.name == "url");
    }
}

void tst_Catalogue::windowAndRootNodesAreThere()
{
    const NodeEntry* window = findNode("Window");
    QVERIFY(window);
    const auto check = [window](const char* name, const char* expected) {
        const PartEntry* part = findPart(*window, name);
        QVERIFY2(part, name);
        QCOMPARE(signature(*part), QByteArray(expected));
    };
    check("size", "SFVec2f [in,out] size -1 -1");
    check("position", "SFVec2f [in,out] position -1 -1");
    check("fullScreen", "SFBool [in,out] fullScreen FALSE");
    check("decoration", "SFBool [in,out] decoration TRUE");
    check("cursorVisible", "SFBool [in,out] cursorVisible TRUE");
    check("samples", "SFInt32 [in,out] samples 1");
    check("pipe", "SFString [in,out] pipe");
    check("title", "SFString [in,out] title");
    check("viewareas", "MFNode [in,out] viewareas");
    QVERIFY(acceptsNode(*findPart(*window, "viewareas"), *findNode("Viewarea")));
    QVERIFY(acceptsNode(*findPart(*findNode("Engine"), "windows"), *window));
    QVERIFY(acceptsNode(*findPart(*findNode("Scene"), "children"), *findNode("LayerSet")));
    QVERIFY(findNode("ContextSetup"));
    for (const NodeEntry& node : allNodes())
        if (node.component == "Engine")
            for (const PartEntry& part : node.parts)
                QCOMPARE(part.partType, EXPOSEDFIELDP);
}

void tst_Catalogue::namesAreUnique()
{
    std::set<std::string_view> nodes;
    for (const NodeEntry& node : allNodes()) {
        QVERIFY2(nodes.insert(node.name).second, node.name.data());
        std::set<std::string_view> parts;
        for (const PartEntry& part : node.parts)
            QVERIFY2(parts.insert(part.name).second, qPrintable(place(node, part)));
    }
}

void tst_Catalogue::everyTypeIsFoundByItsName()
{
    for (const NodeEntry& node : allNodes()) {
        QCOMPARE(findNode(node.name), &node);
        for (const PartEntry& part : node.parts)
            QCOMPARE(findPart(node, part.name), &part);
    }
}

void tst_Catalogue::unknownNamesGiveNull()
{
    const std::string longName(100000, 'B');
    for (const std::string_view name :
         {std::string_view(), std::string_view("box"), std::string_view("Boxx"), std::string_view("Bo"),
          std::string_view("ProtoInstance"), std::string_view("\xff\xfe"), std::string_view("Box\0", 4),
          std::string_view(longName)})
        QVERIFY(!findNode(name));
    const NodeEntry& box = *findNode("Box");
    QVERIFY(!findPart(box, "Size"));
    QVERIFY(!findPart(box, ""));
    QVERIFY(!isDerivedFrom(box, "X3DChildNode"));
    QVERIFY(!isDerivedFrom(box, "NoSuchType"));
    QVERIFY(fieldAlias(box, "size").empty());
    QVERIFY(nodeAlias("Box").empty());
}

void tst_Catalogue::everyNodeTakesMetadata()
{
    for (const NodeEntry& node : allNodes()) {
        if (node.isAbstract())
            continue;
        const PartEntry* metadata = findPart(node, "metadata");
        QVERIFY2(metadata, node.name.data());
        QVERIFY(acceptsNode(*metadata, *findNode("MetadataSet")));
        QVERIFY(!acceptsNode(*metadata, *findNode("WorldInfo")));
    }
}

void tst_Catalogue::fieldsStandInAlphabeticalOrder()
{
    for (const NodeEntry& node : allNodes())
        for (std::size_t i = 1; i < node.parts.size(); ++i)
            QVERIFY2(text(node.parts[i - 1].name).compare(text(node.parts[i].name), Qt::CaseInsensitive) < 0,
                     qPrintable(place(node, node.parts[i])));
}

void tst_Catalogue::everyDefaultParses()
{
    for (const NodeEntry& node : allNodes())
        for (const PartEntry& part : node.parts)
            QVERIFY2(parses(part), qPrintable(place(node, part)));
}

void tst_Catalogue::defaultsRespectTheirRestrictions()
{
    for (const NodeEntry& node : allNodes()) {
        for (const PartEntry& part : node.parts) {
            // What an event carries before the first one is no value that X3D chose.
            if (isEvent(part) || part.defaultValue.empty())
                continue;
            const Restriction& limits = part.restriction;
            if (limits.kind == NodePartDesc::MIN_MAX_VR) {
                const bool unbounded = isIntegerField(part) && limits.maxValue == 0.0;
                for (const double number : numbers(part))
                    QVERIFY2(number >= limits.minValue && (unbounded || number <= limits.maxValue),
                             qPrintable(place(node, part)));
            } else if (limits.kind == NodePartDesc::LIST_VR) {
                const std::vector<std::string_view> allowed = listedValues(limits);
                QString value = text(part.defaultValue);
                if (part.dataType == MFSTRING_DT)
                    value.remove(QLatin1Char('"'));
                for (const QString& single : value.split(QStringLiteral(", ")))
                    QVERIFY2(std::find(allowed.begin(), allowed.end(), view(single.toLatin1())) !=
                                 allowed.end(),
                             qPrintable(place(node, part)));
            }
        }
    }
}

void tst_Catalogue::onlyNodeFieldsNameNodeTypesAndTheseExist()
{
    for (const NodeEntry& node : allNodes()) {
        for (const PartEntry& part : node.parts) {
            QCOMPARE(part.restriction.kind == NodePartDesc::NODE_TYPE_VR, isNodeField(part));
            if (!isNodeField(part))
                continue;
            const std::vector<std::string_view> types = listedValues(part.restriction);
            QVERIFY2(!types.empty(), qPrintable(place(node, part)));
            for (const std::string_view type : types)
                QVERIFY2(findNode(type), qPrintable(place(node, part) + QLatin1Char(' ') + text(type)));
        }
    }
}

void tst_Catalogue::listsBelongToStringFields()
{
    for (const NodeEntry& node : allNodes()) {
        for (const PartEntry& part : node.parts) {
            if (part.restriction.kind != NodePartDesc::LIST_VR)
                continue;
            QVERIFY2(part.dataType == SFSTRING_DT || part.dataType == MFSTRING_DT,
                     qPrintable(place(node, part)));
            const std::vector<std::string_view> values = listedValues(part.restriction);
            QVERIFY2(values.size() > 1, qPrintable(place(node, part)));
            QCOMPARE(std::set<std::string_view>(values.begin(), values.end()).size(), values.size());
        }
    }
}

void tst_Catalogue::limitsBelongToNumbersAndAreOrdered()
{
    for (const NodeEntry& node : allNodes()) {
        for (const PartEntry& part : node.parts) {
            if (part.restriction.kind != NodePartDesc::MIN_MAX_VR)
                continue;
            QVERIFY2(componentCount((part.dataType - 1) / 2 * 2 + 1) > 0, qPrintable(place(node, part)));
            QVERIFY(part.restriction.values.empty());
            if (isIntegerField(part)) {
                QVERIFY2(std::isfinite(part.restriction.maxValue), qPrintable(place(node, part)));
                QCOMPARE(std::trunc(part.restriction.minValue), part.restriction.minValue);
            }
            if (!isIntegerField(part) || part.restriction.maxValue != 0.0)
                QVERIFY2(part.restriction.minValue < part.restriction.maxValue,
                         qPrintable(place(node, part)));
        }
    }
}

void tst_Catalogue::basesAreKnownAbstractTypes()
{
    for (const NodeEntry& node : allNodes()) {
        const std::vector<std::string_view> bases =
            listedValues({NodePartDesc::NODE_TYPE_VR, 0.0, 0.0, node.bases});
        for (const std::string_view name : bases) {
            const NodeEntry* base = findNode(name);
            QVERIFY2(base, name.data());
            QVERIFY(base->isAbstract());
            QVERIFY2(!isDerivedFrom(*base, node.name), node.name.data());
        }
        QVERIFY2(node.isAbstract() || isDerivedFrom(node, "X3DNode"), node.name.data());
        QCOMPARE(node.isAbstract(), node.parts.empty());
    }
}

void tst_Catalogue::derivationIsTransitive()
{
    const NodeEntry& movie = *findNode("MovieTexture");
    for (const char* base : {"MovieTexture", "X3DTexture2DNode", "X3DTextureNode", "X3DSoundSourceNode",
                             "X3DTimeDependentNode", "X3DUrlObject", "X3DNode"})
        QVERIFY2(isDerivedFrom(movie, base), base);
    QVERIFY(!isDerivedFrom(movie, "X3DGeometryNode"));
    QVERIFY(isDerivedFrom(*findNode("Transform"), "X3DBoundedObject"));
    QVERIFY(acceptsNode(*findPart(*findNode("Shape"), "geometry"), *findNode("IndexedFaceSet")));
    QVERIFY(!acceptsNode(*findPart(*findNode("Shape"), "geometry"), *findNode("Material")));
    QVERIFY(!acceptsNode(*findPart(*findNode("Box"), "size"), *findNode("Material")));
}

void tst_Catalogue::everyContainerFieldTakesItsNode()
{
    for (const NodeEntry& child : allNodes()) {
        if (child.isAbstract() || (child.component == "Engine" && child.containerField == "children"))
            continue;
        bool taken = false;
        for (const NodeEntry& parent : allNodes()) {
            const PartEntry* part = findPart(parent, child.containerField);
            taken = taken || (part && acceptsNode(*part, child));
        }
        QVERIFY2(taken, child.name.data());
    }
    QCOMPARE(text(findNode("Shape")->containerField), QStringLiteral("children"));
    QCOMPARE(text(findNode("MetadataString")->containerField), QStringLiteral("metadata"));
    QCOMPARE(text(findNode("Coordinate")->containerField), QStringLiteral("coord"));
}

void tst_Catalogue::concreteNodesAreDescribed()
{
    for (const NodeEntry& node : allNodes())
        if (!node.isAbstract())
            QVERIFY2(node.description.size() > 10 && node.description.back() == '.', node.name.data());
}

void tst_Catalogue::fieldsAreDescribed()
{
    const auto description = [](const char* node, const char* part) {
        const NodeEntry& entry = *findNode(node);
        return text(partDescription(entry, *findPart(entry, part)));
    };
    QCOMPARE(description("Material", "transparency"), QStringLiteral("0 for opaque, 1 for invisible."));
    QCOMPARE(description("Transform", "rotation"), QStringLiteral("Rotation: axis and angle in radians."));
    QCOMPARE(description("TextureTransform", "rotation"), QStringLiteral("Angle in radians."));
    QCOMPARE(description("Script", "url"), QStringLiteral("Source code or files, in order of preference."));
    QVERIFY(description("Sphere", "radius").isEmpty());

    int described = 0;
    int total = 0;
    for (const NodeEntry& node : allNodes()) {
        for (const PartEntry& part : node.parts) {
            const std::string_view words = partDescription(node, part);
            QVERIFY2(words.empty() || words.back() == '.', qPrintable(place(node, part)));
            described += !words.empty();
            ++total;
        }
    }
    QVERIFY2(described * 3 > total * 2, qPrintable(QString::number(described)));
}

void tst_Catalogue::aliasesLeadToExistingNames()
{
    const std::map<QByteArray, QByteArray> fields = {
        {"Switch.choice", "children"},
        {"LOD.level", "children"},
        {"Collision.collide", "enabled"},
        {"ComposedCubeMapTexture.back", "backTexture"},
        {"ComposedCubeMapTexture.top", "topTexture"},
        {"ParticleSystem.colorRamp", "color"},
        {"ParticleSystem.texCoordRamp", "texCoord"},
        {"LoadSensor.watchList", "children"},
        {"DISEntityManager.mapping", "children"},
        {"Layer.isPickable", "pickable"},
        {"UniversalJoint.stopBounce2", "stop2Bounce"},
        {"PointProperties.pointsizeMinValue", "pointSizeMinValue"}};
    for (const auto& [older, name] : fields) {
        const QByteArrayList words = older.split('.');
        const NodeEntry* node = findNode(view(words[0]));
        QVERIFY(node);
        QCOMPARE(text(fieldAlias(*node, view(words[1]))), QString::fromLatin1(name));
        QVERIFY2(findPart(*node, view(name)), older);
        QVERIFY2(!findPart(*node, view(words[1])), older);
    }
    QVERIFY(fieldAlias(*findNode("Group"), "choice").empty());
    QCOMPARE(text(nodeAlias("TextureProjectorPerspective")), QStringLiteral("TextureProjector"));
    for (const char* older : {"TextureProjectorPerspective", "ListenerPoint"}) {
        QVERIFY(!findNode(older));
        QVERIFY(findNode(nodeAlias(older)));
    }
}

void tst_Catalogue::vrml97NamesAreTheAliasesReversed()
{
    QCOMPARE(text(vrml97Name(*findNode("Switch"), "children")), QStringLiteral("choice"));
    QCOMPARE(text(vrml97Name(*findNode("LOD"), "children")), QStringLiteral("level"));
    QCOMPARE(text(vrml97Name(*findNode("Collision"), "enabled")), QStringLiteral("collide"));
    QCOMPARE(text(vrml97Name(*findNode("Collision"), "children")), QStringLiteral("children"));
    QCOMPARE(text(vrml97Name(*findNode("LoadSensor"), "children")), QStringLiteral("children"));
}

void tst_Catalogue::vrml97DefaultsDifferWhereTheStandardsDo()
{
    const NodeEntry& spot = *findNode("SpotLight");
    QCOMPARE(text(vrml97Default(spot, *findPart(spot, "cutOffAngle"))), QStringLiteral("0.785398"));
    QCOMPARE(text(vrml97Default(spot, *findPart(spot, "beamWidth"))), QStringLiteral("1.570796"));
    QCOMPARE(text(vrml97Default(spot, *findPart(spot, "radius"))), QStringLiteral("100"));
    const NodeEntry& navigation = *findNode("NavigationInfo");
    QCOMPARE(text(vrml97Default(navigation, *findPart(navigation, "type"))),
             QStringLiteral("\"WALK\", \"ANY\""));
}

QTEST_APPLESS_MAIN(tst_Catalogue)
#include "tst_Catalogue.moc"
