#pragma once

#include <Orvane/BaseObject.h>
#include <Orvane/Subject.h>
#include <vector>

namespace Orvane {

class Field;
class Route;

/// One end of routes at a field. Made on demand, owned by its field.
class ORVANE_API EventSlot : public BaseObject
{
public:
    /// Goes over the routes.
    using RouteIterator = std::vector<Route*>::const_iterator;

    /// Made by the field alone.
    explicit EventSlot(Field* field);
    EventSlot(const EventSlot&) = delete;
    EventSlot& operator=(const EventSlot&) = delete;
    ~EventSlot() override;

    /// Name of the event, such as "set_translation"; valid as long as the slot.
    virtual const char* name() const = 0;

    /// The field of the slot; never null.
    Field* field() const { return _field; }

    /// The routes that begin or end here, in order of creation.
    RouteIterator begin() const { return _routes.begin(); }
    RouteIterator end() const { return _routes.end(); }

    /// Fires when the slot processes an event; the first object is the slot.
    Subject& processEventSubject() { return _processEventSubject; }

protected:
    friend class Route;

    Field* _field;
    std::vector<Route*> _routes;
    Subject _processEventSubject;
};

} // namespace Orvane
