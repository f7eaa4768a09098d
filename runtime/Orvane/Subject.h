#pragma once

#include <Orvane/Export.h>

namespace Orvane {

class BaseObject;
class Observer;

/// A list of observers that is told of one kind of event. Subject and observers know each other both ways:
/// whichever dies first ends the tie, at the end of the process too. Attaching, detaching and destroying are
/// safe while the subject is delivering: who has left gets nothing more, who joined gets the next delivery.
class ORVANE_API Subject
{
public:
    Subject() = default;
    Subject(const Subject&) = delete;
    Subject& operator=(const Subject&) = delete;
    ~Subject();

    /// Adds a receiver behind the others. Attaching it a second time changes nothing.
    void attach(Observer& observer);

    /// Takes a receiver out; one that is not attached is left alone.
    void detach(Observer& observer);

    /// True when no observer is attached.
    bool isUntouched() const { return !_data; }

    /// Calls `notify` of each attached observer in order of attachment.
    void fire(const double& time, BaseObject* first, BaseObject* second = nullptr,
              BaseObject* third = nullptr)
    {
        if (_data)
            deliver(time, first, second, third);
    }

    struct Data;

private:
    friend class Observer;

    void deliver(const double& time, BaseObject* first, BaseObject* second, BaseObject* third);

    Data* _data = nullptr;
};

} // namespace Orvane
