// Before Qt, whose headers bring another GL header.
#include <epoxy/gl.h>

#include "../tests/opensg/GLPicture.h"
#include "../tests/opensg/GeometryBuilder.h"
#include "Terrain.h"

#include <OpenSG/OSGDirectionalLight.h>
#include <OpenSG/OSGMaterialGroup.h>
#include <OpenSG/OSGPolygonChunk.h>
#include <OpenSG/OSGSimpleMaterial.h>

#include <QGuiApplication>
#include <benchmark/benchmark.h>
#include <vector>

// Frames of 800 x 600 through the render action, and the same pictures by hand from plain vertex buffers.

namespace {

using namespace osg;

const int side = 100;
const float boxHalf = 0.04F;

Color4f colorOf(int x, int y)
{
    return {0.01F * static_cast<float>(x), 0.01F * static_cast<float>(y), 0.5F, 1.F};
}

Matrix placeOf(int x, int y)
{
    Matrix matrix;
    matrix.setTranslate((static_cast<float>(x) - 49.5F) * 0.12F, (static_cast<float>(y) - 49.5F) * 0.09F, 0);
    return matrix;
}

// 10,000 shapes, each with its own transform and material, that share a geometry.
NodePtr boxScene()
{
    const NodePtr root = makeNodeFor(DirectionalLight::create());
    const GeometryPtr box = GeometryBuilder::box(boxHalf);
    const PolygonChunkPtr solid = PolygonChunk::create();
    solid->setCullFace(PolygonChunk::CULL_BACK);
    for (int i = 0; i < side * side; ++i) {
        const MaterialChunkPtr colors = MaterialChunk::create();
        colors->setDiffuse(colorOf(i % side, i / side));
        const ChunkMaterialPtr material = ChunkMaterial::create();
        material->addChunk(colors);
        material->addChunk(solid);
        const MaterialGroupPtr looks = MaterialGroup::create();
        looks->setMaterial(material);
        const NodePtr shape = makeNodeFor(looks);
        shape->addChild(makeNodeFor(box));
        const TransformPtr place = Transform::create();
        place->setMatrix(placeOf(i % side, i / side));
        const NodePtr node = makeNodeFor(place);
        node->addChild(shape);
        root->addChild(node);
    }
    return root;
}

void drawFrames(benchmark::State& state, const NodePtr& scene)
{
    GLPicture picture(800, 600);
    const RefPtr<NodePtr> root = scene;
    picture.port->setRoot(root.get());
    picture.window->draw(picture.action.get());
    glFinish();
    for (auto _ : state) {
        picture.window->draw(picture.action.get());
        glFinish();
    }
    picture.action->resetStatistics();
    picture.window->draw(picture.action.get());
    state.counters["drawn"] = static_cast<double>(picture.action->getStatistics().shapes);
    state.counters["culled"] = static_cast<double>(picture.action->getStatistics().culled);
}

void boxes(benchmark::State& state)
{
    drawFrames(state, boxScene());
}

// What the walk through the tree costs: each box is looked at and left out.
void boxesOutOfView(benchmark::State& state)
{
    const NodePtr root = boxScene();
    Matrix aside;
    aside.setTranslate(-1000, 0, 0);
    for (const NodePtr& node : root->getChildren()) {
        const TransformPtr place = TransformPtr::dcast(node->getCore());
        Matrix matrix = aside;
        matrix.mult(place->getMatrix());
        place->setMatrix(matrix);
    }
    // One box in view keeps the whole from being left out at once.
    const NodePtr seen = makeNodeFor(GeometryBuilder::box(boxHalf));
    root->addChild(seen);
    drawFrames(state, root);
}

void terrain(benchmark::State& state)
{
    const GeometryPtr geometry = makeTerrain(708);
    geometry->setMaterial(SimpleMaterial::create());
    Matrix matrix;
    matrix.setTransform(Pnt3f(-5, -5, 0), Quaternion(), Vec3f(0.014F, 0.014F, 0.014F));
    const TransformPtr place = Transform::create();
    place->setMatrix(matrix);
    const NodePtr node = makeNodeFor(place);
    node->addChild(makeNodeFor(geometry));
    const NodePtr root = makeNodeFor(DirectionalLight::create());
    root->addChild(node);
    drawFrames(state, root);
}

// The boxes from one vertex buffer: per box a matrix, a material and a call, nothing else.
void boxesByHand(benchmark::State& state)
{
    GLPicture picture(800, 600);
    picture.port->setRoot(picture.eye.get());
    picture.window->draw(picture.action.get());

    const RefPtr<GeometryPtr> box = GeometryBuilder::box(boxHalf);
    std::vector<float> vertices;
    std::vector<unsigned short> indices;
    for (UInt32 i = 0; i < 24; ++i) {
        const Pnt3f position = box->getPositions()->getValue(i);
        const Vec3f normal = box->getNormals()->getValue(i);
        vertices.insert(vertices.end(), position.getValues(), position.getValues() + 3);
        vertices.insert(vertices.end(), normal.getValues(), normal.getValues() + 3);
    }
    for (unsigned short face = 0; face < 24; face += 4) {
        for (int corner : {0, 1, 2, 0, 2, 3})
            indices.push_back(static_cast<unsigned short>(face + corner));
    }
    GLuint buffers[2];
    glGenBuffers(2, buffers);
    glBindBuffer(GL_ARRAY_BUFFER, buffers[0]);
    glBufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(vertices.size() * sizeof(float)), vertices.data(),
                 GL_STATIC_DRAW);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, buffers[1]);
    glBufferData(GL_ELEMENT_ARRAY_BUFFER, static_cast<GLsizeiptr>(indices.size() * sizeof(unsigned short)),
                 indices.data(), GL_STATIC_DRAW);

    Matrix projection;
    picture.camera->getProjection(projection, 800, 600);
    std::vector<Matrix> places;
    std::vector<Color4f> colors;
    for (int i = 0; i < side * side; ++i) {
        Matrix matrix;
        matrix.setTranslate(0, 0, -10);
        matrix.mult(placeOf(i % side, i / side));
        places.push_back(matrix);
        colors.push_back(colorOf(i % side, i / side));
    }
    const float towards[] = {0, 0, 1, 0};
    for (auto _ : state) {
        glClearColor(0, 0, 0, 1);
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        glMatrixMode(GL_PROJECTION);
        glLoadMatrixf(projection.getValues());
        glMatrixMode(GL_MODELVIEW);
        glLoadIdentity();
        glLightfv(GL_LIGHT0, GL_POSITION, towards);
        glEnable(GL_DEPTH_TEST);
        glEnable(GL_LIGHTING);
        glEnable(GL_LIGHT0);
        glEnable(GL_NORMALIZE);
        glEnable(GL_CULL_FACE);
        glBindBuffer(GL_ARRAY_BUFFER, buffers[0]);
        glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, buffers[1]);
        glEnableClientState(GL_VERTEX_ARRAY);
        glEnableClientState(GL_NORMAL_ARRAY);
        glVertexPointer(3, GL_FLOAT, 24, nullptr);
        glNormalPointer(GL_FLOAT, 24, reinterpret_cast<const void*>(12));
        for (std::size_t i = 0; i < places.size(); ++i) {
            glMaterialfv(GL_FRONT_AND_BACK, GL_DIFFUSE, colors[i].getValuesRGBA());
            glLoadMatrixf(places[i].getValues());
            glDrawElements(GL_TRIANGLES, 36, GL_UNSIGNED_SHORT, nullptr);
        }
        glFinish();
    }
    glDeleteBuffers(2, buffers);
}

BENCHMARK(boxes)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(boxesByHand)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(boxesOutOfView)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(terrain)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    QGuiApplication application(argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
