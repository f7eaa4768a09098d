#pragma once

#include <Orvane/Export.h>
#include <cstdint>
#include <string>
#include <vector>

namespace Orvane {

/// How many seconds the recording in a file lasts: WAV, AIFF, AU, Ogg, FLAC, MP3 and whatever else the sound
/// library reads. 0 when it is none.
ORVANE_API double soundDuration(const std::string& file);
/// The same for a file in memory.
ORVANE_API double soundDuration(const std::vector<std::uint8_t>& data);

} // namespace Orvane
