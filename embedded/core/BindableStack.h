#pragma once

#include <Orvane/Export.h>
#include <vector>

namespace Orvane {

class BindableProc;

/// The stack of one kind of bindable nodes in a scene. Its top is bound: the one viewpoint through which the
/// user looks, the one background. It is told of each bindable in the order of the file.
class ORVANE_API BindableStack
{
public:
    /// Takes in a bindable that has come to run. Before the scene has, nothing is bound; afterwards the first
    /// one that comes into a stack that never had a top becomes it. A bindable that is no \a candidate waits
    /// to be bound by an event.
    void add(BindableProc& bindable, bool candidate, double time);
    /// The scene has come to run: binds the first candidate.
    void open(double time);
    /// Forgets a bindable that dies; if it was bound, the next one is.
    void remove(BindableProc& bindable, double time);

    /// Brings a bindable to the top, as `set_bind` TRUE does.
    void bind(BindableProc& bindable, double time);
    /// Takes a bindable off the stack, as `set_bind` FALSE does.
    void unbind(BindableProc& bindable, double time);

    /// The bound one; null when there is none.
    BindableProc* bound() const { return _stack.empty() ? nullptr : _stack.back(); }
    /// All that run, in the order in which they came.
    const std::vector<BindableProc*>& all() const { return _all; }

private:
    std::vector<BindableProc*> _stack; ///< the bound one last
    std::vector<BindableProc*> _all;
    BindableProc* _first = nullptr; ///< candidate of the time before the scene runs
    bool _open = false;
    bool _everBound = false;
};

} // namespace Orvane
