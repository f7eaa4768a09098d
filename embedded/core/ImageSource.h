#pragma once

#include <OpenSG/OSGImage.h>
#include <OpenSG/OSGRefPtr.h>
#include <Orvane/Export.h>
#include <memory>
#include <string>

namespace Orvane {

class MFString;

/// The image that a list of addresses leads to. Files that several sources name are read once.
class ORVANE_API ImageSource
{
public:
    /// Takes the first image of the list that can be read. Call it again when the list has changed.
    void read(const MFString& urls);
    /// Shows no image.
    void clear();

    /// Null when there is none.
    osg::ImagePtr image() const;
    /// Text of a message: which addresses held none of what was \a expected. Empty when there is an image.
    /// The loader has told of files that are not there if the list is \a loaded.
    std::string fault(const MFString& urls, bool loaded, const char* expected = "an image") const;

private:
    using ImageRef = osg::RefPtr<osg::ImagePtr>;

    std::shared_ptr<ImageRef> imageAt(const MFString& urls, const std::string& address);

    std::shared_ptr<ImageRef> _image;
    bool _hasFound = false; ///< an address led to something, be it no image
};

} // namespace Orvane
