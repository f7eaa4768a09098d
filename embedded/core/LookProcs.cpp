#include "base/ValueFields.h"
#include "core/AppearanceProcs.h"
#include "core/HatchPattern.h"
#include "core/Part.h"
#include "core/UsableValues.h"
#include <Orvane/SFBool.h>
#include <Orvane/SFFloat.h>
#include <Orvane/SFInt32.h>
#include <algorithm>
#include <string>

namespace Orvane {

namespace {

const Part appliedPart("applied");
const Part attenuationPart("attenuation");
const Part filledPart("filled");
const Part hatchColorPart("hatchColor");
const Part hatchedPart("hatched");
const Part hatchStylePart("hatchStyle");
const Part linetypePart("linetype");
const Part linewidthScaleFactorPart("linewidthScaleFactor");
const Part pointSizeMaxValuePart("pointSizeMaxValue");
const Part pointSizeMinValuePart("pointSizeMinValue");
const Part pointSizeScaleFactorPart("pointSizeScaleFactor");

/// A size in pixels of which the nominal one is 1.
float pixels(const Part& part, const Node& node)
{
    constexpr float Max = 1024.0F;
    return std::clamp(usableNumber(part.read<SFFloat>(node).value(), 1.0F), 0.0F, Max);
}

/// Behaviour of `LineProperties`.
class LinePropertiesProc : public LookProc
{
public:
    using LookProc::LookProc;

    void describe(Surface& surface) override
    {
        if (!appliedPart.read<SFBool>(node()).value())
            return;
        surface.lineWidth = std::max(pixels(linewidthScaleFactorPart, node()), 1.0F);
        surface.linePattern = pattern(linetypePart.read<SFInt32>(node()).value());
    }

private:
    std::uint16_t pattern(int type)
    {
        switch (type) {
        case 1:
            return 0xFFFF;
        case 2:
            return 0x0FFF; // dashed
        case 3:
            return 0x3333; // dotted
        case 4:
            return 0x33FF; // a dash and a dot
        case 5:
            return 0x333F; // a dash and two dots
        case 10:
            return 0x3CFF; // centre
        case 11:
            return 0x0F0F; // hidden
        case 12:
            return 0x6DBF; // phantom
        default:
            complain("linetype", "expected 1 to 5 or 10 to 12, found " + std::to_string(type) +
                                     "; the lines are drawn whole");
            return 0xFFFF;
        }
    }
};

/// Behaviour of `PointProperties`.
class PointPropertiesProc : public LookProc
{
public:
    using LookProc::LookProc;

    void describe(Surface& surface) override
    {
        PointLook look;
        look.size = std::max(pixels(pointSizeScaleFactorPart, node()), 1.0F);
        const osg::Vec3f attenuation = usableVector(attenuationPart.read<SFVec3f>(node()).value());
        const bool isPlain = attenuation[0] == 1.0F && attenuation[1] == 0.0F && attenuation[2] == 0.0F;
        const bool isSound = attenuation[0] >= 0.0F && attenuation[1] >= 0.0F && attenuation[2] >= 0.0F &&
                             !isNull(attenuation);
        if (!isSound)
            complain("attenuation", "expected numbers of 0 or more, not all of them 0; found others");
        // The bounds are those of what the distance leaves.
        if (isSound && !isPlain) {
            look.attenuation = attenuation;
            look.minSize = pixels(pointSizeMinValuePart, node());
            look.maxSize = std::max(pixels(pointSizeMaxValuePart, node()), look.minSize);
        }
        surface.pointLook = look;
    }
};

/// Behaviour of `FillProperties`.
class FillPropertiesProc : public LookProc
{
public:
    using LookProc::LookProc;

    void describe(Surface& surface) override { surface.filled = filledPart.read<SFBool>(node()).value(); }

    bool describeOverlay(Surface& surface) override
    {
        if (surface.kind != Surface::FACES || !hatchedPart.read<SFBool>(node()).value())
            return false;
        int style = hatchStylePart.read<SFInt32>(node()).value();
        if (!isKnownHatch(style)) {
            complain("hatchStyle",
                     "expected 1 to 6 or 19, found " + std::to_string(style) + "; it is drawn as 1");
            style = 1;
        }
        surface.hatchStyle = static_cast<std::uint8_t>(style);
        surface.diffuse = usableColor(hatchColorPart.read<SFColor>(node()).value());
        return true;
    }
};

const ProcRegistration fillProperties("FillProperties", makeProc<FillPropertiesProc>);
const ProcRegistration lineProperties("LineProperties", makeProc<LinePropertiesProc>);
const ProcRegistration pointProperties("PointProperties", makeProc<PointPropertiesProc>);

} // namespace

} // namespace Orvane
