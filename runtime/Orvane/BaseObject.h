#pragma once

#include <Orvane/Export.h>

namespace Orvane {

/// Root of the runtime's objects that callers meet by a plain pointer. It has run-time type information, so
/// that a receiver of a notification can `dynamic_cast` what it is handed.
class ORVANE_API BaseObject
{
public:
    BaseObject() = default;
    virtual ~BaseObject();

protected:
    BaseObject(const BaseObject&) = default;
    BaseObject& operator=(const BaseObject&) = default;
};

} // namespace Orvane
