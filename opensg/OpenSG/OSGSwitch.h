#pragma once

#include "OSGGroup.h"

namespace osg {

class Switch;
using SwitchPtr = FCPtr<GroupPtr, Switch>;

/// The core of a node that shows one of its children, all, or none. The volume is that of what is shown.
class OSG_SYSTEMLIB_DLLMAPPING Switch : public Group
{
public:
    using Ptr = SwitchPtr;

    enum : UInt32 { ChoiceFieldId = Group::NextFieldId, NextFieldId };
    static constexpr BitVector ChoiceFieldMask = BitVector(1) << ChoiceFieldId;

    enum Choice : Int32 { ALL = -2, NONE = -1 };

    static SwitchPtr create();
    static FieldContainerType& getClassType();
    FieldContainerType& getType() const override;

    /// The index of the child that is shown, or a value of `Choice`; NONE at first. An index without a child
    /// shows nothing.
    Int32 getChoice() const { return _choice; }
    void setChoice(Int32 choice);

    void changed(BitVector whichField, UInt32 origin) override;
    ChildRange getActiveChildren(UInt32 count) const override;

protected:
    Switch() = default;

private:
    Int32 _choice = NONE;
};

} // namespace osg
