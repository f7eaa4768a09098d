#include "OSGJPGImageFileType.h"

#include "OSGDecodedImage.h"
#include "OSGImagePicture.h"

#include <cmath>
#include <csetjmp>
#include <cstdio>
#include <cstdlib>
#include <utility>

// After the standard headers, which it does not include itself.
#include <jerror.h>
#include <jpeglib.h>

namespace osg {

namespace {

constexpr int Quality = 90;
// A file that asks for more passes over the picture is made to keep the reader busy.
constexpr int MaxScans = 200;

// libjpeg leaves by longjmp: whatever has a destructor lives in the codec objects, outside of the frames it
// skips.
struct JpegError
{
    jpeg_error_mgr manager; // first, because libjpeg knows the error by its address
    std::jmp_buf jump;
    char text[JMSG_LENGTH_MAX] = "";

    JpegError()
    {
        jpeg_std_error(&manager);
        manager.error_exit = onError;
        manager.output_message = onMessage;
    }
    static void onError(j_common_ptr info)
    {
        auto* self = reinterpret_cast<JpegError*>(info->err);
        info->err->format_message(info, self->text);
        std::longjmp(self->jump, 1);
    }
    static void onMessage(j_common_ptr) {}
};

struct JpegReader
{
    JpegError error;
    jpeg_decompress_struct info = {};
    jpeg_progress_mgr progress = {};
    const UInt8* data;
    UInt64 size;
    DecodedImage decoded;
    std::vector<UInt8> inks;

    JpegReader(const UInt8* data_, UInt64 size_)
        : data(data_)
        , size(size_)
    {
        info.err = &error.manager;
    }
    ~JpegReader() { jpeg_destroy_decompress(&info); }

    static boolean onEnd(j_decompress_ptr info)
    {
        ERREXIT(info, JERR_INPUT_EOF);
        return FALSE;
    }
    static void onProgress(j_common_ptr common)
    {
        auto* info = reinterpret_cast<j_decompress_ptr>(common);
        if (info->input_scan_number > MaxScans)
            ERREXIT1(info, JERR_BAD_LENGTH, 0);
    }

    bool run()
    {
        if (setjmp(error.jump))
            return false;
        jpeg_create_decompress(&info);
        progress.progress_monitor = onProgress;
        info.progress = &progress;
        jpeg_mem_src(&info, data, static_cast<unsigned long>(size));
        info.src->fill_input_buffer = onEnd;
        jpeg_read_header(&info, TRUE);
        switch (info.jpeg_color_space) {
        case JCS_GRAYSCALE:
            info.out_color_space = JCS_GRAYSCALE;
            break;
        case JCS_CMYK:
        case JCS_YCCK:
            info.out_color_space = JCS_CMYK;
            break;
        default:
            info.out_color_space = JCS_RGB;
        }
        jpeg_calc_output_dimensions(&info);
        if (!prepare())
            return false;
        jpeg_start_decompress(&info);
        while (info.output_scanline < info.output_height)
            readRow();
        jpeg_finish_decompress(&info);
        return true;
    }

    bool prepare()
    {
        ImageForm& form = decoded.form;
        form.format = info.out_color_space == JCS_GRAYSCALE ? Image::OSG_L_PF : Image::OSG_RGB_PF;
        form.dataType = Image::OSG_UINT8_IMAGEDATA;
        form.width = static_cast<Int32>(info.output_width);
        form.height = static_cast<Int32>(info.output_height);
        if (!ImageFileType::isPlausibleSize(form.size(), size)) {
            std::snprintf(error.text, sizeof error.text, "the size of the picture is not plausible");
            return false;
        }
        if (info.out_color_space == JCS_CMYK)
            inks.resize(std::size_t(info.output_width) * 4);
        const Real32 perInch = info.density_unit == 1 ? 1.0f : info.density_unit == 2 ? 2.54f : 0.0f;
        if (perInch > 0 && info.X_density && info.Y_density) {
            decoded.resX = info.X_density * perInch;
            decoded.resY = info.Y_density * perInch;
        }
        return allocate(decoded.pixels, form.size());
    }

    void readRow()
    {
        const std::size_t rowSize = decoded.pixels.size() / info.output_height;
        UInt8* to = decoded.pixels.data() + (info.output_height - 1 - info.output_scanline) * rowSize;
        JSAMPROW row = inks.empty() ? to : inks.data();
        jpeg_read_scanlines(&info, &row, 1);
        // Programs that leave Adobe's marker store the inks inverted, so that full ink is 0.
        const int flip = info.saw_Adobe_marker ? 0 : 255;
        for (std::size_t i = 0; i < inks.size(); i += 4) {
            for (std::size_t c = 0; c < 3; ++c)
                *to++ = static_cast<UInt8>((inks[i + c] ^ flip) * (inks[i + 3] ^ flip) / 255);
        }
    }
};

struct JpegWriter
{
    JpegError error;
    jpeg_compress_struct info = {};
    unsigned char* memory = nullptr;
    unsigned long memorySize = 0;
    const Picture& picture;
    std::vector<UInt8> grey;
    // Pixels per inch; 0 where the image tells none.
    UInt16 resX = 0;
    UInt16 resY = 0;

    explicit JpegWriter(const Picture& picture_)
        : picture(picture_)
    {
        info.err = &error.manager;
        if (picture.components == 2)
            grey.resize(picture.width);
    }
    ~JpegWriter()
    {
        jpeg_destroy_compress(&info);
        std::free(memory);
    }

    bool run()
    {
        static constexpr J_COLOR_SPACE spaces[2][5] = {
            {JCS_UNKNOWN, JCS_GRAYSCALE, JCS_GRAYSCALE, JCS_RGB, JCS_EXT_RGBX},
            {JCS_UNKNOWN, JCS_GRAYSCALE, JCS_GRAYSCALE, JCS_EXT_BGR, JCS_EXT_BGRX}};
        if (setjmp(error.jump))
            return false;
        jpeg_create_compress(&info);
        jpeg_mem_dest(&info, &memory, &memorySize);
        info.image_width = picture.width;
        info.image_height = picture.height;
        info.in_color_space = spaces[picture.isBgr][picture.components];
        info.input_components = grey.empty() ? static_cast<int>(picture.components) : 1;
        jpeg_set_defaults(&info);
        jpeg_set_quality(&info, Quality, TRUE);
        if (resX && resY) {
            info.density_unit = 1;
            info.X_density = resX;
            info.Y_density = resY;
        }
        jpeg_start_compress(&info, TRUE);
        while (info.next_scanline < info.image_height)
            writeRow();
        jpeg_finish_compress(&info);
        return true;
    }

    void writeRow()
    {
        const UInt8* from = picture.rowFromTop(info.next_scanline);
        for (std::size_t x = 0; x < grey.size(); ++x)
            grey[x] = from[2 * x];
        JSAMPROW row = grey.empty() ? const_cast<UInt8*>(from) : grey.data();
        jpeg_write_scanlines(&info, &row, 1);
    }
};

UInt16 density(Real32 perInch)
{
    return perInch >= 1 && perInch < 65535 ? static_cast<UInt16>(std::lround(perInch)) : UInt16(0);
}

} // namespace

JPGImageFileType::JPGImageFileType()
    : ImageFileType("image/jpeg", {"jpg", "jpeg", "jpe", "jfif"}, OSG_READ_SUPPORTED | OSG_WRITE_SUPPORTED)
{
}

bool JPGImageFileType::checkHeader(const UInt8* data, UInt64 size) const
{
    return size >= 3 && data[0] == 0xff && data[1] == 0xd8 && data[2] == 0xff;
}

bool JPGImageFileType::decode(const ImagePtr& image, const UInt8* data, UInt64 size) const
{
    JpegReader reader(data, size);
    return reader.run() ? give(image, std::move(reader.decoded)) : fail(reader.error.text);
}

bool JPGImageFileType::encode(const ImagePtr& image, std::vector<UInt8>& file) const
{
    Picture picture;
    if (!pictureOf(image, picture))
        return false;
    if (picture.dataType != Image::OSG_UINT8_IMAGEDATA)
        return fail("only whole numbers of 8 bits can be written");
    JpegWriter writer(picture);
    if (image->getResUnit() == Image::OSG_RESUNIT_INCH) {
        writer.resX = density(image->getResX());
        writer.resY = density(image->getResY());
    }
    if (!writer.run())
        return fail(writer.error.text);
    file.assign(writer.memory, writer.memory + writer.memorySize);
    return true;
}

} // namespace osg
