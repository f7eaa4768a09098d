#pragma once

#include <OpenSG/OSGVector.h>
#include <Orvane/Export.h>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace Orvane {

/// The shape of a character as triangles, in units of the font's size, from its own origin on the base line.
struct Glyph
{
    std::vector<osg::Vec2f> points;
    std::vector<std::uint32_t> triangles; ///< three numbers of points each, anticlockwise
    float advance = 0.0F;                 ///< to the origin of the next character
};

/// A typeface of the system, with those that stand in for characters it lacks. Objects are shared, and stay
/// until the process ends.
class ORVANE_API Font
{
public:
    /// What a scene asks of a typeface.
    struct Wish
    {
        std::vector<std::string> families; ///< in order of preference, "SERIF", "SANS", "TYPEWRITER" or names
        bool bold = false;
        bool italic = false;

        bool operator<(const Wish& other) const;
    };

    /// The typeface that suits best. A system without any gives one without glyphs.
    static const Font& find(const Wish& wish);

    ~Font();
    Font(const Font&) = delete;
    Font& operator=(const Font&) = delete;

    /// The shape of a character; that of a missing one when no typeface of the system has it. Valid until the
    /// process ends.
    const Glyph& glyph(char32_t character) const;
    /// What is added to the advance of \a left when \a right follows.
    float kerning(char32_t left, char32_t right) const;

    /// How far letters reach above and below the base line; both positive, in units of the font's size.
    float ascent() const;
    float descent() const;

private:
    struct Data;

    explicit Font(const Wish& wish);

    std::unique_ptr<Data> _data;
};

} // namespace Orvane
