#include "core/Use.h"
#include "core/ElementProc.h"
#include <utility>

namespace Orvane {

Use::Use(Use&& other) noexcept
{
    *this = std::move(other);
}

Use& Use::operator=(Use&& other) noexcept
{
    if (this != &other) {
        ElementProc* const user = other._user;
        ElementProc* const element = other._element;
        other.clear();
        link(user, element);
    }
    return *this;
}

Use::~Use()
{
    clear();
}

void Use::set(ElementProc& user, ElementProc* element)
{
    if (_element != element || _user != &user)
        link(&user, element);
}

void Use::clear()
{
    if (!_element)
        return;
    (_previous ? _previous->_next : _element->_uses) = _next;
    if (_next)
        _next->_previous = _previous;
    _element = nullptr;
    _user = nullptr;
    _next = _previous = nullptr;
}

void Use::link(ElementProc* user, ElementProc* element)
{
    clear();
    if (!element)
        return;
    _user = user;
    _element = element;
    _next = element->_uses;
    if (_next)
        _next->_previous = this;
    element->_uses = this;
}

} // namespace Orvane
