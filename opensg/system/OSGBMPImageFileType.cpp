#include "OSGBMPImageFileType.h"

#include "OSGDecodedImage.h"
#include "OSGImageBytes.h"
#include "OSGImagePicture.h"

#include <algorithm>
#include <array>
#include <utility>

namespace osg {

namespace {

constexpr UInt64 FileHeaderSize = 14;

enum Packing : UInt32 { Plain = 0, Runs8 = 1, Runs4 = 2, Masks = 3, MasksWithAlpha = 6 };

// The bits of one component in a pixel of 16 or 32 bits.
struct Mask
{
    UInt32 mask = 0;

    UInt8 of(UInt32 pixel) const
    {
        if (!mask)
            return 0;
        const UInt32 lowest = mask & (~mask + 1);
        return static_cast<UInt8>(UInt64((pixel & mask) / lowest) * 255 / (mask / lowest));
    }
};

// What the headers say, and the palette.
struct BmpHead
{
    UInt32 width = 0, height = 0, bits = 0, packing = Plain;
    bool topDown = false;
    UInt64 pixelsAt = 0;
    Mask red, green, blue, alpha;
    std::array<std::array<UInt8, 3>, 256> palette = {};

    bool read(const UInt8* data, UInt64 size);
    UInt32 components() const { return alpha.mask ? 4 : 3; }
    bool isRuns() const { return packing == Runs8 || packing == Runs4; }
    UInt64 rowSize() const { return (UInt64(width) * bits + 31) / 32 * 4; }

private:
    bool readMasks(const UInt8* header, UInt32 headerSize, UInt64 rest);
    bool isKnown() const;
};

bool BmpHead::read(const UInt8* data, UInt64 size)
{
    ByteReader in{data, size};
    const UInt8* const fileHeader = in.take(FileHeaderSize);
    const UInt8* const header = fileHeader && in.rest() >= 4 ? data + in.position : nullptr;
    const UInt32 headerSize = header ? littleEndian32(header) : 0;
    if ((headerSize != 12 && headerSize < 40) || !in.take(headerSize))
        return false;
    pixelsAt = littleEndian32(fileHeader + 10);
    UInt32 colors = 0;
    UInt32 entrySize = 4;
    if (headerSize == 12) {
        width = littleEndian16(header + 4);
        height = littleEndian16(header + 6);
        bits = littleEndian16(header + 10);
        entrySize = 3;
    } else {
        width = littleEndian32(header + 4);
        height = littleEndian32(header + 8);
        topDown = height & 0x80000000u;
        height = topDown ? ~height + 1 : height;
        bits = littleEndian16(header + 14);
        packing = littleEndian32(header + 16);
        colors = littleEndian32(header + 32);
        if (!readMasks(header, headerSize, size - FileHeaderSize))
            return false;
    }
    if (!isKnown() || pixelsAt > size)
        return false;
    if (bits <= 8) {
        colors = colors ? std::min(colors, 256u) : 1u << bits;
        // Old files may have fewer entries than they should.
        for (UInt32 i = 0; i < colors && in.position + entrySize <= pixelsAt; ++i) {
            const UInt8* entry = in.take(entrySize);
            palette[i] = {entry[2], entry[1], entry[0]};
        }
    }
    return true;
}

bool BmpHead::readMasks(const UInt8* header, UInt32 headerSize, UInt64 rest)
{
    if (bits == 16) {
        red.mask = 0x7c00;
        green.mask = 0x03e0;
        blue.mask = 0x001f;
    } else {
        red.mask = 0xff0000;
        green.mask = 0x00ff00;
        blue.mask = 0x0000ff;
    }
    if (packing != Masks && packing != MasksWithAlpha)
        return true;
    // Behind the oldest header, or at the same place within a larger one.
    const bool hasAlpha = headerSize >= 56 || packing == MasksWithAlpha;
    if (rest < (hasAlpha ? 56 : 52))
        return false;
    red.mask = littleEndian32(header + 40);
    green.mask = littleEndian32(header + 44);
    blue.mask = littleEndian32(header + 48);
    alpha.mask = hasAlpha ? littleEndian32(header + 52) : 0;
    return true;
}

bool BmpHead::isKnown() const
{
    const UInt32 most = 0x7fffffff;
    if (!width || !height || width > most || height > most)
        return false;
    switch (packing) {
    case Plain:
        return bits == 1 || bits == 4 || bits == 8 || bits == 16 || bits == 24 || bits == 32;
    case Runs8:
        return bits == 8;
    case Runs4:
        return bits == 4;
    case Masks:
    case MasksWithAlpha:
        return bits == 16 || bits == 32;
    default:
        return false;
    }
}

// Palette numbers of packed rows; what is jumped over stays 0. False when the file ends early or leaves the
// picture.
bool unpackRuns(ByteReader& in, const BmpHead& head, std::vector<UInt8>& indices)
{
    UInt64 x = 0, y = 0;
    const bool nibbles = head.packing == Runs4;
    const auto put = [&](UInt8 index) {
        if (x >= head.width || y >= head.height)
            return false;
        indices[y * head.width + x++] = index;
        return true;
    };
    const auto indexIn = [nibbles](const UInt8* bytes, UInt32 i) {
        return !nibbles ? bytes[i] : static_cast<UInt8>(i % 2 ? bytes[i / 2] & 15 : bytes[i / 2] >> 4);
    };
    while (const UInt8* code = in.take(2)) {
        if (code[0]) {
            for (UInt32 i = 0; i < code[0]; ++i) {
                if (!put(nibbles ? indexIn(code + 1, i % 2) : code[1]))
                    return false;
            }
        } else if (code[1] == 0) {
            x = 0;
            ++y;
        } else if (code[1] == 1) {
            return true;
        } else if (code[1] == 2) {
            const UInt8* step = in.take(2);
            if (!step)
                return false;
            x += step[0];
            y += step[1];
        } else {
            const UInt32 byteCount = nibbles ? (code[1] + 1u) / 2 : code[1];
            const UInt8* literal = in.take((byteCount + 1) / 2 * 2);
            for (UInt32 i = 0; i < code[1]; ++i) {
                if (!literal || !put(indexIn(literal, i)))
                    return false;
            }
        }
    }
    return false;
}

void readPixel(const BmpHead& head, const UInt8* row, UInt64 x, UInt8* to)
{
    if (head.bits <= 8) {
        const UInt64 bit = x * head.bits;
        const int index = row[bit / 8] >> (8 - head.bits - bit % 8) & ((1 << head.bits) - 1);
        std::copy_n(head.palette[static_cast<std::size_t>(index)].begin(), 3, to);
    } else if (head.bits == 24) {
        std::reverse_copy(row + x * 3, row + x * 3 + 3, to);
    } else {
        const UInt32 pixel = head.bits == 16 ? littleEndian16(row + x * 2) : littleEndian32(row + x * 4);
        to[0] = head.red.of(pixel);
        to[1] = head.green.of(pixel);
        to[2] = head.blue.of(pixel);
        if (head.alpha.mask)
            to[3] = head.alpha.of(pixel);
    }
}

} // namespace

BMPImageFileType::BMPImageFileType()
    : ImageFileType("image/bmp", {"bmp", "dib", "rle"}, OSG_READ_SUPPORTED)
{
}

bool BMPImageFileType::checkHeader(const UInt8* data, UInt64 size) const
{
    return size >= FileHeaderSize && data[0] == 'B' && data[1] == 'M';
}

bool BMPImageFileType::decode(const ImagePtr& image, const UInt8* data, UInt64 size) const
{
    BmpHead head;
    if (!checkHeader(data, size) || !head.read(data, size))
        return fail("the header is damaged or of an unknown kind");
    DecodedImage decoded;
    ImageForm& form = decoded.form;
    form.format = formatForComponents(head.components());
    form.dataType = Image::OSG_UINT8_IMAGEDATA;
    form.width = static_cast<Int32>(head.width);
    form.height = static_cast<Int32>(head.height);
    ByteReader in{data, size, head.pixelsAt};
    if (!isPlausibleSize(form.size(), size) ||
        (!head.isRuns() && saturatedProduct(head.rowSize(), head.height) > in.rest()))
        return fail("the file ends early");
    if (!allocate(decoded.pixels, form.size()))
        return false;

    std::vector<UInt8> indices;
    if (head.isRuns()) {
        if (!allocate(indices, UInt64(head.width) * head.height))
            return false;
        if (!unpackRuns(in, head, indices))
            return fail("the packed rows are damaged");
        head.bits = 8;
    }
    const UInt32 components = head.components();
    const UInt8* const rows = head.isRuns() ? indices.data() : data + head.pixelsAt;
    const UInt64 rowSize = head.isRuns() ? head.width : head.rowSize();
    for (UInt64 row = 0; row < head.height; ++row) {
        const UInt64 y = head.topDown ? head.height - 1 - row : row;
        for (UInt64 x = 0; x < head.width; ++x)
            readPixel(head, rows + row * rowSize, x, &decoded.pixels[(y * head.width + x) * components]);
    }
    return give(image, std::move(decoded));
}

} // namespace osg
