#include "script/LoopGuard.h"

#include <algorithm>
#include <vector>

namespace Orvane {

namespace {

constexpr std::string_view check = "(++__n__&63||__tick__())";
constexpr std::string_view functionHead = "var __n__=__tick__();";
constexpr std::string_view programHead = "var __n__=0;";

bool isWordByte(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' ||
           c == '$' || c == '\\' || static_cast<unsigned char>(c) >= 0x80;
}

bool isBlank(char c)
{
    return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '\f' || c == '\v';
}

template <std::size_t N>
bool isOneOf(std::string_view word, const std::string_view (&words)[N])
{
    return std::find(std::begin(words), std::end(words), word) != std::end(words);
}

/// Words after which an operand begins, so that a slash begins a regular expression.
bool expectsOperand(std::string_view word)
{
    constexpr std::string_view words[] = {"return", "typeof", "instanceof", "in",   "of", "new",
                                          "delete", "void",   "throw",      "case", "do", "else"};
    return isOneOf(word, words);
}

class Guard
{
public:
    explicit Guard(std::string_view code)
        : _code(code)
    {
        _out.reserve(code.size() + code.size() / 4 + 64);
    }

    std::string run()
    {
        openBody(programHead);
        while (_at < _code.size())
            step();
        return std::move(_out);
    }

private:
    enum class Role { Plain, Condition, While, For };
    struct Open
    {
        char bracket;
        Role role;
        unsigned int semicolons = 0;
        std::size_t condition = 0; ///< where in the output that of a `for` begins
    };

    char peek(std::size_t ahead = 0) const { return _at + ahead < _code.size() ? _code[_at + ahead] : '\0'; }

    void copyTo(std::size_t end)
    {
        end = std::min(end, _code.size());
        _out.append(_code.substr(_at, end - _at));
        _at = end;
    }

    void step()
    {
        const char c = peek();
        if (isBlank(c) || (c == '/' && (peek(1) == '/' || peek(1) == '*')))
            copyTo(endOfBlanks(_at));
        else if (c == '"' || c == '\'' || c == '`')
            operand(endOfString(_at));
        else if (c == '/' && !_afterOperand && endOfRegExp() > 0)
            operand(endOfRegExp());
        else if (isWordByte(c))
            word();
        else
            mark(c);
    }

    /// Past blanks and comments.
    std::size_t endOfBlanks(std::size_t at) const
    {
        for (;;) {
            while (at < _code.size() && isBlank(_code[at]))
                ++at;
            const std::string_view two = _code.substr(at, 2);
            if (two == "//")
                at = std::min(_code.find_first_of("\r\n", at), _code.size());
            else if (two == "/*")
                at = _code.find("*/", at + 2) == std::string_view::npos ? _code.size()
                                                                        : _code.find("*/", at + 2) + 2;
            else
                return at;
        }
    }

    std::size_t endOfString(std::size_t at) const
    {
        const char quote = _code[at];
        for (++at; at < _code.size(); ++at) {
            if (_code[at] == '\\')
                ++at;
            else if (_code[at] == quote)
                return at + 1;
            else if (_code[at] == '\n' && quote != '`')
                return at;
        }
        return _code.size();
    }

    /// 0 when no regular expression begins here.
    std::size_t endOfRegExp() const
    {
        bool inClass = false;
        for (std::size_t at = _at + 1; at < _code.size() && _code[at] != '\n'; ++at) {
            if (_code[at] == '\\')
                ++at;
            else if (_code[at] == '[')
                inClass = true;
            else if (_code[at] == ']')
                inClass = false;
            else if (_code[at] == '/' && !inClass)
                return at + 1;
        }
        return 0;
    }

    void operand(std::size_t end)
    {
        copyTo(end);
        _afterOperand = true;
        _word = {};
        _last = 'v';
    }

    void word()
    {
        const std::size_t end = static_cast<std::size_t>(
            std::find_if_not(_code.begin() + static_cast<std::ptrdiff_t>(_at), _code.end(), isWordByte) -
            _code.begin());
        const bool isMember = _last == '.';
        const std::string_view text = _code.substr(_at, end - _at);
        const std::size_t next = endOfBlanks(end);
        if (text == "let" && !isMember && next > end && next < _code.size() && isWordByte(_code[next])) {
            _out += "var";
            _at = end;
        } else {
            copyTo(end);
        }
        _word = isMember ? std::string_view() : text;
        _afterOperand = isMember || !expectsOperand(text);
        _last = 'v';
    }

    void mark(char c)
    {
        switch (c) {
        case '(':
            openParenthesis();
            return;
        case '[':
            _open.push_back({c, Role::Plain});
            break;
        case '{': {
            const bool isBody = _last == ')' && _closed == Role::Plain;
            _open.push_back({c, Role::Plain});
            put(c, false);
            if (isBody)
                openBody(functionHead);
            return;
        }
        case ')':
            closeParenthesis();
            return;
        case ']':
        case '}':
            if (!_open.empty())
                _open.pop_back();
            put(c, c == ']');
            return;
        case ';':
            if (!_open.empty() && _open.back().role == Role::For) {
                separateFor(_open.back());
                return;
            }
            break;
        case '+':
        case '-':
            if (peek(1) == c)
            { // what stands before an operand keeps waiting for it, what follows one ends it
                const bool afterOperand = _afterOperand;
                put(c, afterOperand);
                put(c, afterOperand);
                return;
            }
            break;
        default:
            break;
        }
        put(c, false);
    }

    void put(char c, bool isOperand)
    {
        _out += c;
        ++_at;
        _afterOperand = isOperand;
        _word = {};
        _last = c;
    }

    void openParenthesis()
    {
        constexpr std::string_view conditions[] = {"if", "with", "switch", "catch"};
        const Role role = _word == "while"             ? Role::While
                          : _word == "for"             ? Role::For
                          : isOneOf(_word, conditions) ? Role::Condition
                                                       : Role::Plain;
        _open.push_back({'(', role});
        put('(', false);
        if (role == Role::While)
            _out.append(check).append("&&(");
    }

    void closeParenthesis()
    {
        _closed = Role::Plain;
        if (!_open.empty()) {
            _closed = _open.back().role;
            _open.pop_back();
        }
        if (_closed == Role::While)
            _out += ')';
        put(')', _closed == Role::Plain);
    }

    void separateFor(Open& loop)
    {
        if (++loop.semicolons == 1) {
            put(';', false);
            loop.condition = _out.size();
            return;
        }
        if (loop.semicolons == 2) {
            if (_last == ';') {
                _out.append(check);
            } else {
                _out.insert(loop.condition, std::string(check) + "&&(");
                _out += ')';
            }
        }
        put(';', false);
    }

    /// Writes the head of a body behind its directives, such as "use strict".
    void openBody(std::string_view head)
    {
        for (;;) {
            const std::size_t begin = endOfBlanks(_at);
            if (begin >= _code.size() || (_code[begin] != '"' && _code[begin] != '\''))
                break;
            const std::size_t end = endOfString(begin);
            const std::size_t next = endOfBlanks(end);
            const bool hasSemicolon = next < _code.size() && _code[next] == ';';
            const bool isLastOfLine = next >= _code.size() || _code[next] == '}' ||
                                      (_code.substr(end, next - end).find('\n') != std::string_view::npos &&
                                       isWordByte(_code[next]));
            if (!hasSemicolon && !isLastOfLine)
                break;
            copyTo(hasSemicolon ? next + 1 : end);
            if (!hasSemicolon)
                _out += ';';
        }
        _out.append(head);
        _afterOperand = false;
        _word = {};
        _last = ';';
    }

    std::string_view _code;
    std::size_t _at = 0;
    std::string _out;
    std::vector<Open> _open;
    std::string_view _word;     ///< that was read last, when it may be a keyword
    char _last = ';';           ///< the last mark, or 'v' for words and values
    Role _closed = Role::Plain; ///< of the parenthesis that was closed last
    bool _afterOperand = false;
};

} // namespace

std::string guardLoops(std::string_view code)
{
    return Guard(code).run();
}

} // namespace Orvane
