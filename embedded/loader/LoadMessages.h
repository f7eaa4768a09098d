#pragma once

#include "loader/SourcePlace.h"
#include <Orvane/LoadReport.h>
#include <string>
#include <string_view>

namespace Orvane {

/// The messages of one file, on their way into the report of a load. A report takes `maxMessages`; what comes
/// after is counted, and `LoadSession` says how many there were.
class LoadMessages
{
public:
    static constexpr std::size_t maxMessages = 1000;

    LoadMessages(LoadReport& report, std::size_t& leftOut, std::string file);

    /// A fault despite which the scene loads.
    void warn(SourcePlace place, std::string text);
    /// A fault that refuses the file.
    void error(SourcePlace place, std::string text);

    const std::string& file() const { return _file; }

private:
    LoadReport* _report;
    std::size_t* _leftOut;
    std::string _file;
};

/// A text of a scene file in quotes for a message: on one line, and no longer than a line.
std::string quoted(std::string_view text);

} // namespace Orvane
