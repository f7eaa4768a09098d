#pragma once

#include "core/BindableProc.h"
#include <OpenSG/OSGMatrix.h>
#include <OpenSG/OSGVector.h>
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
    void describe(SceneView& view) const;

    /// True when the user may step to the viewpoint from where the \a viewer is: all groups of viewpoints
    /// that it stands in offer it there.
    bool isOfferedTo(const osg::Pnt3f& viewer) const;
    /// True when it shows, bound anew, what the user saw there last: it or a group of viewpoints says so.
    bool retainsUserOffsets() const;
    /// The point that the user turns round, in the system of the viewpoint's group. False when the author has
    /// set none.
    virtual bool pivot(osg::Vec3f& center) const;

protected:
    /// From the camera's system to that of the viewpoint's group.
    virtual osg::Matrix place() const;
    virtual void describeLens(SceneView& view) const;
    void setBound(bool bound, double time) override;
};

} // namespace Orvane
