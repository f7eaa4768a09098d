#include "base/ValueFields.h"
#include "core/AppearanceProcs.h"
#include "core/Part.h"
#include "core/TextureStage.h"
#include "core/UsableValues.h"
#include <Orvane/MFNode.h>
#include <Orvane/MFString.h>
#include <Orvane/SFFloat.h>
#include <algorithm>

namespace Orvane {

namespace {

const Part alphaPart("alpha");
const Part colorPart("color");
const Part functionPart("function");
const Part modePart("mode");
const Part sourcePart("source");
const Part texturePart("texture");

constexpr std::size_t MaxTextures = osg::StateChunk::MaxSlots;

/// Behaviour of a `MultiTexture`: textures that join one after the other.
class MultiTextureProc : public TextureProc
{
public:
    using TextureProc::TextureProc;

    bool hasStages() const override { return true; }

    void describe(Surface& surface) override
    {
        const auto& list = texturePart.read<MFNode>(node());
        const auto listed = static_cast<std::size_t>(list.size());
        if (listed > MaxTextures)
            complain("texture", "expected " + std::to_string(MaxTextures) + " textures or fewer, found " +
                                    std::to_string(listed) + "; the first ones are drawn");
        _uses.resize(std::min(listed, MaxTextures));
        for (std::size_t i = 0; i < _uses.size(); ++i) {
            auto* const texture = elementOf<TextureProc>(list.elem(static_cast<int>(i)).directNode());
            // A texture of several is none of theirs.
            _uses[i].set(*this, texture && !texture->hasStages() ? texture : nullptr);
            addStage(surface, i);
        }
    }

private:
    /// The text of a stage in one of the lists, which may be short.
    std::string text(const Part& part, std::size_t stage) const
    {
        const auto& list = part.read<MFString>(node());
        return stage < static_cast<std::size_t>(list.size()) ? std::string(list[static_cast<int>(stage)])
                                                             : std::string();
    }

    void addStage(Surface& surface, std::size_t i)
    {
        const TextureStage stage{text(modePart, i), text(sourcePart, i)};
        auto* const texture = static_cast<TextureProc*>(_uses[i].element());
        if (!texture || isOff(stage) || surface.textures.size() >= MaxTextures)
            return;
        const std::size_t before = surface.textures.size();
        texture->describe(surface);
        if (surface.textures.size() == before)
            return;
        SurfaceTexture& added = surface.textures.back();
        added.coordSet = static_cast<unsigned int>(i);
        const osg::Color3f factor = usableColor(colorPart.read<SFColor>(node()).value());
        added.factor = osg::Color4f(factor.red(), factor.green(), factor.blue(),
                                    usableNumber(alphaPart.read<SFFloat>(node()).value(), 1.0F));
        if (!setStage(added, stage))
            complain("mode", "expected modes and sources of X3D, found \"" + stage.mode + "\" and \"" +
                                 stage.source + "\"; they count as MODULATE and as no source");
        const std::string function = text(functionPart, i);
        if (function.empty() || function == "NONE" || surface.textures.size() >= MaxTextures)
            return;
        SurfaceTexture applied = added;
        if (setFunction(applied, function))
            surface.textures.push_back(std::move(applied));
        else
            complain("function", "expected COMPLEMENT or ALPHAREPLICATE, found \"" + function + '"');
    }

    std::vector<Use> _uses;
};

const ProcRegistration multiTexture("MultiTexture", makeProc<MultiTextureProc>);

} // namespace

} // namespace Orvane
