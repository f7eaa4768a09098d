#pragma once

#include <Orvane/Field.h>

namespace Orvane {

/// A field of one value. The runtime instantiates and exports the types listed below.
template <class T, int Kind>
class ORVANE_API XField : public Field
{
public:
    /// Made by the node, which is borrowed as its description is.
    XField(Node* node, NodePartDesc* desc);
    ~XField() override;

    std::string valueToString() const override;
    int cardinality() const override;
    unsigned int size() const override;
    void clear() override;
    bool parseValue(std::string_view text, std::string& error) override;
    void assignValue(const Field& other) override;
    bool hasValueOf(const Field& other) const override;

    /// The value, valid until the field changes.
    const T& value() const { return _value; }

    /// Sets the value as of the time stamp and tells the runtime (see `processValueChange`).
    void setValue(const double& time, const T& value, CallerType caller);

protected:
    T _value{};
};

extern template class XField<bool, 0>;
extern template class XField<int, 0>;
extern template class XField<float, 0>;

} // namespace Orvane
