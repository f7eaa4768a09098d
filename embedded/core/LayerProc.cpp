#include "core/LayerProc.h"
#include "core/LayerWatcher.h"
#include "core/ViewportProc.h"
#include <OpenSG/OSGGroup.h>
#include <Orvane/MFString.h>
#include <Orvane/SFBool.h>

namespace Orvane {

namespace {

const Part objectTypePart("objectType");
const Part pickablePart("pickable");
const Part visiblePart("visible");

const ProcRegistration registration("Layer", makeProc<LayerProc>);

} // namespace

LayerProc::LayerProc(Node& node)
    : LayerProc(node, osg::Group::create())
{
}

LayerProc::LayerProc(Node& node, const osg::NodeCorePtr& core)
    : SceneLayer(node, core)
{
    ++LayerWatcher::layerCount();
}

LayerProc::~LayerProc()
{
    --LayerWatcher::layerCount();
}

bool LayerProc::isVisible() const
{
    return visiblePart.read<SFBool>(node()).value();
}

bool LayerProc::isPickable() const
{
    if (!pickablePart.read<SFBool>(node()).value())
        return false;
    const MFString& types = objectTypePart.read<MFString>(node());
    for (unsigned int i = 0; i < types.size(); ++i) {
        if (types[static_cast<int>(i)] == "NONE")
            return false;
    }
    return true;
}

SurfacePart LayerProc::surface() const
{
    return ViewportProc::partOf(node());
}

} // namespace Orvane
