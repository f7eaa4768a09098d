#pragma once

#include "OSGAttachmentContainer.h"
#include "OSGImageFields.h"

#include <string>
#include <vector>

namespace osg {

/// The fields of an image, their numbers and masks. Image adds what can be done with them, and is what
/// `create()` makes. Parameters of the pixels are read here and set by `Image::set`.
class OSG_SYSTEMLIB_DLLMAPPING ImageBase : public AttachmentContainer
{
public:
    enum : UInt32 {
        ParentsFieldId = AttachmentContainer::NextFieldId,
        DimensionFieldId,
        WidthFieldId,
        HeightFieldId,
        DepthFieldId,
        BppFieldId,
        MipMapCountFieldId,
        FrameCountFieldId,
        FrameDelayFieldId,
        PixelFormatFieldId,
        PixelFieldId,
        FrameSizeFieldId,
        NameFieldId,
        DataTypeFieldId,
        ComponentSizeFieldId,
        SideCountFieldId,
        SideSizeFieldId,
        ForceCompressedDataFieldId,
        ForceAlphaChannelFieldId,
        ForceColorChannelFieldId,
        ForceAlphaBinaryFieldId,
        ResXFieldId,
        ResYFieldId,
        ResUnitFieldId,
        NextFieldId
    };

    static constexpr BitVector ParentsFieldMask = BitVector(1) << ParentsFieldId;
    static constexpr BitVector DimensionFieldMask = BitVector(1) << DimensionFieldId;
    static constexpr BitVector WidthFieldMask = BitVector(1) << WidthFieldId;
    static constexpr BitVector HeightFieldMask = BitVector(1) << HeightFieldId;
    static constexpr BitVector DepthFieldMask = BitVector(1) << DepthFieldId;
    static constexpr BitVector BppFieldMask = BitVector(1) << BppFieldId;
    static constexpr BitVector MipMapCountFieldMask = BitVector(1) << MipMapCountFieldId;
    static constexpr BitVector FrameCountFieldMask = BitVector(1) << FrameCountFieldId;
    static constexpr BitVector FrameDelayFieldMask = BitVector(1) << FrameDelayFieldId;
    static constexpr BitVector PixelFormatFieldMask = BitVector(1) << PixelFormatFieldId;
    static constexpr BitVector PixelFieldMask = BitVector(1) << PixelFieldId;
    static constexpr BitVector FrameSizeFieldMask = BitVector(1) << FrameSizeFieldId;
    static constexpr BitVector NameFieldMask = BitVector(1) << NameFieldId;
    static constexpr BitVector DataTypeFieldMask = BitVector(1) << DataTypeFieldId;
    static constexpr BitVector ComponentSizeFieldMask = BitVector(1) << ComponentSizeFieldId;
    static constexpr BitVector SideCountFieldMask = BitVector(1) << SideCountFieldId;
    static constexpr BitVector SideSizeFieldMask = BitVector(1) << SideSizeFieldId;
    static constexpr BitVector ForceCompressedDataFieldMask = BitVector(1) << ForceCompressedDataFieldId;
    static constexpr BitVector ForceAlphaChannelFieldMask = BitVector(1) << ForceAlphaChannelFieldId;
    static constexpr BitVector ForceColorChannelFieldMask = BitVector(1) << ForceColorChannelFieldId;
    static constexpr BitVector ForceAlphaBinaryFieldMask = BitVector(1) << ForceAlphaBinaryFieldId;
    static constexpr BitVector ResXFieldMask = BitVector(1) << ResXFieldId;
    static constexpr BitVector ResYFieldMask = BitVector(1) << ResYFieldId;
    static constexpr BitVector ResUnitFieldMask = BitVector(1) << ResUnitFieldId;

    /// A new image without pixels and without a reference; works before `osgInit`, too.
    static ImagePtr create();
    static ImagePtr createEmpty();
    /// The record of the type "Image".
    static FieldContainerType& getClassType();
    FieldContainerType& getType() const override;

    /// 0 for an empty image, else 1 (one row), 2 (one slice) or 3.
    Int32 getDimension() const { return _dimension; }
    Int32 getWidth() const { return _width; }
    Int32 getHeight() const { return _height; }
    Int32 getDepth() const { return _depth; }
    /// Bytes per pixel.
    Int32 getBpp() const { return _bpp; }
    Int32 getMipMapCount() const { return _mipMapCount; }
    Int32 getFrameCount() const { return _frameCount; }
    /// Seconds between two frames.
    Time getFrameDelay() const { return _frameDelay; }
    /// A value of Image::PixelFormat, which is OpenGL's number.
    UInt32 getPixelFormat() const { return _pixelFormat; }
    /// A value of Image::Type, which is OpenGL's number.
    Int32 getDataType() const { return _dataType; }
    /// Bytes of one component.
    Int32 getComponentSize() const { return _componentSize; }
    Int32 getSideCount() const { return _sideCount; }
    /// Bytes of one frame, all sides and levels.
    Int32 getFrameSize() const { return _frameSize; }
    /// Bytes of one side, all levels.
    Int32 getSideSize() const { return _sideSize; }

    /// A free text; the absolute path for an image read from a file.
    const std::string& getName() const { return _name; }
    void setName(const std::string& name) { _name = name; }
    /// Resolution in pixels per unit, and the unit, a value of Image::ResUnit.
    Real32 getResX() const { return _resX; }
    Real32 getResY() const { return _resY; }
    UInt16 getResUnit() const { return _resUnit; }
    void setResX(Real32 res) { _resX = res; }
    void setResY(Real32 res) { _resY = res; }
    void setResUnit(UInt16 unit) { _resUnit = unit; }

    /// Flags that make the queries of the same name answer true whatever the format.
    bool getForceCompressedData() const { return _forceCompressedData; }
    bool getForceAlphaChannel() const { return _forceAlphaChannel; }
    bool getForceColorChannel() const { return _forceColorChannel; }
    bool getForceAlphaBinary() const { return _forceAlphaBinary; }
    void setForceCompressedData(bool force) { _forceCompressedData = force; }
    void setForceAlphaChannel(bool force) { _forceAlphaChannel = force; }
    void setForceColorChannel(bool force) { _forceColorChannel = force; }
    void setForceAlphaBinary(bool force) { _forceAlphaBinary = force; }

    /// The containers that are told when this image changes. The image holds no reference on them: a parent
    /// takes itself out before it goes.
    const std::vector<FieldContainerPtr>& getParents() const { return _parents; }
    void addParent(const FieldContainerPtr& parent);
    /// Takes out one entry; nothing happens when there is none.
    void subParent(const FieldContainerPtr& parent);

protected:
    ImageBase() = default;

    Int32 _dimension = 0;
    Int32 _width = 0;
    Int32 _height = 1;
    Int32 _depth = 1;
    Int32 _bpp = 1;
    Int32 _mipMapCount = 1;
    Int32 _frameCount = 1;
    Time _frameDelay = 0;
    UInt32 _pixelFormat = 0;
    std::vector<UInt8> _pixel;
    Int32 _frameSize = 0;
    std::string _name;
    Int32 _dataType = 0x1401; // unsigned bytes
    Int32 _componentSize = 1;
    Int32 _sideCount = 1;
    Int32 _sideSize = 0;
    bool _forceCompressedData = false;
    bool _forceAlphaChannel = false;
    bool _forceColorChannel = false;
    bool _forceAlphaBinary = false;
    Real32 _resX = 72;
    Real32 _resY = 72;
    UInt16 _resUnit = 2; // per inch

private:
    std::vector<FieldContainerPtr> _parents;
};

} // namespace osg
