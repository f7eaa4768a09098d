#pragma once

#include <Orvane/Export.h>
#include <cstddef>

namespace Orvane {

/// What scripts may use up before they are stopped.
struct ScriptLimits
{
    double seconds = 2.0;                               ///< of processor time, in one call
    std::size_t bytes = std::size_t(256) * 1024 * 1024; ///< of all scripts of a context together
};

/// The limits of the process; tests set smaller ones.
ORVANE_API ScriptLimits& scriptLimits();

} // namespace Orvane
