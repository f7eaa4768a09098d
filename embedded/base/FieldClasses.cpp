// The field classes that only give a template its name.
#include <Orvane/MFBool.h>
#include <Orvane/MFColor.h>
#include <Orvane/MFColorRGBA.h>
#include <Orvane/MFDouble.h>
#include <Orvane/MFFloat.h>
#include <Orvane/MFInt32.h>
#include <Orvane/MFRotation.h>
#include <Orvane/MFString.h>
#include <Orvane/MFVec2d.h>
#include <Orvane/MFVec2f.h>
#include <Orvane/MFVec3d.h>
#include <Orvane/MFVec3f.h>
#include <Orvane/MFVec4d.h>
#include <Orvane/MFVec4f.h>
#include <Orvane/SFBool.h>
#include <Orvane/SFFloat.h>
#include <Orvane/SFInt32.h>

namespace Orvane {

SFBool::SFBool(Node* node, NodePartDesc* desc)
    : XField<bool, 0>(node, desc)
{
}

SFBool::~SFBool() = default;

NodePartDataType SFBool::dataType() const
{
    return SFBOOL_DT;
}

SFInt32::SFInt32(Node* node, NodePartDesc* desc)
    : XField<int, 0>(node, desc)
{
}

SFInt32::~SFInt32() = default;

NodePartDataType SFInt32::dataType() const
{
    return SFINT32_DT;
}

SFFloat::SFFloat(Node* node, NodePartDesc* desc)
    : XField<float, 0>(node, desc)
{
}

SFFloat::~SFFloat() = default;

NodePartDataType SFFloat::dataType() const
{
    return SFFLOAT_DT;
}

MFBool::MFBool(Node* node, NodePartDesc* desc)
    : MLField<bool, 0>(node, desc)
{
}

MFBool::~MFBool() = default;

NodePartDataType MFBool::dataType() const
{
    return MFBOOL_DT;
}

MFString::MFString(Node* node, NodePartDesc* desc)
    : MLField<std::string, 0>(node, desc)
{
}

MFString::~MFString() = default;

NodePartDataType MFString::dataType() const
{
    return MFSTRING_DT;
}

MFInt32::MFInt32(Node* node, NodePartDesc* desc)
    : MVField<int, 0>(node, desc)
{
}

MFInt32::~MFInt32() = default;

NodePartDataType MFInt32::dataType() const
{
    return MFINT32_DT;
}

MFFloat::MFFloat(Node* node, NodePartDesc* desc)
    : MVField<float, 0>(node, desc)
{
}

MFFloat::~MFFloat() = default;

NodePartDataType MFFloat::dataType() const
{
    return MFFLOAT_DT;
}

MFDouble::MFDouble(Node* node, NodePartDesc* desc)
    : MVField<double, 0>(node, desc)
{
}

MFDouble::~MFDouble() = default;

NodePartDataType MFDouble::dataType() const
{
    return MFDOUBLE_DT;
}

MFColor::MFColor(Node* node, NodePartDesc* desc)
    : MVField<osg::Color3f, 0>(node, desc)
{
}

MFColor::~MFColor() = default;

NodePartDataType MFColor::dataType() const
{
    return MFCOLOR_DT;
}

MFColorRGBA::MFColorRGBA(Node* node, NodePartDesc* desc)
    : MVField<osg::Color4f, 0>(node, desc)
{
}

MFColorRGBA::~MFColorRGBA() = default;

NodePartDataType MFColorRGBA::dataType() const
{
    return MFCOLORRGBA_DT;
}

MFRotation::MFRotation(Node* node, NodePartDesc* desc)
    : MVField<Rotation, 0>(node, desc)
{
}

MFRotation::~MFRotation() = default;

NodePartDataType MFRotation::dataType() const
{
    return MFROTATION_DT;
}

MFVec2f::MFVec2f(Node* node, NodePartDesc* desc)
    : MVField<osg::Vec2f, 0>(node, desc)
{
}

MFVec2f::~MFVec2f() = default;

NodePartDataType MFVec2f::dataType() const
{
    return MFVEC2F_DT;
}

MFVec2d::MFVec2d(Node* node, NodePartDesc* desc)
    : MVField<osg::Vec2d, 0>(node, desc)
{
}

MFVec2d::~MFVec2d() = default;

NodePartDataType MFVec2d::dataType() const
{
    return MFVEC2D_DT;
}

MFVec3f::MFVec3f(Node* node, NodePartDesc* desc)
    : MVField<osg::Vec3f, 0>(node, desc)
{
}

MFVec3f::~MFVec3f() = default;

NodePartDataType MFVec3f::dataType() const
{
    return MFVEC3F_DT;
}

MFVec3d::MFVec3d(Node* node, NodePartDesc* desc)
    : MVField<osg::Vec3d, 0>(node, desc)
{
}

MFVec3d::~MFVec3d() = default;

NodePartDataType MFVec3d::dataType() const
{
    return MFVEC3D_DT;
}

MFVec4f::MFVec4f(Node* node, NodePartDesc* desc)
    : MVField<osg::Vec4f, 0>(node, desc)
{
}

MFVec4f::~MFVec4f() = default;

NodePartDataType MFVec4f::dataType() const
{
    return MFVEC4F_DT;
}

MFVec4d::MFVec4d(Node* node, NodePartDesc* desc)
    : MVField<osg::Vec4d, 0>(node, desc)
{
}

MFVec4d::~MFVec4d() = default;

NodePartDataType MFVec4d::dataType() const
{
    return MFVEC4D_DT;
}

} // namespace Orvane
