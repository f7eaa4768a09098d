#include <Orvane/Observer.h>
#include <Orvane/Subject.h>

namespace Orvane {

namespace {

/// One observer at one subject: a link of two lists, that of the subject in order of attachment, and that of
/// the observer.
struct Tie
{
    Subject* subject;
    Observer* observer;
    unsigned long long number; ///< counts up within the subject
    Tie* previousOfSubject = nullptr;
    Tie* nextOfSubject = nullptr;
    Tie* previousOfObserver = nullptr;
    Tie* nextOfObserver = nullptr;
};

/// A delivery that is under way: where it goes on. Lives on the stack of `deliver`.
struct Delivery
{
    Tie* next;
    bool subjectDied = false;
    Delivery* outer;
};

} // namespace

struct Subject::Data
{
    Tie* first = nullptr;
    Tie* last = nullptr;
    std::size_t count = 0;
    unsigned long long lastNumber = 0;
    Delivery* delivery = nullptr;

    static Tie* find(const Subject& subject, const Observer& observer);
    static void cut(Tie* tie);
};

struct Observer::Data
{
    Tie* first = nullptr;
    std::size_t count = 0;
};

/// Goes along the shorter list: either a subject has few observers, or its observer has few subjects.
Tie* Subject::Data::find(const Subject& subject, const Observer& observer)
{
    if (!subject._data || !observer._data)
        return nullptr;
    Tie* tie;
    if (subject._data->count <= observer._data->count) {
        for (tie = subject._data->first; tie && tie->observer != &observer;)
            tie = tie->nextOfSubject;
    } else {
        for (tie = observer._data->first; tie && tie->subject != &subject;)
            tie = tie->nextOfObserver;
    }
    return tie;
}

/// Ends a tie, and the data of either side that has no other. A subject that is delivering keeps its own.
void Subject::Data::cut(Tie* tie)
{
    Subject& subject = *tie->subject;
    Data& ofSubject = *subject._data;
    for (Delivery* delivery = ofSubject.delivery; delivery; delivery = delivery->outer)
        if (delivery->next == tie)
            delivery->next = tie->nextOfSubject;
    (tie->previousOfSubject ? tie->previousOfSubject->nextOfSubject : ofSubject.first) = tie->nextOfSubject;
    (tie->nextOfSubject ? tie->nextOfSubject->previousOfSubject : ofSubject.last) = tie->previousOfSubject;
    if (--ofSubject.count == 0 && !ofSubject.delivery) {
        delete subject._data;
        subject._data = nullptr;
    }

    Observer& observer = *tie->observer;
    (tie->previousOfObserver ? tie->previousOfObserver->nextOfObserver : observer._data->first) =
        tie->nextOfObserver;
    if (tie->nextOfObserver)
        tie->nextOfObserver->previousOfObserver = tie->previousOfObserver;
    if (--observer._data->count == 0) {
        delete observer._data;
        observer._data = nullptr;
    }
    delete tie;
}

Subject::~Subject()
{
    if (!_data)
        return;
    for (Delivery* delivery = _data->delivery; delivery; delivery = delivery->outer)
        delivery->subjectDied = true;
    // The deliveries do not look at the data again, so the last cut may free it.
    _data->delivery = nullptr;
    if (!_data->first)
        delete _data;
    else
        while (_data)
            Data::cut(_data->first);
}

void Subject::attach(Observer& observer)
{
    if (Data::find(*this, observer))
        return;
    if (!_data)
        _data = new Data;
    if (!observer._data)
        observer._data = new Observer::Data;

    Tie* tie = new Tie{this, &observer, ++_data->lastNumber};
    tie->previousOfSubject = _data->last;
    (_data->last ? _data->last->nextOfSubject : _data->first) = tie;
    _data->last = tie;
    ++_data->count;

    tie->nextOfObserver = observer._data->first;
    if (tie->nextOfObserver)
        tie->nextOfObserver->previousOfObserver = tie;
    observer._data->first = tie;
    ++observer._data->count;
}

void Subject::detach(Observer& observer)
{
    if (Tie* tie = Data::find(*this, observer))
        Data::cut(tie);
}

void Subject::deliver(const double& time, BaseObject* first, BaseObject* second, BaseObject* third)
{
    Delivery delivery{_data->first, false, _data->delivery};
    _data->delivery = &delivery;
    const unsigned long long lastNumber = _data->lastNumber;
    while (delivery.next && delivery.next->number <= lastNumber) {
        Observer* observer = delivery.next->observer;
        delivery.next = delivery.next->nextOfSubject;
        observer->notify(time, first, second, third);
        if (delivery.subjectDied)
            return;
    }
    _data->delivery = delivery.outer;
    if (!_data->first && !_data->delivery) {
        delete _data;
        _data = nullptr;
    }
}

Observer::Observer(const char* name)
    : _observerName(name ? name : "")
{
}

Observer::Observer(const Observer& other)
    : NotificationHandler(other)
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
    while (_data)
        Subject::Data::cut(_data->first);
}

} // namespace Orvane
