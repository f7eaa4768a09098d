#include "OSGTGAImageFileType.h"

#include "OSGDecodedImage.h"
#include "OSGImageBytes.h"
#include "OSGImagePicture.h"

#include <algorithm>
#include <array>
#include <utility>

namespace osg {

namespace {

constexpr UInt64 HeaderSize = 18;

// The 18 bytes in front.
struct TgaHeader
{
    bool hasPalette, packed, rightToLeft, topDown;
    int kind; // 1 palette, 2 colours, 3 greys
    UInt32 paletteFirst, paletteCount, paletteBits, width, height, bits, alphaBits;
    UInt32 idLength;

    explicit TgaHeader(const UInt8* p)
        : hasPalette(p[1] == 1)
        , packed(p[2] & 8)
        , rightToLeft(p[17] & 0x10)
        , topDown(p[17] & 0x20)
        , kind(p[2] & ~8)
        , paletteFirst(littleEndian16(p + 3))
        , paletteCount(littleEndian16(p + 5))
        , paletteBits(p[7])
        , width(littleEndian16(p + 12))
        , height(littleEndian16(p + 14))
        , bits(p[16])
        , alphaBits(p[17] & 0x0f)
        , idLength(p[0])
    {
    }

    static bool isColorDepth(UInt32 bits) { return bits == 15 || bits == 16 || bits == 24 || bits == 32; }

    bool isKnown() const
    {
        switch (kind) {
        case 1:
            return hasPalette && bits == 8 && isColorDepth(paletteBits);
        case 2:
            return isColorDepth(bits);
        case 3:
            return bits == 8;
        default:
            return false;
        }
    }
    UInt32 colorBits() const { return kind == 1 ? paletteBits : bits; }
    UInt32 components() const
    {
        return kind == 3 ? 1 : colorBits() == 32 && (alphaBits || kind == 1) ? 4 : 3;
    }
};

// One pixel or palette entry, blue first, as RGBA.
std::array<UInt8, 4> color(const UInt8* p, UInt32 bits)
{
    if (bits <= 16) {
        const UInt16 word = littleEndian16(p);
        const auto part = [word](int shift) { return static_cast<UInt8>((word >> shift & 31) * 255 / 31); };
        return {part(10), part(5), part(0), 255};
    }
    return {p[2], p[1], p[0], bits == 32 ? p[3] : UInt8(255)};
}

// The stored pixels one after another, packed or not.
class TgaPixels
{
public:
    TgaPixels(const TgaHeader& header, ByteReader& in)
        : _in(in)
        , _size((header.bits + 7) / 8)
        , _packed(header.packed)
    {
    }

    // Null when the file ends.
    const UInt8* next()
    {
        if (!_packed)
            return _in.take(_size);
        if (!_literals && !_repeats) {
            const UInt8* head = _in.take(1);
            if (!head)
                return nullptr;
            const int count = (*head & 0x7f) + 1;
            if (!(*head & 0x80)) {
                _literals = count;
            } else {
                _repeats = count;
                _repeated = _in.take(_size);
            }
        }
        if (_repeats) {
            --_repeats;
            return _repeated;
        }
        --_literals;
        return _in.take(_size);
    }

private:
    ByteReader& _in;
    UInt64 _size;
    bool _packed;
    int _literals = 0;
    int _repeats = 0;
    const UInt8* _repeated = nullptr;
};

} // namespace

TGAImageFileType::TGAImageFileType()
    : ImageFileType("image/x-targa", {"tga", "targa"}, OSG_READ_SUPPORTED)
{
}

bool TGAImageFileType::decode(const ImagePtr& image, const UInt8* data, UInt64 size) const
{
    ByteReader in{data, size};
    const UInt8* head = in.take(HeaderSize);
    if (!head)
        return fail("the file ends within its header");
    const TgaHeader header(head);
    if (!header.isKnown() || !header.width || !header.height)
        return fail("the header is damaged or of an unknown kind");

    const UInt32 entrySize = (header.paletteBits + 7) / 8;
    const UInt8* entries = in.take(header.idLength);
    if (entries && header.hasPalette)
        entries = in.take(UInt64(header.paletteCount) * entrySize);
    if (!entries)
        return fail("the file ends before its pixels");
    std::array<std::array<UInt8, 4>, 256> palette = {};
    if (header.kind == 1) {
        for (UInt32 i = 0; i < header.paletteCount && header.paletteFirst + i < palette.size(); ++i)
            palette[header.paletteFirst + i] = color(entries + i * entrySize, header.paletteBits);
    }

    DecodedImage decoded;
    ImageForm& form = decoded.form;
    const UInt32 components = header.components();
    form.format = formatForComponents(components);
    form.dataType = Image::OSG_UINT8_IMAGEDATA;
    form.width = static_cast<Int32>(header.width);
    form.height = static_cast<Int32>(header.height);
    const UInt64 stored = UInt64(header.width) * header.height * ((header.bits + 7) / 8);
    if (header.packed ? !isPlausibleSize(form.size(), size) : stored > in.rest())
        return fail("the file ends early");
    if (!allocate(decoded.pixels, form.size()))
        return false;
    TgaPixels pixels(header, in);
    for (UInt32 row = 0; row < header.height; ++row) {
        const std::size_t y = header.topDown ? header.height - 1 - row : row;
        for (UInt32 column = 0; column < header.width; ++column) {
            const std::size_t x = header.rightToLeft ? header.width - 1 - column : column;
            const UInt8* pixel = pixels.next();
            if (!pixel)
                return fail("the file ends early");
            UInt8* to = &decoded.pixels[(y * header.width + x) * components];
            if (header.kind == 3) {
                *to = *pixel;
            } else {
                const std::array<UInt8, 4> rgba =
                    header.kind == 1 ? palette[*pixel] : color(pixel, header.bits);
                std::copy_n(rgba.begin(), components, to);
            }
        }
    }
    return give(image, std::move(decoded));
}

} // namespace osg
