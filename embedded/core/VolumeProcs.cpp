// The three kinds of volumes.
#include "core/UsableValues.h"
#include "core/VolumeProc.h"
#include <Orvane/MFBool.h>
#include <Orvane/MFFloat.h>
#include <Orvane/MFNode.h>
#include <Orvane/SFFloat.h>
#include <algorithm>
#include <cmath>
#include <string>

namespace Orvane {

namespace {

const Part contourStepSizePart("contourStepSize");
const Part gradientsPart("gradients");
const Part renderStylePart("renderStyle");
const Part segmentEnabledPart("segmentEnabled");
const Part segmentIdentifiersPart("segmentIdentifiers");
const Part surfaceTolerancePart("surfaceTolerance");
const Part surfaceValuesPart("surfaceValues");

/// Behaviour of a `VolumeData`: one style for all voxels.
class VolumeDataProc : public VolumeProc
{
public:
    using VolumeProc::VolumeProc;

protected:
    void describe(VolumeText& text) override
    {
        VolumeStyleProc* const style = useStyle(_style, renderStylePart.readNode(node()));
        if (style && style->isProjection() && style->isEnabled())
            style->describeRay(text);
        else
            text.gatherColors(text.addStyle(0, style));
    }

private:
    Use _style;
};

/// Behaviour of a `SegmentedVolumeData`: each voxel has the style of its segment, whose number the first
/// component of a second image tells. Segments past the list are shown by the default style.
class SegmentedVolumeProc : public VolumeProc
{
public:
    using VolumeProc::VolumeProc;

protected:
    void describe(VolumeText& text) override
    {
        const std::vector<VolumeStyleProc*> styles = useStyles(_styles);
        std::optional<SurfaceTexture> segments =
            useSpace(_segments, segmentIdentifiersPart, "segmentIdentifiers");
        if (segments)
            segments->magFilter = osg::TextureChunk::NEAREST; // there is nothing between two segments
        const std::vector<bool> enabled = enabledSegments();
        const std::size_t count = std::min<std::size_t>(std::max(styles.size(), enabled.size()), 256);
        std::vector<std::string> colors;
        for (std::size_t i = 0; i < count; ++i) {
            const bool isShown = i >= enabled.size() || enabled[i];
            colors.push_back(isShown ? text.addStyle(0, i < styles.size() ? styles[i] : nullptr)
                                     : "vec4(0.0)");
        }
        colors.push_back(text.addStyle(0, nullptr));
        text.gatherSegments(segments, colors);
    }

private:
    std::vector<bool> enabledSegments() const
    {
        const auto& values = segmentEnabledPart.read<MFBool>(node());
        std::vector<bool> result(values.size());
        for (std::size_t i = 0; i < result.size(); ++i)
            result[i] = values[static_cast<int>(i)];
        return result;
    }

    std::vector<Use> _styles;
    Use _segments;
};

/// Behaviour of an `IsoSurfaceVolumeData`: where the intensity goes through values, each with a style.
class IsoSurfaceVolumeProc : public VolumeProc
{
public:
    using VolumeProc::VolumeProc;

protected:
    void describe(VolumeText& text) override
    {
        const std::vector<VolumeStyleProc*> styles = useStyles(_styles);
        if (const std::optional<SurfaceTexture> gradients = useSpace(_gradients, gradientsPart, "gradients"))
            text.setGradients(0, *gradients);
        // The last style stands for all values after it.
        std::vector<std::string> calls;
        for (VolumeStyleProc* style : styles)
            calls.push_back(text.addStyle(0, style));
        if (calls.empty())
            calls.push_back(text.addStyle(0, nullptr));
        std::vector<float> values;
        std::vector<std::string> colors;
        for (const Contour& contour : contours()) {
            values.push_back(contour.value);
            colors.push_back(calls[std::min(contour.style, calls.size() - 1)]);
        }
        if (values.empty())
            text.gatherColors("vec4(0.0)");
        else
            text.gatherSurfaces(values, colors,
                                usableNumber(surfaceTolerancePart.read<SFFloat>(node()).value(), 0.0F));
    }

private:
    struct Contour
    {
        float value;
        std::size_t style;
    };

    /// The surfaces by rising values: those given, or one and all others that are steps from it.
    std::vector<Contour> contours()
    {
        constexpr std::size_t MostSurfaces = 64;
        std::vector<Contour> result;
        const std::vector<float>& given = surfaceValuesPart.read<MFFloat>(node()).values();
        for (std::size_t i = 0; i < given.size() && i < MostSurfaces; ++i) {
            if (isDrawable(given[i]))
                result.push_back({given[i], i});
        }
        const float step = std::abs(contourStepSizePart.read<SFFloat>(node()).value());
        bool isCut = given.size() > MostSurfaces;
        if (result.size() == 1 && isDrawable(step) && step > 0.0F) {
            const float first = result[0].value;
            if (step * static_cast<float>(MostSurfaces) < 1.0F)
                isCut = true;
            // Intensities are from 0 to 1.
            for (std::size_t i = 1; i < MostSurfaces && result.size() < MostSurfaces; ++i) {
                for (const float value :
                     {first - static_cast<float>(i) * step, first + static_cast<float>(i) * step}) {
                    if (value > 0.0F && value < 1.0F && result.size() < MostSurfaces)
                        result.push_back({value, 0});
                }
            }
        }
        if (isCut)
            complain("surfaceValues", "expected at most " + std::to_string(MostSurfaces) +
                                          " surfaces, found more; only so many are drawn");
        std::stable_sort(result.begin(), result.end(),
                         [](const Contour& a, const Contour& b) { return a.value < b.value; });
        return result;
    }

    std::vector<Use> _styles;
    Use _gradients;
};

const ProcRegistration volumeData("VolumeData", makeProc<VolumeDataProc>);
const ProcRegistration segmented("SegmentedVolumeData", makeProc<SegmentedVolumeProc>);
const ProcRegistration isoSurface("IsoSurfaceVolumeData", makeProc<IsoSurfaceVolumeProc>);

} // namespace

} // namespace Orvane
