#pragma once

#include "OSGNodeCore.h"

namespace osg {

class Group;
using GroupPtr = FCPtr<NodeCorePtr, Group>;

/// The core of a node that only holds its children together.
class OSG_SYSTEMLIB_DLLMAPPING Group : public NodeCore
{
public:
    using Ptr = GroupPtr;

    static GroupPtr create();
    static FieldContainerType& getClassType();
    FieldContainerType& getType() const override;

protected:
    Group() = default;
};

} // namespace osg
