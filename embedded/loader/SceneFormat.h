#pragma once

#include "base/Graph.h"
#include "base/SceneLoader.h"
#include <string>
#include <string_view>
#include <vector>

namespace Orvane {

class LoadMessages;
class SceneSink;
class SourceText;

/// One encoding of scenes: its names, and how it is read and written.
struct SceneFormat
{
    const char* name;                  ///< "X3D XML"
    std::vector<const char*> suffixes; ///< without dot
    /// True when a text begins as this encoding does.
    bool (*recognizes)(std::string_view text);
    /// Tells \a sink what the text says. False, with an error among the messages, when it is not of the
    /// encoding; the text may be written into.
    bool (*read)(SourceText& text, SceneSink& sink, LoadMessages& messages);
    /// A scene as text of the encoding. What that cannot say goes to \a notes.
    std::string (*write)(const Node& root, const SaveOptions& options, std::vector<std::string>& notes);
    /// A file of such a suffix is read even if its text does not begin as the encoding does.
    bool mayLackHeader = false;
    unsigned int writtenVersion = newestVersion; ///< of X3D, in tenths, whose rules hold for what is written
};

/// All encodings that this runtime reads, in the order in which file dialogs show them.
const std::vector<SceneFormat>& sceneFormats();
/// The encoding in which a text is written, whatever its file is called; null when it is none of them.
const SceneFormat* findFormat(std::string_view text);
/// The encoding in which a text may be read that begins as none does, by the name of its file; null when
/// there is none.
const SceneFormat* findFormatWithoutHeader(std::string_view text, const std::string& path);
/// The encoding of a file name's suffix; null when it is none of them.
const SceneFormat* formatOfSuffix(const std::string& path);

/// "X3D XML or ..." for messages.
std::string readableFormats();
/// What a text is that no format recognizes, for messages.
std::string foundFormat(std::string_view text);

} // namespace Orvane
