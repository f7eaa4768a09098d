#include "loader/ClassicInput.h"

#include "loader/LoadMessages.h"
#include "loader/SourceText.h"

namespace Orvane {

ClassicInput::ClassicInput(SourceText& text, LoadMessages& messages)
    : tokens(text.data(), text.size())
    , _text(text)
    , _messages(messages)
{
}

SourcePlace ClassicInput::place(std::size_t offset) const
{
    return _text.place(offset);
}

std::string ClassicInput::found() const
{
    switch (tokens.kind()) {
    case ClassicTokens::END:
        return "the end of the file";
    case ClassicTokens::STRING:
        return "the text " +
               quoted(tokens.text().substr(1, tokens.text().size() - (tokens.isClosed() ? 2 : 1)));
    default:
        return quoted(tokens.text());
    }
}

void ClassicInput::expected(std::string_view where, std::string_view what)
{
    std::string text(where);
    text.append(where.empty() ? "expected " : ": expected ").append(what).append(", found ").append(found());
    warn(tokens.offset(), std::move(text));
}

void ClassicInput::warn(std::size_t offset, std::string text)
{
    ++_faults;
    _messages.warn(place(offset), std::move(text));
}

std::string_view ClassicInput::takeName(std::string_view where, std::string_view what)
{
    if (tokens.kind() != ClassicTokens::WORD && tokens.kind() != ClassicTokens::NUMBER) {
        expected(where, what);
        return {};
    }
    const std::string_view name = tokens.text();
    tokens.next();
    return name;
}

} // namespace Orvane
