#include <Orvane/FieldType.h>
#include <array>

namespace Orvane {

namespace {

const std::array<std::string, MFRESERVED3_DT + 1> names = {
    "",           "SFBool",      "MFBool",      "SFColor",     "MFColor",     "SFColorRGBA", "MFColorRGBA",
    "SFDouble",   "MFDouble",    "SFFloat",     "MFFloat",     "SFImage",     "MFImage",     "SFInt32",
    "MFInt32",    "SFMatrix3d",  "MFMatrix3d",  "SFMatrix3f",  "MFMatrix3f",  "SFMatrix4d",  "MFMatrix4d",
    "SFMatrix4f", "MFMatrix4f",  "SFNode",      "MFNode",      "SFRotation",  "MFRotation",  "SFString",
    "MFString",   "SFTime",      "MFTime",      "SFVec2d",     "MFVec2d",     "SFVec2f",     "MFVec2f",
    "SFVec3d",    "MFVec3d",     "SFVec3f",     "MFVec3f",     "SFVec4d",     "MFVec4d",     "SFVec4f",
    "MFVec4f",    "SFReserved1", "MFReserved1", "SFReserved2", "MFReserved2", "SFReserved3", "MFReserved3"};

} // namespace

const std::string& FieldType::dataTypeName(NodePartDataType type)
{
    const bool isKnown = type >= SFBOOL_DT && type <= MFRESERVED3_DT;
    return names[isKnown ? static_cast<std::size_t>(type) : 0];
}

NodePartDataType FieldType::dataType(const std::string& name)
{
    for (std::size_t i = 1; i < names.size(); ++i)
        if (names[i] == name)
            return static_cast<NodePartDataType>(i);
    return NO_DT;
}

} // namespace Orvane
