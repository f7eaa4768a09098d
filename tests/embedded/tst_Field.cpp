#include "BaseTools.h"
#include "base/ValueFields.h"
#include <Orvane/MFBool.h>
#include <Orvane/MFFloat.h>
#include <Orvane/MFString.h>
#include <Orvane/MFVec3f.h>
#include <Orvane/NodePartDesc.h>
#include <Orvane/SFBool.h>
#include <Orvane/SFFloat.h>
#include <Orvane/SFImage.h>
#include <Orvane/SFString.h>
#include <QtTest>

using namespace Orvane;

class tst_Field : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { _context.reset(); }

    void castsToItsClass_data();
    void castsToItsClass();
    void singleValues();
    void listOfPlainValues();
    void listOfObjects();
    void truthValuesHaveAddresses();
    void elementsOfTheListItself();
    void imagesShareTheirPixels();
    void fieldsOfANodeStartWithTheirDefault();
    void namesAndAccess();

private:
    /// A new field of the data type, at a script.
    template <class F>
    F& make(NodePartDataType type)
    {
        return dynamic_cast<F&>(*addField(*_script, "f" + std::to_string(type), type, EXPOSEDFIELDP));
    }

    std::unique_ptr<TestContext> _context;
    Node* _script = nullptr;
};

void tst_Field::init()
{
    _context = std::make_unique<TestContext>();
    _script = &_context->add("Script");
}

void tst_Field::castsToItsClass_data()
{
    QTest::addColumn<int>("type");
    for (int type = SFBOOL_DT; type <= MFVEC4F_DT; ++type)
        QTest::addRow("%d", type) << type;
}

void tst_Field::castsToItsClass()
{
    QFETCH(int, type);
    const auto dataType = static_cast<NodePartDataType>(type);
    Field* made = addField(*_script, "f", dataType, EXPOSEDFIELDP);
    QVERIFY(made);
    QCOMPARE(made->dataType(), dataType);
    QCOMPARE(made->fieldTypeName(), made->dataTypeName());
    QCOMPARE(made->cardinality(), type % 2 == 0 ? 1 : 0);
    QCOMPARE(made->size(), type % 2 == 0 ? 0U : 1U);
    made->clear();
    QCOMPARE(made->size(), type % 2 == 0 ? 0U : 1U);
    QVERIFY(removeField(*_script, *made));
    QCOMPARE(made->node(), _script);
}

void tst_Field::singleValues()
{
    auto& flag = make<SFBool>(SFBOOL_DT);
    flag.setValue(0.0, true, Field::EXTERNAL_CT);
    QCOMPARE(flag.value(), true);
    auto& text = make<SFString>(SFSTRING_DT);
    text.setValue(0.0, "a\nb", Field::EXTERNAL_CT);
    QCOMPARE(text.valueToString(), std::string("a\nb"));
    auto& rotation = make<SFRotation>(SFROTATION_DT);
    QCOMPARE(rotation.valueToString(), std::string("0 0 1 0"));
    rotation.setValue(0.0, Rotation(0, 2, 0, 1), Field::EXTERNAL_CT);
    QCOMPARE(rotation.valueToString(), std::string("0 2 0 1"));
    auto& matrix = make<SFMatrix3f>(SFMATRIX3F_DT);
    QCOMPARE(matrix.valueToString(), std::string("1 0 0 0 1 0 0 0 1"));
}

void tst_Field::listOfPlainValues()
{
    auto& list = make<MFVec3f>(MFVEC3F_DT);
    osg::Vec3f* added = list.addValue(osg::Vec3f(1, 2, 3));
    QCOMPARE((*added)[2], 3.0F);
    osg::Vec3f* inserted = list.insertValue(0, osg::Vec3f(4, 5, 6));
    QCOMPARE(inserted, &list.elem(0));
    list.insertValue(-5, osg::Vec3f(7, 8, 9));
    list.insertValue(99, osg::Vec3f(0, 0, 0));
    QCOMPARE(list.valueToString(), std::string("7 8 9, 4 5 6, 1 2 3, 0 0 0"));
    list.removeValueByIndex(1);
    list.removeValueByIndex(-1);
    list.removeValueByIndex(3);
    list.setElem(0, osg::Vec3f(1, 1, 1));
    list.setElem(3, osg::Vec3f(2, 2, 2));
    list.setElem(-1, osg::Vec3f(2, 2, 2));
    QCOMPARE(list.valueToString(), std::string("1 1 1, 1 2 3, 0 0 0"));
    list.elem(2) = osg::Vec3f(3, 3, 3);
    QCOMPARE(list.values()[2][0], 3.0F);
    list.clear();
    QCOMPARE(list.size(), 0U);
    QCOMPARE(list.valueToString(), std::string());
}

void tst_Field::listOfObjects()
{
    auto& list = make<MFString>(MFSTRING_DT);
    QCOMPARE(*list.addValue("a"), std::string("a"));
    QCOMPARE(*list.insertValue(0, "b"), std::string("b"));
    list.insertValue(99, "c");
    QCOMPARE(list[1], std::string("a"));
    list.removeValueByIndex(1);
    list.removeValueByIndex(7);
    list.setElem(1, "d");
    list.setElem(2, "e");
    QCOMPARE(list.valueToString(), std::string("\"b\", \"d\""));
    list.elem(0) += "!";
    QCOMPARE(list.valueToString(), std::string("\"b!\", \"d\""));
}

void tst_Field::truthValuesHaveAddresses()
{
    auto& list = make<MFBool>(MFBOOL_DT);
    list.addValue(false);
    bool& value = *list.addValue(false);
    value = true;
    QCOMPARE(list.valueToString(), std::string("FALSE, TRUE"));
    QCOMPARE(&list[1], &value);
}

void tst_Field::elementsOfTheListItself()
{
    auto& list = make<MFFloat>(MFFLOAT_DT);
    list.addValue(1.0F);
    for (int i = 0; i < 50; ++i) {
        list.addValue(list.elem(0));
        list.insertValue(0, list.elem(0));
    }
    QCOMPARE(list.size(), 101U);
    QCOMPARE(list.elem(100), 1.0F);
    auto& texts = make<MFString>(MFSTRING_DT);
    texts.addValue("a text that is too long to be kept in place");
    for (int i = 0; i < 50; ++i)
        texts.insertValue(0, texts[0]);
    QCOMPARE(texts[50], texts[0]);
}

void tst_Field::imagesShareTheirPixels()
{
    auto& single = make<SFImage>(SFIMAGE_DT);
    QCOMPARE(single.image().width(), 0);
    QVERIFY(!single.image().rco());
    single.setValueByStr(0.0, "2 1 3 0xFF0000 0x00FF00");
    const Image copy = single.image();
    QCOMPARE(copy.width(), 2);
    QCOMPARE(copy.height(), 1);
    QCOMPARE(copy.depth(), 1);
    QVERIFY(copy.rco() == single.image().rco());
    QCOMPARE(int(copy.rco()->getData()[4]), 255);
    const int references = osg::getRefCount(copy.rco());
    {
        const Image another(copy);
        Image assigned;
        assigned = another;
        QCOMPARE(osg::getRefCount(copy.rco()), references + 2);
    }
    QCOMPARE(osg::getRefCount(copy.rco()), references);
    single.setValue(0.0, Image(), Field::EXTERNAL_CT);
    QCOMPARE(single.valueToString(), std::string("0 0 0"));
    QCOMPARE(copy.width(), 2);
}

void tst_Field::fieldsOfANodeStartWithTheirDefault()
{
    Node& material = _context->add("Material");
    QCOMPARE(material.findField("diffuseColor", Node::EXACT_FSO)->valueToString(),
             std::string("0.8 0.8 0.8"));
    QCOMPARE(field<SFFloat>(material, "ambientIntensity").value(), 0.2F);
    QVERIFY(material.findField("diffuseColor", Node::EXACT_FSO)
                ->hasValueOf(
                    readField(*_context->make("Material"),
                              static_cast<unsigned int>(partIndex(*findType("Material"), "diffuseColor")))));
}

void tst_Field::namesAndAccess()
{
    Node& transform = _context->add("Transform");
    const Field& translation = *transform.findField("translation", Node::EXACT_FSO);
    QCOMPARE(translation.name(), "translation");
    QCOMPARE(translation.partType(), EXPOSEDFIELDP);
    QCOMPARE(translation.dataTypeName(), std::string("SFVec3f"));
    QCOMPARE(transform.findField("addChildren", Node::EXACT_FSO)->partType(), EVENTINP);
}

QTEST_APPLESS_MAIN(tst_Field)
#include "tst_Field.moc"
