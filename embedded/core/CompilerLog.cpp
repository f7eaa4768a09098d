#include "core/CompilerLog.h"
#include <algorithm>
#include <cctype>

namespace Orvane {

namespace {

/// Reads a text from its front.
struct Cursor
{
    std::string_view rest;

    bool take(std::string_view word)
    {
        const bool is = rest.substr(0, word.size()) == word;
        if (is)
            rest.remove_prefix(word.size());
        return is;
    }
    bool takeNumber(int& number)
    {
        constexpr std::size_t mostDigits = 9;
        std::size_t digits = 0;
        number = 0;
        for (; digits < rest.size() && digits < mostDigits && rest[digits] >= '0' && rest[digits] <= '9';
             ++digits)
            number = number * 10 + (rest[digits] - '0');
        rest.remove_prefix(digits);
        return digits > 0;
    }
    void skip(std::string_view characters)
    {
        rest.remove_prefix(std::min(rest.find_first_not_of(characters), rest.size()));
    }
};

/// "0:12(5)", "0:12" or "0(12)"; leaves \a cursor behind it.
bool takePlace(Cursor& cursor, CompilerLine& line)
{
    Cursor at = cursor;
    int string = 0;
    if (!at.takeNumber(string))
        return false;
    if (at.take(":")) {
        if (!at.takeNumber(line.line))
            return false;
        Cursor behind = at;
        if (behind.take("(") && behind.takeNumber(line.column) && behind.take(")"))
            at = behind;
    } else if (!at.take("(") || !at.takeNumber(line.line) || !at.take(")"))
        return false;
    at.skip(" ");
    at.take(":");
    at.skip(" ");
    cursor = at;
    return true;
}

bool mentionsWarning(std::string_view text)
{
    static constexpr std::string_view word = "warning";
    return std::search(text.begin(), text.end(), word.begin(), word.end(), [](char a, char b) {
               return std::tolower(static_cast<unsigned char>(a)) == b;
           }) != text.end();
}

} // namespace

std::vector<CompilerLine> readCompilerLog(std::string_view log)
{
    std::vector<CompilerLine> lines;
    while (!log.empty()) {
        const std::size_t end = std::min(log.find('\n'), log.size());
        Cursor cursor{log.substr(0, end)};
        log.remove_prefix(std::min(end + 1, log.size()));
        CompilerLine line;
        line.isWarning = mentionsWarning(cursor.rest.substr(0, cursor.rest.find('`')));
        Cursor behindWord = cursor;
        if ((behindWord.take("ERROR: ") || behindWord.take("WARNING: ")) && takePlace(behindWord, line))
            cursor = behindWord;
        else
            takePlace(cursor, line);
        const std::size_t last = cursor.rest.find_last_not_of(" \t\r\0");
        if (last == std::string_view::npos)
            continue;
        line.text = cursor.rest.substr(0, last + 1);
        lines.push_back(std::move(line));
    }
    return lines;
}

} // namespace Orvane
