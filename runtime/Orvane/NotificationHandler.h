#pragma once

#include <Orvane/BaseObject.h>

namespace Orvane {

/// Receiver of notifications.
class ORVANE_API NotificationHandler : public BaseObject
{
public:
    ~NotificationHandler() override;

    /// Called on the thread that makes the change, inside the change. What the three objects are depends on
    /// the subject and is told there; each may be null. \a time is the time stamp of the change in seconds.
    virtual void notify(const double& time, BaseObject* first, BaseObject* second, BaseObject* third) = 0;
};

} // namespace Orvane
