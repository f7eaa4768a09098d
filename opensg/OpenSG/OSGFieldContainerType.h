#pragma once

#include "OSGConfig.h"
#include "OSGIDString.h"

namespace osg {

/// What is known about one class of field containers: its name, a number and the class it derives from.
/// Each class owns one record as a static object (`X::getClassType()`), which lives until the process ends.
class OSG_SYSTEMLIB_DLLMAPPING FieldContainerType
{
public:
    /// `parent` is null for the root of the hierarchy alone; it must outlive this record.
    FieldContainerType(const Char8* name, const FieldContainerType* parent);
    FieldContainerType(const FieldContainerType&) = delete;
    FieldContainerType& operator=(const FieldContainerType&) = delete;

    const IDString& getName() const { return _name; }
    /// The same name as plain text.
    const Char8* getCName() const { return _name.str(); }
    /// A number that no other type of this process has; never 0.
    UInt32 getId() const { return _id; }
    /// The type that this one derives from; null for the root.
    const FieldContainerType* getParent() const { return _parent; }
    /// True for the type itself and for everything that it derives from, directly or not.
    bool isDerivedFrom(const FieldContainerType& other) const;

    friend bool operator==(const FieldContainerType& a, const FieldContainerType& b)
    {
        return a._id == b._id;
    }
    friend bool operator!=(const FieldContainerType& a, const FieldContainerType& b)
    {
        return a._id != b._id;
    }

private:
    IDString _name;
    UInt32 _id;
    const FieldContainerType* _parent;
};

} // namespace osg
