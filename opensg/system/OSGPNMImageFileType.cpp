#include "OSGPNMImageFileType.h"

#include "OSGDecodedImage.h"
#include "OSGImageBytes.h"
#include "OSGImagePicture.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <utility>

namespace osg {

namespace {

bool isBlank(UInt8 c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}

// Steps over blanks and comments.
void skipBlanks(ByteReader& in)
{
    bool inComment = false;
    while (in.rest()) {
        const UInt8 c = in.data[in.position];
        if (!inComment && c == '#')
            inComment = true;
        else if (inComment && (c == '\n' || c == '\r'))
            inComment = false;
        else if (!inComment && !isBlank(c))
            return;
        ++in.position;
    }
}

bool readNumber(ByteReader& in, UInt32& number)
{
    constexpr UInt32 Most = 100000000;
    skipBlanks(in);
    bool hasDigits = false;
    for (number = 0; in.rest() && in.data[in.position] >= '0' && in.data[in.position] <= '9'; ++in.position) {
        number = number * 10 + (in.data[in.position] - '0');
        hasDigits = true;
        if (number > Most)
            return false;
    }
    return hasDigits;
}

// What the head of a file says.
struct PnmHead
{
    char kind = 0; // '1' to '6'
    UInt32 width = 0, height = 0, most = 1;

    bool isBits() const { return kind == '1' || kind == '4'; }
    bool isText() const { return kind < '4'; }
    UInt32 components() const { return kind == '3' || kind == '6' ? 3 : 1; }

    bool read(ByteReader& in)
    {
        const UInt8* magic = in.take(2);
        kind = magic ? static_cast<char>(magic[1]) : '\0';
        return readNumber(in, width) && readNumber(in, height) && width && height &&
               (isBits() || (readNumber(in, most) && most && most <= 0xffff)) && (isText() || in.take(1));
    }
};

// The rows of a file one by one, as numbers up to the largest.
class PnmRows
{
public:
    PnmRows(const PnmHead& head, ByteReader& in)
        : _head(head)
        , _in(in)
    {
    }

    bool next(std::vector<UInt32>& row)
    {
        if (_head.isText())
            return nextText(row);
        const std::size_t sampleSize = _head.most > 255 ? 2 : 1;
        const UInt8* from = _in.take(_head.isBits() ? (row.size() + 7) / 8 : row.size() * sampleSize);
        if (!from)
            return false;
        for (std::size_t i = 0; i < row.size(); ++i) {
            if (_head.isBits())
                row[i] = !(from[i / 8] >> (7 - i % 8) & 1);
            else
                row[i] = sampleSize == 2 ? bigEndian16(from + 2 * i) : from[i];
        }
        return true;
    }

private:
    bool nextText(std::vector<UInt32>& row)
    {
        for (UInt32& sample : row) {
            if (!_head.isBits()) {
                if (!readNumber(_in, sample))
                    return false;
                continue;
            }
            // Bits need no blank between them; 1 is black.
            skipBlanks(_in);
            const UInt8* bit = _in.take(1);
            if (!bit || (*bit != '0' && *bit != '1'))
                return false;
            sample = *bit == '0';
        }
        return true;
    }

    const PnmHead& _head;
    ByteReader& _in;
};

} // namespace

PNMImageFileType::PNMImageFileType()
    : ImageFileType("image/x-portable-bitmap", {"pnm", "pbm", "pgm", "ppm"},
                    OSG_READ_SUPPORTED | OSG_WRITE_SUPPORTED)
{
}

bool PNMImageFileType::checkHeader(const UInt8* data, UInt64 size) const
{
    return size >= 3 && data[0] == 'P' && data[1] >= '1' && data[1] <= '6' &&
           (isBlank(data[2]) || data[2] == '#');
}

bool PNMImageFileType::decode(const ImagePtr& image, const UInt8* data, UInt64 size) const
{
    ByteReader in{data, size};
    PnmHead head;
    if (!checkHeader(data, size) || !head.read(in))
        return fail("the head of the file is damaged");
    DecodedImage decoded;
    ImageForm& form = decoded.form;
    const bool wide = head.most > 255;
    form.format = formatForComponents(head.components());
    form.dataType = wide ? Image::OSG_UINT16_IMAGEDATA : Image::OSG_UINT8_IMAGEDATA;
    form.width = static_cast<Int32>(head.width);
    form.height = static_cast<Int32>(head.height);
    const UInt64 samples = saturatedProduct(UInt64(head.width) * head.components(), head.height);
    // Every sample takes a byte of the file at least, but for bits, of which a byte holds eight.
    if (samples > saturatedProduct(in.rest(), 8) || !isPlausibleSize(form.size(), size))
        return fail("the file ends early");
    if (!allocate(decoded.pixels, form.size()))
        return false;
    PnmRows rows(head, in);
    std::vector<UInt32> row(std::size_t(head.width) * head.components());
    for (UInt8* to : rowsFromTop(decoded.pixels, head.height)) {
        if (!rows.next(row))
            return fail("the file ends early");
        for (const UInt32 sample : row) {
            const UInt64 kept = std::min(sample, head.most);
            if (wide) {
                const auto value = static_cast<UInt16>(kept * 0xffff / head.most);
                std::memcpy(to, &value, 2);
                to += 2;
            } else {
                *to++ = static_cast<UInt8>(kept * 0xff / head.most);
            }
        }
    }
    return give(image, std::move(decoded));
}

bool PNMImageFileType::encode(const ImagePtr& image, std::vector<UInt8>& file) const
{
    Picture picture;
    if (!pictureOf(image, picture))
        return false;
    const bool wide = picture.dataType == Image::OSG_UINT16_IMAGEDATA;
    if (!wide && picture.dataType != Image::OSG_UINT8_IMAGEDATA)
        return fail("only whole numbers of 8 or 16 bits can be written");
    const UInt32 written = picture.components < 3 ? 1 : 3;
    const std::string head = std::string(written == 1 ? "P5\n" : "P6\n") + std::to_string(picture.width) +
                             " " + std::to_string(picture.height) + (wide ? "\n65535\n" : "\n255\n");
    const UInt64 size =
        head.size() + UInt64(picture.width) * picture.height * written * picture.componentSize;
    if (!allocate(file, size))
        return false;
    UInt8* to = std::copy(head.begin(), head.end(), file.data());
    for (UInt32 y = 0; y < picture.height; ++y) {
        const UInt8* from = picture.rowFromTop(y);
        for (UInt32 x = 0; x < picture.width; ++x, from += picture.components * picture.componentSize) {
            for (UInt32 c = 0; c < written; ++c) {
                const UInt8* sample = from + (picture.isBgr ? 2 - c : c) * picture.componentSize;
                if (wide) {
                    UInt16 value;
                    std::memcpy(&value, sample, 2);
                    putBigEndian16(to, value);
                } else {
                    *to = *sample;
                }
                to += picture.componentSize;
            }
        }
    }
    return true;
}

} // namespace osg
