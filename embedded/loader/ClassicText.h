#pragma once

#include <string>
#include <string_view>

/// The smallest parts of the classic encodings as they are written. Texts are in the form of the graph.
namespace Orvane::classic {

/// The name itself when a file can hold it, else one that is like it.
std::string sayableName(std::string_view name);
/// In quotes, as it goes into the file.
std::string quoted(std::string_view text);

/// True for numbers or truth values and nothing else.
bool isNumberList(std::string_view text);
/// True for texts in quotes and nothing else.
bool isQuotedList(std::string_view text);

} // namespace Orvane::classic
