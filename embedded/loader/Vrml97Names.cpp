#include "loader/Vrml97Names.h"

#include <algorithm>
#include <iterator>

namespace Orvane::vrml97 {

namespace {

struct Node
{
    std::string_view type;
    std::string_view fields; ///< with a blank before and behind each
};

// In order of name, for the search. clang-format off: one node an entry.
constexpr Node nodes[] = {
    {"Anchor", " addChildren bboxCenter bboxSize children description parameter removeChildren url "},
    {"Appearance", " material texture textureTransform "},
    {"AudioClip", " description duration_changed isActive loop pitch startTime stopTime url "},
    {"Background", " backUrl bottomUrl frontUrl groundAngle groundColor isBound leftUrl rightUrl set_bind "
                   "skyAngle skyColor topUrl "},
    {"Billboard", " addChildren axisOfRotation bboxCenter bboxSize children removeChildren "},
    {"Box", " size "},
    {"Collision", " addChildren bboxCenter bboxSize children collide collideTime proxy removeChildren "},
    {"Color", " color "},
    {"ColorInterpolator", " key keyValue set_fraction value_changed "},
    {"Cone", " bottom bottomRadius height side "},
    {"Coordinate", " point "},
    {"CoordinateInterpolator", " key keyValue set_fraction value_changed "},
    {"Cylinder", " bottom height radius side top "},
    {"CylinderSensor", " autoOffset diskAngle enabled isActive maxAngle minAngle offset rotation_changed "
                       "trackPoint_changed "},
    {"DirectionalLight", " ambientIntensity color direction intensity on "},
    {"ElevationGrid", " ccw color colorPerVertex creaseAngle height normal normalPerVertex set_height solid "
                      "texCoord xDimension xSpacing zDimension zSpacing "},
    {"Extrusion", " beginCap ccw convex creaseAngle crossSection endCap orientation scale "
                  "set_crossSection set_orientation set_scale set_spine solid spine "},
    {"Fog", " color fogType isBound set_bind visibilityRange "},
    {"FontStyle", " family horizontal justify language leftToRight size spacing style topToBottom "},
    {"Group", " addChildren bboxCenter bboxSize children removeChildren "},
    {"ImageTexture", " repeatS repeatT url "},
    {"IndexedFaceSet", " ccw color colorIndex colorPerVertex convex coord coordIndex creaseAngle normal "
                       "normalIndex normalPerVertex set_colorIndex set_coordIndex set_normalIndex "
                       "set_texCoordIndex solid texCoord texCoordIndex "},
    {"IndexedLineSet", " color colorIndex colorPerVertex coord coordIndex set_colorIndex set_coordIndex "},
    {"Inline", " bboxCenter bboxSize url "},
    {"LOD", " center level range "},
    {"Material", " ambientIntensity diffuseColor emissiveColor shininess specularColor transparency "},
    {"MovieTexture", " duration_changed isActive loop repeatS repeatT speed startTime stopTime url "},
    {"NavigationInfo", " avatarSize headlight isBound set_bind speed type visibilityLimit "},
    {"Normal", " vector "},
    {"NormalInterpolator", " key keyValue set_fraction value_changed "},
    {"OrientationInterpolator", " key keyValue set_fraction value_changed "},
    {"PixelTexture", " image repeatS repeatT "},
    {"PlaneSensor", " autoOffset enabled isActive maxPosition minPosition offset trackPoint_changed "
                    "translation_changed "},
    {"PointLight", " ambientIntensity attenuation color intensity location on radius "},
    {"PointSet", " color coord "},
    {"PositionInterpolator", " key keyValue set_fraction value_changed "},
    {"ProximitySensor", " center enabled enterTime exitTime isActive orientation_changed position_changed "
                        "size "},
    {"ScalarInterpolator", " key keyValue set_fraction value_changed "},
    {"Script", " directOutput mustEvaluate url "},
    {"Shape", " appearance geometry "},
    {"Sound", " direction intensity location maxBack maxFront minBack minFront priority source spatialize "},
    {"Sphere", " radius "},
    {"SphereSensor", " autoOffset enabled isActive offset rotation_changed trackPoint_changed "},
    {"SpotLight", " ambientIntensity attenuation beamWidth color cutOffAngle direction intensity location "
                  "on radius "},
    {"Switch", " choice whichChoice "},
    {"Text", " fontStyle length maxExtent string "},
    {"TextureCoordinate", " point "},
    {"TextureTransform", " center rotation scale translation "},
    {"TimeSensor", " cycleInterval cycleTime enabled fraction_changed isActive loop startTime stopTime "
                   "time "},
    {"TouchSensor", " enabled hitNormal_changed hitPoint_changed hitTexCoord_changed isActive isOver "
                    "touchTime "},
    {"Transform", " addChildren bboxCenter bboxSize center children removeChildren rotation scale "
                  "scaleOrientation translation "},
    {"Viewpoint", " bindTime description fieldOfView isBound jump orientation position set_bind "},
    {"VisibilitySensor", " center enabled enterTime exitTime isActive size "},
    {"WorldInfo", " info title "},
};
// clang-format on

const Node* findNode(std::string_view type)
{
    const Node* found =
        std::lower_bound(std::begin(nodes), std::end(nodes), type,
                         [](const Node& row, std::string_view wanted) { return row.type < wanted; });
    return found != std::end(nodes) && found->type == type ? found : nullptr;
}

} // namespace

bool hasNode(std::string_view type)
{
    return findNode(type);
}

bool hasField(std::string_view type, std::string_view field)
{
    const Node* node = findNode(type);
    if (!node)
        return false;
    const std::string_view fields = node->fields;
    for (std::size_t at = fields.find(field); at != std::string_view::npos; at = fields.find(field, at + 1))
        if (fields[at - 1] == ' ' && fields[at + field.size()] == ' ')
            return true;
    return false;
}

bool hasDataType(NodePartDataType type)
{
    switch (type) {
    case SFBOOL_DT:
    case SFCOLOR_DT:
    case MFCOLOR_DT:
    case SFFLOAT_DT:
    case MFFLOAT_DT:
    case SFIMAGE_DT:
    case SFINT32_DT:
    case MFINT32_DT:
    case SFNODE_DT:
    case MFNODE_DT:
    case SFROTATION_DT:
    case MFROTATION_DT:
    case SFSTRING_DT:
    case MFSTRING_DT:
    case SFTIME_DT:
    case MFTIME_DT:
    case SFVEC2F_DT:
    case MFVEC2F_DT:
    case SFVEC3F_DT:
    case MFVEC3F_DT:
        return true;
    default:
        return false;
    }
}

} // namespace Orvane::vrml97
