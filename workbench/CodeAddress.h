#pragma once

#include <string>

namespace Orvane {
class MFString;
}

/// Has a code widget edit the file that the first value of a url names in any way, `move.js` beside the scene
/// too. The widget edits files whose address begins with "file:": while this object lives the value is such
/// an address, and nobody is told of the change. What the scene says is never altered for good.
class CodeAddress
{
public:
    /// \a url is borrowed, and may be null. A value that names no file is left as it is.
    explicit CodeAddress(Orvane::MFString* url);
    CodeAddress(const CodeAddress&) = delete;
    CodeAddress& operator=(const CodeAddress&) = delete;
    ~CodeAddress();

private:
    Orvane::MFString* _url;
    std::string _value;
};
