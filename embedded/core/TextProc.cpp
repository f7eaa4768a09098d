#include "base/TextCoding.h"
#include "base/ValueFields.h"
#include "core/FollowedLayer.h"
#include "core/GeometryProc.h"
#include "core/Part.h"
#include "core/ShapeProc.h"
#include "core/TextLayout.h"
#include "core/UsableValues.h"
#include <Orvane/Context.h>
#include <Orvane/MFFloat.h>
#include <Orvane/MFString.h>
#include <Orvane/MFVec2f.h>
#include <Orvane/SFBool.h>
#include <Orvane/SFFloat.h>
#include <Orvane/SFString.h>
#include <cmath>

namespace Orvane {

namespace {

const Part familyPart("family");
const Part fontStylePart("fontStyle");
const Part horizontalPart("horizontal");
const Part justifyPart("justify");
const Part leftToRightPart("leftToRight");
const Part lengthPart("length");
const Part lineBoundsPart("lineBounds");
const Part maxExtentPart("maxExtent");
const Part originPart("origin");
const Part pointSizePart("pointSize");
const Part sizePart("size");
const Part solidPart("solid");
const Part spacingPart("spacing");
const Part stringPart("string");
const Part stylePart("style");
const Part textBoundsPart("textBounds");
const Part topToBottomPart("topToBottom");

/// More characters would take gigabytes.
constexpr std::size_t MaxCharacters = 1u << 20;

TextStyle::Justify justifyOf(const std::string& word, TextStyle::Justify fallback)
{
    if (word == "BEGIN")
        return TextStyle::BEGIN;
    if (word == "FIRST")
        return TextStyle::FIRST;
    if (word == "MIDDLE")
        return TextStyle::MIDDLE;
    return word == "END" ? TextStyle::END : fallback;
}

/// Pixels that a point is long, on a screen of 96 pixels an inch.
constexpr float pixelsOfPoint = 96.0F / 72.0F;

bool isForScreen(const Node& style)
{
    return pointSizePart.isIn(style);
}

/// What a `FontStyle` says, or a `ScreenFontStyle`, whose size is in pixels here.
TextStyle styleOf(const Node& node)
{
    const auto flag = [&node](const Part& part) { return part.read<SFBool>(node).value(); };
    TextStyle style;
    const MFString& families = familyPart.read<MFString>(node);
    for (unsigned int i = 0; i < families.size(); ++i)
        style.font.families.push_back(families[static_cast<int>(i)]);
    const std::string& look = stylePart.read<SFString>(node).value();
    style.font.bold = look.find("BOLD") != std::string::npos;
    style.font.italic = look.find("ITALIC") != std::string::npos;
    style.size = isForScreen(node)
                     ? usableNumber(pointSizePart.read<SFFloat>(node).value(), 12.0F) * pixelsOfPoint
                     : usableNumber(sizePart.read<SFFloat>(node).value(), 1.0F);
    style.spacing = usableNumber(spacingPart.read<SFFloat>(node).value(), 1.0F);
    style.horizontal = flag(horizontalPart);
    style.leftToRight = flag(leftToRightPart);
    style.topToBottom = flag(topToBottomPart);
    const MFString& justify = justifyPart.read<MFString>(node);
    if (justify.size() > 0)
        style.major = justifyOf(justify[0], TextStyle::BEGIN);
    if (justify.size() > 1)
        style.minor = justifyOf(justify[1], TextStyle::FIRST);
    return style;
}

/// How long a pixel is along two axes of a system, where its origin is seen. False where it is not.
bool findPixel(const DrawnView& view, const osg::Matrix& toWorld, osg::Vec2f& pixel)
{
    const auto column = [](const osg::Matrix& matrix, osg::UInt32 index) {
        return osg::Vec3f(matrix[index][0], matrix[index][1], matrix[index][2]);
    };
    float size = view.pixelSize;
    if (view.hasPerspective)
        size *= (column(view.cameraToWorld, 3) - column(toWorld, 3)).dot(column(view.cameraToWorld, 2));
    for (osg::UInt32 axis = 0; axis < 2; ++axis) {
        pixel[axis] = size / column(toWorld, axis).length();
        if (!isDrawable(pixel[axis]) || !(pixel[axis] > 0.0F))
            return false;
    }
    return true;
}

/// Flat letters that face Z. With a `ScreenFontStyle` they keep their size on the screen, as the first shape
/// that has the text is seen.
class TextProc : public MeshProc, public ViewFollower
{
public:
    using MeshProc::MeshProc;

    bool isSolid() const override { return solidPart.read<SFBool>(node()).value(); }

    void fieldChanged(Field& field, double time) override
    {
        // Outputs are our own.
        if (field.partType() != EVENTOUTP)
            MeshProc::fieldChanged(field, time);
    }

    void update() override { tellBounds(set()); }

    bool follow(const DrawnView& view) override
    {
        const ShapeProc* shape = nullptr;
        for (const Use* use = uses(); use; use = use->next()) {
            if (const auto* const user = dynamic_cast<const ShapeProc*>(use->user()))
                shape = user;
        }
        osg::Vec2f pixel;
        constexpr float slack = 1e-4F;
        if (!shape || !findPixel(view, shape->tree()->getToWorld(), pixel) ||
            (std::abs(pixel[0] - _pixel[0]) <= slack * pixel[0] &&
             std::abs(pixel[1] - _pixel[1]) <= slack * pixel[1]))
            return false;
        _pixel = pixel;
        set();
        requestUpdate(); // tells the bounds
        return true;
    }

private:
    /// Shows the text as it is to be set by now, and gives its layout.
    TextLayout set()
    {
        Node* const styleNode = resolved(fontStylePart.readNode(node()));
        _fontStyle.set(*this, procAs<ElementProc>(styleNode));
        TextStyle style = styleNode && justifyPart.isIn(*styleNode) ? styleOf(*styleNode) : TextStyle();
        if (style.font.families.empty())
            style.font.families.emplace_back("SERIF");
        style.lengths = lengthPart.read<MFFloat>(node()).values();
        for (float& length : style.lengths)
            length = usableNumber(length, 0.0F);
        style.maxExtent = usableNumber(maxExtentPart.read<SFFloat>(node()).value(), 0.0F);
        if (!(style.size > 0.0F))
            style.size = 0.0F;
        const bool onScreen = styleNode && isForScreen(*styleNode);
        if (onScreen && !_followed.isJoined())
            _followed.join(node(), *this);
        else if (!onScreen)
            _followed.leave();
        _unit = onScreen ? _pixel : osg::Vec2f(1.0F, 1.0F);
        for (float& length : style.lengths)
            length /= _unit[0];
        style.maxExtent /= _unit[0];
        TextLayout layout = layoutText(lines(), style);
        show(meshOf(layout, style.size));
        scale(layout);
        return layout;
    }

    void scale(TextLayout& layout) const
    {
        for (osg::Vec2f* const corner : {&layout.low, &layout.high})
            corner->setValues((*corner)[0] * _unit[0], (*corner)[1] * _unit[1]);
        for (osg::Vec2f& bounds : layout.lineBounds)
            bounds.setValues(bounds[0] * _unit[0], bounds[1] * _unit[1]);
    }

    std::vector<std::u32string> lines()
    {
        const MFString& strings = stringPart.read<MFString>(node());
        std::vector<std::u32string> lines;
        std::size_t count = 0;
        for (unsigned int i = 0; i < strings.size(); ++i) {
            lines.push_back(charactersOf(coding::toFile(strings[static_cast<int>(i)])));
            count += lines.back().size();
            if (count > MaxCharacters) {
                complain("string", "expected at most " + std::to_string(MaxCharacters) +
                                       " characters, found more; the rest is not drawn");
                lines.back().resize(lines.back().size() - (count - MaxCharacters));
                break;
            }
        }
        return lines;
    }

    /// Textures run from the origin, a size of the font long.
    MeshData meshOf(const TextLayout& layout, float size) const
    {
        MeshData mesh;
        const float scale = size > 0.0F ? 1.0F / size : 0.0F;
        for (const PlacedGlyph& placed : layout.glyphs) {
            const auto first = static_cast<std::uint32_t>(mesh.positions.size());
            for (const osg::Vec2f& point : placed.glyph->points) {
                const float x = placed.origin[0] + point[0] * placed.scale[0];
                const float y = placed.origin[1] + point[1] * placed.scale[1];
                mesh.positions.emplace_back(x * _unit[0], y * _unit[1], 0.0F);
                mesh.normals.emplace_back(0.0F, 0.0F, 1.0F);
                mesh.texCoords.insert(mesh.texCoords.end(), {x * scale, y * scale});
            }
            for (const std::uint32_t corner : placed.glyph->triangles)
                mesh.indices.push_back(first + corner);
        }
        return mesh;
    }

    void tellBounds(const TextLayout& layout)
    {
        const double time = context().timeStamp();
        auto& lineBounds = lineBoundsPart.edit<MFVec2f>(node());
        if (lineBounds.values() != layout.lineBounds) {
            lineBounds.editValues() = layout.lineBounds;
            lineBounds.processValueChange(time, Field::EVENT_CT);
        }
        auto& origin = originPart.edit<SFVec3f>(node());
        const osg::Vec3f corner(layout.low[0], layout.high[1], 0.0F);
        if (origin.value() != corner)
            origin.setValue(time, corner, Field::EVENT_CT);
        auto& bounds = textBoundsPart.edit<SFVec2f>(node());
        if (bounds.value() != layout.high - layout.low)
            bounds.setValue(time, layout.high - layout.low, Field::EVENT_CT);
    }

    Use _fontStyle;
    FollowedLayer _followed;
    osg::Vec2f _pixel = {1.0F, 1.0F}; ///< of the screen, in the system of the text
    osg::Vec2f _unit = {1.0F, 1.0F};  ///< of the present letters
};

const ProcRegistration text("Text", makeProc<TextProc>);
const ProcRegistration fontStyle("FontStyle", makeProc<DescriptionProc>);
const ProcRegistration screenFontStyle("ScreenFontStyle", makeProc<DescriptionProc>);

} // namespace

} // namespace Orvane
