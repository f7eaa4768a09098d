#pragma once

#include <Orvane/XField.h>

namespace Orvane {

/// One single-precision number.
class ORVANE_API SFFloat : public XField<float, 0>
{
public:
    /// Made by the node, which is borrowed as its description is.
    SFFloat(Node* node, NodePartDesc* desc);
    ~SFFloat() override;

    NodePartDataType dataType() const override;
};

} // namespace Orvane
