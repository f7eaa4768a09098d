#include "OSGSGIImageFileType.h"

#include "OSGDecodedImage.h"
#include "OSGImageBytes.h"
#include "OSGImagePicture.h"

#include <cstring>
#include <utility>

namespace osg {

namespace {

constexpr UInt64 HeaderSize = 512;

UInt32 bigEndian32(const UInt8* p)
{
    return UInt32(bigEndian16(p)) << 16 | bigEndian16(p + 2);
}

// Samples of one row of one component, one or two bytes each with the high byte first.
class SampleSink
{
public:
    SampleSink(UInt8* to, UInt32 count, std::size_t step, bool wide)
        : _to(to)
        , _rest(count)
        , _step(step)
        , _wide(wide)
    {
    }

    bool isFull() const { return !_rest; }

    // False when the row has no place left.
    bool put(const UInt8* sample)
    {
        if (isFull())
            return false;
        const UInt16 value = _wide ? bigEndian16(sample) : sample[0];
        if (_wide)
            std::memcpy(_to, &value, 2);
        else
            *_to = sample[0];
        _to += _step;
        --_rest;
        return true;
    }

private:
    UInt8* _to;
    UInt32 _rest;
    std::size_t _step;
    bool _wide;
};

// Runs: the low seven bits of a sample are a count, the eighth says whether as many samples follow or one is
// repeated.
bool unpackRow(ByteReader in, SampleSink& sink, std::size_t sampleSize)
{
    while (!sink.isFull()) {
        const UInt8* head = in.take(sampleSize);
        if (!head)
            return false;
        const int count = head[sampleSize - 1] & 0x7f;
        if (!count)
            return false;
        const bool literal = head[sampleSize - 1] & 0x80;
        const UInt8* from = in.take(literal ? sampleSize * static_cast<std::size_t>(count) : sampleSize);
        if (!from)
            return false;
        for (int i = 0; i < count; ++i, from += literal ? sampleSize : 0) {
            if (!sink.put(from))
                return false;
        }
    }
    return true;
}

} // namespace

SGIImageFileType::SGIImageFileType()
    : ImageFileType("image/x-sgi", {"rgb", "rgba", "sgi", "bw"}, OSG_READ_SUPPORTED)
{
}

bool SGIImageFileType::checkHeader(const UInt8* data, UInt64 size) const
{
    return size >= HeaderSize && bigEndian16(data) == 474 && data[2] <= 1 && (data[3] == 1 || data[3] == 2);
}

bool SGIImageFileType::decode(const ImagePtr& image, const UInt8* data, UInt64 size) const
{
    if (!checkHeader(data, size))
        return fail("the head of the file is damaged");
    const bool packed = data[2] == 1;
    const std::size_t sampleSize = data[3];
    const UInt32 dimension = bigEndian16(data + 4);
    const UInt32 width = bigEndian16(data + 6);
    const UInt32 height = dimension > 1 ? bigEndian16(data + 8) : 1;
    const UInt32 components = dimension > 2 ? bigEndian16(data + 10) : 1;
    if (!width || !height || !formatForComponents(components))
        return fail("there is no picture in the file");

    DecodedImage decoded;
    ImageForm& form = decoded.form;
    form.format = formatForComponents(components);
    form.dataType = sampleSize == 2 ? Image::OSG_UINT16_IMAGEDATA : Image::OSG_UINT8_IMAGEDATA;
    form.width = static_cast<Int32>(width);
    form.height = static_cast<Int32>(height);
    const UInt64 rowCount = UInt64(height) * components;
    const UInt64 rest = size - HeaderSize;
    if (packed ? rowCount * 8 > rest || !isPlausibleSize(form.size(), size) : form.size() > rest)
        return fail("the file ends early");
    if (!allocate(decoded.pixels, form.size()))
        return false;

    // Component after component, each with its rows from the bottom up; packed rows stand in a table.
    const std::size_t pixelSize = components * sampleSize;
    const UInt8* const starts = data + HeaderSize;
    const UInt8* const lengths = starts + rowCount * 4;
    for (UInt64 row = 0; row < rowCount; ++row) {
        const std::size_t component = row / height, y = row % height;
        SampleSink sink(&decoded.pixels[y * width * pixelSize + component * sampleSize], width, pixelSize,
                        sampleSize == 2);
        if (packed) {
            const UInt64 start = bigEndian32(starts + row * 4), length = bigEndian32(lengths + row * 4);
            if (start + length > size || !unpackRow(ByteReader{data + start, length}, sink, sampleSize))
                return fail("a packed row is damaged");
            continue;
        }
        const UInt8* from = data + HeaderSize + row * width * sampleSize;
        while (sink.put(from))
            from += sampleSize;
    }
    return give(image, std::move(decoded));
}

} // namespace osg
