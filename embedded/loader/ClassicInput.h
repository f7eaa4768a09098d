#pragma once

#include "loader/ClassicTokens.h"
#include "loader/SourcePlace.h"
#include <string>
#include <string_view>

namespace Orvane {

class LoadMessages;
class SourceText;

/// The tokens of one file in a classic encoding, with the messages about them.
class ClassicInput
{
public:
    /// Both must outlive the input; the text is written into.
    ClassicInput(SourceText& text, LoadMessages& messages);

    SourcePlace place(std::size_t offset) const;
    /// Place of the present token.
    SourcePlace place() const { return place(tokens.offset()); }

    /// Says that something else than the present token was expected; \a where names the statement or field.
    void expected(std::string_view where, std::string_view what);
    void warn(std::size_t offset, std::string text);
    /// Takes the word or number here as a name. Empty, and told, when there is none.
    std::string_view takeName(std::string_view where, std::string_view what);

    /// The present token for a message.
    std::string found() const;
    std::size_t faults() const { return _faults; }

    ClassicTokens tokens;

private:
    SourceText& _text;
    LoadMessages& _messages;
    std::size_t _faults = 0;
};

} // namespace Orvane
