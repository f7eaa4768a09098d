#include "core/TextLayout.h"
#include <algorithm>

namespace Orvane {

namespace {

constexpr char32_t NoCharacter = 0xFFFD;

/// Where a stretch of \a length begins when it is justified to 0; \a first is the place in it that FIRST asks
/// for.
float begin(TextStyle::Justify justify, float length, float first)
{
    switch (justify) {
    case TextStyle::BEGIN:
        return 0.0F;
    case TextStyle::FIRST:
        return -first;
    case TextStyle::MIDDLE:
        return -0.5F * length;
    case TextStyle::END:
        break;
    }
    return -length;
}

class Setter
{
public:
    Setter(const std::vector<std::u32string>& lines, const TextStyle& style)
        : _lines(lines)
        , _style(style)
        , _font(Font::find(style.font))
    {
    }

    TextLayout set()
    {
        for (std::size_t i = 0; i < _lines.size(); ++i) {
            if (_style.horizontal)
                setRow(i);
            else
                setColumn(i);
        }
        return std::move(_layout);
    }

private:
    /// A line that runs along X. Its base line is a step below or above that of the line before.
    void setRow(std::size_t line)
    {
        const std::u32string& text = _lines[line];
        const float natural = rowLength(text);
        const float stretch = stretchOf(line, natural);
        const float length = natural * stretch;
        const float ascent = _font.ascent() * _style.size;
        const float descent = _font.descent() * _style.size;
        const float step = _style.size * _style.spacing;
        const auto last = static_cast<float>(_lines.size() - 1);
        const float height = ascent + descent + last * step;
        // From the edge where the lines begin down, or up, to the base line of this one.
        const float first = _style.topToBottom ? ascent : descent;
        const float across = begin(_style.minor, height, first) + first + static_cast<float>(line) * step;
        const float y = _style.topToBottom ? -across : across;
        const float along = begin(_style.major, length, 0.0F);
        float x = along;
        char32_t before = 0;
        for (const char32_t character : text) {
            const Glyph& glyph = _font.glyph(character);
            const float advance = glyph.advance * _style.size * stretch;
            if (before)
                x += gap(before, character) * stretch;
            _layout.glyphs.push_back({&glyph, osg::Vec2f(_style.leftToRight ? x : -x - advance, y),
                                      osg::Vec2f(_style.size * stretch, _style.size)});
            x += advance;
            before = character;
        }
        const float left = _style.leftToRight ? along : -along - length;
        addLine(osg::Vec2f(left, y - descent), osg::Vec2f(left + length, y + ascent));
    }

    /// A line that runs along Y: each character stands in a field as high as the font's size, in its middle.
    void setColumn(std::size_t line)
    {
        const std::u32string& text = _lines[line];
        const float natural = static_cast<float>(text.size()) * _style.size;
        const float stretch = stretchOf(line, natural);
        const float length = natural * stretch;
        const float step = _style.size * _style.spacing;
        const float width = _style.size + static_cast<float>(_lines.size() - 1) * step;
        const float across = begin(_style.minor, width, 0.5F * _style.size) + static_cast<float>(line) * step;
        const float left = _style.leftToRight ? across : -across - _style.size;
        const float along = begin(_style.major, length, 0.0F);
        // The base line in a field: what letters reach below it stays inside.
        const float rise = _font.descent() / (_font.ascent() + _font.descent()) * _style.size * stretch;
        float y = along;
        for (const char32_t character : text) {
            const Glyph& glyph = _font.glyph(character);
            const float field = _style.size * stretch;
            const float x = left + 0.5F * (1.0F - glyph.advance) * _style.size;
            const float bottom = _style.topToBottom ? -y - field : y;
            _layout.glyphs.push_back(
                {&glyph, osg::Vec2f(x, bottom + rise), osg::Vec2f(_style.size, _style.size * stretch)});
            y += field;
        }
        const float low = _style.topToBottom ? -along - length : along;
        addLine(osg::Vec2f(left, low), osg::Vec2f(left + _style.size, low + length));
    }

    float rowLength(const std::u32string& text) const
    {
        float length = 0.0F;
        char32_t before = 0;
        for (const char32_t character : text) {
            if (before)
                length += gap(before, character);
            length += _font.glyph(character).advance * _style.size;
            before = character;
        }
        return length;
    }

    float gap(char32_t before, char32_t character) const
    {
        return _style.leftToRight ? _font.kerning(before, character) * _style.size : 0.0F;
    }

    float stretchOf(std::size_t line, float natural) const
    {
        if (!(natural > 0.0F))
            return 1.0F;
        float length = natural;
        if (line < _style.lengths.size() && _style.lengths[line] > 0.0F)
            length = _style.lengths[line];
        if (_style.maxExtent > 0.0F)
            length = std::min(length, _style.maxExtent);
        return length / natural;
    }

    void addLine(const osg::Vec2f& low, const osg::Vec2f& high)
    {
        const bool isFirst = _layout.lineBounds.empty();
        _layout.lineBounds.push_back(high - low);
        for (osg::UInt32 i = 0; i < 2; ++i) {
            _layout.low[i] = isFirst ? low[i] : std::min(_layout.low[i], low[i]);
            _layout.high[i] = isFirst ? high[i] : std::max(_layout.high[i], high[i]);
        }
    }

    const std::vector<std::u32string>& _lines;
    const TextStyle& _style;
    const Font& _font;
    TextLayout _layout;
};

} // namespace

TextLayout layoutText(const std::vector<std::u32string>& lines, const TextStyle& style)
{
    return Setter(lines, style).set();
}

std::u32string charactersOf(const std::string& utf8)
{
    std::u32string result;
    for (std::size_t i = 0; i < utf8.size();) {
        const auto lead = static_cast<unsigned char>(utf8[i++]);
        const int more = lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : lead >= 0xC0 ? 1 : 0;
        char32_t character = more == 0 ? lead : lead & (0x3Fu >> more);
        if (lead >= 0x80 && lead < 0xC0)
            character = NoCharacter;
        for (int n = 0; n < more; ++n) {
            if (i >= utf8.size() || (static_cast<unsigned char>(utf8[i]) & 0xC0) != 0x80) {
                character = NoCharacter;
                break;
            }
            character = character << 6 | (static_cast<unsigned char>(utf8[i++]) & 0x3F);
        }
        if (character > 0x10FFFF)
            character = NoCharacter;
        if (character >= U' ' && character != 0x7F)
            result += character;
    }
    return result;
}

} // namespace Orvane
