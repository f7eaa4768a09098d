// What everything else stands on: references, subjects and observers, links, slots and routes.

#include "Runtime.h"
#include <Orvane/EventInSlot.h>
#include <Orvane/EventOutSlot.h>
#include <Orvane/LogModule.h>
#include <Orvane/Observer.h>
#include <Orvane/RefCountObject.h>
#include <Orvane/Route.h>
#include <algorithm>

namespace Orvane {

const char LogModuleName[] = "Plant";

BaseObject::~BaseObject() = default;
RefCountObject::~RefCountObject() = default;
NotificationHandler::~NotificationHandler() = default;

void RefCountObject::subRef() const
{
    if (--_refCount <= 0)
        delete this;
}

// Subjects and observers. Who leaves during a delivery leaves a null, who joins stands behind its end.

struct Subject::Data
{
    std::shared_ptr<std::vector<Observer*>> observers = std::make_shared<std::vector<Observer*>>();
};

struct Observer::Data
{
    std::vector<Subject*> subjects;
};

Subject::~Subject()
{
    while (_data) {
        const auto& observers = *_data->observers;
        detach(**std::find_if(observers.begin(), observers.end(), [](Observer* one) { return one; }));
    }
}

void Subject::attach(Observer& observer)
{
    if (!_data)
        _data = new Data;
    auto& observers = *_data->observers;
    if (std::find(observers.begin(), observers.end(), &observer) != observers.end())
        return;
    observers.push_back(&observer);
    if (!observer._data)
        observer._data = new Observer::Data;
    observer._data->subjects.push_back(this);
}

void Subject::detach(Observer& observer)
{
    if (!_data || !observer._data)
        return;
    auto& observers = *_data->observers;
    const auto place = std::find(observers.begin(), observers.end(), &observer);
    if (place == observers.end())
        return;
    auto& subjects = observer._data->subjects;
    subjects.erase(std::find(subjects.begin(), subjects.end(), this));
    *place = nullptr;
    if (_data->observers.use_count() == 1) // nobody delivers
        observers.erase(place);
    if (std::any_of(observers.begin(), observers.end(), [](Observer* one) { return one; }))
        return;
    delete _data;
    _data = nullptr;
}

void Subject::deliver(const double& time, BaseObject* first, BaseObject* second, BaseObject* third)
{
    const auto observers = _data->observers;
    const std::size_t count = observers->size();
    for (std::size_t i = 0; i < count; ++i) {
        if (Observer* observer = (*observers)[i])
            observer->notify(time, first, second, third);
    }
}

Observer::Observer(const char* name)
    : _observerName(name ? name : "")
{
}

Observer::Observer(const Observer& other)
    : NotificationHandler()
    , _observerName(other._observerName)
{
}

Observer& Observer::operator=(const Observer& other)
{
    _observerName = other._observerName;
    return *this;
}

Observer::~Observer()
{
    while (_data && !_data->subjects.empty())
        _data->subjects.back()->detach(*this);
    delete _data;
}

// Links.

NodeLink::NodeLink() = default;

NodeLink::NodeLink(const NodeLink& other)
    : BaseObject()
    , _node(other._node)
{
}

NodeLink& NodeLink::operator=(const NodeLink& other)
{
    _node = other._node;
    return *this;
}

NodeLink::~NodeLink() = default;

Node* NodeLink::node()
{
    return _node;
}

Node* NodeLink::parent() const
{
    return _field ? _field->node() : nullptr;
}

OwningLink::OwningLink(Field* field, Node* node)
{
    _field = field;
    _node = node;
    _node->data()->place = this;
}

OwningLink::~OwningLink()
{
    _node->data()->place = nullptr;
    delete _node;
}

// Slots and routes.

EventSlot::EventSlot(Field* field)
    : _field(field)
{
}

EventSlot::~EventSlot()
{
    while (!_routes.empty())
        delete _routes.back();
}

EventInSlot::EventInSlot(Field* field)
    : EventSlot(field)
{
}

EventInSlot::~EventInSlot() = default;

const char* EventInSlot::name() const
{
    return _field->name();
}

EventOutSlot::EventOutSlot(Field* field)
    : EventSlot(field)
{
}

EventOutSlot::~EventOutSlot() = default;

const char* EventOutSlot::name() const
{
    return _field->name();
}

Route* EventOutSlot::findRoute(EventInSlot* inSlot)
{
    const auto leadsThere = [inSlot](const Route* route) { return route->inSlot() == inSlot; };
    const auto found = std::find_if(begin(), end(), leadsThere);
    return found == end() ? nullptr : *found;
}

Subject Route::_newObject;
Subject Route::_deleteObject;

Route* Route::create(EventOutSlot& outSlot, EventInSlot& inSlot, Type type)
{
    if (outSlot.field()->dataType() != inSlot.field()->dataType() || outSlot.findRoute(&inSlot))
        return nullptr;
    auto* route = new Route(outSlot, inSlot, type); // its slots own it
    _newObject.fire(0.0, route);
    return route;
}

Route::Route(EventOutSlot& outSlot, EventInSlot& inSlot, Type type)
    : _outSlot(&outSlot)
    , _inSlot(&inSlot)
    , _type(type)
{
    outSlot._routes.push_back(this);
    inSlot._routes.push_back(this);
}

Route::~Route()
{
    _deleteObject.fire(0.0, this);
    for (EventSlot* slot : {static_cast<EventSlot*>(_outSlot), static_cast<EventSlot*>(_inSlot)})
        slot->_routes.erase(std::find(slot->_routes.begin(), slot->_routes.end(), this));
}

} // namespace Orvane
