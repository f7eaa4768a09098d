#pragma once

#include <OpenSG/OSGMatrix.h>
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
    /// Where the user looks from: leads from the camera to the world, with the sizes of the world. False when
    /// nobody looks. A runtime need not know it.
    virtual bool userPlace(osg::Matrix& /*cameraToWorld*/) const { return false; }
    /// Puts the user there, as if by navigation. False when that is not possible.
    virtual bool moveUser(const osg::Matrix& /*cameraToWorld*/) { return false; }

protected:
    explicit ViewareaProc(Node* viewarea);

    osg::ViewportPtr _viewport;
    bool _overSensor = false;
};

} // namespace Orvane
