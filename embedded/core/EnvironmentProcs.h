#pragma once

#include "core/BindableProc.h"
#include <OpenSG/OSGFog.h>
#include <OpenSG/OSGImage.h>
#include <OpenSG/OSGRefPtr.h>
#include <OpenSG/OSGSkyBackground.h>
#include <Orvane/Export.h>

namespace Orvane {

struct SceneView;

/// Behaviour of a `NavigationInfo`.
class ORVANE_API NavigationInfoProc : public BindableProc
{
public:
    explicit NavigationInfoProc(Node& node);

    /// Fills what a viewport takes from the node.
    void describe(SceneView& view) const;
};

/// Behaviour of a background: colours, and six pictures that derived classes give.
class ORVANE_API BackgroundProc : public BindableProc
{
public:
    explicit BackgroundProc(Node& node);

    void update() override;

    /// The background as viewports draw it, the same object for the node's life. It is turned as the group
    /// that holds the node is at the moment.
    osg::BackgroundPtr background() const;

protected:
    /// The picture on a side; null for none.
    virtual osg::ImagePtr imageOf(osg::SkyBackground::Side side) = 0;

private:
    void setImage(osg::SkyBackground::Side side, const osg::ImagePtr& image);

    osg::RefPtr<osg::SkyBackgroundPtr> _sky;
};

/// Behaviour of a `Fog`.
class ORVANE_API FogProc : public BindableProc
{
public:
    explicit FogProc(Node& node);
    ~FogProc() override;

    void update() override;

    /// The fog as it stands over the scene, the same object for the node's life. Its range is in the system
    /// of the group that holds the node at the moment.
    osg::NodeCorePtr core() const;

protected:
    void setBound(bool bound, double time) override;

private:
    osg::RefPtr<osg::FogPtr> _fog;
};

} // namespace Orvane
