#pragma once

#include <Orvane/Export.h>
#include <cstddef>

namespace Orvane {

/// Hears that nodes have been moved in a scene with layers, so that some may stand in other layers than
/// before. Nobody is told while no scene has layers.
class ORVANE_API LayerWatcher
{
public:
    LayerWatcher();
    LayerWatcher(const LayerWatcher&) = delete;
    LayerWatcher& operator=(const LayerWatcher&) = delete;
    virtual ~LayerWatcher();

    virtual void nodesMoved() = 0;

    static void tellAll();
    /// How many layers there are beside those of the scenes themselves.
    static std::size_t& layerCount();

private:
    std::size_t _place; ///< in the list of all
};

} // namespace Orvane
