#pragma once

#include <string>
#include <string_view>

namespace Orvane {

class Field;

/// Sets a field from the text of a scene file, which is UTF-8; the field's texts get the form of the graph.
/// An `MFString` may be one bare text. False, with the reason in \a error, when the text does not parse; the
/// field is then unchanged.
bool parseFileText(Field& field, std::string_view text, std::string& error);

/// The text without the blanks and line ends round it.
std::string_view trimmedText(std::string_view text);

} // namespace Orvane
