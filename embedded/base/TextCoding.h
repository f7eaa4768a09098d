#pragma once

#include <Orvane/Export.h>
#include <string>
#include <string_view>

/// Scene files and file systems hold UTF-8; the runtime hands out Latin-1 where a text fits it and keeps the
/// rest as UTF-8.
namespace Orvane::coding {

ORVANE_API bool isAscii(std::string_view text);
ORVANE_API bool isUtf8(std::string_view text);

ORVANE_API std::string latin1ToUtf8(std::string_view text);
/// UTF-16 or UTF-32 (\a unitBytes 2 or 4) as UTF-8; what is no character becomes U+FFFD.
ORVANE_API std::string wideToUtf8(std::string_view bytes, int unitBytes, bool bigEndian);

/// The form in which the graph keeps a text of a file: Latin-1 when every character fits and the result would
/// not be taken for UTF-8 again, else the UTF-8 itself.
ORVANE_API std::string toGraph(std::string_view utf8);
/// The form in which a text of the graph goes into a file.
ORVANE_API std::string toFile(std::string_view text);

} // namespace Orvane::coding
