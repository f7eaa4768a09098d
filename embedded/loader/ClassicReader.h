#pragma once

#include <string_view>

namespace Orvane {

class LoadMessages;
class SceneSink;
class SourceText;

/// True for a text that begins with the header of X3D in classic encoding.
bool isClassic(std::string_view text);
/// True for a text that begins with the header of VRML97.
bool isVrml97(std::string_view text);

/// Reads X3D 3.0 to 4.0 in classic encoding as `SceneFormat::read` tells. Faults give messages, a missing
/// header too; only a text of which nothing can be made is refused.
bool readClassic(SourceText& text, SceneSink& sink, LoadMessages& messages);
/// The same for VRML97.
bool readVrml97(SourceText& text, SceneSink& sink, LoadMessages& messages);

} // namespace Orvane
