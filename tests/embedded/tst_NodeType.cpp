#include "BaseTools.h"
#include "base/Prototype.h"
#include <Orvane/ContextSetup.h>
#include <Orvane/FieldType.h>
#include <Orvane/NodePartDesc.h>
#include <QtTest>
#include <algorithm>
#include <limits>

using namespace Orvane;

class tst_NodeType : public QObject
{
    Q_OBJECT

private slots:
    void allTypesInOrderOfName();
    void onlyTypesOfWhichNodesCanBeMade();
    void listIsFilledAnew();
    void ofEveryListedTypeNodesCanBeMade();
    void typesOfScenesAreNotListed();
    void typesByName();
    void staticTypesStandForTheTable();
    void unknownTypes();
    void partsUnderOlderNames();
    void restrictions();
    void partFlagsAndNames();
    void abstractBases();
    void dataTypeNames();
};

void tst_NodeType::allTypesInOrderOfName()
{
    std::vector<NodeType*> types{nullptr};
    const unsigned int count = NodeType::getTypeVec(types, 0);
    QCOMPARE(std::size_t(count), types.size());
    QVERIFY(std::is_sorted(types.begin(), types.end(),
                           [](NodeType* a, NodeType* b) { return a->name < b->name; }));
    QVERIFY(std::find(types.begin(), types.end(), findType("X3DNode")) != types.end());
}

void tst_NodeType::onlyTypesOfWhichNodesCanBeMade()
{
    std::vector<NodeType*> types;
    NodeType::getTypeVec(types, 1);
    QVERIFY(std::find(types.begin(), types.end(), findType("X3DNode")) == types.end());
    QVERIFY(std::find(types.begin(), types.end(), findType("Box")) != types.end());
    QVERIFY(std::find(types.begin(), types.end(), &ContextSetup::_type) != types.end());
}

void tst_NodeType::listIsFilledAnew()
{
    std::vector<NodeType*> types;
    std::vector<NodeType*> again;
    const unsigned int count = NodeType::getTypeVec(types, 1);
    QCOMPARE(NodeType::getTypeVec(again, 1), count);
    QCOMPARE(NodeType::getTypeVec(again, 1), count);
    QVERIFY(again == types);
    QVERIFY(std::adjacent_find(types.begin(), types.end()) == types.end());
    QVERIFY(NodeType::getTypeVec(again, 0) > count);
    QVERIFY(std::includes(again.begin(), again.end(), types.begin(), types.end(),
                          [](NodeType* a, NodeType* b) { return a->name < b->name; }));
}

void tst_NodeType::ofEveryListedTypeNodesCanBeMade()
{
    const TestContext context;
    std::vector<NodeType*> types;
    NodeType::getTypeVec(types, 1);
    for (NodeType* type : types) {
        QVERIFY(!type->name.empty());
        QVERIFY2(!type->description.empty(), type->name.c_str());
        const NodeRef node = createNode(*context, *type, HOST_NC);
        QVERIFY(node);
        QCOMPARE(node->type(), type);
        QCOMPARE(node->partDescCount(), partCount(*type));
    }
}

void tst_NodeType::typesOfScenesAreNotListed()
{
    std::vector<NodeType*> before;
    const unsigned int count = NodeType::getTypeVec(before, 0);
    const std::shared_ptr<NodeType> prototype = createPrototype("Chair", {});
    QVERIFY(prototype->isProto());
    unknownType("Gadget");
    std::vector<NodeType*> types;
    QCOMPARE(NodeType::getTypeVec(types, 0), count);
    QVERIFY(types == before);
}

void tst_NodeType::typesByName()
{
    NodeType* const box = findType("Box");
    QVERIFY(box);
    QCOMPARE(box->name, std::string("Box"));
    QVERIFY(!box->description.empty());
    QVERIFY(!box->isProto() && !box->isContextRoot());
    QCOMPARE(findType("Box"), box);
    QVERIFY(!findType("box"));
    QVERIFY(!findType(""));
    QCOMPARE(containerField(*box), std::string_view("geometry"));
}

void tst_NodeType::staticTypesStandForTheTable()
{
    QCOMPARE(findType("ContextSetup"), &ContextSetup::_type);
    QVERIFY(ContextSetup::_type.isContextRoot());
    QVERIFY(findType("Scene")->isContextRoot());
    QVERIFY(findType("Engine")->isContextRoot());
    QVERIFY(!findType("Window")->isContextRoot());
    const TestContext context;
    auto* const setup = ContextSetup::create(&*context, "Setup", HOST_NC);
    QVERIFY(setup);
    QCOMPARE(*setup->name(), std::string("Setup"));
    QCOMPARE(context->findRoot(ContextSetup::_type), static_cast<Node*>(setup));
    QVERIFY(!ContextSetup::create(&*context, nullptr, HOST_NC));
    QVERIFY(!ContextSetup::create(setup, nullptr, HOST_NC));
    QVERIFY(!ContextSetup::create(nullptr, nullptr, HOST_NC));
    QVERIFY(!createRoot(&*context, "Box", nullptr, HOST_NC));
}

void tst_NodeType::unknownTypes()
{
    NodeType* const type = unknownType("Gizmo");
    QCOMPARE(unknownType("Gizmo"), type);
    QCOMPARE(type->name, std::string("Gizmo"));
    QVERIFY(!findType("Gizmo"));
    QCOMPARE(partCount(*type), 0U);
    QCOMPARE(containerField(*type), std::string_view("children"));
    const TestContext context;
    const NodeRef node = createNode(*context, *type, LOADER_NC);
    QVERIFY(addField(*node, "size", SFFLOAT_DT, EXPOSEDFIELDP));
    QCOMPARE(node->partDescCount(), 1U);
    QCOMPARE(node->getIDStr(), "Gizmo#" + std::to_string(node->ID()));
}

void tst_NodeType::partsUnderOlderNames()
{
    const NodeType& lod = *findType("LOD");
    QVERIFY(partIndex(lod, "children") >= 0);
    QCOMPARE(partIndex(lod, "level"), partIndex(lod, "children"));
    QCOMPARE(partIndex(lod, "levels"), -1);
    QVERIFY(!partDesc(lod, partCount(lod)));
}

void tst_NodeType::restrictions()
{
    const auto desc = [](const char* type, const char* part) {
        const NodeType& node = *findType(type);
        return partDesc(node, static_cast<unsigned int>(partIndex(node, part)));
    };
    const NodePartDesc* radius = desc("Sphere", "radius");
    QCOMPARE(radius->valueRestriction, unsigned(NodePartDesc::MIN_MAX_VR));
    QCOMPARE(radius->minValue, 0.0);
    QCOMPARE(radius->maxValue, std::numeric_limits<double>::infinity());
    QCOMPARE(radius->valueType, std::string("0 inf"));
    QCOMPARE(desc("Shape", "geometry")->valueRestriction, unsigned(NodePartDesc::NODE_TYPE_VR));
    QVERIFY(desc("Shape", "geometry")->valueList().empty());
    const NodePartDesc* fogType = desc("Fog", "fogType");
    QCOMPARE(fogType->valueRestriction, unsigned(NodePartDesc::LIST_VR));
    QCOMPARE(fogType->valueList(), (std::vector<std::string>{"LINEAR", "EXPONENTIAL"}));
    QCOMPARE(desc("Script", "url")->valueRestriction, unsigned(NodePartDesc::CDATA_VR));
    QVERIFY(desc("Sphere", "radius")->valueList().empty());
}

void tst_NodeType::partFlagsAndNames()
{
    const NodeType& type = *findType("Transform");
    const auto desc = [&type](const char* part) {
        return partDesc(type, static_cast<unsigned int>(partIndex(type, part)));
    };
    QCOMPARE(desc("translation")->partTypeName(), std::string("ExposedField"));
    QCOMPARE(desc("addChildren")->partTypeName(), std::string("EventIn"));
    QCOMPARE(desc("bboxSize")->partTypeName(), std::string("Field"));
    QCOMPARE(desc("translation")->dataTypeName(), std::string("SFVec3f"));
    QVERIFY(!desc("translation")->objExt());
    QVERIFY(!desc("translation")->privateAccess());
    QCOMPARE(partDesc(*findType("TimeSensor"),
                      static_cast<unsigned int>(partIndex(*findType("TimeSensor"), "cycleTime")))
                 ->partTypeName(),
             std::string("EventOut"));
    QCOMPARE(NodePartDesc().partTypeName(), std::string());
}

void tst_NodeType::abstractBases()
{
    const NodeType& box = *findType("Box");
    QVERIFY(isOfType(box, "Box"));
    QVERIFY(isOfType(box, "X3DGeometryNode"));
    QVERIFY(isOfType(box, "X3DNode"));
    QVERIFY(!isOfType(box, "X3DChildNode"));
    QVERIFY(isOfType(*unknownType("Gizmo"), "Gizmo"));
}

void tst_NodeType::dataTypeNames()
{
    QCOMPARE(FieldType::dataTypeName(SFBOOL_DT), std::string("SFBool"));
    QCOMPARE(FieldType::dataTypeName(MFVEC4F_DT), std::string("MFVec4f"));
    QCOMPARE(FieldType::dataTypeName(SFRESERVED1_DT), std::string("SFReserved1"));
    QCOMPARE(FieldType::dataTypeName(MFRESERVED3_DT), std::string("MFReserved3"));
    for (int type = 1; type <= 48; ++type) {
        const std::string& name = FieldType::dataTypeName(static_cast<NodePartDataType>(type));
        QCOMPARE(name.substr(0, 2), std::string(type % 2 ? "SF" : "MF"));
        QCOMPARE(int(FieldType::dataType(name)), type);
    }
    QVERIFY(FieldType::dataTypeName(NO_DT).empty());
    QVERIFY(FieldType::dataTypeName(static_cast<NodePartDataType>(49)).empty());
    QVERIFY(FieldType::dataTypeName(static_cast<NodePartDataType>(-1)).empty());
    QCOMPARE(FieldType::dataType("SFbool"), NO_DT);
    QCOMPARE(FieldType::dataType(""), NO_DT);
}

QTEST_APPLESS_MAIN(tst_NodeType)
#include "tst_NodeType.moc"
