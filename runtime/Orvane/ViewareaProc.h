#pragma once

#include <OpenSG/OSGViewport.h>
#include <Orvane/NodeProc.h>
#include <string>

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
    /// What that sensor says of itself, for a tool tip; empty when it says nothing. A runtime need not know.
    virtual std::string sensorDescription() const { return {}; }

protected:
    explicit ViewareaProc(Node* viewarea);

    osg::ViewportPtr _viewport;
    bool _overSensor = false;
};

} // namespace Orvane
