#pragma once

#include "loader/SourcePlace.h"
#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace Orvane {

/// The text of one scene file as UTF-8, uncompressed, with its places by line and column. A reader may write
/// into the text: places stay those of the text as it was read.
class SourceText
{
public:
    /// Longest text that is taken, compressed or not.
    static constexpr std::size_t maxBytes = std::size_t(1) << 30;

    /// Reads a file, unpacks it when it begins as gzip does, and makes UTF-8 of its encoding. False, with the
    /// reason in \a fault, when there is no such text.
    bool readFile(const std::string& path, SourceFault& fault);
    /// Takes a text that a host has in memory, by the same rules.
    bool takeText(std::string_view text, SourceFault& fault);

    /// A zero byte follows the text.
    char* data() { return _text.get(); }
    std::string_view view() const { return {_text.get(), _size}; }
    std::size_t size() const { return _size; }
    /// Size of the file as it lies on disk.
    std::size_t bytesOnDisk() const { return _bytesOnDisk; }

    /// Place of a byte of the text. Quick for places near the one that was asked for last.
    SourcePlace place(std::size_t offset) const;
    /// The byte of a place; the size of the text for a place that it has not.
    std::size_t offset(SourcePlace place) const;

private:
    bool decode(SourceFault& fault);
    bool unpack(SourceFault& fault);
    void replace(std::string_view text);
    void indexLines();

    std::unique_ptr<char[]> _text;
    std::size_t _size = 0;
    std::size_t _bytesOnDisk = 0;
    std::vector<std::size_t> _lineStarts;
    mutable std::size_t _lastLine = 0;
};

} // namespace Orvane
