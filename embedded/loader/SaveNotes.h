#pragma once

#include <string>
#include <unordered_set>
#include <vector>

namespace Orvane {

/// What an encoding says otherwise than the graph has it, or not at all: for the host, each thing once.
class SaveNotes
{
public:
    /// The notes go to the end of \a messages.
    explicit SaveNotes(std::vector<std::string>& messages);

    /// True when this has not been said before.
    bool add(const std::string& text);

private:
    std::vector<std::string>& _messages;
    std::unordered_set<std::string> _known;
};

} // namespace Orvane
