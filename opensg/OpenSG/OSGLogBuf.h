#pragma once

#include "OSGBaseTypes.h"

#include <deque>
#include <streambuf>
#include <string>
#include <vector>

namespace osg {

/// The buffer of a buffer log. It gathers what is written and gives it out in chunks: at each flush, and
/// when the next string does not fit. Each chunk is kept in the chunk bag (unless that is disabled) and
/// handed to the callback. The buffer has no lock: whoever shares it with a log holds the log's lock.
class OSG_BASE_DLLMAPPING LogBuf : public std::streambuf
{
public:
    /// data is not terminated by a zero. Called in the thread that logs; it may log itself.
    typedef void (*Callback)(const Char8* data, Int32 size, void* clientData);

    /// Gathers up to bufferSize - 1 bytes; with 0 every write fails.
    explicit LogBuf(UInt32 bufferSize = 1024);
    ~LogBuf() override;

    LogBuf(const LogBuf&) = delete;
    LogBuf& operator=(const LogBuf&) = delete;

    /// Whether chunks are kept; true by default, and then the bag grows without limit. The callback is
    /// called either way.
    bool getEnabled() const { return _enabled; }
    void setEnabled(bool value = true) { _enabled = value; }

    /// Forgets the kept chunks.
    void clearChunkBag() { _chunks.clear(); }

    /// Sets the callback; with flushData it is given all kept chunks first, the oldest first, and they stay
    /// in the bag. A null callback is ignored: that is what removeCallback is for.
    void setCallback(Callback callback, void* clientData = nullptr, bool flushData = false);
    void removeCallback() { _callback = nullptr; }

protected:
    int_type overflow(int_type c) override;
    std::streamsize xsputn(const Char8* data, std::streamsize size) override;
    int sync() override;

private:
    void beginArea();
    void deliverPending(std::size_t size);
    void deliver(const Char8* data, std::size_t size);

    std::vector<Char8> _area;
    std::vector<Char8> _spare;
    std::deque<std::string> _chunks;
    Callback _callback = nullptr;
    void* _clientData = nullptr;
    bool _enabled = true;
};

} // namespace osg
