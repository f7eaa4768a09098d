#include "core/BindableStack.h"
#include "core/BindableProc.h"
#include <algorithm>

namespace Orvane {

namespace {

bool take(std::vector<BindableProc*>& list, BindableProc& bindable)
{
    const auto found = std::find(list.begin(), list.end(), &bindable);
    if (found == list.end())
        return false;
    list.erase(found);
    return true;
}

} // namespace

void BindableStack::add(BindableProc& bindable, bool candidate, double time)
{
    _all.push_back(&bindable);
    if (!candidate)
        return;
    if (!_open)
        _first = _first ? _first : &bindable;
    else if (!_everBound)
        bind(bindable, time);
}

void BindableStack::open(double time)
{
    _open = true;
    if (_first && !_everBound)
        bind(*_first, time);
    _first = nullptr;
}

void BindableStack::remove(BindableProc& bindable, double time)
{
    if (_first == &bindable)
        _first = nullptr;
    take(_all, bindable);
    const bool wasBound = bound() == &bindable;
    if (take(_stack, bindable) && wasBound && bound())
        bound()->setBound(true, time);
}

void BindableStack::bind(BindableProc& bindable, double time)
{
    _everBound = true;
    BindableProc* const previous = bound();
    if (previous == &bindable)
        return;
    take(_stack, bindable);
    _stack.push_back(&bindable);
    if (previous)
        previous->setBound(false, time);
    bindable.setBound(true, time);
}

void BindableStack::unbind(BindableProc& bindable, double time)
{
    const bool wasBound = bound() == &bindable;
    if (!take(_stack, bindable) || !wasBound)
        return;
    bindable.setBound(false, time);
    if (bound())
        bound()->setBound(true, time);
}

} // namespace Orvane
