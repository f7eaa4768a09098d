#include "loader/LoadMessages.h"

#include <utility>

namespace Orvane {

LoadMessages::LoadMessages(LoadReport& report, std::size_t& leftOut, std::string file)
    : _report(&report)
    , _leftOut(&leftOut)
    , _file(std::move(file))
{
}

void LoadMessages::warn(SourcePlace place, std::string text)
{
    if (_report->messages.size() >= maxMessages) {
        ++*_leftOut;
        return;
    }
    _report->messages.push_back({LoadMessage::WARNING_LM, _file, static_cast<int>(place.line),
                                 static_cast<int>(place.column), std::move(text)});
}

void LoadMessages::error(SourcePlace place, std::string text)
{
    // There is at most one for each file, and it is what the user must see.
    _report->messages.push_back({LoadMessage::ERROR_LM, _file, static_cast<int>(place.line),
                                 static_cast<int>(place.column), std::move(text)});
}

std::string quoted(std::string_view text)
{
    constexpr std::size_t maxLength = 60;
    const bool cut = text.size() > maxLength;
    std::size_t length = cut ? maxLength : text.size();
    // Not inside a character of several bytes.
    while (cut && length > 0 && (static_cast<unsigned char>(text[length]) & 0xC0) == 0x80)
        --length;
    std::string result = "\"";
    for (const char c : text.substr(0, length))
        result.push_back(static_cast<unsigned char>(c) < 0x20 || c == 0x7F ? ' ' : c);
    result += cut ? "...\"" : "\"";
    return result;
}

} // namespace Orvane
