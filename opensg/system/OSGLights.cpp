#include <OpenSG/OSGBaseFunctions.h>
#include <OpenSG/OSGDirectionalLight.h>
#include <OpenSG/OSGEnvironmentLight.h>
#include <OpenSG/OSGPointLight.h>
#include <OpenSG/OSGProjectorLight.h>
#include <OpenSG/OSGRenderAction.h>
#include <OpenSG/OSGSpotLight.h>

#include "OSGContainerType.h"
#include "OSGSceneStamp.h"

#include <epoxy/gl.h>

namespace osg {

OSG_CONTAINER_TYPE(Light, NodeCore)
OSG_CREATABLE_CONTAINER_TYPE(DirectionalLight, Light)
OSG_CREATABLE_CONTAINER_TYPE(PointLight, Light)
OSG_CREATABLE_CONTAINER_TYPE(SpotLight, PointLight)
OSG_CREATABLE_CONTAINER_TYPE(ProjectorLight, PointLight)
OSG_CREATABLE_CONTAINER_TYPE(EnvironmentLight, Light)

namespace {

// Stands for lights without a bound: shading languages know no infinite numbers.
const Real32 mostRange = 1e30f;

} // namespace

void Light::setOn(bool on)
{
    if (on != _on)
        SceneStamp::renew();
    _on = on;
}

void Light::renderEnter(RenderAction& action)
{
    action.pushLight(*this);
}

void Light::renderLeave(RenderAction& action)
{
    action.popLight();
}

Vec4f Light::getShape(Real32) const
{
    return Vec4f(1, 0, 0, 0);
}

void Light::activate(UInt32 index, const Matrix&) const
{
    const GLenum light = GL_LIGHT0 + index;
    glLightfv(light, GL_AMBIENT, _ambient.getValuesRGBA());
    glLightfv(light, GL_DIFFUSE, _diffuse.getValuesRGBA());
    glLightfv(light, GL_SPECULAR, _specular.getValuesRGBA());
    Real32 factors[3];
    for (UInt32 i = 0; i < 3; ++i)
        factors[i] = osgMax(0.f, _attenuation[i]);
    // A light that is divided by nothing would be without bounds.
    const bool none = factors[0] == 0 && factors[1] == 0 && factors[2] == 0;
    glLightf(light, GL_CONSTANT_ATTENUATION, none ? 1 : factors[0]);
    glLightf(light, GL_LINEAR_ATTENUATION, factors[1]);
    glLightf(light, GL_QUADRATIC_ATTENUATION, factors[2]);
    glLightf(light, GL_SPOT_EXPONENT, 0);
    glLightf(light, GL_SPOT_CUTOFF, 180);
}

void DirectionalLight::activate(UInt32 index, const Matrix& toEye) const
{
    Light::activate(index, toEye);
    Vec3f direction;
    toEye.multMatrixVec(_direction, direction);
    const Real32 position[] = {direction[0], direction[1], direction[2], 0};
    glLightfv(GL_LIGHT0 + index, GL_POSITION, position);
}

void PointLight::setRange(Real32 range)
{
    if (range != _range)
        SceneStamp::renew();
    _range = range;
}

Vec4f PointLight::getShape(Real32 range) const
{
    return Vec4f(2, osgMin(range, mostRange), 0, 0);
}

void PointLight::activate(UInt32 index, const Matrix& toEye) const
{
    Light::activate(index, toEye);
    Pnt3f source;
    toEye.multMatrixPnt(_position, source);
    const Real32 position[] = {source[0], source[1], source[2], 1};
    glLightfv(GL_LIGHT0 + index, GL_POSITION, position);
}

Vec4f SpotLight::getShape(Real32 range) const
{
    const Real32 reach = osgMin(range, mostRange);
    const Real32 edge = osgClamp(0.f, _cutOff, Pi);
    if (_beamWidth < 0)
        return Vec4f(3, reach, 0, edge <= Pi / 2 ? edge : Pi);
    return Vec4f(4, reach, osgMin(_beamWidth, edge), edge);
}

void SpotLight::activate(UInt32 index, const Matrix& toEye) const
{
    PointLight::activate(index, toEye);
    const GLenum light = GL_LIGHT0 + index;
    Vec3f direction;
    toEye.multMatrixVec(_direction, direction);
    glLightfv(light, GL_SPOT_DIRECTION, direction.getValues());
    glLightf(light, GL_SPOT_EXPONENT, osgClamp(0.f, _exponent, 128.f));
    const Real32 degrees = osgRad2Degree(osgMax(_cutOff, 0.f));
    glLightf(light, GL_SPOT_CUTOFF, degrees <= 90 ? degrees : 180);
}

Vec4f ProjectorLight::getShape(Real32) const
{
    return Vec4f(5, 0, 0, 0);
}

Vec4f EnvironmentLight::getShape(Real32) const
{
    return Vec4f(6, 0, 0, 0);
}

void ProjectorLight::activate(UInt32 index, const Matrix& toEye) const
{
    PointLight::activate(index, toEye);
    if (_direction.length() == 0)
        return;
    Vec3f direction;
    toEye.multMatrixVec(_direction, direction);
    const Real32 position[] = {direction[0], direction[1], direction[2], 0};
    glLightfv(GL_LIGHT0 + index, GL_POSITION, position);
}

} // namespace osg
