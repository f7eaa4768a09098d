#include "core/VolumeProc.h"
#include "base/ValueFields.h"
#include "core/GeometryProc.h"
#include "core/PrimitiveMesh.h"
#include "core/SharedTable.h"
#include "core/UsableValues.h"
#include <OpenSG/OSGChunkMaterial.h>
#include <OpenSG/OSGLog.h>
#include <OpenSG/OSGMaterialChunk.h>
#include <OpenSG/OSGPolygonChunk.h>
#include <Orvane/MFNode.h>
#include <Orvane/SFBool.h>
#include <functional>

namespace Orvane {

namespace {

const Part dimensionsPart("dimensions");
const Part renderStylePart("renderStyle");
const Part visiblePart("visible");
const Part voxelsPart("voxels");

/// Logs why volumes are not drawn, for the first program that fails.
void tellFault(const osg::SHLProgramPtr& program)
{
    static bool isTold = false;
    if (isTold || program->getStatus() != osg::SHLProgram::FAULTY)
        return;
    isTold = true;
    SWARNING << "expected an OpenGL that draws volumes by a program, found one that does not; volumes are "
                "not drawn"
             << std::endl;
    for (const osg::SHLProgram::Message& message : program->getMessages())
        SWARNING << message.text << std::endl;
}

/// The program for a fragment's text, the same as long as somebody holds it.
std::shared_ptr<VolumeProc::ProgramRef> programOf(const std::vector<osg::SHLProgram::Source>& sources)
{
    static SharedTable<std::string, VolumeProc::ProgramRef> programs;
    return programs.get(sources.back().text, [&sources] {
        auto made = std::make_unique<VolumeProc::ProgramRef>(osg::SHLProgram::create());
        (*made)->setSources(sources);
        // The program is never destroyed before its listener.
        (*made)->setListener([program = made->get().getCPtr()] { tellFault(osg::SHLProgramPtr(program)); });
        return made;
    });
}

/// What a volume is drawn with: the back faces of its box, which without a program are not seen.
osg::ChunkMaterialPtr boxMaterial(const osg::SHLChunkPtr& program)
{
    const osg::ChunkMaterialPtr material = osg::ChunkMaterial::create();
    const osg::MaterialChunkPtr colors = osg::MaterialChunk::create();
    colors->setLit(false);
    colors->setDiffuse(osg::Color4f(0.0F, 0.0F, 0.0F, 0.0F));
    material->addChunk(colors);
    const osg::PolygonChunkPtr faces = osg::PolygonChunk::create();
    faces->setCullFace(osg::PolygonChunk::CULL_FRONT);
    material->addChunk(faces);
    material->addChunk(program);
    material->setTransparencyMode(osg::ChunkMaterial::TransparencyForceTransparent);
    return material;
}

bool isBox(const osg::Vec3f& size)
{
    return isUsable(size) && size[0] > 0.0F && size[1] > 0.0F && size[2] > 0.0F;
}

} // namespace

VolumeProc::VolumeProc(Node& node)
    : ElementProc(node)
    , _tree(osg::Node::create())
    , _box(makeGeometry())
    , _look(osg::MaterialGroup::create())
    , _chunk(osg::SHLChunk::create())
{
    _look->setMaterial(boxMaterial(_chunk.get()));
}

void VolumeProc::update()
{
    pictureChanged();
    _tree->setActive(visiblePart.read<SFBool>(node()).value());
    const osg::Vec3f& size = dimensionsPart.read<SFVec3f>(node()).value();
    const std::optional<SurfaceTexture> voxels = useSpace(_voxels, voxelsPart, "voxels");
    if (!isBox(size))
        complain("dimensions", "expected three sizes above 0, found others; the volume is not drawn");
    if (!voxels || !isBox(size)) {
        hide();
        return;
    }
    VolumeText text(size);
    text.addVoxels(*voxels);
    describe(text);
    show(size, text);
}

void VolumeProc::hide()
{
    while (_tree->getNChildren() > 0)
        _tree->subChild(0);
}

void VolumeProc::show(const osg::Vec3f& size, const VolumeText& text)
{
    _program = programOf(text.sources());
    _chunk->setProgram(_program->get());
    _chunk->setValues(text.values());
    _parts = text.parts();
    setMesh(_box.get(), boxMesh(size), Surface::FACES);
    if (_tree->getNChildren() == 0) {
        _tree->setCore(osg::NodeCorePtr(osg::MaterialGroupPtr(_look.get())));
        _tree->addChild(osg::makeNodeFor(osg::NodeCorePtr(osg::GeometryPtr(_box.get()))));
    }
}

VolumeStyleProc* VolumeProc::useStyle(Use& use, Node* styleNode)
{
    auto* const style = elementOf<VolumeStyleProc>(styleNode);
    use.set(*this, style);
    return style;
}

std::vector<VolumeStyleProc*> VolumeProc::useStyles(std::vector<Use>& uses)
{
    const auto& styles = renderStylePart.read<MFNode>(node());
    std::vector<Use> wanted(styles.size());
    std::vector<VolumeStyleProc*> result;
    for (unsigned int i = 0; i < styles.size(); ++i) {
        result.push_back(useStyle(wanted[i], styles.elem(static_cast<int>(i)).directNode()));
        if (result.back() && result.back()->isProjection()) {
            complain("renderStyle", "expected styles for parts of a volume, found a ProjectionVolumeStyle, "
                                    "which shows whole ones; it is not used");
            result.back() = nullptr;
        }
    }
    uses = std::move(wanted);
    return result;
}

std::optional<SurfaceTexture> VolumeProc::useSpace(Use& use, const Part& part, const char* name)
{
    bool isFlat = false;
    std::optional<SurfaceTexture> texture = spaceTexture(*this, use, part, isFlat);
    if (isFlat)
        complain(name, "expected an image with depth, found a flat one, which is not drawn");
    return texture;
}

} // namespace Orvane
