#pragma once

#include <string>
#include <string_view>

namespace Orvane {
class IndentedText;
}

/// The smallest parts of XML as they are written. Texts are UTF-8.
namespace Orvane::xml {

/// Appends a text for an attribute in the given quotes.
void appendEscaped(IndentedText& out, std::string_view text, char quote);
/// A text for a comment.
std::string commentText(std::string_view text);
/// True for a name of ASCII that an element or attribute can bear.
bool isPlainName(std::string_view name);
/// The name itself when an element or attribute can bear it, else one that is like it.
std::string sayableName(std::string_view name);
/// Source code in sections of its own, so that not even the blanks round it change.
void appendSource(IndentedText& out, std::string_view source);

} // namespace Orvane::xml
