#include "base/ValueText.h"
#include <Orvane/SFImage.h>

namespace Orvane {

SFImage::SFImage(Node* node, NodePartDesc* desc)
    : Field(node, desc)
{
}

SFImage::~SFImage() = default;

NodePartDataType SFImage::dataType() const
{
    return SFIMAGE_DT;
}

std::string SFImage::valueToString() const
{
    std::string text;
    text::write(text, _value);
    return text;
}

int SFImage::cardinality() const
{
    return 0;
}

unsigned int SFImage::size() const
{
    return 1;
}

void SFImage::clear()
{
}

bool SFImage::parseValue(std::string_view text, std::string& error)
{
    return text::parse(text, _value, error);
}

void SFImage::assignValue(const Field& other)
{
    _value = static_cast<const SFImage&>(other)._value;
}

bool SFImage::hasValueOf(const Field& other) const
{
    return text::isSame(_value, static_cast<const SFImage&>(other)._value);
}

void SFImage::setValue(const double& time, const Image& value, CallerType caller)
{
    _value = value;
    processValueChange(time, caller);
}

} // namespace Orvane
