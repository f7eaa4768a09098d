#include "core/LayoutProc.h"
#include "core/Part.h"
#include "core/UsableValues.h"
#include <Orvane/MFFloat.h>
#include <Orvane/MFString.h>
#include <algorithm>

namespace Orvane {

namespace {

const Part alignPart("align");
const Part offsetPart("offset");
const Part offsetUnitsPart("offsetUnits");
const Part scaleModePart("scaleMode");
const Part sizePart("size");
const Part sizeUnitsPart("sizeUnits");

/// No content is drawn at a smaller scale: its matrix would have no inverse.
constexpr float smallestScale = 1e-9F;

template <class T>
struct Word
{
    const char* name;
    T value;
};

/// What a field says for the direction \a axis; the only word of a list is meant for both.
template <class T, std::size_t N>
T meaningOf(const Part& part, const Node& node, unsigned int axis, const Word<T> (&words)[N], T otherwise)
{
    const MFString& list = part.read<MFString>(node);
    if (list.size() == 0)
        return otherwise;
    const std::string& written = list[static_cast<int>(std::min(axis, list.size() - 1))];
    const auto* const found = std::find_if(std::begin(words), std::end(words),
                                           [&](const Word<T>& word) { return written == word.name; });
    return found == std::end(words) ? otherwise : found->value;
}

float numberFor(const Part& part, const Node& node, std::size_t axis, float otherwise)
{
    const std::vector<float>& list = part.read<MFFloat>(node).values();
    return list.empty() ? otherwise : usableNumber(list[std::min(axis, list.size() - 1)], otherwise);
}

const ProcRegistration registration("Layout", makeProc<LayoutProc>);

} // namespace

osg::Matrix LayoutBox::matrixIn(const LayoutBox& outer) const
{
    osg::Matrix matrix;
    const float depth = std::min(scale[0], scale[1]) / std::min(outer.scale[0], outer.scale[1]);
    matrix.setScale(scale[0] / outer.scale[0], scale[1] / outer.scale[1], depth);
    for (osg::UInt32 axis = 0; axis < 2; ++axis)
        matrix[3][axis] = (center[axis] - outer.center[axis]) / outer.scale[axis];
    return matrix;
}

void LayoutProc::update()
{
    static constexpr Word<int> aligns[2][3] = {{{"LEFT", -1}, {"CENTER", 0}, {"RIGHT", 1}},
                                               {{"BOTTOM", -1}, {"CENTER", 0}, {"TOP", 1}}};
    static constexpr Word<Unit> units[] = {{"WORLD", WORLD}, {"FRACTION", FRACTION}, {"PIXEL", PIXEL}};
    static constexpr Word<ScaleMode> modes[] = {{"NONE", NONE_SCALE},
                                                {"FRACTION", FRACTION_SCALE},
                                                {"STRETCH", STRETCH_SCALE},
                                                {"PIXEL", PIXEL_SCALE}};
    for (unsigned int axis = 0; axis < 2; ++axis) {
        _align[axis] = meaningOf(alignPart, node(), axis, aligns[axis], 0);
        _offset[axis] = numberFor(offsetPart, node(), axis, 0.0F);
        _size[axis] = std::max(numberFor(sizePart, node(), axis, 1.0F), 0.0F);
        _offsetUnit[axis] = meaningOf(offsetUnitsPart, node(), axis, units, WORLD);
        _sizeUnit[axis] = meaningOf(sizeUnitsPart, node(), axis, units, WORLD);
        _scaleMode[axis] = meaningOf(scaleModePart, node(), axis, modes, NONE_SCALE);
    }
    const auto isLength = [](float number) { return isDrawable(number) && number >= 0.0F; };
    const std::vector<float>& size = sizePart.read<MFFloat>(node()).values();
    const std::vector<float>& offset = offsetPart.read<MFFloat>(node()).values();
    if (!std::all_of(size.begin(), size.end(), isLength))
        complain("size", "expected finite lengths from 0 on; others are left out");
    if (!std::all_of(offset.begin(), offset.end(), [](float number) { return isDrawable(number); }))
        complain("offset", "expected finite numbers; others are left out");
    pictureChanged();
}

LayoutBox LayoutProc::place(const LayoutBox& outer, bool isOutermost, float pixel) const
{
    LayoutBox box;
    std::array<bool, 2> isStretched = {};
    for (osg::UInt32 axis = 0; axis < 2; ++axis) {
        const auto length = [&](float number, Unit unit) {
            return number * (unit == WORLD ? 1.0F : unit == PIXEL ? pixel : outer.size[axis]);
        };
        box.size[axis] = length(_size[axis], _sizeUnit[axis]);
        box.center[axis] = outer.center[axis] +
                           static_cast<float>(_align[axis]) * 0.5F * (outer.size[axis] - box.size[axis]) +
                           length(_offset[axis], _offsetUnit[axis]);
        float scale = box.size[axis];
        if (_scaleMode[axis] == PIXEL_SCALE)
            scale = pixel;
        else if (_scaleMode[axis] == NONE_SCALE && !isOutermost)
            scale = outer.scale[axis];
        box.scale[axis] = scale;
        isStretched[axis] = _scaleMode[axis] == STRETCH_SCALE;
    }
    // Stretched in both directions a unit square just fits in.
    if (isStretched[0] && isStretched[1])
        box.scale[0] = box.scale[1] = std::min(box.scale[0], box.scale[1]);
    else if (isStretched[0])
        box.scale[0] = box.scale[1];
    else if (isStretched[1])
        box.scale[1] = box.scale[0];
    for (osg::UInt32 axis = 0; axis < 2; ++axis)
        box.scale[axis] = std::max(usableNumber(box.scale[axis], smallestScale), smallestScale);
    return box;
}

} // namespace Orvane
