#pragma once

#include <Orvane/Export.h>
#include <cstddef>
#include <string>

namespace Orvane {

class Context;

/// How far a load has come.
struct LoadProgress
{
    std::string file;      ///< that is being read
    std::size_t bytes = 0; ///< of it that lie behind
    std::size_t size = 0;  ///< of its text, in bytes
    std::size_t nodes = 0; ///< of all files so far
};

/// Watches the loads of a context as long as it lives, and may end them. For hosts that show how far a long
/// load has come. A runtime need not know it.
class ORVANE_API LoadWatcher
{
public:
    /// Of several watchers the last one counts. It keeps a reference to the context.
    explicit LoadWatcher(Context& context);
    LoadWatcher(const LoadWatcher&) = delete;
    LoadWatcher& operator=(const LoadWatcher&) = delete;
    virtual ~LoadWatcher();

    /// Called every few hundred nodes and with each file, inside the load, of which the present scene shows
    /// nothing yet: that may run its frames meanwhile. False ends the load, which then fails and leaves the
    /// present scene as it is.
    virtual bool goesOn(const LoadProgress& progress) = 0;

private:
    Context& _context;
    LoadWatcher* _outer;
};

} // namespace Orvane
