#pragma once

#include "OSGImageBase.h"

#include <map>
#include <string>

namespace osg {

struct ImageForm;

/// A picture in memory: a row, a plane or a volume of pixels, with mipmap levels, sides (of a cube map) and
/// frames (of a film). Frames lie outermost, then sides, levels (largest first), slices, rows from the bottom
/// up, pixels; there is no padding. What changes an image belongs between `beginEditCP` and `endEditCP`.
class OSG_SYSTEMLIB_DLLMAPPING Image : public ImageBase
{
public:
    using Ptr = ImagePtr;

    /// The values are OpenGL's.
    enum PixelFormat {
        OSG_INVALID_PF = 0,
        OSG_A_PF = 0x1906,
        OSG_RGB_PF = 0x1907,
        OSG_RGBA_PF = 0x1908,
        OSG_L_PF = 0x1909,
        OSG_LA_PF = 0x190A,
        OSG_I_PF = 0x8049,
        OSG_BGR_PF = 0x80E0,
        OSG_BGRA_PF = 0x80E1,
        OSG_RGB_DXT1 = 0x83F0,
        OSG_RGBA_DXT1 = 0x83F1,
        OSG_RGBA_DXT3 = 0x83F2,
        OSG_RGBA_DXT5 = 0x83F3,
        OSG_ALPHA_INTEGER_PF = 0x8D97,
        OSG_RGB_INTEGER_PF = 0x8D98,
        OSG_RGBA_INTEGER_PF = 0x8D99,
        OSG_BGR_INTEGER_PF = 0x8D9A,
        OSG_BGRA_INTEGER_PF = 0x8D9B,
        OSG_LUMINANCE_INTEGER_PF = 0x8D9C,
        OSG_LUMINANCE_ALPHA_INTEGER_PF = 0x8D9D
    };

    /// The type of one component; the values are OpenGL's.
    enum Type {
        OSG_INVALID_IMAGEDATATYPE = 0,
        OSG_UINT8_IMAGEDATA = 0x1401,
        OSG_INT16_IMAGEDATA = 0x1402,
        OSG_UINT16_IMAGEDATA = 0x1403,
        OSG_INT32_IMAGEDATA = 0x1404,
        OSG_UINT32_IMAGEDATA = 0x1405,
        OSG_FLOAT32_IMAGEDATA = 0x1406,
        OSG_FLOAT16_IMAGEDATA = 0x140B
    };

    enum ResUnit { OSG_RESUNIT_INVALID = 0, OSG_RESUNIT_NONE = 1, OSG_RESUNIT_INCH = 2 };

    /// The most bytes that an image may have; `set` refuses more. Sizes are told as Int32.
    static constexpr UInt64 MaxSize = 0x7fffffff;

    /// Tells the parents, as a change of their child.
    void changed(BitVector whichField, UInt32 origin) override;

    /// Gives the image its form and copies `data`, which must hold as many bytes as the form asks for; null:
    /// memory of the size that it has keeps its content, other memory is new and zero. Sizes and counts below
    /// 1 become 1. True when there are pixels afterwards: `allocMem` false drops them. An unknown format or
    /// type, or more than `MaxSize` bytes, logs a warning and leaves an empty image.
    bool set(UInt32 pixelFormat, Int32 width, Int32 height = 1, Int32 depth = 1, Int32 mipmapCount = 1,
             Int32 frameCount = 1, Time frameDelay = 0.0, const UInt8* data = nullptr,
             Int32 type = OSG_UINT8_IMAGEDATA, bool allocMem = true, Int32 sideCount = 1);
    /// Takes over form and pixels of `image`, not its name and attachments. False for null only.
    bool set(ImagePtr image);
    /// Copies pixels of the present form. False with a warning for null.
    bool setData(const UInt8* data = nullptr);
    /// Frees the pixels and keeps the form.
    void clearData();
    /// Copies a box of pixels into level 0 of frame 0; what lies outside is left out. False when there is
    /// nothing to copy from or to.
    bool setSubData(Int32 offX, Int32 offY, Int32 offZ, Int32 srcW, Int32 srcH, Int32 srcD,
                    const UInt8* data);

    /// Reads a file, its type told by its suffix. On failure false with a warning; see ImageFileHandler.
    bool read(const Char8* fileName);
    /// Writes a file, its type told by its suffix. On failure false with a warning.
    bool write(const Char8* fileName);
    /// Writes a header and the pixels, coded as `mimeType` says, to `mem`, and answers the number of bytes;
    /// null: the bytes that it takes. 0 on failure, and when they are more than `memSize` (-1: any number).
    UInt64 store(const Char8* mimeType, UInt8* mem, Int32 memSize = -1);
    /// Reads back what `store` wrote and answers the number of bytes read; 0 on failure. Without `memSize`
    /// only uncoded pixels can be read, whose header tells their number.
    UInt64 restore(const UInt8* mem, Int32 memSize = -1);

    /// Takes over form, pixels, name and attachments.
    Image& operator=(const Image& other);
    /// Fewer bytes.
    bool operator<(const Image& other) const { return getSize() < other.getSize(); }
    /// The same form and pixels.
    bool operator==(const Image& other) const;
    bool operator!=(const Image& other) const { return !(*this == other); }

    /// The following put their result into `destination`, or into the image itself when that is null. False
    /// with a warning where there are no pixels or they are compressed.
    /// Another pixel format; colour becomes luminance by the weights of the eye, missing alpha is opaque.
    bool reformat(PixelFormat pixelFormat, ImagePtr destination = NullFC);
    /// Another size, by the nearest pixel.
    bool scale(Int32 width, Int32 height = 1, Int32 depth = 1, ImagePtr destination = NullFC);
    /// Each edge becomes the next power of two, or stays where it is one.
    bool scaleNextPower2(ImagePtr destination = NullFC);
    /// A box out of level 0 of every side and frame; false when it does not lie inside the image.
    bool subImage(Int32 offX, Int32 offY, Int32 offZ, Int32 width, Int32 height, Int32 depth,
                  ImagePtr destination = NullFC);
    /// The plane at one of the three coordinates, the others being below 0: of x, with z to the right and y
    /// upwards; of y, with x to the right and z upwards; of z, with x to the right and y upwards. Level 0 of
    /// every side and frame. False when not just one is given or it lies outside.
    bool slice(Int32 offX = -1, Int32 offY = -1, Int32 offZ = -1, ImagePtr destination = NullFC);
    /// `level` mipmap levels by averages; below 0, all down to one pixel.
    bool createMipmap(Int32 level = -1, ImagePtr destination = NullFC);
    /// Level 0 alone.
    bool removeMipmap();
    /// Another component type in place; the range of one is stretched to the range of the other.
    bool convertDataTypeTo(Int32 dataType);
    /// The other byte order for all components in place.
    bool swapDataEndian();
    /// Slices become frames and frames slices, in place; false with mipmap levels.
    bool flipDepthFrameData();

    /// Texts that hang on the image under a key, such as `fileName`.
    void setAttachmentField(const std::string& key, const std::string& data);
    /// Null when there is none; valid until the next change.
    const std::string* findAttachmentField(const std::string& key) const;
    bool hasAttachment() const { return !_texts.empty(); }
    UInt32 attachmentCount() const { return static_cast<UInt32>(_texts.size()); }

    /// True when there are pixels.
    bool isValid() const { return !_pixel.empty(); }
    /// Components of one pixel; 0 with a warning for an unknown format.
    UInt8 getComponents() const;
    bool hasAlphaChannel();
    /// True for every format but those of alpha, intensity or luminance (with alpha) alone.
    bool hasColorChannel();
    /// True when alpha is either all or nothing.
    bool isAlphaBinary();
    bool hasCompressedData();

    /// Bytes of the whole, or of level 0, the first frame, the first side alone.
    unsigned long getSize(bool withMipmap = true, bool withFrames = true, bool withSides = true) const;
    /// The pixels of a level of a side of a frame; the numbers are not checked. Null when there are none.
    UInt8* getData(UInt32 mipmap = 0, UInt32 frame = 0, UInt32 side = 0);
    const UInt8* getData(UInt32 mipmap = 0, UInt32 frame = 0, UInt32 side = 0) const;
    /// Level 0 of the frame at a time in seconds; the level is not looked at.
    UInt8* getDataByTime(Time time, UInt32 mipmap = 1);
    /// The frame at a time in seconds; frames repeat without end. 0 without a delay.
    UInt32 calcFrameNum(Time time, bool loop = true) const;
    /// The size of a level: halved per level and never below 1.
    void calcMipmapGeometry(UInt32 level, UInt32& width, UInt32& height, UInt32& depth) const;
    /// Levels down to one pixel, including level 0.
    UInt32 calcMipmapLevelCount() const;

protected:
    Image() = default;
    friend class ImageBase;
    friend class ImageFileType;

private:
    bool isEditable(const Char8* operation) const;
    // Takes over pixels that have the size of a valid form.
    bool adopt(const ImageForm& form, Time frameDelay, std::vector<UInt8>&& pixels);
    bool replacePixels(ImagePtr destination, const ImageForm& form, std::vector<UInt8>&& pixels);
    void becomeEmpty();
    ImageForm form() const;

    std::map<std::string, std::string> _texts;
};

} // namespace osg
