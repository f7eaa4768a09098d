#pragma once

#include <OpenSG/OSGColor.h>
#include <OpenSG/OSGVector.h>
#include <Orvane/Field.h>
#include <Orvane/Rotation.h>
#include <vector>

namespace Orvane {

/// A field of many plain values, kept in one block. The operations that change the list mark the field as
/// written now; `clear` and `elem` do not.
template <class T, int Kind>
class ORVANE_API MVField : public Field
{
public:
    /// Made by the node, which is borrowed as its description is.
    MVField(Node* node, NodePartDesc* desc);
    ~MVField() override;

    std::string valueToString() const override;
    int cardinality() const override;
    unsigned int size() const override;
    void clear() override;
    bool parseValue(std::string_view text, std::string& error) override;
    void assignValue(const Field& other) override;
    bool hasValueOf(const Field& other) const override;

    /// Appends a value; the result is its place, valid until the list changes.
    T* addValue(const T& value);
    /// Inserts a value in front of \a index, which is brought into the list's range.
    T* insertValue(int index, const T& value);
    /// Removes a value; an index outside the list removes nothing.
    void removeValueByIndex(int index);
    /// The value at \a index, which must be inside the list.
    T& elem(int index) { return _values[static_cast<std::size_t>(index)]; }
    /// Replaces a value; an index outside the list replaces nothing.
    void setElem(int index, const T& value);

    /// The values, valid until the list changes.
    const std::vector<T>& values() const { return _values; }
    /// The values in place, for who calls `processValueChange` afterwards.
    std::vector<T>& editValues() { return _values; }

protected:
    std::vector<T> _values;
};

extern template class MVField<int, 0>;
extern template class MVField<float, 0>;
extern template class MVField<double, 0>;
extern template class MVField<osg::Color3f, 0>;
extern template class MVField<osg::Color4f, 0>;
extern template class MVField<osg::Vec2f, 0>;
extern template class MVField<osg::Vec3f, 0>;
extern template class MVField<osg::Vec4f, 0>;
extern template class MVField<osg::Vec2d, 0>;
extern template class MVField<osg::Vec3d, 0>;
extern template class MVField<osg::Vec4d, 0>;
extern template class MVField<Rotation, 0>;

} // namespace Orvane
