#pragma once

#include <Orvane/Export.h>
#include <cstddef>
#include <string>
#include <string_view>

/// How the address lists of scripts and shaders name files of code.
namespace Orvane {

class Field;

/// The text without the line ends behind it: editors end the last line, that of a file's name too.
ORVANE_API std::string_view withoutLineEnd(std::string_view text);

/// Name of the readable local file that a value of \a addresses means; empty when it means none.
ORVANE_API std::string codeFileOf(const Field& addresses, std::string_view value);

/// Reads a file of no more than \a largestMB, without its byte order mark. False when it cannot be read, is
/// larger or no text; \a fault then says which.
ORVANE_API bool readCodeFile(const std::string& path, unsigned int largestMB, std::string& text,
                             std::string& fault);

} // namespace Orvane
