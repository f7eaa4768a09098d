#include "SceneDrawing.h"
#include <memory>

using namespace Orvane;

/// Values of vertices that the scene gives for shaders.
class tst_VertexValues : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void valuesReachTheProgram_data();
    void valuesReachTheProgram();
    void valuesGoByTheirPoints();
    void valuesOfSeveralNamesLieSideBySide();
    void valuesAreFollowed();
    void shapesWithoutValuesAreDrawnAsBefore();
    void linesTakeTheirValues();
    void faultyNumberOfComponentsIsReported();

private:
    std::unique_ptr<SceneDrawing> _drawing;
};

namespace {

/// A program that shows what an attribute gives.
std::string shader(const std::string& type, const std::string& color)
{
    return "shaders ComposedShader { language GLSL parts [ ShaderPart { type VERTEX url "
           "\"attribute " +
           type + " a; varying vec4 c; void main() { c = " + color +
           "; gl_Position = ftransform(); }\" } ShaderPart { type FRAGMENT url \"varying vec4 c; void "
           "main() { "
           "gl_FragColor = c; }\" } ] }";
}

std::string numbers(const std::string& values, int components = 1)
{
    return "attrib DEF V FloatVertexAttribute { name a numComponents " + std::to_string(components) +
           " value [ " + values + " ] }";
}

const std::string Red = "vec4(a, 0.0, 0.0, 1.0)";

} // namespace

void tst_VertexValues::initTestCase()
{
    _drawing = std::make_unique<SceneDrawing>();
    QVERIFY(_drawing->isValid());
}

void tst_VertexValues::valuesReachTheProgram_data()
{
    QTest::addColumn<QByteArray>("attribute");
    QTest::addColumn<QByteArray>("type");
    QTest::addColumn<QByteArray>("color");
    const auto row = [](const char* name, const std::string& attribute, const char* type, const char* color) {
        QTest::newRow(name) << QByteArray::fromStdString(attribute) << QByteArray(type) << QByteArray(color);
    };
    const auto four = [](const std::string& value) {
        return value + ' ' + value + ' ' + value + ' ' + value;
    };
    row("number", numbers("1 1 1 1"), "float", "vec4(a, 0.0, 0.0, 1.0)");
    row("pair", numbers("1 0 1 0 1 0 1 0", 2), "vec2", "vec4(a, 0.0, 1.0)");
    row("colour", numbers(four("1 0 0 1"), 4), "vec4", "a");
    row("matrix of 3", "attrib Matrix3VertexAttribute { name a value [ " + four("0 1 0 0 0 0 0 0 0") + " ] }",
        "mat3", "vec4(a[0][1], a[1][0], a[0][0], 1.0)");
    row("matrix of 4",
        "attrib Matrix4VertexAttribute { name a value [ " + four("0 0 0 0 0 0 0 0 0 0 0 0 1 0 0 0") + " ] }",
        "mat4", "vec4(a[3][0], a[0][3], a[3][3], 1.0)");
    row("none", numbers(""), "float", "vec4(1.0 - a, 0.0, 0.0, 1.0)");
    row("too many", numbers("1 1 1 1 5 5 5 5 5 5"), "float", "vec4(a, 0.0, 0.0, 1.0)");
}

void tst_VertexValues::valuesReachTheProgram()
{
    QFETCH(QByteArray, attribute);
    QFETCH(QByteArray, type);
    QFETCH(QByteArray, color);
    CoreScene scene(
        squareWith(shader(type.toStdString(), color.toStdString()), attribute.toStdString()).c_str());
    COMPARE_DRAWN(_drawing->middleOf(scene), QColor(255, 0, 0));
    QCOMPARE(scene.messageCount(), std::size_t(0));
    QCOMPARE(_drawing->error(), 0U);
}

void tst_VertexValues::valuesGoByTheirPoints()
{
    // Only the last point, in the middle, has a value; triangles with normals of their own share it.
    CoreScene scene(
        ("Shape { appearance Appearance { " + shader("float", Red) + " } geometry IndexedFaceSet { " +
         numbers("0 0 0 0 1") +
         " coordIndex [ 0 1 4 -1 1 2 4 -1 2 3 4 -1 3 0 4 ] coord Coordinate { point [ -1 -1 0, 1 -1 0, 1 "
         "1 0, -1 1 0, 0 0 0 ] } } }")
            .c_str());
    QVERIFY(_drawing->middleOf(scene).red() > 230);
    QVERIFY(_drawing->at(scene, 0.9, 0.9).red() < 50);
}

void tst_VertexValues::valuesOfSeveralNamesLieSideBySide()
{
    const std::string program =
        "shaders ComposedShader { language GLSL parts [ ShaderPart { type VERTEX url \"attribute "
        "vec2 a; "
        "attribute float b; varying vec4 c; void main() { c = vec4(a, b, 1.0); gl_Position = ftransform(); "
        "}\" } "
        "ShaderPart { type FRAGMENT url \"varying vec4 c; void main() { gl_FragColor = c; }\" } ] }";
    CoreScene scene(squareWith(program,
                               "attrib [ FloatVertexAttribute { name b numComponents 1 value [ 1 1 1 1 ] } "
                               "FloatVertexAttribute { name unused numComponents 3 value [ 9 9 9 ] } "
                               "FloatVertexAttribute { name a numComponents 2 value [ 0 0.5 0 0.5 0 0.5 0 "
                               "0.5 ] } ]")
                        .c_str());
    COMPARE_DRAWN(_drawing->middleOf(scene), QColor(0, 128, 255));
}

void tst_VertexValues::valuesAreFollowed()
{
    CoreScene scene(squareWith(shader("float", Red), numbers("0 0 0 0")).c_str());
    COMPARE_DRAWN(_drawing->middleOf(scene), QColor(0, 0, 0));
    scene.set("V", "value", "1 1 1 1");
    COMPARE_DRAWN(_drawing->middleOf(scene), QColor(255, 0, 0));
    scene.set("G", "attrib", "");
    COMPARE_DRAWN(_drawing->middleOf(scene), QColor(0, 0, 0));
    QCOMPARE(_drawing->error(), 0U);
}

void tst_VertexValues::shapesWithoutValuesAreDrawnAsBefore()
{
    CoreScene scene(
        (squareWith(shader("float", Red), numbers("1 1 1 1")) +
         "Transform { translation 3 0 0 children Shape { appearance Appearance { material UnlitMaterial { "
         "emissiveColor 0 1 0 } } geometry Box { } } } Transform { translation -3 0 0 children Shape { "
         "appearance Appearance { material UnlitMaterial { emissiveColor 0 0 1 } } geometry USE G } }")
            .c_str());
    COMPARE_DRAWN(_drawing->middleOf(scene), QColor(255, 0, 0));
    COMPARE_DRAWN(_drawing->at(scene, 3, 0), QColor(0, 255, 0));
    COMPARE_DRAWN(_drawing->at(scene, -3, 0), QColor(0, 0, 255));
}

void tst_VertexValues::linesTakeTheirValues()
{
    CoreScene scene(("Shape { appearance Appearance { " + shader("float", Red) + " } geometry LineSet { " +
                     numbers("1 1") + " vertexCount 2 coord Coordinate { point [ -1 0 0, 1 0 0 ] } } }")
                        .c_str());
    const QImage image = _drawing->draw(scene);
    int red = 0;
    for (int y = 98; y < 103; ++y)
        red += image.pixelColor(100, y) == QColor(255, 0, 0) ? 1 : 0;
    QCOMPARE(red, 1);
    QCOMPARE(scene.messageCount(), std::size_t(0));
}

void tst_VertexValues::faultyNumberOfComponentsIsReported()
{
    CoreScene scene(squareWith(shader("float", Red), numbers("1 1 1 1", 1)).c_str());
    scene.field("V", "numComponents").setValueByStr(0.0, "1000000");
    scene.set("V", "value", "1 1 1 1 1 1 1 1 1 1 1 1 1 1 1 1");
    _drawing->draw(scene);
    QCOMPARE(scene.messageCount(), std::size_t(1));
    QCOMPARE(_drawing->error(), 0U);
}

QTEST_MAIN(tst_VertexValues)
#include "tst_VertexValues.moc"
