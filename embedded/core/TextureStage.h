#pragma once

#include "core/SurfaceTexture.h"
#include <Orvane/Export.h>
#include <string>

namespace Orvane {

/// What a `MultiTexture` says of one of its textures.
struct TextureStage
{
    std::string mode;   ///< of the colour, or of colour and alpha ("MODULATE,REPLACE")
    std::string source; ///< of what the texture joins
};

/// Has \a texture join what is below as \a stage says. False when the mode, or the source, is none that X3D
/// knows: it counts as `MODULATE`, and as what the textures below give.
ORVANE_API bool setStage(SurfaceTexture& texture, const TextureStage& stage);

/// True for the mode of a texture that is not drawn.
ORVANE_API bool isOff(const TextureStage& stage);

/// Changes \a texture into one that applies a function, "COMPLEMENT" or "ALPHAREPLICATE", to what is below,
/// and shows nothing itself. False for any other function.
ORVANE_API bool setFunction(SurfaceTexture& texture, const std::string& function);

} // namespace Orvane
