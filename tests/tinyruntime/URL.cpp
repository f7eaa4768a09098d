#include <Relayne/URL.h>

namespace Relayne {

URL::URL() = default;
URL::URL(const URL& other) = default;
URL& URL::operator=(const URL& other) = default;
URL::~URL() = default;

URL::URL(const std::string& text)
{
    std::string rest = text;
    const auto cut = [&](char separator, std::string& part) {
        const std::size_t place = rest.find(separator);
        if (place == std::string::npos)
            return;
        part = rest.substr(place + 1);
        rest.erase(place);
    };
    cut('#', _fragment);
    cut('?', _query);
    const std::size_t colon = rest.find(':');
    if (colon != std::string::npos && rest.find('/') > colon) {
        _scheme = rest.substr(0, colon);
        rest.erase(0, colon + 1);
    }
    _hasAuthority = rest.compare(0, 2, "//") == 0;
    if (_hasAuthority) {
        const std::size_t end = rest.find('/', 2);
        _authority = rest.substr(2, end == std::string::npos ? end : end - 2);
        rest.erase(0, end);
    }
    _path = rest;
}

std::string URL::toString() const
{
    std::string result = _scheme.empty() ? "" : _scheme + ":";
    if (_hasAuthority)
        result += "//" + _authority;
    result += _path;
    if (!_query.empty())
        result += "?" + _query;
    if (!_fragment.empty())
        result += "#" + _fragment;
    return result;
}

bool URL::isEmpty() const
{
    return toString().empty();
}

bool URL::isLocalFile() const
{
    return _scheme.empty() || _scheme == "file";
}

std::string URL::localFile() const
{
    return isLocalFile() ? _path : std::string();
}

URL URL::resolved(const URL& reference) const
{
    if (!reference._scheme.empty() || reference._path.compare(0, 1, "/") == 0)
        return reference;
    URL result = *this;
    result._path = _path.substr(0, _path.rfind('/') + 1) + reference._path;
    result._query = reference._query;
    result._fragment = reference._fragment;
    return result;
}

} // namespace Relayne
