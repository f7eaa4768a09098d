#pragma once

#include <Orvane/Observer.h>
#include <Orvane/Window.h>
#include <Orvane/WindowProc.h>
#include <algorithm>
#include <list>
#include <string>
#include <utility>
#include <vector>

/// Writes down which window subjects fire, in order, as "new 800x600".
class WindowEvents
{
public:
    WindowEvents()
    {
        add(Orvane::WindowProc::_newWidget, "new");
        add(Orvane::WindowProc::_deleteWidget, "delete");
        add(Orvane::WindowProc::_showWidget, "show");
        add(Orvane::WindowProc::_hideWidget, "hide");
        add(Orvane::WindowProc::_resizeWidget, "resize");
        add(Orvane::WindowProc::_repositionWidget, "reposition");
        add(Orvane::WindowProc::_cursorWidget, "cursor");
        add(Orvane::WindowProc::_fullScreenWidget, "fullscreen");
        add(Orvane::WindowProc::_beginFrameWidget, "begin");
        add(Orvane::WindowProc::_endFrameWidget, "end");
    }

    /// What fired since the last call.
    std::vector<std::string> take() { return std::exchange(names, {}); }

    std::vector<std::string> names;
    std::vector<Orvane::WindowProc*> windows; ///< those announced and not ended

private:
    class Listener : public Orvane::Observer
    {
    public:
        Listener(WindowEvents& events, const char* name)
            : Orvane::Observer(name)
            , _events(events)
        {
        }
        void notify(const double&, Orvane::BaseObject* first, Orvane::BaseObject*,
                    Orvane::BaseObject*) override
        {
            auto* proc = dynamic_cast<Orvane::WindowProc*>(first);
            _events.names.push_back(observerName());
            if (observerName() == "new")
                _events.windows.push_back(proc);
            if (observerName() == "delete")
                _events.windows.erase(std::remove(_events.windows.begin(), _events.windows.end(), proc),
                                      _events.windows.end());
        }

    private:
        WindowEvents& _events;
    };

    void add(Orvane::Subject& subject, const char* name)
    {
        _listeners.emplace_back(*this, name);
        subject.attach(_listeners.back());
    }

    std::list<Listener> _listeners;
};
