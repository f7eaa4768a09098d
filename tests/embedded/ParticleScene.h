#pragma once

#include "CoreScene.h"
#include "core/ElementProc.h"
#include <OpenSG/OSGGeometry.h>
#include <OpenSG/OSGNode.h>
#include <vector>

/// A scene with a ParticleSystem of the name P.
class ParticleScene : public CoreScene
{
public:
    using CoreScene::CoreScene;

    osg::GeometryPtr geometry() const
    {
        return osg::GeometryPtr::dcast(procOf<Orvane::ElementProc>("P").tree()->getChild(0)->getCore());
    }
    const std::vector<osg::Pnt3f>& positions() const { return geometry()->getPositions()->getField(); }
    /// Runs the clock on in steps of a tenth of a second.
    void run(int tenths) const
    {
        for (int i = 1; i <= tenths; ++i)
            runTo(i * 0.1);
    }
};
