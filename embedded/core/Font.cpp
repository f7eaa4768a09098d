#include "core/Font.h"
#include "core/Triangulator.h"
#include <algorithm>
#include <cmath>
#include <fontconfig/fontconfig.h>
#include <ft2build.h>
#include <map>
#include <tuple>
#include <unordered_map>
#include FT_FREETYPE_H
#include FT_OUTLINE_H

namespace Orvane {

namespace {

/// How far a curve may be from its chords, in units of the font's size.
constexpr float CurveTolerance = 0.001F;

FT_Library freeType()
{
    static const struct Library
    {
        Library() { FT_Init_FreeType(&library); }
        Library(const Library&) = delete;
        Library& operator=(const Library&) = delete;
        ~Library() { FT_Done_FreeType(library); }
        FT_Library library = nullptr;
    } instance;
    return instance.library;
}

/// What Fontconfig knows of the system's typefaces.
FcConfig* fontConfig()
{
    static const std::unique_ptr<FcConfig, decltype(&FcConfigDestroy)> config(FcInitLoadConfigAndFonts(),
                                                                              &FcConfigDestroy);
    return config.get();
}

struct FaceFile
{
    std::string name;
    int index = 0;

    bool operator==(const FaceFile& other) const { return name == other.name && index == other.index; }
};

std::string familyName(const std::string& family)
{
    if (family == "SERIF")
        return "serif";
    if (family == "SANS")
        return "sans-serif";
    if (family == "TYPEWRITER")
        return "monospace";
    return family;
}

/// The file of the typeface that suits \a wish best, and that has \a character unless that is 0.
FaceFile matchingFile(const Font::Wish& wish, char32_t character)
{
    using Pattern = std::unique_ptr<FcPattern, decltype(&FcPatternDestroy)>;
    const Pattern pattern(FcPatternCreate(), &FcPatternDestroy);
    const auto addFamily = [&pattern](const std::string& name) {
        FcPatternAddString(pattern.get(), FC_FAMILY, reinterpret_cast<const FcChar8*>(name.c_str()));
    };
    for (const std::string& family : wish.families)
        addFamily(familyName(family));
    addFamily("serif");
    FcPatternAddInteger(pattern.get(), FC_WEIGHT, wish.bold ? FC_WEIGHT_BOLD : FC_WEIGHT_REGULAR);
    FcPatternAddInteger(pattern.get(), FC_SLANT, wish.italic ? FC_SLANT_ITALIC : FC_SLANT_ROMAN);
    FcPatternAddBool(pattern.get(), FC_SCALABLE, FcTrue);
    if (character != 0) {
        const std::unique_ptr<FcCharSet, decltype(&FcCharSetDestroy)> characters(FcCharSetCreate(),
                                                                                 &FcCharSetDestroy);
        FcCharSetAddChar(characters.get(), character);
        FcPatternAddCharSet(pattern.get(), FC_CHARSET, characters.get());
    }
    FcConfigSubstitute(fontConfig(), pattern.get(), FcMatchPattern);
    FcDefaultSubstitute(pattern.get());
    FcResult result = FcResultNoMatch;
    const Pattern match(FcFontMatch(fontConfig(), pattern.get(), &result), &FcPatternDestroy);
    FaceFile file;
    FcChar8* name = nullptr;
    if (match && FcPatternGetString(match.get(), FC_FILE, 0, &name) == FcResultMatch) {
        file.name = reinterpret_cast<const char*>(name);
        FcPatternGetInteger(match.get(), FC_INDEX, 0, &file.index);
    }
    return file;
}

/// Collects the outlines of a glyph, with its curves cut into chords.
class OutlineReader
{
public:
    explicit OutlineReader(float unit)
        : _unit(unit)
    {
    }

    std::vector<std::vector<osg::Vec3f>> read(FT_Outline& outline)
    {
        FT_Outline_Funcs functions{};
        functions.move_to = [](const FT_Vector* to, void* self) { return reader(self).move(*to); };
        functions.line_to = [](const FT_Vector* to, void* self) { return reader(self).line(*to); };
        functions.conic_to = [](const FT_Vector* control, const FT_Vector* to, void* self) {
            return reader(self).conic(*control, *to);
        };
        functions.cubic_to = [](const FT_Vector* a, const FT_Vector* b, const FT_Vector* to, void* self) {
            return reader(self).cubic(*a, *b, *to);
        };
        FT_Outline_Decompose(&outline, &functions, this);
        return std::move(_outlines);
    }

private:
    static OutlineReader& reader(void* self) { return *static_cast<OutlineReader*>(self); }

    osg::Vec3f point(const FT_Vector& v) const
    {
        return {static_cast<float>(v.x) * _unit, static_cast<float>(v.y) * _unit, 0.0F};
    }

    int move(const FT_Vector& to)
    {
        _outlines.emplace_back();
        _last = point(to);
        _outlines.back().push_back(_last);
        return 0;
    }

    int line(const FT_Vector& to)
    {
        add(point(to));
        return 0;
    }

    int conic(const FT_Vector& control, const FT_Vector& to)
    {
        const osg::Vec3f a = _last;
        const osg::Vec3f b = point(control);
        const osg::Vec3f c = point(to);
        const int chords = chordCount(0.25F * (a - b * 2.0F + c).length());
        for (int i = 1; i <= chords; ++i) {
            const float t = static_cast<float>(i) / static_cast<float>(chords);
            const float s = 1.0F - t;
            add(a * (s * s) + b * (2.0F * s * t) + c * (t * t));
        }
        return 0;
    }

    int cubic(const FT_Vector& first, const FT_Vector& second, const FT_Vector& to)
    {
        const osg::Vec3f a = _last;
        const osg::Vec3f b = point(first);
        const osg::Vec3f c = point(second);
        const osg::Vec3f d = point(to);
        const float bend = std::max((a - b * 2.0F + c).length(), (b - c * 2.0F + d).length());
        const int chords = chordCount(0.75F * bend);
        for (int i = 1; i <= chords; ++i) {
            const float t = static_cast<float>(i) / static_cast<float>(chords);
            const float s = 1.0F - t;
            add(a * (s * s * s) + b * (3.0F * s * s * t) + c * (3.0F * s * t * t) + d * (t * t * t));
        }
        return 0;
    }

    /// \a error is that of one chord; it falls with the square of their number.
    static int chordCount(float error)
    {
        return std::clamp(static_cast<int>(std::ceil(std::sqrt(error / CurveTolerance))), 1, 32);
    }

    void add(const osg::Vec3f& p)
    {
        _last = p;
        if (_outlines.empty())
            _outlines.emplace_back();
        if (_outlines.back().empty() || _outlines.back().front() != p)
            _outlines.back().push_back(p);
    }

    float _unit;
    osg::Vec3f _last;
    std::vector<std::vector<osg::Vec3f>> _outlines;
};

/// One face of a font file.
class Face
{
public:
    explicit Face(const FaceFile& file)
        : _file(file)
    {
        if (!file.name.empty() && FT_New_Face(freeType(), file.name.c_str(), file.index, &_face) != 0)
            _face = nullptr;
        if (_face && !FT_IS_SCALABLE(_face)) {
            FT_Done_Face(_face);
            _face = nullptr;
        }
        if (_face && _face->units_per_EM > 0)
            _unit = 1.0F / static_cast<float>(_face->units_per_EM);
    }
    Face(const Face&) = delete;
    Face& operator=(const Face&) = delete;
    ~Face()
    {
        if (_face)
            FT_Done_Face(_face);
    }

    const FaceFile& file() const { return _file; }
    unsigned int indexOf(char32_t character) const { return _face ? FT_Get_Char_Index(_face, character) : 0; }

    Glyph shape(unsigned int index) const
    {
        Glyph glyph;
        if (!_face || FT_Load_Glyph(_face, index, FT_LOAD_NO_SCALE) != 0)
            return glyph;
        glyph.advance = static_cast<float>(_face->glyph->advance.x) * _unit;
        if (_face->glyph->format != FT_GLYPH_FORMAT_OUTLINE)
            return glyph;
        const auto outlines = OutlineReader(_unit).read(_face->glyph->outline);
        Triangulator triangulator;
        glyph.triangles = triangulator.triangulate(outlines, osg::Vec3f(0.0F, 0.0F, 1.0F));
        const auto addPoint = [&glyph](const osg::Vec3f& p) { glyph.points.emplace_back(p[0], p[1]); };
        for (const std::vector<osg::Vec3f>& outline : outlines)
            std::for_each(outline.begin(), outline.end(), addPoint);
        for (const Triangulator::Crossing& crossing : triangulator.crossings())
            addPoint(crossing.position);
        return glyph;
    }

    float kerning(unsigned int left, unsigned int right) const
    {
        FT_Vector gap{};
        if (!_face || !FT_HAS_KERNING(_face) ||
            FT_Get_Kerning(_face, left, right, FT_KERNING_UNSCALED, &gap) != 0)
            return 0.0F;
        return static_cast<float>(gap.x) * _unit;
    }

    float ascent() const { return _face ? static_cast<float>(_face->ascender) * _unit : 0.8F; }
    float descent() const { return _face ? static_cast<float>(-_face->descender) * _unit : 0.2F; }

private:
    FaceFile _file;
    FT_Face _face = nullptr;
    float _unit = 0.001F;
};

} // namespace

struct Font::Data
{
    Wish wish;
    std::unique_ptr<Face> face;
    std::vector<std::unique_ptr<Face>> others; ///< those that stand in
    std::unordered_map<char32_t, Glyph> glyphs;

    /// The face that has a character, and its number there; else that of the missing character.
    std::pair<const Face*, unsigned int> find(char32_t character)
    {
        if (const unsigned int index = face->indexOf(character))
            return {face.get(), index};
        const FaceFile file = matchingFile(wish, character);
        auto known = std::find_if(others.begin(), others.end(),
                                  [&file](const std::unique_ptr<Face>& f) { return f->file() == file; });
        if (known == others.end())
            known = others.insert(others.end(), std::make_unique<Face>(file));
        if (const unsigned int index = (*known)->indexOf(character))
            return {known->get(), index};
        return {face.get(), 0};
    }
};

bool Font::Wish::operator<(const Wish& other) const
{
    return std::tie(families, bold, italic) < std::tie(other.families, other.bold, other.italic);
}

const Font& Font::find(const Wish& wish)
{
    // The library must outlive the faces.
    freeType();
    static std::map<Wish, std::unique_ptr<Font>> fonts;
    std::unique_ptr<Font>& font = fonts[wish];
    if (!font)
        font.reset(new Font(wish));
    return *font;
}

Font::Font(const Wish& wish)
    : _data(std::make_unique<Data>())
{
    _data->wish = wish;
    _data->face = std::make_unique<Face>(matchingFile(wish, 0));
}

Font::~Font() = default;

const Glyph& Font::glyph(char32_t character) const
{
    const auto known = _data->glyphs.find(character);
    if (known != _data->glyphs.end())
        return known->second;
    const auto [face, index] = _data->find(character);
    return _data->glyphs.emplace(character, face->shape(index)).first->second;
}

float Font::kerning(char32_t left, char32_t right) const
{
    const unsigned int first = _data->face->indexOf(left);
    const unsigned int second = _data->face->indexOf(right);
    return first && second ? _data->face->kerning(first, second) : 0.0F;
}

float Font::ascent() const
{
    return _data->face->ascent();
}

float Font::descent() const
{
    return _data->face->descent();
}

} // namespace Orvane
