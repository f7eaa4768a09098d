#pragma once

#include "core/GroupProc.h"
#include <OpenSG/OSGTransform.h>
#include <Orvane/Export.h>

namespace Orvane {

/// Behaviour of a `Transform`: a group with a system of its own.
class ORVANE_API TransformProc : public GroupProc
{
public:
    explicit TransformProc(Node& node);

    void fieldChanged(Field& field, double time) override;
    void update() override;

private:
    /// The matrix of the node's fields. Values that are no numbers count as if they were not there, and a
    /// scale of zero as a very small one, so that every transform can be undone.
    osg::Matrix matrix();

    bool _matrixChanged = true;
};

} // namespace Orvane
