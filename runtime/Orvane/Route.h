#pragma once

#include <Orvane/BaseObject.h>
#include <Orvane/Subject.h>

namespace Orvane {

class EventInSlot;
class EventOutSlot;

/// A connection from an event out slot to an event in slot. Routes belong to their slots: deleting the route
/// takes it out of both, a dying slot deletes its routes.
class ORVANE_API Route : public BaseObject
{
public:
    /// Who made a route.
    enum Type : int {
        SCENE_RT = 1, ///< from the scene's text or from an author
        IS_RT = 2,    ///< an IS connection of a prototype
        SCRIPT_RT = 4 ///< made by a script
    };

    /// Makes a route. Null when data types or access do not fit, or the two slots are connected already.
    static Route* create(EventOutSlot& outSlot, EventInSlot& inSlot, Type type);

    Route(const Route&) = delete;
    Route& operator=(const Route&) = delete;
    ~Route() override;

    /// Both ends, never null, and who made the route.
    EventOutSlot* outSlot() const { return _outSlot; }
    EventInSlot* inSlot() const { return _inSlot; }
    Type type() const { return _type; }

    /// Fires inside `create`, when both slots hold the route. First object: the route.
    static Subject _newObject;
    /// Fires while the route can still be found in its slots. First object: the route.
    static Subject _deleteObject;

protected:
    Route(EventOutSlot& outSlot, EventInSlot& inSlot, Type type);

    EventOutSlot* _outSlot;
    EventInSlot* _inSlot;
    Type _type;
};

} // namespace Orvane
