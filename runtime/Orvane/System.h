#pragma once

#include <Orvane/Export.h>

namespace Orvane {

/// The process-wide side of the runtime.
class ORVANE_API System
{
public:
    System(const System&) = delete;
    System& operator=(const System&) = delete;

    /// The one system of the process.
    static System& the();

    /// Starts the runtime, before any context. A second start without an end between is taken as nothing. \a
    /// version is the build constant of the caller.
    void init(int argc, char** argv, int version);
    /// Ends the runtime, after the last context. May be followed by a new start; a second end is taken as
    /// nothing.
    void exit();

    /// True between a start and its end.
    bool isInitialised() const { return _initialised; }

private:
    System() = default;

    bool _initialised = false;
};

} // namespace Orvane
