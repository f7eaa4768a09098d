#pragma once

#include <OpenSG/OSGViewport.h>
#include <Orvane/NodeProc.h>

namespace Orvane {

/// Processing object of a viewarea.
class ORVANE_API ViewareaProc : public NodeProc
{
public:
    ~ViewareaProc() override;

    /// The OpenSG viewport; null while the window has no OpenSG window.
    osg::ViewportPtr vptPtr();

    /// True while the pointer is over a sensor.
    bool overSensor() const { return _overSensor; }

protected:
    explicit ViewareaProc(Node* viewarea);

    osg::ViewportPtr _viewport;
    bool _overSensor = false;
};

} // namespace Orvane
