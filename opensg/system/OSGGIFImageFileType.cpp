#include "OSGGIFImageFileType.h"

#include "OSGDecodedImage.h"
#include "OSGImageBytes.h"
#include "OSGImagePicture.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

namespace osg {

namespace {

// The bytes of a chain of blocks, each of which has its length in front; an empty one ends the chain.
bool readBlocks(ByteReader& in, std::vector<UInt8>& bytes)
{
    bytes.clear();
    while (const UInt8* length = in.take(1)) {
        if (!*length)
            return true;
        const UInt8* block = in.take(*length);
        if (!block)
            return false;
        bytes.insert(bytes.end(), block, block + *length);
    }
    return false;
}

// Unpacks to just as many numbers as `indices` has; false when there are fewer or the codes make no sense.
bool unpackCodes(const std::vector<UInt8>& bytes, int rootBits, std::vector<UInt8>& indices)
{
    constexpr int MaxCodes = 4096;
    const int clearCode = 1 << rootBits, endCode = clearCode + 1;
    // A code stands for the string of another one and a last number.
    std::array<UInt16, MaxCodes> prefix;
    std::array<UInt8, MaxCodes> last;
    std::array<UInt8, MaxCodes> reversed;
    int codeCount = endCode + 1, codeBits = rootBits + 1, previous = -1;
    UInt8 first = 0;
    UInt32 bitBuffer = 0;
    int bitCount = 0;
    std::size_t filled = 0;
    for (const UInt8 byte : bytes) {
        bitBuffer |= UInt32(byte) << bitCount;
        bitCount += 8;
        while (bitCount >= codeBits) {
            const int code = static_cast<int>(bitBuffer & ((1u << codeBits) - 1));
            bitBuffer >>= codeBits;
            bitCount -= codeBits;
            if (code == clearCode) {
                codeCount = endCode + 1;
                codeBits = rootBits + 1;
                previous = -1;
                continue;
            }
            if (code == endCode)
                return filled == indices.size();
            if (code > codeCount || (code == codeCount && previous < 0) || (previous < 0 && code > endCode))
                return false;
            int rest = code, length = 0;
            // The code that is just about to be made: the string before with its own first number behind.
            if (code == codeCount) {
                reversed[static_cast<std::size_t>(length++)] = first;
                rest = previous;
            }
            for (; rest > endCode; rest = prefix[static_cast<std::size_t>(rest)])
                reversed[static_cast<std::size_t>(length++)] = last[static_cast<std::size_t>(rest)];
            first = static_cast<UInt8>(rest);
            if (previous >= 0 && codeCount < MaxCodes) {
                prefix[static_cast<std::size_t>(codeCount)] = static_cast<UInt16>(previous);
                last[static_cast<std::size_t>(codeCount)] = first;
                ++codeCount;
                if (codeCount == 1 << codeBits && codeBits < 12)
                    ++codeBits;
            }
            previous = code;
            for (int i = length; i >= 0 && filled < indices.size(); --i)
                indices[filled++] = i == length ? first : reversed[static_cast<std::size_t>(i)];
            if (filled == indices.size())
                return true;
        }
    }
    return false;
}

// The row of a picture that comes as number `n`, rows being stored in four passes.
UInt32 interlacedRow(UInt32 n, UInt32 height)
{
    static constexpr UInt32 starts[] = {0, 4, 2, 1}, steps[] = {8, 8, 4, 2};
    for (int pass = 0; pass < 4; ++pass) {
        const UInt32 rows =
            height > starts[pass] ? (height - starts[pass] + steps[pass] - 1) / steps[pass] : 0;
        if (n < rows)
            return starts[pass] + n * steps[pass];
        n -= rows;
    }
    return height - 1;
}

using Palette = std::array<std::array<UInt8, 3>, 256>;

bool readPalette(ByteReader& in, int sizeBits, Palette& palette)
{
    const std::size_t count = std::size_t(2) << sizeBits;
    const UInt8* from = in.take(count * 3);
    for (std::size_t i = 0; from && i < count; ++i, from += 3)
        palette[i] = {from[0], from[1], from[2]};
    return from;
}

// Reads the pictures of a file one by one onto a canvas of RGBA, the uppermost row first.
class GifReader
{
public:
    GifReader(const UInt8* data, UInt64 size)
        : _in{data, size}
    {
    }

    const char* error() const { return _error; }
    UInt32 width() const { return _width; }
    UInt32 height() const { return _height; }
    const std::vector<UInt8>& canvas() const { return _canvas; }
    Time delay() const { return _delay; }

    bool readHead()
    {
        const UInt8* head = _in.take(13);
        _error = "the file ends early";
        if (!head)
            return false;
        _width = littleEndian16(head + 6);
        _height = littleEndian16(head + 8);
        if (head[10] & 0x80 && !readPalette(_in, head[10] & 7, _palette))
            return false;
        _error = "the size of the picture is not plausible";
        const UInt64 canvasSize = UInt64(_width) * _height * 4;
        return canvasSize && ImageFileType::isPlausibleSize(canvasSize, _in.size) &&
               allocate(_canvas, canvasSize);
    }

    enum Step { Picture, End, Damage };

    Step next()
    {
        _error = "the file ends early";
        while (const UInt8* kind = _in.take(1)) {
            if (*kind == 0x3b)
                return End;
            if (*kind == 0x2c)
                return readPicture() ? Picture : Damage;
            if (*kind != 0x21) {
                _error = "a block is of an unknown kind";
                return Damage;
            }
            if (!readExtension())
                return Damage;
        }
        return Damage;
    }

private:
    bool readExtension()
    {
        const UInt8* label = _in.take(1);
        if (!label || !readBlocks(_in, _blocks))
            return false;
        if (*label == 0xf9 && _blocks.size() >= 4) {
            _disposal = _blocks[0] >> 2 & 7;
            _transparent = _blocks[0] & 1 ? _blocks[3] : -1;
            _delay = littleEndian16(&_blocks[1]) / 100.0;
        }
        return true;
    }

    bool readPicture()
    {
        disposePrevious();
        const UInt8* head = _in.take(9);
        if (!head)
            return false;
        _left = littleEndian16(head);
        _top = littleEndian16(head + 2);
        _boxWidth = littleEndian16(head + 4);
        _boxHeight = littleEndian16(head + 6);
        Palette palette = _palette;
        if (head[8] & 0x80 && !readPalette(_in, head[8] & 7, palette))
            return false;
        const UInt8* rootBits = _in.take(1);
        if (!rootBits || !readBlocks(_in, _blocks))
            return false;
        _error = "the packed pixels are damaged";
        const UInt64 count = UInt64(_boxWidth) * _boxHeight;
        if (*rootBits < 1 || *rootBits > 8 || !ImageFileType::isPlausibleSize(count, _in.size) ||
            !allocate(_indices, count) || !unpackCodes(_blocks, *rootBits, _indices))
            return false;
        draw(palette, head[8] & 0x40);
        _pendingDisposal = _disposal;
        _disposal = 0;
        _transparent = -1;
        return true;
    }

    void draw(const Palette& palette, bool interlaced)
    {
        if (_disposal == 3)
            _saved = _canvas;
        for (UInt32 row = 0; row < _boxHeight; ++row) {
            const UInt32 y = _top + (interlaced ? interlacedRow(row, _boxHeight) : row);
            for (UInt32 x = 0; x < _boxWidth && y < _height && _left + x < _width; ++x) {
                const UInt8 index = _indices[std::size_t(row) * _boxWidth + x];
                if (index == _transparent)
                    continue;
                UInt8* to = &_canvas[(std::size_t(y) * _width + _left + x) * 4];
                std::copy_n(palette[index].begin(), 3, to);
                to[3] = 255;
            }
        }
    }

    // What is to become of the picture before: 2 clears its box, 3 brings back what was there.
    void disposePrevious()
    {
        if (_pendingDisposal == 3)
            _canvas.swap(_saved);
        for (UInt32 y = _top; _pendingDisposal == 2 && y < std::min(_top + _boxHeight, _height); ++y) {
            const UInt32 end = std::min(_left + _boxWidth, _width);
            if (_left < end)
                std::fill_n(&_canvas[(std::size_t(y) * _width + _left) * 4], (end - _left) * 4, UInt8(0));
        }
        _pendingDisposal = 0;
    }

    ByteReader _in;
    const char* _error = "";
    UInt32 _width = 0, _height = 0;
    Palette _palette = {};
    std::vector<UInt8> _canvas, _saved, _blocks, _indices;
    // Of the picture that comes next.
    int _disposal = 0;
    int _transparent = -1;
    Time _delay = 0;
    // Of the picture before.
    int _pendingDisposal = 0;
    UInt32 _left = 0, _top = 0, _boxWidth = 0, _boxHeight = 0;
};

} // namespace

GIFImageFileType::GIFImageFileType()
    : ImageFileType("image/gif", {"gif"}, OSG_READ_SUPPORTED)
{
}

bool GIFImageFileType::checkHeader(const UInt8* data, UInt64 size) const
{
    return size >= 6 && (!std::memcmp(data, "GIF87a", 6) || !std::memcmp(data, "GIF89a", 6));
}

bool GIFImageFileType::decode(const ImagePtr& image, const UInt8* data, UInt64 size) const
{
    GifReader reader(data, size);
    if (!checkHeader(data, size) || !reader.readHead())
        return fail(reader.error());
    const std::size_t canvasSize = reader.canvas().size(), rowSize = std::size_t(reader.width()) * 4;
    DecodedImage decoded;
    ImageForm& form = decoded.form;
    form.frames = 0;
    bool opaque = true;
    GifReader::Step step;
    while ((step = reader.next()) == GifReader::Picture) {
        std::vector<UInt8>& pixels = decoded.pixels;
        if (!isPlausibleSize(pixels.size() + canvasSize, size))
            return fail("the pictures are more than plausible");
        if (!form.frames++)
            decoded.frameDelay = reader.delay();
        for (std::size_t end = canvasSize; end; end -= rowSize)
            pixels.insert(pixels.end(), &reader.canvas()[end - rowSize],
                          &reader.canvas()[end - rowSize] + rowSize);
        for (std::size_t i = pixels.size() - canvasSize; opaque && i < pixels.size(); i += 4)
            opaque = pixels[i + 3] == 255;
    }
    if (step == GifReader::Damage || !form.frames)
        return fail(form.frames ? reader.error() : "there is no picture in the file");
    if (opaque) {
        std::vector<UInt8>& pixels = decoded.pixels;
        std::size_t filled = 0;
        for (std::size_t i = 0; i < pixels.size(); i += 4, filled += 3)
            std::copy_n(&pixels[i], 3, &pixels[filled]);
        pixels.resize(filled);
    }
    form.format = opaque ? Image::OSG_RGB_PF : Image::OSG_RGBA_PF;
    form.dataType = Image::OSG_UINT8_IMAGEDATA;
    form.width = static_cast<Int32>(reader.width());
    form.height = static_cast<Int32>(reader.height());
    return give(image, std::move(decoded));
}

} // namespace osg
