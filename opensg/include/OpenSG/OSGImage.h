#ifndef _OSGIMAGE_H_
#define _OSGIMAGE_H_

#include <OpenSG/OSGAttachmentContainer.h>
#include <OpenSG/OSGSFSysTypes.h>
#include <OpenSG/OSGSFBaseTypes.h>
#include <OpenSG/OSGReal16.h>
#include <OpenSG/OSGRefPtr.h>
#include <OpenSG/OSGGLEXT.h>

namespace osg
{

OSG_FC_PTR_DECL(Image, AttachmentContainerPtr)

// Pixels are stored bottom row first, as GL expects them; per frame and
// side all mip-map levels follow each other.
class Image : public AttachmentContainer
{
    OSG_FC_DECL(Image, AttachmentContainer)

  public:
    enum
    {
        ParentsFieldId             = Inherited::NextFieldId,
        DimensionFieldId           = ParentsFieldId           + 1,
        WidthFieldId               = DimensionFieldId         + 1,
        HeightFieldId              = WidthFieldId             + 1,
        DepthFieldId               = HeightFieldId            + 1,
        BppFieldId                 = DepthFieldId             + 1,
        MipMapCountFieldId         = BppFieldId               + 1,
        FrameCountFieldId          = MipMapCountFieldId       + 1,
        FrameDelayFieldId          = FrameCountFieldId        + 1,
        PixelFormatFieldId         = FrameDelayFieldId        + 1,
        PixelFieldId               = PixelFormatFieldId       + 1,
        FrameSizeFieldId           = PixelFieldId             + 1,
        NameFieldId                = FrameSizeFieldId         + 1,
        DataTypeFieldId            = NameFieldId              + 1,
        ComponentSizeFieldId       = DataTypeFieldId          + 1,
        SideCountFieldId           = ComponentSizeFieldId     + 1,
        SideSizeFieldId            = SideCountFieldId         + 1,
        ForceCompressedDataFieldId = SideSizeFieldId          + 1,
        ForceAlphaChannelFieldId   = ForceCompressedDataFieldId + 1,
        ForceColorChannelFieldId   = ForceAlphaChannelFieldId + 1,
        ForceAlphaBinaryFieldId    = ForceColorChannelFieldId + 1,
        ResXFieldId                = ForceAlphaBinaryFieldId  + 1,
        ResYFieldId                = ResXFieldId              + 1,
        ResUnitFieldId             = ResYFieldId              + 1,
        NextFieldId                = ResUnitFieldId           + 1
    };
    OSG_FIELD_MASK(Parents)
    OSG_FIELD_MASK(Dimension)
    OSG_FIELD_MASK(Width)
    OSG_FIELD_MASK(Height)
    OSG_FIELD_MASK(Depth)
    OSG_FIELD_MASK(Bpp)
    OSG_FIELD_MASK(MipMapCount)
    OSG_FIELD_MASK(FrameCount)
    OSG_FIELD_MASK(FrameDelay)
    OSG_FIELD_MASK(PixelFormat)
    OSG_FIELD_MASK(Pixel)
    OSG_FIELD_MASK(FrameSize)
    OSG_FIELD_MASK(Name)
    OSG_FIELD_MASK(DataType)
    OSG_FIELD_MASK(ComponentSize)
    OSG_FIELD_MASK(SideCount)
    OSG_FIELD_MASK(SideSize)
    OSG_FIELD_MASK(ForceCompressedData)
    OSG_FIELD_MASK(ForceAlphaChannel)
    OSG_FIELD_MASK(ForceColorChannel)
    OSG_FIELD_MASK(ForceAlphaBinary)
    OSG_FIELD_MASK(ResX)
    OSG_FIELD_MASK(ResY)
    OSG_FIELD_MASK(ResUnit)

    // The texture chunks using the image; they are told when it changes.
    OSG_MFIELD(MFFieldContainerPtr, Parents)
    OSG_SFIELD(SFInt32,   Dimension)
    OSG_SFIELD(SFInt32,   Width)
    OSG_SFIELD(SFInt32,   Height)
    OSG_SFIELD(SFInt32,   Depth)
    OSG_SFIELD(SFUInt8,   Bpp)
    OSG_SFIELD(SFInt32,   MipMapCount)
    OSG_SFIELD(SFInt32,   FrameCount)
    OSG_SFIELD(SFTime,    FrameDelay)
    OSG_SFIELD(SFUInt32,  PixelFormat)
    OSG_MFIELD(MFUInt8,   Pixel)
    OSG_SFIELD(SFInt32,   FrameSize)
    OSG_SFIELD(SFString,  Name)
    OSG_SFIELD(SFInt32,   DataType)
    OSG_SFIELD(SFInt32,   ComponentSize)
    OSG_SFIELD(SFInt32,   SideCount)
    OSG_SFIELD(SFInt32,   SideSize)
    OSG_SFIELD(SFBool,    ForceCompressedData)
    OSG_SFIELD(SFBool,    ForceAlphaChannel)
    OSG_SFIELD(SFBool,    ForceColorChannel)
    OSG_SFIELD(SFBool,    ForceAlphaBinary)
    OSG_SFIELD(SFReal32,  ResX)
    OSG_SFIELD(SFReal32,  ResY)
    OSG_SFIELD(SFUInt16,  ResUnit)

  public:
    enum PixelFormat
    {
        OSG_INVALID_PF = 0,
        OSG_A_PF       = GL_ALPHA,
        OSG_I_PF       = GL_INTENSITY,
        OSG_L_PF       = GL_LUMINANCE,
        OSG_LA_PF      = GL_LUMINANCE_ALPHA,
        OSG_BGR_PF     = GL_BGR,
        OSG_BGRA_PF    = GL_BGRA,
        OSG_RGB_DXT1   = GL_COMPRESSED_RGB_S3TC_DXT1_EXT,
        OSG_RGBA_DXT1  = GL_COMPRESSED_RGBA_S3TC_DXT1_EXT,
        OSG_RGBA_DXT3  = GL_COMPRESSED_RGBA_S3TC_DXT3_EXT,
        OSG_RGBA_DXT5  = GL_COMPRESSED_RGBA_S3TC_DXT5_EXT,
        OSG_RGB_PF     = GL_RGB,
        OSG_RGBA_PF    = GL_RGBA,
        OSG_ALPHA_INTEGER_PF           = GL_ALPHA_INTEGER_EXT,
        OSG_RGB_INTEGER_PF             = GL_RGB_INTEGER_EXT,
        OSG_RGBA_INTEGER_PF            = GL_RGBA_INTEGER_EXT,
        OSG_BGR_INTEGER_PF             = GL_BGR_INTEGER_EXT,
        OSG_BGRA_INTEGER_PF            = GL_BGRA_INTEGER_EXT,
        OSG_LUMINANCE_INTEGER_PF       = GL_LUMINANCE_INTEGER_EXT,
        OSG_LUMINANCE_ALPHA_INTEGER_PF = GL_LUMINANCE_ALPHA_INTEGER_EXT
    };

    enum Type
    {
        OSG_INVALID_IMAGEDATATYPE = GL_NONE,
        OSG_UINT8_IMAGEDATA       = GL_UNSIGNED_BYTE,
        OSG_UINT16_IMAGEDATA      = GL_UNSIGNED_SHORT,
        OSG_UINT32_IMAGEDATA      = GL_UNSIGNED_INT,
        OSG_FLOAT16_IMAGEDATA     = GL_HALF_FLOAT_NV,
        OSG_FLOAT32_IMAGEDATA     = GL_FLOAT,
        OSG_INT16_IMAGEDATA       = GL_SHORT,
        OSG_INT32_IMAGEDATA       = GL_INT
    };

    bool set(UInt32 pixelFormat, Int32 width, Int32 height = 1, Int32 depth = 1,
             Int32 mipmapCount = 1, Int32 frameCount = 1, Time frameDelay = 0.0,
             const UInt8 *data = 0, Int32 type = OSG_UINT8_IMAGEDATA,
             bool allocMem = true, Int32 sideCount = 1);
    bool set(ImagePtr image);
    bool setData(const UInt8 *data = 0);
    // Frees the pixel storage; the size parameters stay.
    void clearData(void);
    bool setSubData(Int32 offX, Int32 offY, Int32 offZ,
                    Int32 srcW, Int32 srcH, Int32 srcD, const UInt8 *data);

    // Through the ImageFileHandler: the format follows the suffix.
    bool write(const Char8 *fileName);
    bool read (const Char8 *fileName);

    bool reformat(const PixelFormat pixelFormat, ImagePtr destination = NullFC);
    bool convertDataTypeTo(Int32 destDataType = OSG_UINT8_IMAGEDATA);
    bool scale(Int32 width, Int32 height = 1, Int32 depth = 1,
               ImagePtr destination = NullFC);
    bool createMipmap(Int32 level = -1, ImagePtr destination = NullFC);

    bool  hasAlphaChannel(void);
    UInt8 getComponents  (void) const;

    unsigned long getSize(bool withMipmap = true, bool withFrames = true,
                          bool withSides = true) const;

    const UInt8 *getData (UInt32 mipmapNum = 0, UInt32 frameNum = 0, UInt32 sideNum = 0) const;
          UInt8 *getData (UInt32 mipmapNum = 0, UInt32 frameNum = 0, UInt32 sideNum = 0);
          UInt8 *editData(UInt32 mipmapNum = 0, UInt32 frameNum = 0, UInt32 sideNum = 0);

    virtual void clear     (UChar8 pixelValue = 0);
    virtual void clearFloat(Real32 pixelValue = 0.0);
    virtual void clearHalf (Real16 pixelValue = Real16(0.0));

    // Byte size of one mip-map level of one frame and side.
    unsigned long getLevelSize(UInt32 mipmapNum) const;

    virtual void changed(BitVector whichField, UInt32 origin) override;
    virtual void dump(UInt32 uiIndent = 0, const BitVector bvFlags = 0) const override;

    static void initMethod(void) {}

  protected:
    Image(void);
    Image(const Image &source);
    virtual ~Image(void);

  private:
    bool isCompressed(void) const;
    void calcSizes   (void);
};

typedef RefPtr<ImagePtr> ImageRefPtr;

} // namespace osg

#endif
