#pragma once

#include <cstddef>
#include <string>

namespace Orvane {

class Context;
class LoadWatcher;

/// What a load tells whoever watches it, and whether it is to go on. Loads inside a load are not watched.
class LoadWatch
{
public:
    /// A file that is being read.
    struct File
    {
        std::string name;
        std::size_t size = 0;
    };

    explicit LoadWatch(Context& context);

    /// Another file is read from now on, until `endFile` gets the one that is returned.
    File beginFile(File file, std::size_t nodes);
    void endFile(File outer) { _file = std::move(outer); }

    /// True when it is worth while to tell; counts the calls.
    bool step() { return _watcher && ++_steps % stepsBetween == 0; }
    /// False when the load is to end.
    bool tell(std::size_t offset, std::size_t nodes);
    bool goesOn() const { return !_isGivenUp; }

private:
    static constexpr unsigned int stepsBetween = 256;

    Context& _context;
    LoadWatcher* _watcher;
    File _file;
    unsigned int _steps = 0;
    bool _isGivenUp = false;
};

} // namespace Orvane
