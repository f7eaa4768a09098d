#include <Relayne/URL.h>
#include <algorithm>
#include <string_view>

namespace Relayne {

namespace {

bool isLetter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

char lower(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

/// Length of the scheme in front of a colon; 0 when there is none. A single letter is a drive.
std::size_t schemeLength(std::string_view text)
{
    if (text.empty() || !isLetter(text[0]))
        return 0;
    const std::size_t end =
        std::find_if_not(
            text.begin(), text.end(),
            [](char c) { return isLetter(c) || isDigit(c) || c == '+' || c == '-' || c == '.'; }) -
        text.begin();
    return end > 1 && end < text.size() && text[end] == ':' ? end : 0;
}

int hexValue(char c)
{
    if (isDigit(c))
        return c - '0';
    c = lower(c);
    return c >= 'a' && c <= 'f' ? c - 'a' + 10 : -1;
}

/// Percent escapes undone; what is no escape stays as it is, and so does one of the null byte.
std::string unescaped(std::string_view text)
{
    std::string result;
    result.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const int high = text[i] == '%' && i + 2 < text.size() ? hexValue(text[i + 1]) : -1;
        const int low = high >= 0 ? hexValue(text[i + 2]) : -1;
        if (low >= 0 && high + low > 0) {
            result += static_cast<char>(high * 16 + low);
            i += 2;
        } else {
            result += text[i];
        }
    }
    return result;
}

/// Takes "." and ".." out of a path. What leads above a relative path stays, above an absolute one it goes.
std::string withoutDots(std::string_view path)
{
    const bool absolute = !path.empty() && path[0] == '/';
    std::string result(absolute ? "/" : "");
    std::size_t floor = result.size(); // nothing in front of it can be taken back
    path.remove_prefix(result.size());
    while (!path.empty()) {
        const std::size_t slash = path.find('/');
        const std::string_view segment = path.substr(0, slash);
        const bool last = slash == std::string_view::npos;
        path.remove_prefix(last ? path.size() : slash + 1);
        const bool wouldBecomeAbsolute = segment.empty() && result.empty();
        if (segment == "." || wouldBecomeAbsolute)
            continue;
        if (segment != "..") {
            result += segment;
            if (!last)
                result += '/';
        } else if (result.size() > floor) {
            const std::size_t previous = result.find_last_of('/', result.size() - 2);
            result.erase(previous == std::string::npos ? 0 : std::max(previous + 1, floor));
        } else if (!absolute) {
            result += last ? ".." : "../";
            floor = result.size();
        }
    }
    return result;
}

} // namespace

URL::URL() = default;

URL::URL(const std::string& text)
{
    std::string_view rest = text;
    if (const std::size_t length = schemeLength(rest)) {
        _scheme.resize(length);
        std::transform(rest.begin(), rest.begin() + static_cast<std::ptrdiff_t>(length), _scheme.begin(),
                       lower);
        rest.remove_prefix(length + 1);
    }
    if (const std::size_t hash = rest.find('#'); hash != std::string_view::npos) {
        _fragment = rest.substr(hash + 1);
        _hasFragment = true;
        rest = rest.substr(0, hash);
    }
    if (const std::size_t mark = rest.find('?'); mark != std::string_view::npos) {
        _query = rest.substr(mark + 1);
        _hasQuery = true;
        rest = rest.substr(0, mark);
    }
    if (rest.substr(0, 2) == "//") {
        rest.remove_prefix(2);
        const std::size_t slash = rest.find('/');
        _authority = rest.substr(0, slash);
        _hasAuthority = true;
        rest.remove_prefix(slash == std::string_view::npos ? rest.size() : slash);
    }
    _path = rest;
}

URL::URL(const URL& other) = default;
URL& URL::operator=(const URL& other) = default;
URL::~URL() = default;

URL URL::fromLocalFile(const std::string& file)
{
    static const char digits[] = "0123456789ABCDEF";
    URL url;
    if (schemeLength(file) > 0)
        url._path = "./";
    else if (file.compare(0, 2, "//") == 0)
        url._path = "/.";
    for (const char c : file) {
        if (c == '%' || c == '?' || c == '#') {
            const auto byte = static_cast<unsigned char>(c);
            url._path += '%';
            url._path += digits[byte >> 4];
            url._path += digits[byte & 15];
        } else {
            url._path += c;
        }
    }
    return url;
}

std::string URL::toString() const
{
    std::string text;
    text.reserve(_scheme.size() + _authority.size() + _path.size() + _query.size() + _fragment.size() + 6);
    if (!_scheme.empty())
        text.append(_scheme).append(":");
    if (_hasAuthority)
        text.append("//").append(_authority);
    text += _path;
    if (_hasQuery)
        text.append("?").append(_query);
    if (_hasFragment)
        text.append("#").append(_fragment);
    return text;
}

bool URL::isEmpty() const
{
    return _scheme.empty() && !_hasAuthority && _path.empty() && !_hasQuery && !_hasFragment;
}

bool URL::isLocalFile() const
{
    if (_scheme.empty())
        return !_hasAuthority;
    return _scheme == "file" && (_authority.empty() || _authority == "localhost");
}

/// True for an address such as "file:b.x3d", which means a file beside the one that it stands in.
bool URL::isRelativeFile() const
{
    return _scheme == "file" && !_hasAuthority && !_path.empty() && _path[0] != '/';
}

std::string URL::localFile() const
{
    return isLocalFile() ? unescaped(_path) : std::string();
}

URL URL::resolved(const URL& reference) const
{
    URL target(reference);
    if (isLocalFile() && reference.isRelativeFile()) {
        target._scheme.clear();
        return resolved(target);
    }
    if (!reference._scheme.empty()) {
        // What does not begin with a slash is no path but data or source code.
        if (reference._path.compare(0, 1, "/") == 0)
            target._path = withoutDots(reference._path);
        return target;
    }
    target._scheme = _scheme;
    if (reference._hasAuthority) {
        target._path = withoutDots(reference._path);
        return target;
    }
    target._hasAuthority = _hasAuthority;
    target._authority = _authority;
    if (reference._path.empty()) {
        target._path = _path;
        if (!reference._hasQuery) {
            target._hasQuery = _hasQuery;
            target._query = _query;
        }
    } else if (reference._path[0] == '/') {
        target._path = withoutDots(reference._path);
    } else if (_hasAuthority && _path.empty()) {
        target._path = withoutDots("/" + reference._path);
    } else {
        target._path = withoutDots(_path.substr(0, _path.rfind('/') + 1) + reference._path);
    }
    return target;
}

} // namespace Relayne
