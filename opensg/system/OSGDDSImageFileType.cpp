#include "OSGDDSImageFileType.h"

#include "OSGDecodedImage.h"
#include "OSGImageBytes.h"
#include "OSGImagePicture.h"

#include <OpenSG/OSGBaseFunctions.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

namespace osg {

namespace {

constexpr UInt64 HeaderSize = 128;
constexpr UInt32 MostLevels = 32;

constexpr UInt32 fourCC(char a, char b, char c, char d)
{
    return UInt32(a) | UInt32(b) << 8 | UInt32(c) << 16 | UInt32(d) << 24;
}

// The 128 bytes in front.
struct DdsHeader
{
    enum Packing { NONE, DXT1, DXT3, DXT5, UNKNOWN };

    UInt32 width, height, depth, levels, bits;
    std::array<UInt32, 4> masks; // red or luminance, green, blue, alpha
    Packing packing;
    bool isGrey, hasAlpha, isCube, isWhole;

    explicit DdsHeader(const UInt8* p)
        : width(littleEndian32(p + 16))
        , height(littleEndian32(p + 12))
        , depth(1)
        , levels(osgMax(littleEndian32(p + 28), UInt32(1)))
        , bits(littleEndian32(p + 88))
        , masks{littleEndian32(p + 92), littleEndian32(p + 96), littleEndian32(p + 100),
                littleEndian32(p + 104)}
        , packing(NONE)
    {
        const UInt32 flags = littleEndian32(p + 80);
        const UInt32 caps = littleEndian32(p + 112);
        isGrey = flags & 0x20000;
        isCube = caps & 0x200;
        isWhole = !isCube || (caps & 0xfc00) == 0xfc00;
        if (caps & 0x200000)
            depth = littleEndian32(p + 24);
        if (flags & 4) {
            const UInt32 code = littleEndian32(p + 84);
            packing = code == fourCC('D', 'X', 'T', '1')   ? DXT1
                      : code == fourCC('D', 'X', 'T', '3') ? DXT3
                      : code == fourCC('D', 'X', 'T', '5') ? DXT5
                                                           : UNKNOWN;
            isGrey = false;
            hasAlpha = true;
        } else {
            hasAlpha = (flags & 3) && masks[3];
            if (!hasAlpha)
                masks[3] = 0;
            if (!(flags & 0x20040))
                packing = UNKNOWN;
        }
    }

    bool isKnown() const
    {
        constexpr UInt32 Edge = 1 << 16;
        if (packing == UNKNOWN || !isWhole || !width || !height || !depth || width > Edge || height > Edge ||
            depth > Edge || levels > MostLevels || (isCube && (width != height || depth > 1)))
            return false;
        return packing != NONE || bits == 8 || bits == 16 || bits == 24 || bits == 32;
    }
    UInt32 components() const { return (isGrey ? 1 : 3) + (hasAlpha ? 1 : 0); }

    UInt64 levelSize(UInt32 level) const
    {
        const UInt64 w = osgMax(width >> level, UInt32(1));
        const UInt64 h = osgMax(height >> level, UInt32(1));
        const UInt64 d = osgMax(depth >> level, UInt32(1));
        if (packing == NONE)
            return (w * bits + 7) / 8 * h * d;
        return (w + 3) / 4 * ((h + 3) / 4) * d * (packing == DXT1 ? 8 : 16);
    }
    UInt64 sideSize() const
    {
        UInt64 size = 0;
        for (UInt32 level = 0; level < levels; ++level)
            size += levelSize(level);
        return size;
    }
};

using Pixel = std::array<UInt8, 4>;

// What a mask leaves of a number, stretched to a byte.
UInt8 channel(UInt32 word, UInt32 mask)
{
    if (!mask)
        return 0;
    UInt32 shift = 0;
    while (!(mask >> shift & 1))
        ++shift;
    return static_cast<UInt8>(UInt64((word & mask) >> shift) * 255 / (mask >> shift));
}

Pixel color565(UInt32 word)
{
    return {channel(word, 0xf800), channel(word, 0x07e0), channel(word, 0x001f), 255};
}

// Between two numbers, `share` of `whole` towards the second.
UInt8 between(UInt32 a, UInt32 b, UInt32 share, UInt32 whole)
{
    return static_cast<UInt8>((a * (whole - share) + b * share) / whole);
}

// The 16 colours of 8 bytes; those of DXT1 may have holes.
void unpackColors(const UInt8* p, bool mayHaveHoles, std::array<Pixel, 16>& block)
{
    const UInt32 first = littleEndian16(p);
    const UInt32 second = littleEndian16(p + 2);
    std::array<Pixel, 4> palette{color565(first), color565(second), Pixel{}, Pixel{}};
    const bool hasHoles = mayHaveHoles && first <= second;
    for (std::size_t c = 0; c < 4; ++c) {
        palette[2][c] = hasHoles ? between(palette[0][c], palette[1][c], 1, 2)
                                 : between(palette[0][c], palette[1][c], 1, 3);
        palette[3][c] = hasHoles ? UInt8(0) : between(palette[0][c], palette[1][c], 2, 3);
    }
    const UInt32 indices = littleEndian32(p + 4);
    for (UInt32 i = 0; i < 16; ++i)
        block[i] = palette[indices >> (2 * i) & 3];
}

void unpackAlpha3(const UInt8* p, std::array<Pixel, 16>& block)
{
    for (std::size_t i = 0; i < 16; ++i)
        block[i][3] = static_cast<UInt8>((p[i / 2] >> (4 * (i % 2)) & 15) * 17);
}

void unpackAlpha5(const UInt8* p, std::array<Pixel, 16>& block)
{
    std::array<UInt8, 8> palette{p[0], p[1], 0, 0, 0, 0, 0, 255};
    const UInt32 steps = p[0] > p[1] ? 7 : 5;
    for (UInt32 i = 1; i < steps; ++i)
        palette[i + 1] = between(p[0], p[1], i, steps);
    UInt64 indices = 0;
    for (UInt32 i = 0; i < 6; ++i)
        indices |= UInt64(p[2 + i]) << (8 * i);
    for (UInt32 i = 0; i < 16; ++i)
        block[i][3] = palette[indices >> (3 * i) & 7];
}

// A slice, as the file has it, into pixels; rows stand upside down unless `topDown`.
class DdsSlice
{
public:
    DdsSlice(const DdsHeader& header, UInt8* to, bool topDown)
        : _header(header)
        , _to(to)
        , _topDown(topDown)
    {
    }

    void unpack(const UInt8* from)
    {
        const UInt32 blockSize = _header.packing == DdsHeader::DXT1 ? 8 : 16;
        for (UInt32 y = 0; y < _header.height; y += 4) {
            for (UInt32 x = 0; x < _header.width; x += 4, from += blockSize)
                putBlock(from, x, y);
        }
    }

    void copy(const UInt8* from)
    {
        const UInt32 pixelSize = _header.bits / 8;
        for (UInt32 y = 0; y < _header.height; ++y) {
            for (UInt32 x = 0; x < _header.width; ++x, from += pixelSize) {
                UInt32 word = 0;
                for (UInt32 i = 0; i < pixelSize; ++i)
                    word |= UInt32(from[i]) << (8 * i);
                const std::array<UInt32, 4>& masks = _header.masks;
                Pixel pixel{channel(word, masks[0]), channel(word, masks[1]), channel(word, masks[2]),
                            channel(word, masks[3])};
                if (_header.isGrey)
                    pixel[1] = pixel[3];
                put(pixel, x, y);
            }
        }
    }

private:
    void putBlock(const UInt8* from, UInt32 left, UInt32 top)
    {
        std::array<Pixel, 16> block;
        const bool isFirst = _header.packing == DdsHeader::DXT1;
        unpackColors(isFirst ? from : from + 8, isFirst, block);
        if (_header.packing == DdsHeader::DXT3)
            unpackAlpha3(from, block);
        else if (_header.packing == DdsHeader::DXT5)
            unpackAlpha5(from, block);
        for (UInt32 i = 0; i < 16; ++i) {
            const UInt32 x = left + i % 4;
            const UInt32 y = top + i / 4;
            if (x < _header.width && y < _header.height)
                put(block[i], x, y);
        }
    }

    void put(const Pixel& pixel, UInt32 x, UInt32 y)
    {
        const std::size_t row = _topDown ? y : _header.height - 1 - y;
        std::copy_n(pixel.begin(), _header.components(),
                    _to + (row * _header.width + x) * _header.components());
    }

    const DdsHeader& _header;
    UInt8* _to;
    bool _topDown;
};

} // namespace

DDSImageFileType::DDSImageFileType()
    : ImageFileType("image/vnd-ms.dds", {"dds"}, OSG_READ_SUPPORTED)
{
}

bool DDSImageFileType::decode(const ImagePtr& image, const UInt8* data, UInt64 size) const
{
    ByteReader in{data, size};
    const UInt8* head = in.take(HeaderSize);
    if (!head || std::memcmp(head, "DDS ", 4) != 0 || littleEndian32(head + 4) != 124)
        return fail("this is no DDS file");
    const DdsHeader header(head);
    if (!header.isKnown())
        return fail("the header is damaged or of an unknown kind");

    DecodedImage decoded;
    ImageForm& form = decoded.form;
    form.format = formatForComponents(header.components());
    form.dataType = Image::OSG_UINT8_IMAGEDATA;
    form.width = static_cast<Int32>(header.width);
    form.height = static_cast<Int32>(header.height);
    form.depth = static_cast<Int32>(header.depth);
    form.sides = header.isCube ? 6 : 1;
    // Files of one level may end with it.
    const UInt64 needed = header.sideSize() * static_cast<UInt32>(form.sides - 1) + header.levelSize(0);
    if (needed > in.rest())
        return fail("the file ends early");
    if (!allocate(decoded.pixels, form.size()))
        return false;
    const UInt8* const pixels = data + HeaderSize;
    const UInt64 sliceSize = header.levelSize(0) / header.depth;
    const UInt64 slicePixels = form.size() / static_cast<UInt32>(form.sides) / header.depth;
    for (UInt32 side = 0; side < static_cast<UInt32>(form.sides); ++side) {
        for (UInt32 z = 0; z < header.depth; ++z) {
            DdsSlice slice(header, &decoded.pixels[(UInt64(side) * header.depth + z) * slicePixels],
                           header.isCube);
            const UInt8* const from = pixels + side * header.sideSize() + z * sliceSize;
            if (header.packing == DdsHeader::NONE)
                slice.copy(from);
            else
                slice.unpack(from);
        }
    }
    return give(image, std::move(decoded));
}

} // namespace osg
