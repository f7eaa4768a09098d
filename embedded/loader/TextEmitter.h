#pragma once

#include "loader/IndentedText.h"
#include "loader/SceneEmitter.h"
#include <string>
#include <string_view>
#include <vector>

namespace Orvane {

class SaveNotes;

/// What the emitters of all encodings have: the text that grows, the notes of what it cannot say, and the
/// choices that do not depend on the encoding.
class TextEmitter : public SceneEmitter
{
public:
    /// \a notes is told what cannot be said.
    TextEmitter(bool useTabs, SaveNotes& notes)
        : _out(useTabs)
        , _notes(notes)
    {
    }

    std::string takeText() { return _out.take(); }

protected:
    /// The profile that the file names, in the form of the graph.
    static std::string profileOf(const std::vector<KeptHead>& head);
    /// The source code that a `url` ends with, which reads best behind all other content; null when there is
    /// none.
    static const std::string* sourceOf(const Field& field);
    /// Says that a name had to change. Both are in the form of the file.
    static std::string noteOfName(std::string_view what, std::string_view own, std::string_view written);

    IndentedText _out;
    SaveNotes& _notes;
};

} // namespace Orvane
