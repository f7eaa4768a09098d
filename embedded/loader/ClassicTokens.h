#pragma once

#include <cstddef>
#include <string_view>

namespace Orvane {

/// Splits a text of the classic encodings into tokens and stands at one of them. Commas count as blanks.
/// Comments are blanked in the text itself as they are met, and line ends in strings become one character, so
/// that any stretch of tokens may be handed on as the text of a value.
class ClassicTokens
{
public:
    enum Kind { END, WORD, NUMBER, STRING, OPEN_BRACE, CLOSE_BRACE, OPEN_BRACKET, CLOSE_BRACKET };

    /// Stands at the first token. A zero byte must follow the text, and none may be in it.
    ClassicTokens(char* text, std::size_t size);

    Kind kind() const { return _kind; }
    /// The token as it is written, a string with its quotes. A word or number ends only at a blank, bracket,
    /// brace, quote or comment: it may hold the dots of a route, and need not be a number all through.
    std::string_view text() const { return {_begin, static_cast<std::size_t>(_end - _begin)}; }
    bool is(std::string_view word) const { return _kind == WORD && text() == word; }
    /// Position of the token in the text.
    std::size_t offset() const { return static_cast<std::size_t>(_begin - _text); }
    /// False for a string that the end of the file ends.
    bool isClosed() const { return _isClosed; }
    /// True when the token after this one is an opening brace.
    bool opensBrace() const;
    /// The text from a token that stood at a position to the one before the present; empty when that is none.
    std::string_view since(std::size_t offset) const;

    void next();
    /// Takes the string that stands here, and gives its text without quotes and escapes.
    std::string_view takeString();
    /// Takes the list that the bracket here opens, if it has nothing but numbers, and gives it without its
    /// brackets. False, with nothing taken, when it has something else.
    bool takeNumbers(std::string_view& list);
    /// Goes behind the brace or bracket that closes the one here, or to the end.
    void skipGroup();

private:
    void readString();
    void blankComment(char* at);

    char* _text;
    char* _textEnd;
    char* _begin;
    char* _end;
    char* _lastEnd; ///< of the token before
    Kind _kind = END;
    bool _isClosed = true;
};

} // namespace Orvane
