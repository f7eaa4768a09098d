#include "QorWindowPipe.h"

#include <cctype>
#include <cstdlib>
#include <cstring>

namespace Orvane::Qt4 {

namespace {

/// Reads a number and moves \a text behind it; false when there is none.
bool readNumber(const char*& text, long& number)
{
    char* end = nullptr;
    number = std::strtol(text, &end, 0);
    const bool found = end != text;
    text = end;
    return found;
}

} // namespace

bool QorWindowPipe::parse(const std::string& text)
{
    return parsePart(text.c_str(), 0);
}

/// \a stage is the number of the first part that may still come.
bool QorWindowPipe::parsePart(const char* text, int stage)
{
    const char first = *text;
    if (first == '\0')
        return true;

    if (std::isdigit(static_cast<unsigned char>(first)) && stage == 0) {
        // The width must end at the first "x", so a hexadecimal width, with an "x" of its own, is none.
        const char* cross = std::strchr(text + 1, 'x');
        if (!cross || !readNumber(text, width) || text != cross)
            return false;
        ++text;
        return readNumber(text, height) && parsePart(text, 1);
    }
    ++text;
    if (first == ':' && stage <= 1)
        return readNumber(text, depth) && parsePart(text, 2);
    if (first == '@' && stage <= 2)
        return readNumber(text, frequency) && parsePart(text, 3);
    if (first == '#' && stage <= 3)
        return readNumber(text, screen) && parsePart(text, 4);
    return false;
}

} // namespace Orvane::Qt4
