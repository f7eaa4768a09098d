#include "core/ShapeProc.h"
#include "core/AppearanceProcs.h"
#include "core/GeometryProc.h"
#include "core/Part.h"
#include "core/RayTarget.h"
#include <OpenSG/OSGGroup.h>
#include <Orvane/MFNode.h>
#include <Orvane/SFBool.h>
#include <algorithm>

namespace Orvane {

namespace {

const Part appearancePart("appearance");
const Part attribPart("attrib");
const Part geometryPart("geometry");
const Part visiblePart("visible");

const ProcRegistration shape("Shape", makeProc<ShapeProc>);

/// Has \a node show \a geometry alone, with the state of \a surface.
void hang(const osg::NodePtr& node, const SurfaceCore& surface, const osg::GeometryPtr& geometry)
{
    node->setCore(surface.core);
    if (node->getNChildren() == 0)
        node->addChild(osg::Node::create());
    node->getChild(0)->setCore(osg::NodeCorePtr(geometry));
}

/// Images with depth fill the box of a geometry that has no coordinates for them: s to the right, t upwards,
/// r from the front to the back.
void fillBox(Surface& surface, const osg::Geometry& geometry)
{
    osg::Pnt3f least;
    osg::Pnt3f most;
    geometry.getBox().getBounds(least, most);
    const auto fill = [&](SurfaceTexture& texture) {
        if (texture.image->getDepth() < 2)
            return;
        const auto share = [&](osg::UInt32 axis) {
            const float edge = most[axis] - least[axis];
            return edge > 0.0F ? 1.0F / edge : 0.0F;
        };
        osg::Matrix box;
        box.setScale(share(0), share(1), -share(2));
        box[3].setValues(-least[0] * share(0), -least[1] * share(1), most[2] * share(2), 1.0F);
        osg::Matrix all = texture.transform.value_or(osg::Matrix());
        all.mult(box);
        texture.transform = all;
        texture.coordinates = SurfaceTexture::LOCAL_POSITION;
    };
    std::for_each(surface.textures.begin(), surface.textures.end(), fill);
    if (surface.shading) {
        for (SurfaceShading::Texture& each : surface.shading->textures)
            fill(each.texture);
    }
}

} // namespace

ShapeProc::ShapeProc(Node& node)
    : ElementProc(node)
    , _tree(osg::Node::create())
{
}

void ShapeProc::update()
{
    pictureChanged();
    _tree->setActive(visiblePart.read<SFBool>(node()).value());
    auto* const geometry = elementOf<GeometryProc>(geometryPart.readNode(node()));
    auto* const appearance = elementOf<AppearanceProc>(appearancePart.readNode(node()));
    const bool isAnother = _geometryUse.element() != geometry;
    _geometryUse.set(*this, geometry);
    _appearanceUse.set(*this, appearance);
    if (isAnother)
        changed(); // for those that look at the geometry too
    const osg::GeometryPtr core = geometry ? geometry->geometry() : osg::GeometryPtr();
    if (!core) {
        while (_tree->getNChildren() > 0)
            _tree->subChild(0);
        return;
    }

    Surface surface;
    surface.kind = geometry->kind();
    surface.solid = geometry->isSolid();
    surface.vertexColors = geometry->hasColors() ? Surface::DIFFUSE_COLORS : Surface::NO_COLORS;
    Surface overlay;
    overlay.kind = surface.kind;
    overlay.solid = surface.solid;
    if (appearance)
        appearance->describe(surface, geometry->texChannels());
    if (geometry->texChannels().empty())
        fillBox(surface, *core);
    const bool hasOverlay = appearance && appearance->describeOverlay(overlay);
    const auto takesCoordinates = [](const SurfaceTexture& texture) {
        return texture.coordinates == SurfaceTexture::GIVEN;
    };
    const bool isShaded =
        surface.shading && std::any_of(surface.shading->textures.begin(), surface.shading->textures.end(),
                                       [&](const auto& entry) { return takesCoordinates(entry.texture); });
    if (surface.program || isShaded ||
        std::any_of(surface.textures.begin(), surface.textures.end(), takesCoordinates))
        geometry->needTexCoords();
    const Node& shown = geometry->node();
    if (surface.program && !geometry->hasShaderValues() && attribPart.isIn(shown) &&
        attribPart.read<MFNode>(shown).size() > 0)
        complain("geometry", "the values of \"attrib\" do not reach shaders");
    if (surface.unseenBy != 0 && _tree->getTravMask() != 0)
        _tree->setTravMask(AllTargets & ~surface.unseenBy);
    show(surface, hasOverlay ? &overlay : nullptr, core);
}

void ShapeProc::show(const Surface& surface, const Surface* overlay, const osg::GeometryPtr& geometry)
{
    _surface = surfaceCore(surface);
    _overlay = overlay ? surfaceCore(*overlay) : nullptr;
    const bool isLayered = _tree->getNChildren() > 1;
    if (isLayered != static_cast<bool>(_overlay)) {
        while (_tree->getNChildren() > 0)
            _tree->subChild(0);
    }
    if (!_overlay) {
        hang(_tree.get(), *_surface, geometry);
        return;
    }
    if (_tree->getNChildren() == 0) {
        _tree->setCore(osg::NodeCorePtr(osg::Group::create()));
        _tree->addChild(osg::Node::create());
        _tree->addChild(osg::Node::create());
    }
    hang(_tree->getChild(0), *_surface, geometry);
    hang(_tree->getChild(1), *_overlay, geometry);
}

} // namespace Orvane
