#pragma once

#include <string_view>

namespace Orvane {

class LoadMessages;
class SceneSink;
class SourceText;

/// True for a text that begins as XML does.
bool isXml(std::string_view text);

/// Reads X3D 3.0 to 4.0 in XML encoding as `SceneFormat::read` tells. What is no well-formed XML, or has
/// another root element than X3D, is refused; whatever else is wrong gives messages.
bool readXml(SourceText& text, SceneSink& sink, LoadMessages& messages);

} // namespace Orvane
