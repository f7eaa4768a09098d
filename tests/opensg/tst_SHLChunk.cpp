#include "GLPicture.h"
#include "GeometryBuilder.h"

#include <OpenSG/OSGChunkMaterial.h>
#include <OpenSG/OSGImage.h>
#include <OpenSG/OSGMaterialChunk.h>
#include <OpenSG/OSGSHLChunk.h>

#include <QOpenGLFunctions>
#include <QtTest>

using namespace osg;

/// A square that a program draws, from -1 to 1.
class tst_SHLChunk : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void withoutAProgramDrawingIsFixed();
    void programDraws();
    void faultyProgramLeavesDrawingFixed();
    void compilerAndLinkerAreHeard();
    void lastGoodProgramStays();
    void nullDropsTheLastGoodProgram();
    void programIsBuiltOnceInEachWindow();
    void otherSourcesAreBuilt();
    void valuesReachThePicture();
    void valuesOfChunksOfOneProgramStayApart();
    void listsAreFilledUp();
    void texturesReachThePicture();
    void texturesThatNoUnitIsLeftForAreHarmless();
    void valuesFit_data();
    void valuesFit();
    void uniformsAreTold();
    void chunkMayGoBeforeItsProgram();

private:
    static SHLProgramPtr program(const char* color, const char* declarations = "");
    static NodePtr square(const SHLChunkPtr& chunk);
    QColor color();
    static TextureChunkPtr texture(UInt8 red, UInt8 green, UInt8 blue);

    std::unique_ptr<GLPicture> _picture;
    RefPtr<SHLChunkPtr> _chunk;
    RefPtr<NodePtr> _root;
};

void tst_SHLChunk::initTestCase()
{
    _picture = std::make_unique<GLPicture>();
    QVERIFY(_picture->context.isValid());
}

void tst_SHLChunk::init()
{
    _chunk = SHLChunk::create();
    _root = square(_chunk.get());
}

void tst_SHLChunk::cleanup()
{
    _picture->context.makeCurrent();
    QCOMPARE(QOpenGLContext::currentContext()->functions()->glGetError(), GLenum(GL_NO_ERROR));
    _root = NullFC;
    _chunk = NullFC;
}

/// A program of a fragment stage alone.
SHLProgramPtr tst_SHLChunk::program(const char* color, const char* declarations)
{
    const SHLProgramPtr result = SHLProgram::create();
    result->setSources({{SHLProgram::FRAGMENT,
                         std::string(declarations) + "\nvoid main() { gl_FragColor = " + color + "; }\n"}});
    return result;
}

/// Blue where it is drawn by the fixed steps.
NodePtr tst_SHLChunk::square(const SHLChunkPtr& chunk)
{
    const MaterialChunkPtr colors = MaterialChunk::create();
    colors->setLit(false);
    colors->setDiffuse(Color4f(0, 0, 1, 1));
    const ChunkMaterialPtr material = ChunkMaterial::create();
    material->addChunk(colors);
    material->addChunk(chunk);
    const GeometryPtr geometry = GeometryBuilder::square();
    geometry->setMaterial(material);
    return makeNodeFor(NodeCorePtr(geometry));
}

QColor tst_SHLChunk::color()
{
    return _picture->draw(_root.get()).pixelColor(100, 100);
}

TextureChunkPtr tst_SHLChunk::texture(UInt8 red, UInt8 green, UInt8 blue)
{
    const UInt8 pixel[] = {red, green, blue};
    const ImagePtr image = Image::create();
    image->set(Image::OSG_RGB_PF, 1, 1, 1, 1, 1, 0, pixel);
    const TextureChunkPtr chunk = TextureChunk::create();
    chunk->setImage(image);
    return chunk;
}

void tst_SHLChunk::withoutAProgramDrawingIsFixed()
{
    QCOMPARE(color(), QColor(0, 0, 255));
}

void tst_SHLChunk::programDraws()
{
    const RefPtr<SHLProgramPtr> green = program("vec4(0.0, 1.0, 0.0, 1.0)");
    QCOMPARE(green->getStatus(), SHLProgram::UNTRIED);
    _chunk->setProgram(green.get());
    QCOMPARE(color(), QColor(0, 255, 0));
    QCOMPARE(green->getStatus(), SHLProgram::GOOD);
    QVERIFY(green->getMessages().empty());
}

void tst_SHLChunk::faultyProgramLeavesDrawingFixed()
{
    _chunk->setProgram(program("nonsense"));
    QCOMPARE(color(), QColor(0, 0, 255));
    QCOMPARE(_chunk->getProgram()->getStatus(), SHLProgram::FAULTY);
    _chunk->setProgram(SHLProgram::create());
    QCOMPARE(color(), QColor(0, 0, 255));
    QVERIFY(!_chunk->getLastGood());
}

void tst_SHLChunk::compilerAndLinkerAreHeard()
{
    const RefPtr<SHLProgramPtr> faulty = SHLProgram::create();
    faulty->setSources({{SHLProgram::VERTEX, "void main() { gl_Position = ftransform(); }"},
                        {SHLProgram::FRAGMENT, "void main() { gl_FragColor = nonsense; }"}});
    _chunk->setProgram(faulty.get());
    color();
    QCOMPARE(faulty->getMessages().size(), std::size_t(1));
    QCOMPARE(faulty->getMessages()[0].source, 1U);
    QVERIFY(faulty->getMessages()[0].text.find("nonsense") != std::string::npos);
    const RefPtr<SHLProgramPtr> loose = program("missing()", "vec4 missing();");
    _chunk->setProgram(loose.get());
    color();
    QCOMPARE(loose->getMessages().back().source, SHLProgram::Message::LINKER);
}

void tst_SHLChunk::lastGoodProgramStays()
{
    _chunk->setProgram(program("vec4(0.0, 1.0, 0.0, 1.0)"));
    QCOMPARE(color(), QColor(0, 255, 0));
    for (int i = 0; i < 2; ++i) {
        _chunk->setProgram(program("nonsense"));
        QCOMPARE(color(), QColor(0, 255, 0));
    }
    _chunk->setProgram(program("vec4(1.0, 0.0, 0.0, 1.0)"));
    QCOMPARE(color(), QColor(255, 0, 0));
}

void tst_SHLChunk::nullDropsTheLastGoodProgram()
{
    _chunk->setProgram(program("vec4(0.0, 1.0, 0.0, 1.0)"));
    color();
    _chunk->setProgram(program("nonsense"));
    color();
    _chunk->setProgram(NullFC);
    QVERIFY(!_chunk->getLastGood());
    QCOMPARE(color(), QColor(0, 0, 255));
    _chunk->setProgram(program("nonsense"));
    QCOMPARE(color(), QColor(0, 0, 255));
}

void tst_SHLChunk::programIsBuiltOnceInEachWindow()
{
    const RefPtr<SHLProgramPtr> shared = program("vec4(k)", "uniform float k;");
    int tries = 0;
    shared->setListener([&tries] { ++tries; });
    _chunk->setProgram(shared.get());
    for (int i = 0; i < 5; ++i) {
        _chunk->setValue("k", {1, {float(i)}, {}, {}});
        color();
    }
    QCOMPARE(tries, 1);
    {
        GLPicture other;
        QCOMPARE(other.draw(_root.get()).pixelColor(100, 100), QColor(255, 255, 255));
    }
    QCOMPARE(tries, 2);
    color();
    QCOMPARE(tries, 2);
}

void tst_SHLChunk::otherSourcesAreBuilt()
{
    const RefPtr<SHLProgramPtr> one = program("vec4(0.0, 1.0, 0.0, 1.0)");
    _chunk->setProgram(one.get());
    color();
    one->setSources({{SHLProgram::FRAGMENT, "void main() { gl_FragColor = vec4(1.0); }"}});
    QCOMPARE(one->getStatus(), SHLProgram::UNTRIED);
    QCOMPARE(color(), QColor(255, 255, 255));
}

void tst_SHLChunk::valuesReachThePicture()
{
    _chunk->setProgram(program("vec4(k, float(i) / 4.0, 1.0)", "uniform vec2 k; uniform int i;"));
    QCOMPARE(color(), QColor(0, 0, 0, 255));
    _chunk->setValue("k", {2, {1, 0}, {}, {}});
    _chunk->setValue("i", {1, {}, {4}, {}});
    _chunk->setValue("nobody", {1, {1}, {}, {}});
    QCOMPARE(color(), QColor(255, 0, 255));
    _chunk->setValues({{"k", {2, {0, 1}, {}, {}}}});
    // What is set no more stays as it was.
    QCOMPARE(color(), QColor(0, 255, 255));
}

void tst_SHLChunk::valuesOfChunksOfOneProgramStayApart()
{
    const RefPtr<SHLProgramPtr> shared = program("vec4(k, 1.0)", "uniform vec3 k;");
    const SHLChunkPtr second = SHLChunk::create();
    _chunk->setProgram(shared.get());
    second->setProgram(shared.get());
    _chunk->setValue("k", {3, {1, 0, 0}, {}, {}});
    second->setValue("k", {3, {0, 1, 0}, {}, {}});
    const TransformPtr move = Transform::create();
    Matrix matrix;
    matrix.setTranslate(3, 0, 0);
    move->setMatrix(matrix);
    const NodePtr moved = makeNodeFor(NodeCorePtr(move));
    moved->addChild(square(second));
    _root->addChild(moved);
    for (int i = 0; i < 2; ++i) {
        const QImage image = _picture->draw(_root.get());
        QCOMPARE(image.pixelColor(100, 100), QColor(255, 0, 0));
        QCOMPARE(image.pixelColor(160, 100), QColor(0, 255, 0));
    }
}

void tst_SHLChunk::listsAreFilledUp()
{
    _chunk->setProgram(program("vec4(k[0], k[1], k[2], 1.0)", "uniform float k[3];"));
    _chunk->setValue("k", {1, {1, 1, 1, 1, 1}, {}, {}});
    QCOMPARE(color(), QColor(255, 255, 255));
    _chunk->setValue("k", {1, {1}, {}, {}});
    QCOMPARE(color(), QColor(255, 0, 0));
}

void tst_SHLChunk::texturesReachThePicture()
{
    _chunk->setProgram(program("vec4(texture2D(a, vec2(0.5)).r, texture2D(b[0], vec2(0.5)).g, "
                               "texture2D(b[1], vec2(0.5)).b, 1.0)",
                               "uniform sampler2D a; uniform sampler2D b[2];"));
    _chunk->setValue("a", {1, {}, {}, {texture(255, 0, 0)}});
    _chunk->setValue("b", {1, {}, {}, {texture(0, 255, 0), texture(0, 0, 255)}});
    QCOMPARE(color(), QColor(255, 255, 255));
    _chunk->setValue("b", {1, {}, {}, {texture(0, 255, 0)}});
    QCOMPARE(color(), QColor(255, 255, 0));
}

void tst_SHLChunk::texturesThatNoUnitIsLeftForAreHarmless()
{
    SHLChunk::Value many;
    for (int i = 0; i < 64; ++i)
        many.textures.emplace_back(texture(255, 255, 255));
    // Fixed drawing keeps some of the units.
    GLint units = 0;
    QOpenGLContext::currentContext()->functions()->glGetIntegerv(GL_MAX_TEXTURE_IMAGE_UNITS, &units);
    std::string sum = "0.0";
    for (int i = 0; i < units; ++i)
        sum += " + texture2D(k[" + std::to_string(i) + "], vec2(0.5)).r";
    const std::string declarations = "uniform sampler2D k[" + std::to_string(units) + "];";
    _chunk->setProgram(
        program(("vec4((" + sum + ") / " + std::to_string(units) + ".0, 0.0, 0.0, 1.0)").c_str(),
                declarations.c_str()));
    _chunk->setValue("k", many);
    const int red = color().red();
    QCOMPARE(_chunk->getProgram()->getStatus(), SHLProgram::GOOD);
    QVERIFY(red > 0 && red < 255);
}

void tst_SHLChunk::valuesFit_data()
{
    QTest::addColumn<uint>("type");
    QTest::addColumn<int>("components");
    QTest::addColumn<bool>("reals");
    QTest::addColumn<bool>("integers");
    QTest::newRow("float") << uint(GL_FLOAT) << 1 << true << true;
    QTest::newRow("vec3") << uint(GL_FLOAT_VEC3) << 3 << true << true;
    QTest::newRow("int") << uint(GL_INT) << 1 << false << true;
    QTest::newRow("bvec4") << uint(GL_BOOL_VEC4) << 4 << false << true;
    QTest::newRow("mat3") << uint(GL_FLOAT_MAT3) << 9 << true << true;
    QTest::newRow("mat4") << uint(GL_FLOAT_MAT4) << 16 << true << true;
    QTest::newRow("sampler") << uint(GL_SAMPLER_2D) << 1 << false << false;
    QTest::newRow("unknown") << uint(GL_DOUBLE) << 1 << false << false;
}

void tst_SHLChunk::valuesFit()
{
    QFETCH(uint, type);
    QFETCH(int, components);
    QFETCH(bool, reals);
    QFETCH(bool, integers);
    const SHLProgram::Uniform uniform{"k", type, 1};
    const std::size_t count = static_cast<std::size_t>(components);
    SHLChunk::Value value;
    value.components = static_cast<UInt32>(components);
    value.reals.resize(count);
    QCOMPARE(value.fits(uniform), reals);
    value.reals.clear();
    value.integers.resize(count);
    QCOMPARE(value.fits(uniform), integers);
    value.components = static_cast<UInt32>(components + 1);
    QVERIFY(!value.fits(uniform));
    SHLChunk::Value shown;
    shown.textures.emplace_back(texture(0, 0, 0));
    QCOMPARE(shown.fits(uniform), uniform.isSampler());
}

void tst_SHLChunk::uniformsAreTold()
{
    _chunk->setProgram(program("vec4(k[1], j ? 1.0 : 0.0) * texture2D(t, gl_TexCoord[0].st)",
                               "uniform vec3 k[2]; uniform bool j; uniform sampler2D t; uniform float off;"));
    color();
    std::map<std::string, SHLProgram::Uniform> found;
    for (const SHLProgram::Uniform& uniform : _chunk->getProgram()->getUniforms())
        found[uniform.name] = uniform;
    QCOMPARE(found.size(), std::size_t(3));
    QCOMPARE(found["k"].size, 2U);
    QCOMPARE(found["k"].typeName(), "vec3");
    QVERIFY(found["j"].isInteger() && found["t"].isSampler());
}

void tst_SHLChunk::chunkMayGoBeforeItsProgram()
{
    const RefPtr<SHLProgramPtr> kept = program("vec4(k)", "uniform float k;");
    _chunk->setProgram(kept.get());
    _chunk->setValue("k", {1, {1}, {}, {}});
    QCOMPARE(color(), QColor(255, 255, 255));
    _chunk = SHLChunk::create();
    _root = square(_chunk.get());
    _chunk->setProgram(kept.get());
    _chunk->setValue("k", {1, {1}, {}, {}});
    QCOMPARE(color(), QColor(255, 255, 255));
}

QTEST_MAIN(tst_SHLChunk)
#include "tst_SHLChunk.moc"
