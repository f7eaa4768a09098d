#include "OpenSG/OSGLogBuf.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <utility>

namespace osg {

LogBuf::LogBuf(UInt32 bufferSize)
    : _area(bufferSize)
{
    beginArea();
}

LogBuf::~LogBuf() = default;

void LogBuf::setCallback(Callback callback, void* clientData, bool flushData)
{
    if (!callback)
        return;
    _callback = callback;
    _clientData = clientData;
    if (!flushData)
        return;
    // By index and from a copy: the callback may log, and so add to the bag, or clear it.
    const std::size_t count = _chunks.size();
    for (std::size_t i = 0; i < count && i < _chunks.size(); ++i) {
        const std::string chunk = _chunks[i];
        callback(chunk.data(), static_cast<Int32>(chunk.size()), clientData);
    }
}

/// All but the last byte, which is left for the character that finds the area full.
void LogBuf::beginArea()
{
    if (!_area.empty())
        setp(_area.data(), _area.data() + _area.size() - 1);
}

LogBuf::int_type LogBuf::overflow(int_type c)
{
    if (_area.empty())
        return traits_type::eof();
    std::size_t size = static_cast<std::size_t>(pptr() - pbase());
    if (!traits_type::eq_int_type(c, traits_type::eof()))
        _area[size++] = traits_type::to_char_type(c);
    deliverPending(size);
    return traits_type::not_eof(c);
}

std::streamsize LogBuf::xsputn(const Char8* data, std::streamsize size)
{
    if (_area.empty() || size <= 0)
        return 0;
    if (size <= epptr() - pptr()) {
        std::memcpy(pptr(), data, static_cast<std::size_t>(size));
        pbump(static_cast<int>(size));
    } else {
        sync();
        deliver(data, static_cast<std::size_t>(size));
    }
    return size;
}

int LogBuf::sync()
{
    deliverPending(static_cast<std::size_t>(pptr() - pbase()));
    return 0;
}

/// Gives out the first size bytes of the area. They move aside first, since the callback may log and so
/// write into the area.
void LogBuf::deliverPending(std::size_t size)
{
    if (size == 0)
        return;
    if (_spare.empty())
        _spare.resize(_area.size());
    std::vector<Char8> pending = std::exchange(_area, std::move(_spare));
    beginArea();
    deliver(pending.data(), size);
    _spare = std::move(pending);
}

void LogBuf::deliver(const Char8* data, std::size_t size)
{
    const std::size_t most = std::numeric_limits<Int32>::max();
    for (std::size_t begin = 0; begin < size; begin += most) {
        const std::size_t piece = std::min(size - begin, most);
        if (_enabled)
            _chunks.emplace_back(data + begin, piece);
        if (_callback)
            _callback(data + begin, static_cast<Int32>(piece), _clientData);
    }
}

} // namespace osg
