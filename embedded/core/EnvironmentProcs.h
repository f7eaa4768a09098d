#pragma once

#include "core/BindableProc.h"
#include <OpenSG/OSGRefPtr.h>
#include <OpenSG/OSGSolidBackground.h>
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

/// Behaviour of a background.
class ORVANE_API BackgroundProc : public BindableProc
{
public:
    explicit BackgroundProc(Node& node);

    void update() override;

    /// The background as viewports draw it, the same object for the node's life.
    osg::BackgroundPtr background() const { return osg::BackgroundPtr(_background.get()); }

private:
    osg::RefPtr<osg::SolidBackgroundPtr> _background;
};

/// Behaviour of a `Fog`.
class ORVANE_API FogProc : public BindableProc
{
public:
    explicit FogProc(Node& node);
};

} // namespace Orvane
