#pragma once

#include "OSGWindow.h"

namespace osg {

class PassiveWindow;
using PassiveWindowPtr = FCPtr<WindowPtr, PassiveWindow>;

/// The base of PassiveWindow, which its `create()` makes, too.
class OSG_SYSTEMLIB_DLLMAPPING PassiveWindowBase : public Window
{
public:
    static PassiveWindowPtr create();
    static PassiveWindowPtr createEmpty();
    /// The record of the type "PassiveWindow".
    static FieldContainerType& getClassType();
    FieldContainerType& getType() const override;

protected:
    PassiveWindowBase() = default;
};

} // namespace osg
