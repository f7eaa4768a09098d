#include "core/ImageSource.h"
#include "base/ValueOrigin.h"
#include "core/SceneFiles.h"
#include "core/SharedTable.h"
#include <OpenSG/OSGImageFileHandler.h>
#include <Orvane/MFString.h>

namespace Orvane {

namespace {

using ImageRef = osg::RefPtr<osg::ImagePtr>;

/// The image in a file, the same for all who name it; null when it cannot be read.
std::shared_ptr<ImageRef> imageOf(const std::string& file)
{
    static SharedTable<std::string, ImageRef> images;
    return images.get(file, [&file] {
        return std::make_unique<ImageRef>(osg::ImageFileHandler::the().read(file.c_str()));
    });
}

} // namespace

void ImageSource::read(const MFString& urls)
{
    clear();
    for (int i = 0; i < static_cast<int>(urls.size()); ++i) {
        _image = imageAt(urls, urls[i]);
        if (_image && _image->get())
            return;
    }
    _image.reset();
}

void ImageSource::clear()
{
    _image.reset();
    _hasFound = false;
}

osg::ImagePtr ImageSource::image() const
{
    return _image ? osg::ImagePtr(_image->get()) : osg::ImagePtr();
}

std::string ImageSource::fault(const MFString& urls, bool loaded, const char* expected) const
{
    if (image() || urls.size() == 0 || (loaded && !_hasFound))
        return {};
    return std::string("expected ") + expected + " in a local file or in the address, found " +
           quotedAddresses(urls);
}

std::shared_ptr<ImageRef> ImageSource::imageAt(const MFString& urls, const std::string& address)
{
    std::string mimeType;
    std::vector<std::uint8_t> data;
    const bool isData = readDataAddress(address, mimeType, data);
    const std::string file = isData ? std::string() : localFileOf(valueOrigin(urls), address);
    if (isData || !file.empty())
        _hasFound = true;
    if (isData)
        return std::make_shared<ImageRef>(
            osg::ImageFileHandler::the().decode(data.data(), data.size(), mimeType.c_str()));
    return file.empty() ? nullptr : imageOf(file);
}

} // namespace Orvane
