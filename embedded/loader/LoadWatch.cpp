#include "loader/LoadWatch.h"

#include "base/ContextData.h"
#include <Orvane/LoadWatcher.h>
#include <algorithm>

namespace Orvane {

LoadWatch::LoadWatch(Context& context)
    : _context(context)
    , _watcher(context.data()->loads > 1 ? nullptr : context.data()->loadWatcher)
{
}

LoadWatch::File LoadWatch::beginFile(File file, std::size_t nodes)
{
    std::swap(_file, file);
    tell(0, nodes);
    return file;
}

bool LoadWatch::tell(std::size_t offset, std::size_t nodes)
{
    if (_isGivenUp || !_watcher)
        return !_isGivenUp;
    _isGivenUp = !_watcher->goesOn({_file.name, std::min(offset, _file.size), _file.size, nodes});
    _context.data()->isLoadGivenUp = _isGivenUp;
    return !_isGivenUp;
}

} // namespace Orvane
