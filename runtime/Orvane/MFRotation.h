#pragma once

#include <Orvane/MVField.h>

namespace Orvane {

/// Rotations.
class ORVANE_API MFRotation : public MVField<Rotation, 0>
{
public:
    /// Made by the node, which is borrowed as its description is.
    MFRotation(Node* node, NodePartDesc* desc);
    ~MFRotation() override;

    NodePartDataType dataType() const override;
};

} // namespace Orvane
