#pragma once

#include <Orvane/Export.h>
#include <string>

namespace Relayne {

/// A parsed address: scheme, authority, path, query and fragment. A plain file name is an address without a
/// scheme. A value.
class ORVANE_API URL
{
public:
    URL();
    /// Parses \a text; every text is an address.
    URL(const std::string& text);
    URL(const URL& other);
    URL& operator=(const URL& other);
    ~URL();

    /// The address as text.
    std::string toString() const;

    /// "file" in "file:///a/b.x3d#c"; empty for a plain file name.
    const std::string& scheme() const { return _scheme; }
    const std::string& authority() const { return _authority; }
    const std::string& path() const { return _path; }
    const std::string& query() const { return _query; }
    /// "c" in "file:///a/b.x3d#c".
    const std::string& fragment() const { return _fragment; }

    /// The address of a file, whatever characters its name has: `localFile()` gives the name again, with "./"
    /// in front where it could be taken for something else.
    static URL fromLocalFile(const std::string& file);

    /// True for an address without any part.
    bool isEmpty() const;
    /// True for a plain file name and for the scheme "file".
    bool isLocalFile() const;
    /// Name of the file that a local address means, with percent escapes undone; empty when it is not local.
    std::string localFile() const;

    /// The address that \a reference means when it stands in a file at this address. In a local file
    /// "file:b.x3d" means the same as "b.x3d".
    URL resolved(const URL& reference) const;

private:
    bool isRelativeFile() const;

    std::string _scheme;
    std::string _authority;
    std::string _path;
    std::string _query;
    std::string _fragment;
    bool _hasAuthority = false;
    bool _hasQuery = false;
    bool _hasFragment = false;
};

} // namespace Relayne
