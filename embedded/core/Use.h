#pragma once

#include <Orvane/Export.h>

namespace Orvane {

class ElementProc;

/// Ties a behaviour to another one that it builds on: a shape to its geometry, a group to each of its
/// children. The element knows its uses, tells the users when it changes, and lets go of them when it dies.
class ORVANE_API Use
{
public:
    Use() = default;
    Use(Use&& other) noexcept;
    Use& operator=(Use&& other) noexcept;
    ~Use();

    /// Lets \a user build on \a element, or on nothing when that is null.
    void set(ElementProc& user, ElementProc* element);
    void clear();

    ElementProc* element() const { return _element; }
    ElementProc* user() const { return _user; }
    /// The next use of the same element.
    Use* next() const { return _next; }

private:
    void link(ElementProc* user, ElementProc* element);

    ElementProc* _element = nullptr;
    ElementProc* _user = nullptr;
    Use* _next = nullptr;
    Use* _previous = nullptr;
};

} // namespace Orvane
