#pragma once

#include "core/Font.h"
#include <OpenSG/OSGVector.h>
#include <Orvane/Export.h>
#include <string>
#include <vector>

namespace Orvane {

/// How a text is set, as `FontStyle` and `Text` say it.
struct TextStyle
{
    enum Justify { BEGIN, FIRST, MIDDLE, END };

    Font::Wish font;
    float size = 1.0F;    ///< of the font, in units of the scene
    float spacing = 1.0F; ///< from line to line, in sizes
    bool horizontal = true;
    bool leftToRight = true;
    bool topToBottom = true;
    Justify major = BEGIN;      ///< along the lines
    Justify minor = FIRST;      ///< across them
    std::vector<float> lengths; ///< that lines are stretched or squeezed to; 0 leaves a line as it is
    float maxExtent = 0.0F;     ///< no line is longer; 0 sets no limit
};

/// A character in its place: the origin of its glyph, and how far it is stretched along X and Y.
struct PlacedGlyph
{
    const Glyph* glyph;
    osg::Vec2f origin;
    osg::Vec2f scale;
};

/// A text that is set.
struct TextLayout
{
    std::vector<PlacedGlyph> glyphs;
    std::vector<osg::Vec2f> lineBounds; ///< width and height of each line
    osg::Vec2f low;                     ///< corners of the box round all lines
    osg::Vec2f high;
};

/// Sets lines of characters.
ORVANE_API TextLayout layoutText(const std::vector<std::u32string>& lines, const TextStyle& style);

/// The characters of a text in UTF-8; what is none becomes U+FFFD. Control characters are left out.
ORVANE_API std::u32string charactersOf(const std::string& utf8);

} // namespace Orvane
