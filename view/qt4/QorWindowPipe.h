#pragma once

#include "QorExport.h"
#include <string>

namespace Orvane::Qt4 {

/// The display text of a window: `[W "x" H] [":" n] ["@" n] ["#" screen]`, each part optional, in
/// this order. Numbers are decimal, octal or hexadecimal as in C.
struct QOR_EXPORT QorWindowPipe
{
    /// In pixels; -1 for not given.
    long width = -1;
    long height = -1;
    long depth = -1;     ///< behind the colon
    long frequency = -1; ///< behind the at sign
    /// Number of the screen.
    long screen = 0;

    /// Reads \a text into this object; false when it does not fit the grammar. An empty text fits.
    bool parse(const std::string& text);

private:
    bool parsePart(const char* text, int stage);
};

} // namespace Orvane::Qt4
