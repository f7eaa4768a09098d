#pragma once

#include <Orvane/XField.h>

namespace Orvane {

/// One single-precision number.
class ORVANE_API SFFloat : public XField<float, 0>
{
public:
    SFFloat(Node* node, NodePartDesc* desc);
    ~SFFloat() override;

    NodePartDataType dataType() const override;
};

} // namespace Orvane
