#pragma once

#include "OSGBaseTypes.h"
#include "OSGConfig.h"
#include "OSGNodePtr.h"

namespace osg {

/// Something that is done to a tree of nodes. Actions are plain objects of whoever makes them.
class OSG_SYSTEMLIB_DLLMAPPING Action
{
public:
    enum ResultE { Continue, Skip, Quit };

    virtual ~Action();
    Action(const Action&) = delete;
    Action& operator=(const Action&) = delete;

    /// Walks through the tree below `node`. A null node logs a warning and answers Quit.
    virtual ResultE apply(const NodePtr& node) = 0;

    /// Nodes whose mask shares no bit with this one are skipped with all below them. Default: all ones.
    UInt32 getTravMask() const { return _travMask; }
    void setTravMask(UInt32 mask) { _travMask = mask; }

protected:
    Action() = default;

private:
    UInt32 _travMask = ~UInt32(0);
};

} // namespace osg
