#pragma once

#include "OSGAttachmentContainer.h"

#include <vector>

namespace osg {

class GeoProperty;
class Geometry;

using GeoPropertyPtr = FCPtr<AttachmentContainerPtr, GeoProperty>;

/// A sequence of values that geometries are made of. It may serve several geometries, which hold the
/// references on it and are told when an edit of it ends.
class OSG_SYSTEMLIB_DLLMAPPING GeoProperty : public AttachmentContainer
{
public:
    using Ptr = GeoPropertyPtr;

    enum : UInt32 { DataFieldId = AttachmentContainer::NextFieldId, NextFieldId };
    static constexpr BitVector DataFieldMask = BitVector(1) << DataFieldId;

    static FieldContainerType& getClassType();
    FieldContainerType& getType() const override;

    /// The number of values.
    virtual UInt32 getSize() const = 0;

    void changed(BitVector whichField, UInt32 origin) override;

protected:
    GeoProperty() = default;

private:
    friend class Geometry;

    std::vector<Geometry*> _users;
};

/// A property whose values lie in one vector.
template <class T>
class GeoVectorProperty : public GeoProperty
{
public:
    using ValueType = T;

    UInt32 getSize() const override { return static_cast<UInt32>(_values.size()); }
    /// A default value where there is none.
    T getValue(UInt32 index) const { return index < _values.size() ? _values[index] : T(); }
    /// Nothing happens when there is no such value.
    void setValue(const T& value, UInt32 index)
    {
        if (index < _values.size())
            _values[index] = value;
    }
    void addValue(const T& value) { _values.push_back(value); }
    void push_back(const T& value) { _values.push_back(value); }
    void resize(UInt32 size) { _values.resize(size); }
    void clear() { _values.clear(); }

    /// All values in place; changes belong between `beginEditCP` and `endEditCP`.
    std::vector<T>& editField() { return _values; }
    const std::vector<T>& getField() const { return _values; }

protected:
    GeoVectorProperty() = default;

    std::vector<T> _values;
};

} // namespace osg
