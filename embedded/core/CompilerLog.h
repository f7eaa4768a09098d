#pragma once

#include <Orvane/Export.h>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace Orvane {

/// One line of what a driver says of a shader.
struct CompilerLine
{
    int line = 0;   ///< of the shader's text, from 1; 0 when the driver tells none
    int column = 0; ///< from 1; 0 when the driver tells none
    bool isWarning = false;
    std::string text; ///< without the place
};

/// Takes a log of OpenGL's compiler or linker apart: lines such as "0:12(5): error: ...", "0(12) : error
/// C1008: ..." or "ERROR: 0:12: ...", as drivers write them. Lines that say nothing are left out.
ORVANE_API std::vector<CompilerLine> readCompilerLog(std::string_view log);

} // namespace Orvane
