#pragma once

#include <Orvane/NotificationHandler.h>
#include <string>

namespace Orvane {

class Subject;

/// A named receiver that subjects hold while it is attached. Its destruction takes it out of all its
/// subjects. Belongs to whoever made it; subjects never delete an observer.
class ORVANE_API Observer : public NotificationHandler
{
public:
    /// \a name may be null: the observer is then unnamed.
    explicit Observer(const char* name);

    /// The copy has the same name and is attached to nothing.
    Observer(const Observer& other);

    /// Takes over the name; what this observer is attached to stays.
    Observer& operator=(const Observer& other);

    ~Observer() override;

    /// Empty when unnamed.
    const std::string& observerName() const { return _observerName; }

    struct Data;

private:
    friend class Subject;

    std::string _observerName;
    Data* _data = nullptr;
};

} // namespace Orvane
