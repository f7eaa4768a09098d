#pragma once

#include "core/BindableProc.h"
#include <OpenSG/OSGMatrix.h>
#include <Orvane/Export.h>

namespace Orvane {

struct SceneView;

/// Behaviour of a viewpoint: a place to look from, in the system of the group that holds it.
class ORVANE_API ViewpointProc : public BindableProc
{
public:
    explicit ViewpointProc(Node& node);

    /// From the camera's system to the world. It keeps sizes: a scale above the viewpoint moves it, but does
    /// not scale what is seen.
    osg::Matrix cameraToWorld() const;
    /// Fills what a viewport takes from the viewpoint.
    virtual void describe(SceneView& view) const;

protected:
    void setBound(bool bound, double time) override;
};

} // namespace Orvane
