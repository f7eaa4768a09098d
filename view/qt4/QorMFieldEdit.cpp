#include "QorMFieldEdit.h"

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

namespace Orvane::Qt4 {

namespace {

/// Field classes in the order in which a field is tried for them.
template <class... Classes>
struct ClassList
{
    /// Calls \a visit with the field as the first class that it is of. False when it is of none.
    template <class Visit>
    static bool visit(Orvane::Field& field, Visit visit)
    {
        return (visitAs<Classes>(field, visit) || ...);
    }

    static bool contains(const Orvane::Field* field)
    {
        return ((dynamic_cast<const Classes*>(field) != nullptr) || ...);
    }

private:
    template <class Class, class Visit>
    static bool visitAs(Orvane::Field& field, Visit& visit)
    {
        auto* list = dynamic_cast<Class*>(&field);
        if (list)
            visit(*list);
        return list != nullptr;
    }
};

using ListsToGrow = ClassList<MFBool, MFColor, MFColorRGBA, MFDouble, MFInt32, MFFloat, MFRotation, MFString,
                              MFVec2f, MFVec3f, MFVec4f, MFVec2d, MFVec3d, MFVec4d>;
using ListsToShrink = ClassList<MFBool, MFColor, MFColorRGBA, MFDouble, MFString, MFFloat, MFInt32,
                                MFRotation, MFVec2f, MFVec3f, MFVec4f, MFVec2d, MFVec3d, MFVec4d>;

// Colours start grey; everything else as its type starts: zero, empty, without a turn.

template <class T, int Kind>
T newValue(const MVField<T, Kind>&)
{
    return T{};
}

std::string newValue(const MFString&)
{
    return {};
}

osg::Color3f newValue(const MFColor&)
{
    return {0.8F, 0.8F, 0.8F};
}

osg::Color4f newValue(const MFColorRGBA&)
{
    return {0.8F, 0.8F, 0.8F, 0.0F};
}

// Truth values tell where they were put: one at the end starts false, one in front of another starts true.

template <class List>
auto appendedValue(const List& list)
{
    return newValue(list);
}

bool appendedValue(const MFBool&)
{
    return false;
}

template <class List>
auto insertedValue(const List& list)
{
    return newValue(list);
}

bool insertedValue(const MFBool&)
{
    return true;
}

} // namespace

bool isEditableList(const Orvane::Field* field)
{
    return ListsToGrow::contains(field);
}

bool appendValues(Orvane::Field& field, int count)
{
    return ListsToGrow::visit(field, [count](auto& list) {
        for (int i = 0; i < count; ++i)
            list.addValue(appendedValue(list));
    });
}

bool insertValues(Orvane::Field& field, int index, int count)
{
    return ListsToGrow::visit(field, [index, count](auto& list) {
        for (int i = 0; i < count; ++i)
            list.insertValue(index, insertedValue(list));
    });
}

bool removeValue(Orvane::Field& field, int index)
{
    return ListsToShrink::visit(field, [index](auto& list) { list.removeValueByIndex(index); });
}

} // namespace Orvane::Qt4
