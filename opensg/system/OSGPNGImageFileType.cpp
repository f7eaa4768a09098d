#include "OSGPNGImageFileType.h"

#include "OSGDecodedImage.h"
#include "OSGImageBytes.h"
#include "OSGImagePicture.h"

#include <png.h>

#include <cmath>
#include <csetjmp>
#include <cstdio>
#include <cstring>
#include <new>
#include <utility>

namespace osg {

namespace {

constexpr double MetresPerInch = 0.0254;

// libpng leaves by longjmp: whatever has a destructor lives in these objects, outside of the frames it skips.
struct PngCodec
{
    png_structp png = nullptr;
    png_infop info = nullptr;
    char error[128] = "no memory";

    static void onError(png_structp png, png_const_charp text)
    {
        auto* self = static_cast<PngCodec*>(png_get_error_ptr(png));
        std::snprintf(self->error, sizeof self->error, "%s", text);
        png_longjmp(png, 1);
    }
    static void onWarning(png_structp, png_const_charp) {}
};

struct PngReader : PngCodec
{
    ByteReader bytes;
    DecodedImage decoded;
    std::vector<UInt8*> rows;

    PngReader(const UInt8* data, UInt64 size)
        : bytes{data, size}
    {
        png = png_create_read_struct(PNG_LIBPNG_VER_STRING, static_cast<PngCodec*>(this), onError, onWarning);
        info = png ? png_create_info_struct(png) : nullptr;
    }
    ~PngReader() { png_destroy_read_struct(&png, &info, nullptr); }

    static void onRead(png_structp png, png_bytep to, png_size_t count)
    {
        const UInt8* from = static_cast<ByteReader*>(png_get_io_ptr(png))->take(count);
        if (!from)
            png_error(png, "the file ends early");
        std::memcpy(to, from, count);
    }

    bool run()
    {
        if (!info || setjmp(png_jmpbuf(png)))
            return false;
        png_set_read_fn(png, &bytes, onRead);
        png_read_info(png, info);
        png_set_expand(png);
        png_set_interlace_handling(png);
        if (isLittleEndianHost())
            png_set_swap(png);
        png_read_update_info(png, info);
        prepare();
        png_read_image(png, rows.data());
        png_read_end(png, nullptr);
        return true;
    }

    void prepare()
    {
        ImageForm& form = decoded.form;
        form.format = formatForComponents(png_get_channels(png, info));
        form.dataType =
            png_get_bit_depth(png, info) == 16 ? Image::OSG_UINT16_IMAGEDATA : Image::OSG_UINT8_IMAGEDATA;
        form.width = static_cast<Int32>(png_get_image_width(png, info));
        form.height = static_cast<Int32>(png_get_image_height(png, info));
        if (!ImageFileType::isPlausibleSize(form.size(), bytes.size))
            png_error(png, "the size of the picture is not plausible");
        if (!form.size() || form.size() != png_get_rowbytes(png, info) * UInt64(form.height) ||
            !allocate(decoded.pixels, form.size()))
            png_error(png, "no memory for the pixels");
        rows = rowsFromTop(decoded.pixels, static_cast<UInt32>(form.height));

        png_uint_32 x = 0, y = 0;
        int unit = PNG_RESOLUTION_UNKNOWN;
        if (png_get_pHYs(png, info, &x, &y, &unit) && unit == PNG_RESOLUTION_METER && x && y) {
            decoded.resX = static_cast<Real32>(x * MetresPerInch);
            decoded.resY = static_cast<Real32>(y * MetresPerInch);
        }
    }
};

struct PngWriter : PngCodec
{
    std::vector<UInt8>& file;
    const Picture& picture;
    std::vector<UInt8*> rows;
    // Pixels per metre; 0 where the image tells none.
    UInt32 resX = 0;
    UInt32 resY = 0;

    PngWriter(std::vector<UInt8>& file_, const Picture& picture_)
        : file(file_)
        , picture(picture_)
    {
        png =
            png_create_write_struct(PNG_LIBPNG_VER_STRING, static_cast<PngCodec*>(this), onError, onWarning);
        info = png ? png_create_info_struct(png) : nullptr;
        for (UInt32 y = 0; y < picture.height; ++y)
            rows.push_back(const_cast<UInt8*>(picture.rowFromTop(y)));
    }
    ~PngWriter() { png_destroy_write_struct(&png, &info); }

    static void onWrite(png_structp png, png_bytep from, png_size_t count)
    {
        bool done = false;
        try {
            auto* to = static_cast<std::vector<UInt8>*>(png_get_io_ptr(png));
            to->insert(to->end(), from, from + count);
            done = true;
        } catch (const std::bad_alloc&) {
        }
        // Not out of the handler, whose exception would never be freed.
        if (!done)
            png_error(png, "no memory for the file");
    }
    static void onFlush(png_structp) {}

    bool run()
    {
        static constexpr int colorTypes[] = {PNG_COLOR_TYPE_GRAY, PNG_COLOR_TYPE_GRAY_ALPHA,
                                             PNG_COLOR_TYPE_RGB, PNG_COLOR_TYPE_RGB_ALPHA};
        if (!info || setjmp(png_jmpbuf(png)))
            return false;
        png_set_write_fn(png, &file, onWrite, onFlush);
        png_set_IHDR(png, info, picture.width, picture.height, static_cast<int>(picture.componentSize) * 8,
                     colorTypes[picture.components - 1], PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT,
                     PNG_FILTER_TYPE_DEFAULT);
        if (resX && resY)
            png_set_pHYs(png, info, resX, resY, PNG_RESOLUTION_METER);
        png_write_info(png, info);
        if (isLittleEndianHost() && picture.componentSize == 2)
            png_set_swap(png);
        if (picture.isBgr)
            png_set_bgr(png);
        png_write_image(png, rows.data());
        png_write_end(png, info);
        return true;
    }
};

UInt32 perMetre(Real32 perInch)
{
    const double value = std::round(static_cast<double>(perInch) / MetresPerInch);
    return value >= 1 && value < 0x7fffffff ? static_cast<UInt32>(value) : 0;
}

} // namespace

PNGImageFileType::PNGImageFileType()
    : ImageFileType("image/png", {"png"}, OSG_READ_SUPPORTED | OSG_WRITE_SUPPORTED)
{
}

bool PNGImageFileType::checkHeader(const UInt8* data, UInt64 size) const
{
    return size >= 8 && !png_sig_cmp(data, 0, 8);
}

bool PNGImageFileType::decode(const ImagePtr& image, const UInt8* data, UInt64 size) const
{
    PngReader reader(data, size);
    return reader.run() ? give(image, std::move(reader.decoded)) : fail(reader.error);
}

bool PNGImageFileType::encode(const ImagePtr& image, std::vector<UInt8>& file) const
{
    Picture picture;
    if (!pictureOf(image, picture))
        return false;
    if (picture.dataType != Image::OSG_UINT8_IMAGEDATA && picture.dataType != Image::OSG_UINT16_IMAGEDATA)
        return fail("only whole numbers of 8 or 16 bits can be written");
    PngWriter writer(file, picture);
    if (image->getResUnit() == Image::OSG_RESUNIT_INCH) {
        writer.resX = perMetre(image->getResX());
        writer.resY = perMetre(image->getResY());
    }
    return writer.run() ? true : fail(writer.error);
}

} // namespace osg
