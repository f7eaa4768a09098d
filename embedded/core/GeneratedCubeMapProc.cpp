#include "core/AppearanceProcs.h"
#include "core/InnerPicture.h"
#include "core/LayerSeat.h"
#include "core/Part.h"
#include "core/RayTarget.h"
#include "core/ShapeProc.h"
#include "core/TextureProcs.h"
#include <OpenSG/OSGCubeView.h>
#include <OpenSG/OSGDynamicVolume.h>
#include <OpenSG/OSGImage.h>
#include <OpenSG/OSGRenderAction.h>
#include <Orvane/Context.h>
#include <Orvane/SFInt32.h>
#include <Orvane/SFString.h>
#include <algorithm>
#include <cmath>
#include <string>

namespace Orvane {

InnerPicture::~InnerPicture() = default;

namespace {

const Part sizePart("size");
const Part texturePropertiesPart("textureProperties");
const Part updatePart("update");

/// A mask of its own for each map in turn, as long as there are some; maps with the same one do not show each
/// other's shapes.
osg::UInt32 nextTarget()
{
    static unsigned int count = 0;
    return FirstMapTarget << (count++ % MapTargets);
}

/// The shape that is drawn with what \a element describes, directly or not; null when there is none.
ShapeProc* shapeOf(const ElementProc& element, int level = 0)
{
    constexpr int MostLevels = 8;
    for (const Use* use = element.uses(); use && level < MostLevels; use = use->next()) {
        auto* shape = dynamic_cast<ShapeProc*>(use->user());
        if (!shape)
            shape = shapeOf(*use->user(), level + 1);
        if (shape && shape->tree()->getParent())
            return shape;
    }
    return nullptr;
}

osg::Pnt3f middleOf(const osg::NodePtr& tree, float* radius)
{
    osg::DynamicVolume& volume = tree->getVolume(true);
    if (!volume.isValid() || volume.isEmpty())
        return osg::Pnt3f();
    osg::Pnt3f low;
    osg::Pnt3f high;
    volume.getBounds(low, high);
    osg::Pnt3f middle;
    volume.getCenter(middle);
    *radius = (high - low).length() * 0.5F;
    return middle;
}

/// Behaviour of a `GeneratedCubeMapTexture`: what is seen from the middle of its shape.
class GeneratedCubeMapProc : public PictureTextureProc, public InnerPicture
{
public:
    explicit GeneratedCubeMapProc(Node& node)
        : PictureTextureProc(node)
        , _target(nextTarget())
    {
    }

    ~GeneratedCubeMapProc() override
    {
        if (_scene)
            _scene->removeInnerPicture(*this);
    }

    void start(double time) override
    {
        PictureTextureProc::start(time);
        _scene.take(node(), [this](SceneState& former) {
            former.removeInnerPicture(*this);
            _scene->addInnerPicture(*this);
        });
        if (_scene)
            _scene->addInnerPicture(*this);
    }

    void fieldChanged(Field& field, double time) override
    {
        if (updatePart.is(field)) {
            // What is seen does not change by that alone.
            mode();
            pictureChanged();
            return;
        }
        PictureTextureProc::fieldChanged(field, time);
    }

    void describe(Surface& surface) override
    {
        fit();
        put(_image.get(), surface);
        surface.unseenBy |= _target;
    }

    void draw(const InnerPictureTools& tools) override
    {
        const std::string& wanted = mode();
        if (wanted == "NONE" || !_image.get())
            return;
        const ShapeProc* const shape = shapeOf(*this);
        if (!shape)
            return;
        osg::CubeView view;
        float radius = 0.0F;
        osg::Pnt3f sceneMiddle = middleOf(tools.scene, &radius);
        float ownRadius = 0.0F;
        shape->tree()->getToWorld().multMatrixPnt(middleOf(shape->tree(), &ownRadius), view.place);
        view.farDistance = std::max((sceneMiddle - view.place).length() + radius, 0.001F);
        if (!std::isfinite(view.farDistance))
            return;
        constexpr float DepthRatio = 5000.0F;
        view.nearDistance = view.farDistance / DepthRatio;
        view.root = tools.root;
        view.background = tools.background;
        const osg::UInt32 mask = tools.action.getTravMask();
        tools.action.setTravMask(_target);
        const bool isDrawn = view.draw(tools.window, tools.action, _image.get());
        tools.action.setTravMask(mask);
        if (!isDrawn)
            complain(nullptr,
                     "expected an OpenGL that draws beside its window, found none; the map is black");
        if (wanted == "NEXT_FRAME_ONLY")
            updatePart.edit<SFString>(node()).setValue(tools.time, "NONE", Field::EVENT_CT);
    }

private:
    const std::string& mode()
    {
        static const std::string none = "NONE";
        const std::string& mode = updatePart.read<SFString>(node()).value();
        if (mode == "ALWAYS" || mode == "NEXT_FRAME_ONLY" || mode == none)
            return mode;
        complain("update",
                 "expected NONE, NEXT_FRAME_ONLY or ALWAYS, found \"" + mode + "\"; it counts as NONE");
        return none;
    }

    /// Makes an image of the wanted size.
    void fit()
    {
        constexpr int MaxEdge = 2048;
        const int wanted = sizePart.read<SFInt32>(node()).value();
        const int edge = std::clamp(wanted, 2, MaxEdge);
        if (edge != wanted)
            complain("size",
                     "expected 2 to " + std::to_string(MaxEdge) + ", found " + std::to_string(wanted));
        if (_image.get() && _image->getWidth() == edge)
            return;
        const osg::ImagePtr image = osg::Image::create();
        _image = image->set(osg::Image::OSG_RGB_PF, edge, edge, 1, 1, 1, 0.0, nullptr,
                            osg::Image::OSG_UINT8_IMAGEDATA, true, 6)
                     ? image
                     : osg::ImagePtr();
    }

    const osg::UInt32 _target;
    LayerSeat _scene;
    osg::RefPtr<osg::ImagePtr> _image;
};

const ProcRegistration generatedCubeMap("GeneratedCubeMapTexture", makeProc<GeneratedCubeMapProc>);

} // namespace

} // namespace Orvane
