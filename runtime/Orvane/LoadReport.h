#pragma once

#include <Orvane/Export.h>
#include <cstddef>
#include <string>
#include <vector>

namespace Orvane {

/// One message of a load. A fault of the scene's text, or of a file that the scene names.
struct ORVANE_API LoadMessage
{
    /// Whether the load failed by it.
    enum Severity : int { ERROR_LM = 1, WARNING_LM = 2 };

    /// How grave it is, and where.
    Severity severity = WARNING_LM;
    std::string file; ///< the file or address at fault
    int line = 0;     ///< from 1; 0 when no place can be told
    int column = 0;   ///< from 1, in bytes; 0 when no place can be told
    std::string text; ///< what was expected and what was found

    /// "file:line:column: text", without what is not known.
    std::string toString() const;
};

/// What the last load of a context read, for tools that check scenes.
struct LoadReport
{
    /// Whether it succeeded, what was said, and how many of each it read.
    bool ok = false;
    std::vector<LoadMessage> messages;
    std::size_t nodes = 0;
    std::size_t namedNodes = 0;
    std::size_t uses = 0;
    std::size_t routes = 0;
    std::size_t protos = 0;
    std::size_t scripts = 0;
    std::size_t bytes = 0; ///< of all files of the scene as they lie on disk
    double milliseconds = 0.0;
};

} // namespace Orvane
