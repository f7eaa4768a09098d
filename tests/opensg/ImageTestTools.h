#pragma once

#include <OpenSG/OSGImage.h>
#include <OpenSG/OSGImageFileHandler.h>
#include <OpenSG/OSGLog.h>

#include <QBuffer>
#include <QImage>

#include <sstream>
#include <string>
#include <vector>

/// Helpers of the tests of images and image files.
namespace ImageTestTools {

using Bytes = std::vector<osg::UInt8>;

/// Collects what the log prints as long as it lives.
class LogCapture
{
public:
    LogCapture()
        : _type(osg::osgLog().getLogType())
    {
        osg::osgLog().setLogType(osg::LOG_BUFFER, true);
        osg::osgLog().getLogBuf().setEnabled(false);
        osg::osgLog().getLogBuf().setCallback(&LogCapture::onChunk, this);
    }
    ~LogCapture()
    {
        osg::osgLog().getLogBuf().removeCallback();
        osg::osgLog().setLogType(_type, true);
    }
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;

    bool hasWarning() const { return _text.find("WARNING") != std::string::npos; }
    const std::string& text() const { return _text; }

private:
    static void onChunk(const osg::Char8* data, osg::Int32 size, void* clientData)
    {
        static_cast<LogCapture*>(clientData)->_text.append(data, static_cast<std::size_t>(size));
    }

    osg::LogType _type;
    std::string _text;
};

/// Bytes that differ from each other as far as 251 goes.
inline Bytes ramp(std::size_t count, int first = 0)
{
    Bytes bytes(count);
    for (std::size_t i = 0; i < count; ++i)
        bytes[i] = static_cast<osg::UInt8>((i * 7 + static_cast<std::size_t>(first)) % 251);
    return bytes;
}

/// An image of one picture whose bytes are a ramp.
inline osg::ImageRefPtr rampImage(osg::UInt32 format, int width, int height,
                                  int type = osg::Image::OSG_UINT8_IMAGEDATA)
{
    const osg::ImageRefPtr image = osg::Image::create();
    image->set(format, width, height, 1, 1, 1, 0.0, nullptr, type);
    image->setData(ramp(image->getSize()).data());
    return image;
}

inline Bytes pixels(const osg::ImagePtr& image)
{
    return image->getData() ? Bytes(image->getData(), image->getData() + image->getSize()) : Bytes();
}

/// A picture as Qt has it, the uppermost row first, with the components of `image` (8 bits, grey or RGB(A)).
inline QImage toQt(const osg::ImagePtr& image)
{
    QImage result(image->getWidth(), image->getHeight(), QImage::Format_ARGB32);
    const int components = image->getComponents();
    for (int y = 0; y < result.height(); ++y) {
        for (int x = 0; x < result.width(); ++x) {
            const osg::UInt8* p =
                image->getData() + ((result.height() - 1 - y) * result.width() + x) * components;
            const int alpha = components % 2 ? 255 : p[components - 1];
            result.setPixel(x, y,
                            components < 3 ? qRgba(p[0], p[0], p[0], alpha) : qRgba(p[0], p[1], p[2], alpha));
        }
    }
    return result;
}

/// A file as Qt writes and reads it, a second opinion on the formats.
inline Bytes qtEncoded(const QImage& picture, const char* format, int quality = -1)
{
    QByteArray file;
    QBuffer buffer(&file);
    picture.save(&buffer, format, quality);
    return Bytes(file.begin(), file.end());
}
inline QImage qtDecoded(const Bytes& file, const char* format)
{
    const QImage picture = QImage::fromData(file.data(), static_cast<int>(file.size()), format);
    return picture.convertToFormat(QImage::Format_ARGB32);
}

/// The bytes of a file; empty where it cannot be written.
inline Bytes encoded(const osg::ImagePtr& image, const std::string& mimeType)
{
    std::ostringstream out;
    if (!osg::ImageFileHandler::the().write(image, out, mimeType))
        return Bytes();
    const std::string text = out.str();
    return Bytes(text.begin(), text.end());
}

/// The image in the bytes of a file; null where they are none.
inline osg::ImageRefPtr decoded(const Bytes& file, const char* mimeType = nullptr)
{
    return osg::ImageFileHandler::the().decode(file.data(), file.size(), mimeType);
}

/// Reads every beginning of a file, copied into memory of just its size. Each gives no image or, where only
/// what describes it is missing, the whole picture. The number of those, or -1 where it is otherwise and
/// where the whole file gives no image.
inline int countReadableBeginnings(const Bytes& file, const char* mimeType)
{
    const osg::ImageRefPtr whole = decoded(file, mimeType);
    if (!whole)
        return -1;
    int readable = 0;
    for (std::size_t length = 0; length < file.size(); ++length) {
        const Bytes part(file.begin(), file.begin() + static_cast<std::ptrdiff_t>(length));
        const osg::ImageRefPtr image = decoded(part, mimeType);
        if (!image)
            continue;
        if (*image != *whole)
            return -1;
        ++readable;
    }
    return readable;
}

/// Reads the file with each byte in turn changed in several ways. Any answer will do, as long as there is one
/// and an image that comes out has all of its pixels.
inline bool survivesDamage(const Bytes& file, const char* mimeType)
{
    for (std::size_t i = 0; i < file.size(); ++i) {
        for (const int value : {0x00, 0x01, 0x7f, 0xff, file[i] ^ 0x80, file[i] ^ 0x10}) {
            Bytes damaged = file;
            damaged[i] = static_cast<osg::UInt8>(value);
            const osg::ImageRefPtr image = decoded(damaged, mimeType);
            if (image && (!image->isValid() || image->getSize() > osg::Image::MaxSize))
                return false;
        }
    }
    return true;
}

} // namespace ImageTestTools
