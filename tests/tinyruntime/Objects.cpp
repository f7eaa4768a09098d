// Root classes, counted references, observers and subjects.

#include <Orvane/Observer.h>
#include <Orvane/RefCountObject.h>
#include <Orvane/Subject.h>
#include <algorithm>
#include <vector>

namespace Orvane {

BaseObject::~BaseObject() = default;
NotificationHandler::~NotificationHandler() = default;
RefCountObject::~RefCountObject() = default;

void RefCountObject::subRef() const
{
    if (--_refCount <= 0)
        delete this;
}

/// Who is attached. While the subject delivers, places are emptied instead of removed, and a subject that
/// dies leaves its data to the delivery.
struct Subject::Data
{
    std::vector<Observer*> observers;
    int deliveries = 0;
    bool orphaned = false;

    /// Takes out the empty places of a subject that does not deliver, and its data when nobody is left.
    static void tidy(Subject& subject)
    {
        Data* data = subject._data;
        if (data->deliveries > 0)
            return;
        auto& list = data->observers;
        list.erase(std::remove(list.begin(), list.end(), nullptr), list.end());
        if (list.empty()) {
            delete data;
            subject._data = nullptr;
        }
    }
};

struct Observer::Data
{
    std::vector<Subject*> subjects;
};

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

Subject::~Subject()
{
    if (!_data)
        return;
    for (Observer* observer : _data->observers) {
        if (observer) {
            auto& subjects = observer->_data->subjects;
            subjects.erase(std::remove(subjects.begin(), subjects.end(), this), subjects.end());
        }
    }
    _data->observers.clear();
    _data->orphaned = true;
    if (_data->deliveries == 0)
        delete _data;
}

void Subject::attach(Observer& observer)
{
    if (!_data)
        _data = new Data;
    auto& observers = _data->observers;
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
    const auto place = std::find(_data->observers.begin(), _data->observers.end(), &observer);
    if (place == _data->observers.end())
        return;
    *place = nullptr;
    Data::tidy(*this);
    auto& subjects = observer._data->subjects;
    subjects.erase(std::find(subjects.begin(), subjects.end(), this));
}

void Subject::deliver(const double& time, BaseObject* first, BaseObject* second, BaseObject* third)
{
    Data* data = _data;
    ++data->deliveries;
    const std::size_t count = data->observers.size();
    for (std::size_t i = 0; i < count && !data->orphaned; ++i) {
        if (Observer* observer = data->observers[i])
            observer->notify(time, first, second, third);
    }
    if (--data->deliveries == 0) {
        if (data->orphaned)
            delete data;
        else
            Data::tidy(*this);
    }
}

} // namespace Orvane
