#pragma once

#include "core/AppearanceProcs.h"
#include "core/ImageSource.h"
#include <OpenSG/OSGImage.h>
#include <Orvane/Export.h>

namespace Orvane {

/// Behaviour of a texture of one image, with the fields that tell how it is put on.
class ORVANE_API PictureTextureProc : public TextureProc
{
public:
    using TextureProc::TextureProc;

protected:
    /// Appends a texture of \a image, of which pixels outside are found as `textureProperties` and the
    /// repeat fields say; nothing when there are no pixels.
    void put(const osg::ImagePtr& image, Surface& surface);

private:
    Use _properties;
};

/// The same with the first image of a list of addresses that can be read.
class ORVANE_API FileTextureProc : public PictureTextureProc
{
public:
    using PictureTextureProc::PictureTextureProc;

    void fieldChanged(Field& field, double time) override;
    void describe(Surface& surface) override;

protected:
    /// Text of a message for an image that is of another kind than the texture's, and not drawn; else empty.
    virtual std::string misfit(osg::Image& image) const;

private:
    void readImage();

    ImageSource _source;
    bool _isRead = false;
    bool _isLoaded = true; ///< the addresses are those of the scene's file
    bool _fits = true;
};

/// The same with an image that is made of other fields, or of other textures.
class ORVANE_API MadeTextureProc : public PictureTextureProc
{
public:
    using PictureTextureProc::PictureTextureProc;

    void fieldChanged(Field& field, double time) override;
    void describe(Surface& surface) override;

protected:
    void elementChanged(ElementProc& element) override;
    void elementGone() override;

    /// The image; null when there is none. Asked after each change.
    virtual osg::ImagePtr make() = 0;

private:
    osg::RefPtr<osg::ImagePtr> _image;
    bool _isMade = false;
};

/// Behaviour of `TextureProperties`.
class ORVANE_API TexturePropertiesProc : public DescriptionProc
{
public:
    using DescriptionProc::DescriptionProc;

    /// Fills how \a texture is put on.
    void describe(SurfaceTexture& texture);

private:
    osg::UInt32 wrapOf(const char* name, const std::string& mode);
};

} // namespace Orvane
