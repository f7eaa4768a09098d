#include "OSGTIFImageFileType.h"

#include "OSGDecodedImage.h"
#include "OSGImageBytes.h"
#include "OSGImagePicture.h"

#include <tiffio.h>

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <memory>
#include <new>
#include <utility>

namespace osg {

namespace {

// What libtiff reads from and writes to in place of a file, and its last complaint.
struct TiffMemory
{
    const UInt8* readable = nullptr;
    std::vector<UInt8>* writable = nullptr;
    UInt64 size = 0;
    UInt64 position = 0;
    char error[160] = "not understood";

    static tmsize_t read(thandle_t handle, void* to, tmsize_t count)
    {
        auto* self = static_cast<TiffMemory*>(handle);
        const UInt8* from = self->writable ? self->writable->data() : self->readable;
        const UInt64 rest = self->size - std::min(self->position, self->size);
        const UInt64 taken = std::min(rest, static_cast<UInt64>(std::max<tmsize_t>(count, 0)));
        if (taken)
            std::memcpy(to, from + self->position, taken);
        self->position += taken;
        return static_cast<tmsize_t>(taken);
    }
    static tmsize_t write(thandle_t handle, void* from, tmsize_t count)
    {
        auto* self = static_cast<TiffMemory*>(handle);
        const auto length = static_cast<UInt64>(std::max<tmsize_t>(count, 0));
        if (!self->writable || self->position + length > 2 * Image::MaxSize)
            return -1;
        try {
            self->writable->resize(std::max(self->size, self->position + length));
        } catch (const std::bad_alloc&) {
            return -1;
        }
        std::memcpy(self->writable->data() + self->position, from, length);
        self->position += length;
        self->size = self->writable->size();
        return count;
    }
    static toff_t seek(thandle_t handle, toff_t offset, int whence)
    {
        auto* self = static_cast<TiffMemory*>(handle);
        self->position = offset + (whence == SEEK_CUR ? self->position : whence == SEEK_END ? self->size : 0);
        return self->position;
    }
    static int close(thandle_t) { return 0; }
    static toff_t length(thandle_t handle) { return static_cast<TiffMemory*>(handle)->size; }

    static int onError(TIFF*, void* data, const char*, const char* format, va_list arguments)
    {
        auto* self = static_cast<TiffMemory*>(data);
        std::vsnprintf(self->error, sizeof self->error, format, arguments);
        return 1;
    }
    static int onWarning(TIFF*, void*, const char*, const char*, va_list) { return 1; }
};

struct TiffCloser
{
    void operator()(TIFF* tiff) const { TIFFClose(tiff); }
};
using TiffHandle = std::unique_ptr<TIFF, TiffCloser>;

TiffHandle openTiff(TiffMemory& memory, const char* mode)
{
    TIFFOpenOptions* options = TIFFOpenOptionsAlloc();
    TIFFOpenOptionsSetMaxSingleMemAlloc(options, static_cast<tmsize_t>(Image::MaxSize));
    TIFFOpenOptionsSetErrorHandlerExtR(options, TiffMemory::onError, &memory);
    TIFFOpenOptionsSetWarningHandlerExtR(options, TiffMemory::onWarning, &memory);
    TIFF* tiff =
        TIFFClientOpenExt("memory", mode, &memory, TiffMemory::read, TiffMemory::write, TiffMemory::seek,
                          TiffMemory::close, TiffMemory::length, nullptr, nullptr, options);
    TIFFOpenOptionsFree(options);
    return TiffHandle(tiff);
}

// What the tags of a page say.
struct TiffPage
{
    UInt32 width = 0, height = 0;
    UInt16 bits = 1, samples = 1, planar = PLANARCONFIG_CONTIG, orientation = ORIENTATION_TOPLEFT;
    UInt16 photometric = PHOTOMETRIC_PALETTE, sampleFormat = SAMPLEFORMAT_UINT, extraCount = 0;
    const UInt16* extra = nullptr;
    bool tiled = false;

    explicit TiffPage(TIFF* tiff)
    {
        TIFFGetField(tiff, TIFFTAG_IMAGEWIDTH, &width);
        TIFFGetField(tiff, TIFFTAG_IMAGELENGTH, &height);
        TIFFGetFieldDefaulted(tiff, TIFFTAG_BITSPERSAMPLE, &bits);
        TIFFGetFieldDefaulted(tiff, TIFFTAG_SAMPLESPERPIXEL, &samples);
        TIFFGetFieldDefaulted(tiff, TIFFTAG_PLANARCONFIG, &planar);
        TIFFGetFieldDefaulted(tiff, TIFFTAG_ORIENTATION, &orientation);
        TIFFGetFieldDefaulted(tiff, TIFFTAG_SAMPLEFORMAT, &sampleFormat);
        TIFFGetFieldDefaulted(tiff, TIFFTAG_EXTRASAMPLES, &extraCount, &extra);
        TIFFGetField(tiff, TIFFTAG_PHOTOMETRIC, &photometric);
        tiled = TIFFIsTiled(tiff) != 0;
    }

    bool hasAlpha() const { return extraCount > 0; }

    // The Image::Type of the samples; invalid for those that lie in memory in no such way.
    Int32 dataType() const
    {
        switch (sampleFormat << 8 | bits) {
        case SAMPLEFORMAT_UINT << 8 | 8:
            return Image::OSG_UINT8_IMAGEDATA;
        case SAMPLEFORMAT_UINT << 8 | 16:
            return Image::OSG_UINT16_IMAGEDATA;
        case SAMPLEFORMAT_UINT << 8 | 32:
            return Image::OSG_UINT32_IMAGEDATA;
        case SAMPLEFORMAT_INT << 8 | 16:
            return Image::OSG_INT16_IMAGEDATA;
        case SAMPLEFORMAT_INT << 8 | 32:
            return Image::OSG_INT32_IMAGEDATA;
        case SAMPLEFORMAT_IEEEFP << 8 | 16:
            return Image::OSG_FLOAT16_IMAGEDATA;
        case SAMPLEFORMAT_IEEEFP << 8 | 32:
            return Image::OSG_FLOAT32_IMAGEDATA;
        default:
            return Image::OSG_INVALID_IMAGEDATATYPE;
        }
    }

    // Whether the rows can be taken as they stand, without a conversion of colours.
    bool isPlain() const
    {
        const bool grey = photometric == PHOTOMETRIC_MINISBLACK && (samples == 1 || samples == 2);
        const bool color = photometric == PHOTOMETRIC_RGB && (samples == 3 || samples == 4);
        return !tiled && planar == PLANARCONFIG_CONTIG && dataType() && (grey || color) &&
               (orientation == ORIENTATION_TOPLEFT || orientation == ORIENTATION_BOTLEFT);
    }
};

bool readPlain(TIFF* tiff, const TiffPage& page, DecodedImage& decoded)
{
    const std::size_t rowSize = decoded.pixels.size() / page.height;
    if (TIFFScanlineSize64(tiff) != rowSize)
        return false;
    for (UInt32 row = 0; row < page.height; ++row) {
        const UInt32 y = page.orientation == ORIENTATION_TOPLEFT ? page.height - 1 - row : row;
        if (TIFFReadScanline(tiff, decoded.pixels.data() + y * rowSize, row, 0) < 0)
            return false;
    }
    return true;
}

// libtiff's own conversion to RGBA, which multiplies colours by an alpha that is not yet part of them.
bool readConverted(TIFF* tiff, const TiffPage& page, DecodedImage& decoded)
{
    std::vector<UInt8> raster;
    const std::size_t count = std::size_t(page.width) * page.height;
    if (!allocate(raster, UInt64(count) * sizeof(UInt32)))
        return false;
    auto* words = reinterpret_cast<UInt32*>(raster.data());
    if (!TIFFReadRGBAImageOriented(tiff, page.width, page.height, words, ORIENTATION_BOTLEFT, 1))
        return false;
    const bool multiplied = page.hasAlpha() && page.extra[0] == EXTRASAMPLE_UNASSALPHA;
    UInt8* to = decoded.pixels.data();
    for (std::size_t i = 0; i < count; ++i) {
        const UInt32 alpha = TIFFGetA(words[i]);
        const UInt32 colors[] = {TIFFGetR(words[i]), TIFFGetG(words[i]), TIFFGetB(words[i])};
        for (const UInt32 color : colors)
            *to++ = static_cast<UInt8>(multiplied && alpha ? std::min(color * 255 / alpha, 255u) : color);
        if (page.hasAlpha())
            *to++ = static_cast<UInt8>(alpha);
    }
    return true;
}

void readResolution(TIFF* tiff, DecodedImage& decoded)
{
    Real32 x = 0, y = 0;
    UInt16 unit = RESUNIT_INCH;
    TIFFGetFieldDefaulted(tiff, TIFFTAG_RESOLUTIONUNIT, &unit);
    if (!TIFFGetField(tiff, TIFFTAG_XRESOLUTION, &x) || !TIFFGetField(tiff, TIFFTAG_YRESOLUTION, &y) ||
        !(x > 0) || !(y > 0))
        return;
    const Real32 scale = unit == RESUNIT_CENTIMETER ? 2.54f : 1.0f;
    decoded.resX = x * scale;
    decoded.resY = y * scale;
    decoded.resUnit = unit == RESUNIT_NONE ? Image::OSG_RESUNIT_NONE : Image::OSG_RESUNIT_INCH;
}

UInt16 sampleFormatOf(Int32 dataType)
{
    switch (dataType) {
    case Image::OSG_INT16_IMAGEDATA:
    case Image::OSG_INT32_IMAGEDATA:
        return SAMPLEFORMAT_INT;
    case Image::OSG_FLOAT16_IMAGEDATA:
    case Image::OSG_FLOAT32_IMAGEDATA:
        return SAMPLEFORMAT_IEEEFP;
    default:
        return SAMPLEFORMAT_UINT;
    }
}

void writeTags(TIFF* tiff, const Picture& picture, const Image& image)
{
    TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, picture.width);
    TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, picture.height);
    TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, static_cast<int>(picture.componentSize * 8));
    TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, static_cast<int>(picture.components));
    TIFFSetField(tiff, TIFFTAG_SAMPLEFORMAT, static_cast<int>(sampleFormatOf(picture.dataType)));
    TIFFSetField(tiff, TIFFTAG_COMPRESSION, COMPRESSION_LZW);
    TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
    TIFFSetField(tiff, TIFFTAG_ORIENTATION, ORIENTATION_TOPLEFT);
    TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC,
                 picture.components < 3 ? PHOTOMETRIC_MINISBLACK : PHOTOMETRIC_RGB);
    if (picture.components % 2 == 0) {
        const UInt16 alpha = EXTRASAMPLE_UNASSALPHA;
        TIFFSetField(tiff, TIFFTAG_EXTRASAMPLES, 1, &alpha);
    }
    if (image.getResX() > 0 && image.getResY() > 0) {
        TIFFSetField(tiff, TIFFTAG_XRESOLUTION, static_cast<double>(image.getResX()));
        TIFFSetField(tiff, TIFFTAG_YRESOLUTION, static_cast<double>(image.getResY()));
        TIFFSetField(tiff, TIFFTAG_RESOLUTIONUNIT,
                     image.getResUnit() == Image::OSG_RESUNIT_INCH ? RESUNIT_INCH : RESUNIT_NONE);
    }
    TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, TIFFDefaultStripSize(tiff, 0));
}

// The rows with red before blue, the uppermost first. libtiff may change what it is given.
bool writeRows(TIFF* tiff, const Picture& picture)
{
    std::vector<UInt8> row(picture.rowSize);
    const std::size_t size = picture.componentSize, step = size * picture.components;
    for (UInt32 y = 0; y < picture.height; ++y) {
        std::memcpy(row.data(), picture.rowFromTop(y), row.size());
        for (std::size_t at = 0; picture.isBgr && at < row.size(); at += step)
            std::swap_ranges(&row[at], &row[at] + size, &row[at + 2 * size]);
        if (TIFFWriteScanline(tiff, row.data(), y, 0) < 0)
            return false;
    }
    return TIFFWriteDirectory(tiff) != 0;
}

} // namespace

TIFImageFileType::TIFImageFileType()
    : ImageFileType("image/tiff", {"tif", "tiff"}, OSG_READ_SUPPORTED | OSG_WRITE_SUPPORTED)
{
}

bool TIFImageFileType::checkHeader(const UInt8* data, UInt64 size) const
{
    if (size < 4)
        return false;
    // 42 in the file's own byte order; 43 for large files.
    const bool little = data[0] == 'I' && data[1] == 'I' && (data[2] == 42 || data[2] == 43) && !data[3];
    const bool big = data[0] == 'M' && data[1] == 'M' && !data[2] && (data[3] == 42 || data[3] == 43);
    return little || big;
}

bool TIFImageFileType::decode(const ImagePtr& image, const UInt8* data, UInt64 size) const
{
    TiffMemory memory;
    memory.readable = data;
    memory.size = size;
    const TiffHandle tiff = openTiff(memory, "rm");
    if (!tiff)
        return fail(memory.error);
    const TiffPage page(tiff.get());
    if (!page.width || !page.height || page.width > Image::MaxSize || page.height > Image::MaxSize)
        return fail("there is no picture in the file");

    const bool plain = page.isPlain();
    DecodedImage decoded;
    ImageForm& form = decoded.form;
    form.format = plain ? formatForComponents(page.samples)
                        : static_cast<UInt32>(page.hasAlpha() ? Image::OSG_RGBA_PF : Image::OSG_RGB_PF);
    form.dataType = plain ? page.dataType() : static_cast<Int32>(Image::OSG_UINT8_IMAGEDATA);
    form.width = static_cast<Int32>(page.width);
    form.height = static_cast<Int32>(page.height);
    if (!isPlausibleSize(form.size(), size))
        return fail("the size of the picture is not plausible");
    if (!allocate(decoded.pixels, form.size()))
        return false;
    if (!(plain ? readPlain(tiff.get(), page, decoded) : readConverted(tiff.get(), page, decoded)))
        return fail(memory.error);
    readResolution(tiff.get(), decoded);
    return give(image, std::move(decoded));
}

bool TIFImageFileType::encode(const ImagePtr& image, std::vector<UInt8>& file) const
{
    Picture picture;
    if (!pictureOf(image, picture))
        return false;
    TiffMemory memory;
    memory.writable = &file;
    TiffHandle tiff = openTiff(memory, "w");
    if (!tiff)
        return fail(memory.error);
    writeTags(tiff.get(), picture, *image);
    return writeRows(tiff.get(), picture) ? true : fail(memory.error);
}

} // namespace osg
