#pragma once

#include <Orvane/MLField.h>

namespace Orvane {

/// Truth values.
class ORVANE_API MFBool : public MLField<bool, 0>
{
public:
    MFBool(Node* node, NodePartDesc* desc);
    ~MFBool() override;

    NodePartDataType dataType() const override;
};

} // namespace Orvane
