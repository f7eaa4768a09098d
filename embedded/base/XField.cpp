#include "base/ValueText.h"
#include <Orvane/SFBool.h>
#include <Orvane/SFFloat.h>
#include <Orvane/SFInt32.h>
#include <Orvane/XField.h>

namespace Orvane {

template <class T, int Kind>
XField<T, Kind>::XField(Node* node, NodePartDesc* desc)
    : Field(node, desc)
{
}

template <class T, int Kind>
XField<T, Kind>::~XField() = default;

template <class T, int Kind>
std::string XField<T, Kind>::valueToString() const
{
    std::string text;
    text::write(text, _value);
    return text;
}

template <class T, int Kind>
int XField<T, Kind>::cardinality() const
{
    return 0;
}

template <class T, int Kind>
unsigned int XField<T, Kind>::size() const
{
    return 1;
}

template <class T, int Kind>
void XField<T, Kind>::clear()
{
}

template <class T, int Kind>
bool XField<T, Kind>::parseValue(std::string_view text, std::string& error)
{
    return text::parse(text, _value, error);
}

template <class T, int Kind>
void XField<T, Kind>::assignValue(const Field& other)
{
    _value = static_cast<const XField&>(other)._value;
}

template <class T, int Kind>
bool XField<T, Kind>::hasValueOf(const Field& other) const
{
    return text::isSame(_value, static_cast<const XField&>(other)._value);
}

template <class T, int Kind>
void XField<T, Kind>::setValue(const double& time, const T& value, CallerType caller)
{
    _value = value;
    processValueChange(time, caller);
}

template class XField<bool, 0>;
template class XField<int, 0>;
template class XField<float, 0>;

} // namespace Orvane
