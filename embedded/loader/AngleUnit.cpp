#include "loader/AngleUnit.h"

#include "base/ValueFields.h"
#include <Orvane/MFFloat.h>
#include <Orvane/MFRotation.h>
#include <Orvane/NodePartDesc.h>
#include <Orvane/SFFloat.h>
#include <algorithm>
#include <string_view>

namespace Orvane {

namespace {

bool isAngle(const NodePartDesc& desc)
{
    const std::string_view name = desc.name;
    constexpr std::string_view end = "Angle";
    return !desc.objExt() && (name == "angle" || name == "beamWidth" || name == "fieldOfView" ||
                              (name.size() > end.size() && name.substr(name.size() - end.size()) == end));
}

Rotation converted(const Rotation& rotation, double factor)
{
    return {rotation.x(), rotation.y(), rotation.z(), static_cast<float>(rotation.angle() * factor)};
}

} // namespace

void convertAngles(Field& field, double factor)
{
    const auto number = [&](float angle) { return static_cast<float>(angle * factor); };
    switch (field.dataType()) {
    case SFROTATION_DT: {
        auto& rotation = static_cast<SFRotation&>(field);
        rotation.setValue(0.0, converted(rotation.value(), factor), Field::LOADER_CT);
        break;
    }
    case MFROTATION_DT: {
        auto& rotations = static_cast<MFRotation&>(field).editValues();
        for (Rotation& rotation : rotations)
            rotation = converted(rotation, factor);
        break;
    }
    case SFFLOAT_DT:
        if (isAngle(*field._desc))
            static_cast<SFFloat&>(field).setValue(0.0, number(static_cast<SFFloat&>(field).value()),
                                                  Field::LOADER_CT);
        break;
    case SFDOUBLE_DT:
        if (isAngle(*field._desc)) {
            auto& angle = static_cast<SFDouble&>(field);
            angle.setValue(0.0, angle.value() * factor, Field::LOADER_CT);
        }
        break;
    case MFFLOAT_DT:
        // What an orthogonal viewpoint sees is a rectangle.
        if (isAngle(*field._desc) && field._desc->name != "fieldOfView") {
            auto& angles = static_cast<MFFloat&>(field).editValues();
            std::transform(angles.begin(), angles.end(), angles.begin(), number);
        }
        break;
    default:
        break;
    }
}

} // namespace Orvane
