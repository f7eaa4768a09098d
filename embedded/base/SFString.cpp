#include <Orvane/SFString.h>

namespace Orvane {

SFString::SFString(Node* node, NodePartDesc* desc)
    : Field(node, desc)
{
}

SFString::~SFString() = default;

NodePartDataType SFString::dataType() const
{
    return SFSTRING_DT;
}

std::string SFString::valueToString() const
{
    return _value;
}

int SFString::cardinality() const
{
    return 0;
}

unsigned int SFString::size() const
{
    return 1;
}

void SFString::clear()
{
}

bool SFString::parseValue(std::string_view text, std::string&)
{
    _value = text;
    return true;
}

void SFString::assignValue(const Field& other)
{
    _value = static_cast<const SFString&>(other)._value;
}

bool SFString::hasValueOf(const Field& other) const
{
    return _value == static_cast<const SFString&>(other)._value;
}

void SFString::setValue(const double& time, const std::string& value, CallerType caller)
{
    _value = value;
    processValueChange(time, caller);
}

} // namespace Orvane
