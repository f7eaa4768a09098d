#include "base/ValueText.h"
#include <Orvane/MFBool.h>
#include <Orvane/MFString.h>
#include <Orvane/MLField.h>
#include <algorithm>

namespace Orvane {

template <class T, int Kind>
MLField<T, Kind>::MLField(Node* node, NodePartDesc* desc)
    : Field(node, desc)
{
}

template <class T, int Kind>
MLField<T, Kind>::~MLField() = default;

template <class T, int Kind>
std::string MLField<T, Kind>::valueToString() const
{
    return text::writeList(_values.begin(), _values.end(),
                           [](const Cell& cell) -> const T& { return cell.value; });
}

template <class T, int Kind>
int MLField<T, Kind>::cardinality() const
{
    return 1;
}

template <class T, int Kind>
unsigned int MLField<T, Kind>::size() const
{
    return static_cast<unsigned int>(_values.size());
}

template <class T, int Kind>
void MLField<T, Kind>::clear()
{
    _values.clear();
}

template <class T, int Kind>
bool MLField<T, Kind>::parseValue(std::string_view text, std::string& error)
{
    return text::parseList<T>(text, _values, error);
}

template <class T, int Kind>
void MLField<T, Kind>::assignValue(const Field& other)
{
    _values = static_cast<const MLField&>(other)._values;
}

template <class T, int Kind>
bool MLField<T, Kind>::hasValueOf(const Field& other) const
{
    const std::vector<Cell>& values = static_cast<const MLField&>(other)._values;
    return std::equal(_values.begin(), _values.end(), values.begin(), values.end(),
                      [](const Cell& a, const Cell& b) { return a.value == b.value; });
}

template <class T, int Kind>
T* MLField<T, Kind>::addValue(const T& value)
{
    _values.push_back(Cell{value});
    processValueChange(0.0, EXTERNAL_CT);
    return &_values.back().value;
}

template <class T, int Kind>
T* MLField<T, Kind>::insertValue(int index, const T& value)
{
    const auto place = _values.insert(
        _values.begin() + std::clamp<std::ptrdiff_t>(index, 0, static_cast<std::ptrdiff_t>(_values.size())),
        Cell{value});
    processValueChange(0.0, EXTERNAL_CT);
    return &place->value;
}

template <class T, int Kind>
void MLField<T, Kind>::removeValueByIndex(int index)
{
    if (index < 0 || static_cast<std::size_t>(index) >= _values.size())
        return;
    _values.erase(_values.begin() + index);
    processValueChange(0.0, EXTERNAL_CT);
}

template <class T, int Kind>
void MLField<T, Kind>::setElem(int index, const T& value)
{
    if (index < 0 || static_cast<std::size_t>(index) >= _values.size())
        return;
    _values[static_cast<std::size_t>(index)].value = value;
    processValueChange(0.0, EXTERNAL_CT);
}

template class MLField<bool, 0>;
template class MLField<std::string, 0>;

} // namespace Orvane
