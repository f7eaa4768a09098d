#pragma once

#include <cstddef>

namespace Orvane {

/// What the last frames of a context cost, for a host's status line.
struct FrameStatistics
{
    double framesPerSecond = 0.0; ///< drawn frames over the last second
    std::size_t triangles = 0;    ///< of the last drawn frame, all windows together
    std::size_t drawCalls = 0;    ///< as the triangles
    std::size_t framesDrawn = 0;  ///< since the context began
    std::size_t framesRun = 0;    ///< idle ones too
};

} // namespace Orvane
