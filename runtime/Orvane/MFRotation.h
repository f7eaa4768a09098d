#pragma once

#include <Orvane/MVField.h>

namespace Orvane {

/// Rotations.
class ORVANE_API MFRotation : public MVField<Rotation, 0>
{
public:
    MFRotation(Node* node, NodePartDesc* desc);
    ~MFRotation() override;

    NodePartDataType dataType() const override;
};

} // namespace Orvane
