#pragma once

#include <Orvane/MVField.h>

namespace Orvane {

/// Colours with opacity.
class ORVANE_API MFColorRGBA : public MVField<osg::Color4f, 0>
{
public:
    MFColorRGBA(Node* node, NodePartDesc* desc);
    ~MFColorRGBA() override;

    NodePartDataType dataType() const override;
};

} // namespace Orvane
