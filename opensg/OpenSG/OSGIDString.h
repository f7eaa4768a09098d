#pragma once

#include "OSGBaseTypes.h"

#include <ostream>
#include <string>

namespace osg {

/// The name of a container type or other record: text that is made once and then only read.
class IDString
{
public:
    IDString() = default;
    /// Copies `text`; null gives the empty name.
    explicit IDString(const Char8* text)
        : _text(text ? text : "")
    {
    }

    /// The text, zero-terminated and never null; valid as long as this object.
    const Char8* str() const { return _text.c_str(); }
    /// Number of characters.
    UInt32 getLength() const { return static_cast<UInt32>(_text.size()); }

    friend bool operator==(const IDString& a, const IDString& b) { return a._text == b._text; }
    friend bool operator!=(const IDString& a, const IDString& b) { return a._text != b._text; }
    friend bool operator<(const IDString& a, const IDString& b) { return a._text < b._text; }
    friend bool operator==(const IDString& a, const Char8* b) { return b && a._text == b; }
    friend bool operator!=(const IDString& a, const Char8* b) { return !(a == b); }
    friend std::ostream& operator<<(std::ostream& out, const IDString& name) { return out << name._text; }

private:
    std::string _text;
};

} // namespace osg
