#pragma once

#include <Orvane/Field.h>
#include <Orvane/Image.h>

namespace Orvane {

/// One image.
class ORVANE_API SFImage : public Field
{
public:
    /// Made by the node, which is borrowed as its description is.
    SFImage(Node* node, NodePartDesc* desc);
    ~SFImage() override;

    NodePartDataType dataType() const override;
    std::string valueToString() const override;
    int cardinality() const override;
    unsigned int size() const override;
    void clear() override;
    bool parseValue(std::string_view text, std::string& error) override;
    void assignValue(const Field& other) override;
    bool hasValueOf(const Field& other) const override;

    /// The value, which shares its pixels with the field.
    Image image() const { return _value; }

    /// Sets the value as of the time stamp and tells the runtime (see `processValueChange`).
    void setValue(const double& time, const Image& value, CallerType caller);

private:
    Image _value;
};

} // namespace Orvane
