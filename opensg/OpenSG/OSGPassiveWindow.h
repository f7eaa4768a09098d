#pragma once

#include "OSGPassiveWindowBase.h"

namespace osg {

/// A window whose context and buffers are handled by a host, such as a widget: it only draws.
class OSG_SYSTEMLIB_DLLMAPPING PassiveWindow : public PassiveWindowBase
{
public:
    using Ptr = PassiveWindowPtr;

    void activate() override {}
    void deactivate() override {}
    void swap() override {}

protected:
    PassiveWindow() = default;
    friend class PassiveWindowBase;
};

} // namespace osg
