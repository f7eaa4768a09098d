#include "../opensg/GLPicture.h"
#include "core/CompilerLog.h"
#include "core/SceneProc.h"
#include "core/SharedProgram.h"
#include <OpenSG/OSGDirectionalLight.h>
#include <OpenSG/OSGVisitSubTree.h>
#include <Orvane/Context.h>
#include <Orvane/EventInSlot.h>
#include <Orvane/EventOutSlot.h>
#include <Orvane/Field.h>
#include <Orvane/LoadReport.h>
#include <Orvane/MFNode.h>
#include <Orvane/MFString.h>
#include <Orvane/NodeNameSpace.h>
#include <Orvane/NodePartDesc.h>
#include <Orvane/Route.h>
#include <Orvane/Scene.h>
#include <Orvane/System.h>
#include <QTemporaryDir>
#include <QtTest>
#include <memory>

using namespace Orvane;

namespace {

/// A part whose only statement writes the colour.
std::string fragment(const std::string& declarations, const std::string& color, const char* name = "F")
{
    return "DEF " + std::string(name) + " ShaderPart { type \"FRAGMENT\" url \"" + declarations +
           "\nvoid main()\n{\n    gl_FragColor = " + color + ";\n}\n\" }";
}

/// A square from -1 to 1 with an appearance.
std::string square(const std::string& appearance)
{
    return "Shape { appearance Appearance { " + appearance +
           " } geometry IndexedFaceSet { coordIndex [ 0 1 2 3 ] coord Coordinate { "
           "point [ -1 -1 0, 1 -1 0, 1 1 0, -1 1 0 ] } } } ";
}

std::string composed(const std::string& fields, const std::string& parts)
{
    return "DEF S ComposedShader { language \"GLSL\" " + fields + " parts [ " + parts + " ] } ";
}

std::string shaded(const std::string& fields, const std::string& parts)
{
    return square("material Material { diffuseColor 0 0 1 } shaders " + composed(fields, parts));
}

} // namespace

/// Shaders of scenes, by the pictures that they draw.
class tst_Shaders : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void fragmentPartColors();
    void vertexPartMoves();
    void builtInsHoldWhatFixedDrawingHas();
    void fieldIsUniform_data();
    void fieldIsUniform();
    void routedFieldChangesThePicture();
    void fieldOfTheLiveNodeIsUniform();
    void removedFieldCountsNoMore();
    void textureFieldsAreSamplers();
    void cubeMapIsASamplerOfCubes();
    void samplersWithoutTextureAreHarmless();
    void textureOfTheAppearanceIsTheFirstUnit();
    void fieldThatDoesNotFitIsTold();

    void editIsDrawn();
    void brokenEditKeepsTheLastGoodProgram();
    void undoneEditNeedsNoSecondProgram();
    void partsComeAndGo();
    void neverGoodIsDrawnFixed();
    void linkerIsHeard();
    void messageNamesTheLine();
    void messageOfAFileNamesItsLine();
    void logOfADriverIsTakenApart_data();
    void logOfADriverIsTakenApart();
    void faultIsToldOnce();

    void partsAreReadFromFiles();
    void activateReadsFilesAgain();
    void missingFileIsTold();
    void firstUsableAddressCounts();
    void dataAddressIsCode();
    void programShader();
    void shaderUrl_data();
    void shaderUrl();

    void nodeOfAnOldTypeIsAShader();

    void firstUsableShaderIsSelected();
    void packagedShaderIsToldAndPassedOver();
    void selectionFollowsTheFirstGoodOne();
    void equalShadersShareTheProgram();
    void valuesOfSharedProgramsStayApart();
    void nextShapeIsDrawnFixed();
    void badCode_data();
    void badCode();
    void everythingMayDie();

private:
    void load(const std::string& body);
    QImage draw();
    /// Draws so often that what the compiler says has come through.
    QImage drawSettled();
    QColor color() { return drawSettled().pixelColor(100, 100); }
    Node* node(const char* name) const;
    Field& field(const char* nodeName, const char* fieldName) const;
    void set(const char* nodeName, const char* fieldName, const char* value) const;
    std::string get(const char* nodeName, const char* fieldName) const;
    void setCode(const char* part, const std::string& code) const;
    QString messages() const;
    int messageCount() const { return static_cast<int>(_context->loadReport().messages.size()); }
    void write(const char* name, const QByteArray& text) const;

    std::unique_ptr<GLPicture> _picture;
    std::unique_ptr<QTemporaryDir> _folder;
    Context* _context = nullptr;
};

void tst_Shaders::initTestCase()
{
    _picture = std::make_unique<GLPicture>();
    QVERIFY(_picture->context.isValid());
}

void tst_Shaders::init()
{
    _folder = std::make_unique<QTemporaryDir>();
    System::the().init(0, nullptr, 382);
    _context = Context::create();
    _context->holdTime(1000.0);
}

void tst_Shaders::cleanup()
{
    _context->subRef();
    _context = nullptr;
    System::the().exit();
}

void tst_Shaders::load(const std::string& body)
{
    QVERIFY(_context->load(_folder->filePath(QStringLiteral("scene.x3dv")).toStdString(),
                           "#X3D V4.0 utf8\nPROFILE Immersive\n" + body, Context::REPLACE_LT, ""));
    _context->setRootState(0.0, RUNNING_NS);
    _context->runFrame();
}

QImage tst_Shaders::draw()
{
    _context->runFrame();
    const osg::DirectionalLightPtr light = osg::DirectionalLight::create();
    light->setBeacon(_picture->eye.get());
    const osg::VisitSubTreePtr reference = osg::VisitSubTree::create();
    reference->setSubTreeRoot(procAs<SceneProc>(_context->findRoot(Scene::_type))->root());
    const osg::RefPtr<osg::NodePtr> root(osg::makeNodeFor(osg::NodeCorePtr(light)));
    root->addChild(osg::makeNodeFor(osg::NodeCorePtr(reference)));
    return _picture->draw(root.get());
}

QImage tst_Shaders::drawSettled()
{
    draw();
    draw();
    return draw();
}

Node* tst_Shaders::node(const char* name) const
{
    return NodeNameSpace::findNode(_context->findRoot(Scene::_type)->nameSpace(), name);
}

Field& tst_Shaders::field(const char* nodeName, const char* fieldName) const
{
    return *node(nodeName)->findField(fieldName, Node::DECLARED_FSO);
}

void tst_Shaders::set(const char* nodeName, const char* fieldName, const char* value) const
{
    field(nodeName, fieldName).setValueByStr(0.0, value);
}

std::string tst_Shaders::get(const char* nodeName, const char* fieldName) const
{
    return field(nodeName, fieldName).valueToString();
}

void tst_Shaders::setCode(const char* part, const std::string& code) const
{
    auto& url = static_cast<MFString&>(field(part, "url"));
    url.clear();
    url.addValue(code);
    url.processValueChange(0.0, Field::EXTERNAL_CT);
}

QString tst_Shaders::messages() const
{
    QStringList lines;
    for (const LoadMessage& message : _context->loadReport().messages)
        lines << QString::fromStdString(message.toString());
    return lines.join(QLatin1Char('\n'));
}

void tst_Shaders::write(const char* name, const QByteArray& text) const
{
    QFile file(_folder->filePath(QLatin1String(name)));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(text);
}

void tst_Shaders::fragmentPartColors()
{
    load(shaded("", fragment("", "vec4(0.0, 1.0, 0.0, 1.0)")));
    QCOMPARE(color(), QColor(0, 255, 0));
    QCOMPARE(draw().pixelColor(10, 10), QColor(0, 0, 0));
    QCOMPARE(get("S", "isValid"), std::string("TRUE"));
    QCOMPARE(get("S", "isSelected"), std::string("TRUE"));
    QCOMPARE(messages(), QString());
}

void tst_Shaders::vertexPartMoves()
{
    load(shaded("", "ShaderPart { url \"void main()\n{ vec4 p = gl_Vertex; p.x += 3.0;\ngl_Position = "
                    "gl_ModelViewProjectionMatrix * p; }\" } " +
                        fragment("", "vec4(1.0)")));
    const QImage image = drawSettled();
    QCOMPARE(image.pixelColor(100, 100), QColor(0, 0, 0));
    QCOMPARE(image.pixelColor(160, 100), QColor(255, 255, 255));
}

void tst_Shaders::builtInsHoldWhatFixedDrawingHas()
{
    load(shaded("", "ShaderPart { url \"varying vec3 v;\nvoid main()\n{\ngl_Position = ftransform();\n"
                    "gl_FrontColor = gl_Color; v = gl_NormalMatrix * gl_Normal; }\" } " +
                        fragment("varying vec3 v;",
                                 "vec4(gl_FrontMaterial.diffuse.b, v.z, gl_LightSource[0].diffuse.g, 1.0) * "
                                 "gl_Color.b")));
    QCOMPARE(color(), QColor(255, 255, 255));
}

void tst_Shaders::fieldIsUniform_data()
{
    QTest::addColumn<QByteArray>("declaration");
    QTest::addColumn<QByteArray>("uniform");
    QTest::addColumn<QByteArray>("expression");
    const auto row = [](const char* type, const char* value, const char* uniform, const char* expression) {
        QTest::newRow(type) << QByteArray("inputOutput ") + type + " k " + value << QByteArray(uniform)
                            << QByteArray(expression);
    };
    row("SFBool", "TRUE", "bool k", "k");
    row("MFBool", "[ FALSE TRUE ]", "bool k[2]", "k[1] && !k[0]");
    row("SFInt32", "7", "int k", "k == 7");
    row("MFInt32", "[ 1 -2 ]", "int k[3]", "k[1] == -2 && k[2] == 0");
    row("SFFloat", "0.5", "float k", "k == 0.5");
    row("MFFloat", "[ 1 0.25 3 ]", "float k[2]", "k[1] == 0.25");
    row("SFDouble", "0.5", "float k", "k == 0.5");
    row("MFDouble", "[ 1 2 ]", "float k[2]", "k[1] == 2.0");
    row("SFTime", "8", "float k", "k == 8.0");
    row("MFTime", "[ 8 9 ]", "float k[2]", "k[1] == 9.0");
    row("SFColor", "1 0.5 0", "vec3 k", "k == vec3(1.0, 0.5, 0.0)");
    row("MFColor", "[ 1 0.5 0 ]", "vec3 k[1]", "k[0] == vec3(1.0, 0.5, 0.0)");
    row("SFColorRGBA", "1 0.5 0 0.25", "vec4 k", "k == vec4(1.0, 0.5, 0.0, 0.25)");
    row("MFColorRGBA", "[ 1 0.5 0 0.25 ]", "vec4 k[1]", "k[0] == vec4(1.0, 0.5, 0.0, 0.25)");
    row("SFRotation", "0 1 0 2", "vec4 k", "k == vec4(0.0, 1.0, 0.0, 2.0)");
    row("MFRotation", "[ 0 1 0 2 ]", "vec4 k[1]", "k[0] == vec4(0.0, 1.0, 0.0, 2.0)");
    row("SFVec2f", "1 2", "vec2 k", "k == vec2(1.0, 2.0)");
    row("MFVec2f", "[ 1 2 3 4 ]", "vec2 k[2]", "k[1] == vec2(3.0, 4.0)");
    row("SFVec3f", "1 2 3", "vec3 k", "k == vec3(1.0, 2.0, 3.0)");
    row("MFVec3f", "[ 1 2 3 4 5 6 ]", "vec3 k[2]", "k[1] == vec3(4.0, 5.0, 6.0)");
    row("SFVec4f", "1 2 3 4", "vec4 k", "k == vec4(1.0, 2.0, 3.0, 4.0)");
    row("MFVec4f", "[ 1 2 3 4 ]", "vec4 k[1]", "k[0] == vec4(1.0, 2.0, 3.0, 4.0)");
    row("SFVec2d", "1 2", "vec2 k", "k == vec2(1.0, 2.0)");
    row("MFVec2d", "[ 1 2 ]", "vec2 k[1]", "k[0] == vec2(1.0, 2.0)");
    row("SFVec3d", "1 2 3", "vec3 k", "k == vec3(1.0, 2.0, 3.0)");
    row("MFVec3d", "[ 1 2 3 ]", "vec3 k[1]", "k[0] == vec3(1.0, 2.0, 3.0)");
    row("SFVec4d", "1 2 3 4", "vec4 k", "k == vec4(1.0, 2.0, 3.0, 4.0)");
    row("MFVec4d", "[ 1 2 3 4 ]", "vec4 k[1]", "k[0] == vec4(1.0, 2.0, 3.0, 4.0)");
    row("SFMatrix3f", "1 2 3 4 5 6 7 8 9", "mat3 k", "k[1] == vec3(4.0, 5.0, 6.0)");
    row("MFMatrix3f", "[ 1 2 3 4 5 6 7 8 9 ]", "mat3 k[1]", "k[0][1] == vec3(4.0, 5.0, 6.0)");
    row("SFMatrix3d", "1 2 3 4 5 6 7 8 9", "mat3 k", "k[1] == vec3(4.0, 5.0, 6.0)");
    row("MFMatrix3d", "[ 1 2 3 4 5 6 7 8 9 ]", "mat3 k[1]", "k[0][1] == vec3(4.0, 5.0, 6.0)");
    const char matrix[] = "1 0 0 0 0 1 0 0 0 0 1 0 5 6 7 1";
    const char lists[] = "[ 1 0 0 0 0 1 0 0 0 0 1 0 5 6 7 1 ]";
    // The last row moves, which is GL's last column.
    row("SFMatrix4f", matrix, "mat4 k", "k[3] == vec4(5.0, 6.0, 7.0, 1.0)");
    row("MFMatrix4f", lists, "mat4 k[1]", "k[0][3] == vec4(5.0, 6.0, 7.0, 1.0)");
    row("SFMatrix4d", matrix, "mat4 k", "k[3] == vec4(5.0, 6.0, 7.0, 1.0)");
    row("MFMatrix4d", lists, "mat4 k[1]", "k[0][3] == vec4(5.0, 6.0, 7.0, 1.0)");
    row("SFImage", "1 1 3 0xFF0000", "sampler2D k", "texture2D(k, vec2(0.5)).r == 1.0");
    row("MFImage", "[ 1 1 3 0xFF0000 1 1 3 0x00FF00 ]", "sampler2D k[2]",
        "texture2D(k[1], vec2(0.5)).g == 1.0");
    QTest::newRow("whole number as a fraction")
        << QByteArray("inputOutput SFInt32 k 3") << QByteArray("float k") << QByteArray("k == 3.0");
    QTest::newRow("initializeOnly") << QByteArray("initializeOnly SFFloat k 3") << QByteArray("float k")
                                    << QByteArray("k == 3.0");
    QTest::newRow("text is none") << QByteArray("inputOutput SFString k \"3\"") << QByteArray("float k")
                                  << QByteArray("k == 0.0");
}

void tst_Shaders::fieldIsUniform()
{
    QFETCH(QByteArray, declaration);
    QFETCH(QByteArray, uniform);
    QFETCH(QByteArray, expression);
    load(shaded(declaration.toStdString(),
                fragment("uniform " + uniform.toStdString() + ";",
                         "(" + expression.toStdString() + ") ? vec4(0.0, 1.0, 0.0, 1.0) : vec4(1.0)")));
    QVERIFY2(color() == QColor(0, 255, 0), qPrintable(messages()));
    QCOMPARE(messages(), QString());
}

void tst_Shaders::routedFieldChangesThePicture()
{
    load("DEF T TimeSensor { cycleInterval 10 loop TRUE } " +
         shaded("inputOnly SFFloat k", fragment("uniform float k;", "vec4(k, 0.0, 0.0, 1.0)")) +
         "ROUTE T.fraction_changed TO S.k");
    drawSettled();
    const std::size_t programs = shaderProgramCount();
    QCOMPARE(programs, std::size_t(1));
    QList<int> reds;
    for (const double second : {1.0, 2.0, 3.0}) {
        _context->holdTime(1000.0 + second);
        reds << draw().pixelColor(100, 100).red();
    }
    QVERIFY(qAbs(reds[1] - reds[0] - 25) <= 2);
    QVERIFY(qAbs(reds[2] - reds[1] - 25) <= 2);
    QCOMPARE(shaderProgramCount(), programs);
}

void tst_Shaders::fieldOfTheLiveNodeIsUniform()
{
    load(shaded("", fragment("uniform vec3 k;", "vec4(k, 1.0)")));
    QCOMPARE(color(), QColor(0, 0, 0));
    Field* const added = node("S")->addField("k", SFCOLOR_DT, EXPOSEDFIELDP);
    QVERIFY(added);
    added->setValueByStr(0.0, "1 0 1");
    QCOMPARE(color(), QColor(255, 0, 255));
    added->setValueByStr(0.0, "0 1 1");
    QCOMPARE(draw().pixelColor(100, 100), QColor(0, 255, 255));
}

void tst_Shaders::removedFieldCountsNoMore()
{
    load(shaded("inputOutput SFColor k 1 0 0", fragment("uniform vec3 k;", "vec4(k, 1.0)")));
    QCOMPARE(color(), QColor(255, 0, 0));
    QVERIFY(node("S")->removeField(field("S", "k")));
    QCOMPARE(color(), QColor(0, 0, 0));
}

void tst_Shaders::textureFieldsAreSamplers()
{
    load(shaded("inputOutput SFNode a DEF A PixelTexture { image 1 1 3 0xFF0000 } inputOutput MFNode b [ "
                "PixelTexture { image 1 1 3 0x00FF00 } PixelTexture { image 1 1 3 0x0000FF } ]",
                fragment("uniform sampler2D a; uniform sampler2D b[2];",
                         "vec4(texture2D(a, vec2(0.5)).r, texture2D(b[0], vec2(0.5)).g, "
                         "texture2D(b[1], gl_TexCoord[0].st).b, 1.0)")));
    QCOMPARE(color(), QColor(255, 255, 255));
    set("A", "image", "1 1 3 0x800000");
    QCOMPARE(color(), QColor(128, 255, 255));
    QCOMPARE(messages(), QString());
}

void tst_Shaders::cubeMapIsASamplerOfCubes()
{
    std::string sides;
    for (const char* side : {"back", "bottom", "front", "left", "top"})
        sides += std::string(side) + " PixelTexture { image 1 1 3 0x0000FF } ";
    load(shaded("inputOutput SFNode k ComposedCubeMapTexture { " + sides +
                    "right PixelTexture { image 1 1 3 0x00FF00 } }",
                fragment("uniform samplerCube k;", "textureCube(k, vec3(1.0, 0.0, 0.0))")));
    QCOMPARE(color(), QColor(0, 255, 0));
}

void tst_Shaders::samplersWithoutTextureAreHarmless()
{
    load(shaded("inputOutput SFNode a NULL inputOutput SFNode c PixelTexture { image 1 1 3 0xFF0000 }",
                fragment("uniform sampler2D a; uniform samplerCube b; uniform sampler3D c;",
                         "vec4(texture2D(a, vec2(0.5)).r, 1.0, textureCube(b, vec3(1.0)).r + texture3D(c, "
                         "vec3(0.5)).r, 1.0)")));
    QCOMPARE(color(), QColor(0, 255, 0));
}

void tst_Shaders::textureOfTheAppearanceIsTheFirstUnit()
{
    load(square("texture PixelTexture { image 2 1 3 0xFF0000 0x00FF00 } shaders " +
                composed("", "ShaderPart { url \"void main()\n{ gl_Position = ftransform(); gl_TexCoord[0] = "
                             "gl_MultiTexCoord0; }\" } " +
                                 fragment("uniform sampler2D t;", "texture2D(t, gl_TexCoord[0].st)"))));
    const QImage image = drawSettled();
    QVERIFY(image.pixelColor(90, 100).red() > 200);
    QVERIFY(image.pixelColor(110, 100).green() > 200);
}

void tst_Shaders::fieldThatDoesNotFitIsTold()
{
    load(shaded("inputOutput SFVec2f k 1 1 inputOutput SFFloat i 1",
                fragment("uniform vec3 k; uniform int i;", "vec4(k, float(i) + 1.0)")));
    drawSettled();
    QVERIFY(messages().contains(QStringLiteral("ComposedShader S: the field \"k\"")));
    QVERIFY(messages().contains(QStringLiteral("vec3")));
    QVERIFY(messages().contains(QStringLiteral("the field \"i\"")));
}

void tst_Shaders::editIsDrawn()
{
    load(shaded("", fragment("", "vec4(1.0)")));
    QCOMPARE(color(), QColor(255, 255, 255));
    setCode("F", "void main()\n{ gl_FragColor = vec4(1.0, 0.0, 0.0, 1.0); }");
    // In the very next picture.
    QCOMPARE(draw().pixelColor(100, 100), QColor(255, 0, 0));
    QCOMPARE(messages(), QString());
}

void tst_Shaders::brokenEditKeepsTheLastGoodProgram()
{
    load(shaded("inputOutput SFFloat k 1", fragment("uniform float k;", "vec4(k, 0.0, 0.0, 1.0)")));
    QCOMPARE(color(), QColor(255, 0, 0));
    setCode("F", "uniform float k;\nvoid main()\n{\n    gl_FragColor = nonsense;\n}");
    QCOMPARE(color(), QColor(255, 0, 0));
    QCOMPARE(get("S", "isValid"), std::string("FALSE"));
    QCOMPARE(get("S", "isSelected"), std::string("TRUE"));
    QVERIFY2(
        messages().contains(QStringLiteral("ShaderPart.url of F (FRAGMENT) in ComposedShader S: line 4")),
        qPrintable(messages()));
    // It goes on living.
    set("S", "k", "0.5");
    QCOMPARE(color(), QColor(128, 0, 0));
    setCode("F", "still wrong {");
    QCOMPARE(color(), QColor(128, 0, 0));
    setCode("F", "void main() { gl_FragColor = vec4(0.0, 1.0, 0.0, 1.0); }");
    QCOMPARE(color(), QColor(0, 255, 0));
    QCOMPARE(get("S", "isValid"), std::string("TRUE"));
}

void tst_Shaders::undoneEditNeedsNoSecondProgram()
{
    load(shaded("", fragment("", "vec4(1.0)")));
    drawSettled();
    const std::string code = static_cast<MFString&>(field("F", "url"))[0];
    setCode("F", "broken {");
    drawSettled();
    QCOMPARE(shaderProgramCount(), std::size_t(2));
    setCode("F", code);
    QCOMPARE(color(), QColor(255, 255, 255));
    QCOMPARE(get("S", "isValid"), std::string("TRUE"));
    QCOMPARE(shaderProgramCount(), std::size_t(1));
}

void tst_Shaders::partsComeAndGo()
{
    load(shaded("", fragment("", "vec4(0.0, 1.0, 0.0, 1.0)")) + "DEF Other " +
         fragment("", "vec4(1.0, 0.0, 0.0, 1.0)", "G").substr(6));
    QCOMPARE(color(), QColor(0, 255, 0));
    auto& parts = static_cast<MFNode&>(field("S", "parts"));
    QVERIFY(parts.removeNode(0.0, 0, Field::EXTERNAL_CT));
    // Blue by the material and the head light.
    QCOMPARE(color(), QColor(0, 0, 255));
    QCOMPARE(get("S", "isSelected"), std::string("FALSE"));
}

void tst_Shaders::neverGoodIsDrawnFixed()
{
    load(shaded("", fragment("", "nonsense")));
    QCOMPARE(color(), QColor(0, 0, 255));
    QCOMPARE(get("S", "isValid"), std::string("FALSE"));
    QCOMPARE(get("S", "isSelected"), std::string("FALSE"));
    setCode("F", "void main() { gl_FragColor = vec4(0.0, 1.0, 0.0, 1.0); }");
    QCOMPARE(color(), QColor(0, 255, 0));
    QCOMPARE(get("S", "isSelected"), std::string("TRUE"));
}

void tst_Shaders::linkerIsHeard()
{
    load(shaded("", fragment("vec4 missing();", "missing()")));
    QCOMPARE(color(), QColor(0, 0, 255));
    QVERIFY2(messages().contains(QStringLiteral("missing")), qPrintable(messages()));
    QVERIFY(messages().contains(QStringLiteral(": ComposedShader S: ")));
}

void tst_Shaders::messageNamesTheLine()
{
    load(shaded("", "DEF V ShaderPart { url \"void main()\n{\n\n  gl_Position = vec3(1.0);\n}\" } " +
                        fragment("", "vec4(1.0)")));
    drawSettled();
    QVERIFY2(messages().contains(QStringLiteral("scene.x3dv:3:")), qPrintable(messages()));
    QVERIFY(
        messages().contains(QStringLiteral("ShaderPart.url of V (VERTEX) in ComposedShader S: line 4: ")));
    QCOMPARE(_context->loadReport().messages[0].severity, LoadMessage::ERROR_LM);
}

void tst_Shaders::messageOfAFileNamesItsLine()
{
    write("broken.frag", "void main()\n{\n  gl_FragColor = nonsense;\n}\n");
    load(shaded("", "DEF F ShaderPart { type \"FRAGMENT\" url \"broken.frag\" }"));
    drawSettled();
    QVERIFY2(messages().contains(QStringLiteral("/broken.frag:3:")), qPrintable(messages()));
    const LoadMessage& message = _context->loadReport().messages[0];
    QCOMPARE(message.line, 3);
    QVERIFY(QString::fromStdString(message.text).startsWith(QStringLiteral("ShaderPart.url of F")));
}

void tst_Shaders::logOfADriverIsTakenApart_data()
{
    QTest::addColumn<QByteArray>("log");
    QTest::addColumn<int>("line");
    QTest::addColumn<int>("column");
    QTest::addColumn<bool>("isWarning");
    QTest::addColumn<QByteArray>("text");
    const auto row = [](const char* log, int line, int column, bool isWarning, const char* text) {
        QTest::newRow(log) << QByteArray(log) << line << column << isWarning << QByteArray(text);
    };
    row("0:12(5): error: `x' undeclared", 12, 5, false, "error: `x' undeclared");
    row("0:3(1): warning: `x' used uninitialized", 3, 1, true, "warning: `x' used uninitialized");
    row("0(7) : error C1008: undefined variable", 7, 0, false, "error C1008: undefined variable");
    row("0(7) : warning C7050: unused", 7, 0, true, "warning C7050: unused");
    row("ERROR: 0:9: 'x' : undeclared identifier", 9, 0, false, "'x' : undeclared identifier");
    row("WARNING: 0:9: 'x' : unused", 9, 0, true, "'x' : unused");
    row("error: fragment shader lacks `main'", 0, 0, false, "error: fragment shader lacks `main'");
    row("0:12(x", 12, 0, false, "(x");
    row("0:: text", 0, 0, false, "0:: text");
    row("99999999999999999999:1: text", 0, 0, false, "99999999999999999999:1: text");
    row("\n\r\n  \n0:1: one", 1, 0, false, "one");
}

void tst_Shaders::logOfADriverIsTakenApart()
{
    QFETCH(QByteArray, log);
    QFETCH(QByteArray, text);
    const std::vector<CompilerLine> lines = readCompilerLog(log.toStdString());
    QCOMPARE(lines.size(), std::size_t(1));
    QTEST(lines[0].line, "line");
    QTEST(lines[0].column, "column");
    QTEST(lines[0].isWarning, "isWarning");
    QCOMPARE(QByteArray::fromStdString(lines[0].text), text);
}

void tst_Shaders::faultIsToldOnce()
{
    load(shaded("inputOutput SFFloat k 1", fragment("uniform float k;", "nonsense")));
    drawSettled();
    const int count = messageCount();
    QVERIFY(count > 0);
    set("S", "k", "2");
    drawSettled();
    QCOMPARE(messageCount(), count);
}

void tst_Shaders::partsAreReadFromFiles()
{
    write("red.frag", "void main() { gl_FragColor = vec4(1.0, 0.0, 0.0, 1.0); }");
    write("green.frag", "void main() { gl_FragColor = vec4(0.0, 1.0, 0.0, 1.0); }");
    load(shaded("", "DEF F ShaderPart { type \"FRAGMENT\" url \"red.frag\" }"));
    QCOMPARE(color(), QColor(255, 0, 0));
    // Editors end the line.
    setCode("F", "green.frag\n");
    QCOMPARE(color(), QColor(0, 255, 0));
    setCode("F", "file:" + _folder->filePath(QStringLiteral("red.frag")).toStdString());
    QCOMPARE(color(), QColor(255, 0, 0));
    QCOMPARE(messages(), QString());
}

void tst_Shaders::activateReadsFilesAgain()
{
    write("a.frag", "void main() { gl_FragColor = vec4(1.0, 0.0, 0.0, 1.0); }");
    load(shaded("", "DEF F ShaderPart { type \"FRAGMENT\" url \"a.frag\" }"));
    QCOMPARE(color(), QColor(255, 0, 0));
    write("a.frag", "void main() { gl_FragColor = vec4(0.0, 1.0, 0.0, 1.0); }");
    set("S", "activate", "FALSE");
    QCOMPARE(color(), QColor(255, 0, 0));
    set("S", "activate", "TRUE");
    QCOMPARE(color(), QColor(0, 255, 0));
    // As editors do that have written the file.
    write("a.frag", "void main() { gl_FragColor = vec4(0.0, 0.0, 1.0, 1.0); }");
    field("F", "url").processValueChange(0.0, Field::EXTERNAL_CT);
    QCOMPARE(color(), QColor(0, 0, 255));
}

void tst_Shaders::missingFileIsTold()
{
    load(shaded("", fragment("", "vec4(0.0, 1.0, 0.0, 1.0)")));
    QCOMPARE(color(), QColor(0, 255, 0));
    setCode("F", "nowhere.frag\n");
    QCOMPARE(color(), QColor(0, 255, 0));
    QVERIFY2(messages().contains(QStringLiteral("\"nowhere.frag\"")), qPrintable(messages()));
    QCOMPARE(get("S", "isValid"), std::string("FALSE"));
    setCode("F", "");
    QCOMPARE(color(), QColor(0, 255, 0));
    static_cast<MFString&>(field("F", "url")).removeValueByIndex(0);
    QCOMPARE(color(), QColor(0, 0, 255));
}

void tst_Shaders::firstUsableAddressCounts()
{
    write("red.frag", "void main() { gl_FragColor = vec4(1.0, 0.0, 0.0, 1.0); }");
    load(shaded("",
                "DEF F ShaderPart { type \"FRAGMENT\" url [ \"nowhere.frag\" \"red.frag\" \"void main() { "
                "gl_FragColor = vec4(1.0); }\" ] }"));
    QCOMPARE(color(), QColor(255, 0, 0));
}

void tst_Shaders::dataAddressIsCode()
{
    load(shaded("", "DEF F ShaderPart { type \"FRAGMENT\" url \"data:text/plain,void main() { "
                    "gl_FragColor = vec4(1.0, 0.0, 0.0, 1.0); }\" }"));
    QCOMPARE(color(), QColor(255, 0, 0));
    setCode("F", "data:text/plain;base64,"
                 "dm9pZCBtYWluKCkgeyBnbF9GcmFnQ29sb3IgPSB2ZWM0KDAuMCwgMS4wLCAwLjAsIDEuMCk7IH0=");
    QCOMPARE(color(), QColor(0, 255, 0));
    setCode("F", "data:text/plain;base64,%%%");
    QCOMPARE(color(), QColor(0, 255, 0));
    QVERIFY(messages().contains(QStringLiteral("ShaderPart.url of F")));
}

void tst_Shaders::programShader()
{
    load(
        square("shaders DEF S ProgramShader { language \"GLSL\" programs [ DEF V ShaderProgram { type "
               "\"VERTEX\" inputOutput SFFloat shift 0 url \"uniform float shift;\nvoid main()\n{ "
               "gl_Position = gl_ModelViewProjectionMatrix * (gl_Vertex + vec4(shift, 0.0, 0.0, 0.0)); }\" } "
               "DEF P ShaderProgram { type \"FRAGMENT\" inputOutput SFColor k 1 0 0 url \"uniform vec3 "
               "k;\nvoid main()\n{ gl_FragColor = vec4(k, 1.0); }\" } ] }"));
    QCOMPARE(color(), QColor(255, 0, 0));
    set("P", "k", "0 1 0");
    set("V", "shift", "3");
    QCOMPARE(drawSettled().pixelColor(160, 100), QColor(0, 255, 0));
    QCOMPARE(draw().pixelColor(100, 100), QColor(0, 0, 0));
    setCode("P", "void main()\n{ gl_FragColor = vec4(1.0); }");
    QCOMPARE(drawSettled().pixelColor(160, 100), QColor(255, 255, 255));
    QCOMPARE(get("S", "isValid"), std::string("TRUE"));
    QCOMPARE(messages(), QString());
}

void tst_Shaders::shaderUrl_data()
{
    QTest::addColumn<QByteArray>("scene");
    const QByteArray code = "[ \"uniform vec3 k;\nvoid main()\n{ gl_FragColor = vec4(k, 1.0); }\" ]";
    QTest::newRow("field of a composed shader")
        << "DEF S ComposedShader { inputOutput SFColor k 1 0 0 inputOutput MFString shaderUrl " + code + " }";
    QTest::newRow("field of a program")
        << "ProgramShader { programs DEF S ShaderProgram { type \"FRAGMENT\" inputOutput SFColor k 1 0 0 "
           "inputOutput MFString shaderUrl " +
               code + " } }";
}

void tst_Shaders::shaderUrl()
{
    QFETCH(QByteArray, scene);
    load(square("shaders " + scene.toStdString()));
    Field* const k = node("S")->findField("k", Node::EXACT_FSO);
    Field* const url = node("S")->findField("shaderUrl", Node::EXACT_FSO);
    QVERIFY2(k && url, qPrintable(messages()));
    QVERIFY2(color() == QColor(255, 0, 0), qPrintable(messages()));
    k->setValueByStr(0.0, "0 1 0");
    QCOMPARE(color(), QColor(0, 255, 0));
    auto& texts = static_cast<MFString&>(*url);
    texts.setElem(0, "void main() { gl_FragColor = vec4(1.0); }");
    texts.processValueChange(0.0, Field::EXTERNAL_CT);
    QCOMPARE(color(), QColor(255, 255, 255));
}

void tst_Shaders::nodeOfAnOldTypeIsAShader()
{
    write("green.frag", "void main() { gl_FragColor = vec4(0.0, 1.0, 0.0, 1.0); }");
    const char code[] = "\"void main() { gl_FragColor = vec4(1.0, 0.0, 0.0, 1.0); }\"";
    for (const std::string& url : {std::string(code), "[ " + std::string(code) + " ]"}) {
        load(square("shaders DEF S FragmentShader { shaderUrl " + url + " }"));
        QVERIFY2(color() == QColor(255, 0, 0), qPrintable(messages()));
    }
    set("S", "shaderUrl", "green.frag");
    QCOMPARE(color(), QColor(0, 255, 0));
    load(square("shaders " + composed("", "DEF V VertexShader { shaderUrl \"void main() { gl_Position = "
                                          "ftransform() + vec4(4.0, 0.0, 0.0, 0.0); }\" } " +
                                              fragment("", "vec4(1.0)"))));
    QVERIFY(node("V"));
    QCOMPARE(drawSettled().pixelColor(140, 100), QColor(255, 255, 255));
    QCOMPARE(draw().pixelColor(100, 100), QColor(0, 0, 0));
}

void tst_Shaders::firstUsableShaderIsSelected()
{
    load(
        square("shaders [ DEF C ComposedShader { language \"HLSL\" parts ShaderPart { url \"float4 main() { "
               "}\" } } DEF E ComposedShader { language \"GLSL\" } " +
               composed("", fragment("", "vec4(0.0, 1.0, 0.0, 1.0)")) +
               "DEF U ComposedShader { parts ShaderPart { type \"FRAGMENT\" url \"void main() { gl_FragColor "
               "= vec4(1.0); }\" } } ]"));
    QCOMPARE(color(), QColor(0, 255, 0));
    QCOMPARE(get("C", "isSelected"), std::string("FALSE"));
    QCOMPARE(get("E", "isSelected"), std::string("FALSE"));
    QCOMPARE(get("S", "isSelected"), std::string("TRUE"));
    QCOMPARE(get("U", "isSelected"), std::string("FALSE"));
    set("S", "language", "CG");
    QCOMPARE(color(), QColor(255, 255, 255));
    QCOMPARE(get("S", "isSelected"), std::string("FALSE"));
    QCOMPARE(get("U", "isSelected"), std::string("TRUE"));
    QCOMPARE(messages(), QString());
}

void tst_Shaders::packagedShaderIsToldAndPassedOver()
{
    const std::string package =
        "PackagedShader { language \"GLSL\" url \"void main() { gl_FragColor = vec4(1.0); }\" } ";
    load(square("material Material { diffuseColor 0 0 1 } shaders [ " + package +
                composed("", fragment("", "vec4(0.0, 1.0, 0.0, 1.0)")) + "]") +
         square("shaders " + package));
    QCOMPARE(color(), QColor(0, 255, 0));
    QCOMPARE(get("S", "isSelected"), std::string("TRUE"));
    QCOMPARE(messageCount(), 1);
    QVERIFY(messages().contains(QStringLiteral("PackagedShader: nodes of this type are kept and not run")));
}

void tst_Shaders::selectionFollowsTheFirstGoodOne()
{
    load(
        square("shaders [ " + composed("", fragment("", "nonsense")) +
               "DEF U ComposedShader { parts ShaderPart { type \"FRAGMENT\" url \"void main() { gl_FragColor "
               "= vec4(1.0); }\" } } ]"));
    QCOMPARE(color(), QColor(255, 255, 255));
    QCOMPARE(get("U", "isSelected"), std::string("TRUE"));
    setCode("F", "void main() { gl_FragColor = vec4(0.0, 1.0, 0.0, 1.0); }");
    QCOMPARE(color(), QColor(0, 255, 0));
    QCOMPARE(get("S", "isSelected"), std::string("TRUE"));
    QCOMPARE(get("U", "isSelected"), std::string("FALSE"));
}

void tst_Shaders::equalShadersShareTheProgram()
{
    const std::string one = shaded("inputOutput SFFloat k 1", fragment("uniform float k;", "vec4(k)"));
    load("Group { children [ " + one + one + " ] }");
    drawSettled();
    QCOMPARE(shaderProgramCount(), std::size_t(1));
}

void tst_Shaders::valuesOfSharedProgramsStayApart()
{
    const auto place = [](const char* x, const char* name, const char* value) {
        return "Transform { translation " + std::string(x) + " 0 0 children " +
               square("shaders DEF " + std::string(name) + " ComposedShader { inputOutput SFFloat k " +
                      value + " parts " + fragment("uniform float k;", "vec4(vec3(k), 1.0)") + " }") +
               "} ";
    };
    load(place("-3", "A", "1") + place("3", "B", "0.5"));
    const QImage image = drawSettled();
    QCOMPARE(image.pixelColor(40, 100), QColor(255, 255, 255));
    QCOMPARE(image.pixelColor(160, 100).red(), 128);
    set("B", "k", "0.25");
    QCOMPARE(draw().pixelColor(160, 100).red(), 64);
    QCOMPARE(draw().pixelColor(40, 100), QColor(255, 255, 255));
}

void tst_Shaders::nextShapeIsDrawnFixed()
{
    load(shaded("", fragment("", "vec4(0.0, 1.0, 0.0, 1.0)")) + "Transform { translation 3 0 0 children " +
         square("material Material { diffuseColor 1 0 0 }") + "}");
    const QImage image = drawSettled();
    QCOMPARE(image.pixelColor(100, 100), QColor(0, 255, 0));
    QCOMPARE(image.pixelColor(160, 100), QColor(255, 0, 0));
}

void tst_Shaders::badCode_data()
{
    QTest::addColumn<QByteArray>("code");
    QTest::newRow("brace") << QByteArray("{");
    QTest::newRow("null byte") << QByteArray("void main() { \0 }", 17);
    QTest::newRow("no main") << QByteArray("float f;\n");
    QTest::newRow("odd bytes") << QByteArray("void main()\n{ \xff\xfe\x01 }");
    QTest::newRow("odd address") << QByteArray("file:///%zz?#\"<>| ");
    QTest::newRow("folder") << QByteArray("/");
    QTest::newRow("1 MB and more") << "// \n" + QByteArray(1100000, 'x');
    QTest::newRow("long line") << "void main() { /*" + QByteArray(900000, 'x') + "*/ nonsense }";
    QTest::newRow("thousand faults") << "void main()\n{\n" + QByteArray("  nonsense;\n").repeated(1000) + "}";
    QTest::newRow("unknown version") << QByteArray("#version 990\nvoid main() {}\n");
}

void tst_Shaders::badCode()
{
    QFETCH(QByteArray, code);
    load(shaded("", fragment("", "vec4(0.0, 1.0, 0.0, 1.0)")));
    drawSettled();
    setCode("F", code.toStdString());
    QCOMPARE(color(), QColor(0, 255, 0));
    QVERIFY(messageCount() > 0);
    QVERIFY(messageCount() < 20);
    for (const LoadMessage& message : _context->loadReport().messages)
        QVERIFY(message.text.size() < 2000);
    QCOMPARE(get("S", "isValid"), std::string("FALSE"));
}

void tst_Shaders::everythingMayDie()
{
    load("DEF G Group { children " +
         shaded("inputOutput SFNode t DEF T PixelTexture { image 1 1 3 0xFF0000 }",
                fragment("", "vec4(1.0)")) +
         "}");
    drawSettled();
    auto& children = static_cast<MFNode&>(field("G", "children"));
    setCode("F", "broken {");
    QVERIFY(children.removeNode(0.0, 0, Field::EXTERNAL_CT));
    QCOMPARE(color(), QColor(0, 0, 0));
    QVERIFY(!node("S"));
    QCOMPARE(shaderProgramCount(), std::size_t(0));
    load(shaded("", fragment("", "vec4(0.0, 1.0, 0.0, 1.0)")));
    QCOMPARE(color(), QColor(0, 255, 0));
    load(shaded("", fragment("", "nonsense")));
    draw();
    load("Group { }");
    QCOMPARE(color(), QColor(0, 0, 0));
}

QTEST_MAIN(tst_Shaders)
#include "tst_Shaders.moc"
