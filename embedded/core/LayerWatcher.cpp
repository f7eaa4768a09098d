#include "core/LayerWatcher.h"
#include <vector>

namespace Orvane {

namespace {

std::vector<LayerWatcher*>& watchers()
{
    static std::vector<LayerWatcher*> list;
    return list;
}

} // namespace

LayerWatcher::LayerWatcher()
    : _place(watchers().size())
{
    watchers().push_back(this);
}

LayerWatcher::~LayerWatcher()
{
    LayerWatcher* const last = watchers().back();
    watchers()[_place] = last;
    last->_place = _place;
    watchers().pop_back();
}

void LayerWatcher::tellAll()
{
    // The list may change meanwhile.
    for (std::size_t i = 0; i < watchers().size(); ++i)
        watchers()[i]->nodesMoved();
}

std::size_t& LayerWatcher::layerCount()
{
    static std::size_t count = 0;
    return count;
}

} // namespace Orvane
