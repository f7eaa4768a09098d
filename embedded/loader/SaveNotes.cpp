#include "loader/SaveNotes.h"

namespace Orvane {

SaveNotes::SaveNotes(std::vector<std::string>& messages)
    : _messages(messages)
{
}

bool SaveNotes::add(const std::string& text)
{
    if (!_known.insert(text).second)
        return false;
    _messages.push_back(text);
    return true;
}

} // namespace Orvane
