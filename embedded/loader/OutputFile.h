#pragma once

#include <string>
#include <string_view>

namespace Orvane {

/// Writes a file in one go, packed as gzip does when \a pack says so. The file appears under its name only
/// when it is complete. False, with the reason in \a error, when that fails.
bool writeOutputFile(const std::string& path, std::string_view text, bool pack, std::string& error);

} // namespace Orvane
