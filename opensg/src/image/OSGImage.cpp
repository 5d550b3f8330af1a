#include <OpenSG/OSGImage.h>
#include <OpenSG/OSGImageFileHandler.h>
#include <OpenSG/OSGTextureChunk.h>

#include <algorithm>
#include <cstring>

namespace osg
{

OSG_FC_IMPL(Image, "AttachmentContainer")

namespace
{

UInt32 formatComponents(UInt32 pixelFormat)
{
    switch(pixelFormat)
    {
        case Image::OSG_A_PF:
        case Image::OSG_I_PF:
        case Image::OSG_L_PF:
        case Image::OSG_ALPHA_INTEGER_PF:
        case Image::OSG_LUMINANCE_INTEGER_PF:
            return 1;
        case Image::OSG_LA_PF:
        case Image::OSG_LUMINANCE_ALPHA_INTEGER_PF:
            return 2;
        case Image::OSG_RGB_PF:
        case Image::OSG_BGR_PF:
        case Image::OSG_RGB_DXT1:
        case Image::OSG_RGB_INTEGER_PF:
        case Image::OSG_BGR_INTEGER_PF:
            return 3;
        case Image::OSG_RGBA_PF:
        case Image::OSG_BGRA_PF:
        case Image::OSG_RGBA_DXT1:
        case Image::OSG_RGBA_DXT3:
        case Image::OSG_RGBA_DXT5:
        case Image::OSG_RGBA_INTEGER_PF:
        case Image::OSG_BGRA_INTEGER_PF:
            return 4;
        default:
            return 0;
    }
}

UInt32 typeSize(Int32 type)
{
    switch(type)
    {
        case Image::OSG_UINT8_IMAGEDATA:   return 1;
        case Image::OSG_UINT16_IMAGEDATA:  return 2;
        case Image::OSG_UINT32_IMAGEDATA:  return 4;
        case Image::OSG_FLOAT16_IMAGEDATA: return 2;
        case Image::OSG_FLOAT32_IMAGEDATA: return 4;
        case Image::OSG_INT16_IMAGEDATA:   return 2;
        case Image::OSG_INT32_IMAGEDATA:   return 4;
        default:                           return 0;
    }
}

// Integer types map their full positive range onto [0, 1].
Real32 readNormalized(const UInt8 *p, Int32 type)
{
    switch(type)
    {
        case Image::OSG_UINT8_IMAGEDATA:
            return *p / 255.f;
        case Image::OSG_UINT16_IMAGEDATA:
        { UInt16 v; std::memcpy(&v, p, 2); return v / 65535.f; }
        case Image::OSG_UINT32_IMAGEDATA:
        { UInt32 v; std::memcpy(&v, p, 4); return Real32(v / 4294967295.0); }
        case Image::OSG_INT16_IMAGEDATA:
        { Int16 v; std::memcpy(&v, p, 2); return v / 32767.f; }
        case Image::OSG_INT32_IMAGEDATA:
        { Int32 v; std::memcpy(&v, p, 4); return Real32(v / 2147483647.0); }
        case Image::OSG_FLOAT16_IMAGEDATA:
        { Real16 v; std::memcpy(&v, p, 2); return Real32(v); }
        case Image::OSG_FLOAT32_IMAGEDATA:
        { Real32 v; std::memcpy(&v, p, 4); return v; }
        default:
            return 0.f;
    }
}

void writeNormalized(UInt8 *p, Int32 type, Real32 value)
{
    const Real64 c = std::min(std::max(Real64(value), 0.0), 1.0);
    switch(type)
    {
        case Image::OSG_UINT8_IMAGEDATA:
            *p = UInt8(c * 255.0 + 0.5);
            break;
        case Image::OSG_UINT16_IMAGEDATA:
        { UInt16 v = UInt16(c * 65535.0 + 0.5); std::memcpy(p, &v, 2); break; }
        case Image::OSG_UINT32_IMAGEDATA:
        { UInt32 v = UInt32(c * 4294967295.0 + 0.5); std::memcpy(p, &v, 4); break; }
        case Image::OSG_INT16_IMAGEDATA:
        { Int16 v = Int16(c * 32767.0 + 0.5); std::memcpy(p, &v, 2); break; }
        case Image::OSG_INT32_IMAGEDATA:
        { Int32 v = Int32(c * 2147483647.0 + 0.5); std::memcpy(p, &v, 4); break; }
        case Image::OSG_FLOAT16_IMAGEDATA:
        { Real16 v(value); std::memcpy(p, &v, 2); break; }
        case Image::OSG_FLOAT32_IMAGEDATA:
            std::memcpy(p, &value, 4);
            break;
        default:
            break;
    }
}

} // namespace

Image::Image(void) :
    Inherited(),
    _mfParents            (),
    _sfDimension          (0),
    _sfWidth              (0),
    _sfHeight             (1),
    _sfDepth              (1),
    _sfBpp                (1),
    _sfMipMapCount        (1),
    _sfFrameCount         (1),
    _sfFrameDelay         (0.0),
    _sfPixelFormat        (OSG_INVALID_PF),
    _mfPixel              (),
    _sfFrameSize          (0),
    _sfName               (),
    _sfDataType           (OSG_UINT8_IMAGEDATA),
    _sfComponentSize      (1),
    _sfSideCount          (1),
    _sfSideSize           (0),
    _sfForceCompressedData(false),
    _sfForceAlphaChannel  (false),
    _sfForceColorChannel  (false),
    _sfForceAlphaBinary   (false),
    _sfResX               (72.f),
    _sfResY               (72.f),
    _sfResUnit            (2)
{
}

// A copy is used by no texture yet.
Image::Image(const Image &source) :
    Inherited(source),
    _mfParents            (),
    _sfDimension          (source._sfDimension),
    _sfWidth              (source._sfWidth),
    _sfHeight             (source._sfHeight),
    _sfDepth              (source._sfDepth),
    _sfBpp                (source._sfBpp),
    _sfMipMapCount        (source._sfMipMapCount),
    _sfFrameCount         (source._sfFrameCount),
    _sfFrameDelay         (source._sfFrameDelay),
    _sfPixelFormat        (source._sfPixelFormat),
    _mfPixel              (source._mfPixel),
    _sfFrameSize          (source._sfFrameSize),
    _sfName               (source._sfName),
    _sfDataType           (source._sfDataType),
    _sfComponentSize      (source._sfComponentSize),
    _sfSideCount          (source._sfSideCount),
    _sfSideSize           (source._sfSideSize),
    _sfForceCompressedData(source._sfForceCompressedData),
    _sfForceAlphaChannel  (source._sfForceAlphaChannel),
    _sfForceColorChannel  (source._sfForceColorChannel),
    _sfForceAlphaBinary   (source._sfForceAlphaBinary),
    _sfResX               (source._sfResX),
    _sfResY               (source._sfResY),
    _sfResUnit            (source._sfResUnit)
{
}

Image::~Image(void)
{
}

bool Image::isCompressed(void) const
{
    switch(getPixelFormat())
    {
        case OSG_RGB_DXT1:
        case OSG_RGBA_DXT1:
        case OSG_RGBA_DXT3:
        case OSG_RGBA_DXT5:
            return true;
        default:
            return false;
    }
}

void Image::calcSizes(void)
{
    const UInt32 components = formatComponents(getPixelFormat());
    const UInt32 compSize   = typeSize(getDataType());

    setComponentSize(Int32(compSize));
    setBpp(UInt8(components * compSize));

    if(getWidth() <= 0 || components == 0)
        setDimension(0);
    else if(getDepth() > 1)
        setDimension(3);
    else if(getHeight() > 1)
        setDimension(2);
    else
        setDimension(1);

    setSideSize (Int32(getSize(true, false, false)));
    setFrameSize(Int32(getSideSize() * getSideCount()));
}

unsigned long Image::getLevelSize(UInt32 mipmapNum) const
{
    const unsigned long w = std::max(getWidth()  >> mipmapNum, 1);
    const unsigned long h = std::max(getHeight() >> mipmapNum, 1);
    const unsigned long d = std::max(getDepth()  >> mipmapNum, 1);

    if(isCompressed())
    {
        const unsigned long block = getPixelFormat() == OSG_RGB_DXT1 ||
                                    getPixelFormat() == OSG_RGBA_DXT1 ? 8 : 16;
        return ((w + 3) / 4) * ((h + 3) / 4) * d * block;
    }
    return w * h * d * formatComponents(getPixelFormat()) * typeSize(getDataType());
}

unsigned long Image::getSize(bool withMipmap, bool withFrames, bool withSides) const
{
    if(getWidth() <= 0)
        return 0;

    unsigned long size = 0;
    const Int32 levels = withMipmap ? std::max(getMipMapCount(), 1) : 1;
    for(Int32 level = 0; level < levels; ++level)
        size += getLevelSize(UInt32(level));

    if(withFrames)
        size *= std::max(getFrameCount(), 1);
    if(withSides)
        size *= std::max(getSideCount(), 1);
    return size;
}

bool Image::set(UInt32 pixelFormat, Int32 width, Int32 height, Int32 depth,
                Int32 mipmapCount, Int32 frameCount, Time frameDelay,
                const UInt8 *data, Int32 type, bool allocMem, Int32 sideCount)
{
    setPixelFormat(pixelFormat);
    setWidth      (std::max(width,       1));
    setHeight     (std::max(height,      1));
    setDepth      (std::max(depth,       1));
    setMipMapCount(std::max(mipmapCount, 1));
    setFrameCount (std::max(frameCount,  1));
    setFrameDelay (frameDelay);
    setDataType   (type);
    setSideCount  (std::max(sideCount,   1));
    calcSizes();

    if(allocMem || data != NULL)
        return setData(data);

    clearData();
    return false;
}

bool Image::set(ImagePtr image)
{
    if(image == NullFC)
        return false;

    if(!set(image->getPixelFormat(), image->getWidth(), image->getHeight(),
            image->getDepth(), image->getMipMapCount(), image->getFrameCount(),
            image->getFrameDelay(), NULL, image->getDataType(),
            !image->getPixel().empty(), image->getSideCount()))
        return false;

    _mfPixel.getValues() = image->getPixel().getValues();
    return true;
}

bool Image::setData(const UInt8 *data)
{
    const unsigned long size = getSize();
    _mfPixel.resize(size, 0);

    if(data != NULL && size > 0)
        std::memcpy(&_mfPixel[0], data, size);

    return size > 0;
}

void Image::clearData(void)
{
    MFUInt8 empty;
    _mfPixel.swap(empty);
}

bool Image::setSubData(Int32 offX, Int32 offY, Int32 offZ,
                       Int32 srcW, Int32 srcH, Int32 srcD, const UInt8 *data)
{
    UInt8 *dst = editData();
    if(dst == NULL || data == NULL || isCompressed())
    {
        SWARNING << "Image::setSubData: no storage, no data or compressed image"
                 << std::endl;
        return false;
    }
    if(offX < 0 || offY < 0 || offZ < 0 || srcW < 0 || srcH < 0 || srcD < 0 ||
       offX + srcW > getWidth() || offY + srcH > getHeight() ||
       offZ + srcD > getDepth())
    {
        SWARNING << "Image::setSubData: region outside the image" << std::endl;
        return false;
    }

    const unsigned long bpp = getBpp();
    const unsigned long row = srcW * bpp;
    for(Int32 z = 0; z < srcD; ++z)
    {
        for(Int32 y = 0; y < srcH; ++y)
        {
            const unsigned long d = ((unsigned long)(offZ + z) * getHeight() + offY + y) *
                                    getWidth() * bpp + offX * bpp;
            std::memcpy(dst + d, data + ((unsigned long)z * srcH + y) * row, row);
        }
    }
    return true;
}

const UInt8 *Image::getData(UInt32 mipmapNum, UInt32 frameNum, UInt32 sideNum) const
{
    if(_mfPixel.empty())
        return NULL;

    unsigned long offset = (unsigned long)frameNum * getFrameSize() +
                           (unsigned long)sideNum  * getSideSize();
    for(UInt32 level = 0; level < mipmapNum; ++level)
        offset += getLevelSize(level);

    return offset < _mfPixel.size() ? &_mfPixel[offset] : NULL;
}

UInt8 *Image::getData(UInt32 mipmapNum, UInt32 frameNum, UInt32 sideNum)
{
    return editData(mipmapNum, frameNum, sideNum);
}

UInt8 *Image::editData(UInt32 mipmapNum, UInt32 frameNum, UInt32 sideNum)
{
    const Image *self = this;
    return const_cast<UInt8 *>(self->getData(mipmapNum, frameNum, sideNum));
}

bool Image::hasAlphaChannel(void)
{
    switch(getPixelFormat())
    {
        case OSG_A_PF:
        case OSG_I_PF:
        case OSG_LA_PF:
        case OSG_RGBA_PF:
        case OSG_BGRA_PF:
        case OSG_RGBA_DXT1:
        case OSG_RGBA_DXT3:
        case OSG_RGBA_DXT5:
        case OSG_ALPHA_INTEGER_PF:
        case OSG_RGBA_INTEGER_PF:
        case OSG_BGRA_INTEGER_PF:
        case OSG_LUMINANCE_ALPHA_INTEGER_PF:
            return true;
        default:
            return getForceAlphaChannel();
    }
}

UInt8 Image::getComponents(void) const
{
    return UInt8(formatComponents(getPixelFormat()));
}

void Image::clear(UChar8 pixelValue)
{
    if(!_mfPixel.empty())
        std::memset(&_mfPixel[0], pixelValue, _mfPixel.size());
}

void Image::clearFloat(Real32 pixelValue)
{
    if(getDataType() != OSG_FLOAT32_IMAGEDATA)
    {
        SWARNING << "Image::clearFloat: image is not of type float" << std::endl;
        return;
    }
    for(size_t i = 0; i + 4 <= _mfPixel.size(); i += 4)
        std::memcpy(&_mfPixel[i], &pixelValue, 4);
}

void Image::clearHalf(Real16 pixelValue)
{
    if(getDataType() != OSG_FLOAT16_IMAGEDATA)
    {
        SWARNING << "Image::clearHalf: image is not of type half float" << std::endl;
        return;
    }
    const UInt16 bits = pixelValue.bits();
    for(size_t i = 0; i + 2 <= _mfPixel.size(); i += 2)
        std::memcpy(&_mfPixel[i], &bits, 2);
}

bool Image::convertDataTypeTo(Int32 destDataType)
{
    if(destDataType == getDataType())
        return true;
    if(typeSize(destDataType) == 0 || isCompressed())
    {
        SWARNING << "Image::convertDataTypeTo: unsupported type " << destDataType
                 << std::endl;
        return false;
    }

    const UInt32 srcSize = typeSize(getDataType());
    const UInt32 dstSize = typeSize(destDataType);
    const size_t count   = srcSize > 0 ? _mfPixel.size() / srcSize : 0;

    MFUInt8 converted;
    converted.resize(count * dstSize, 0);
    for(size_t i = 0; i < count; ++i)
        writeNormalized(&converted[i * dstSize], destDataType,
                        readNormalized(&_mfPixel[i * srcSize], getDataType()));

    setDataType(destDataType);
    calcSizes();
    _mfPixel.swap(converted);
    return true;
}

bool Image::reformat(const PixelFormat, ImagePtr)
{
    SWARNING << "Image::reformat: not supported" << std::endl;
    return false;
}

bool Image::scale(Int32, Int32, Int32, ImagePtr)
{
    SWARNING << "Image::scale: not supported" << std::endl;
    return false;
}

bool Image::createMipmap(Int32, ImagePtr)
{
    SWARNING << "Image::createMipmap: not supported" << std::endl;
    return false;
}

bool Image::write(const Char8 *fileName)
{
    return ImageFileHandler::the().write(ImagePtr(this), fileName);
}

bool Image::read(const Char8 *fileName)
{
    ImagePtr self(this);
    return ImageFileHandler::the().read(self, fileName);
}

// Texture chunks using the image re-create their texture from it.
void Image::changed(BitVector whichField, UInt32 origin)
{
    if(whichField & (PixelFormatFieldMask | WidthFieldMask | HeightFieldMask |
                     DepthFieldMask | DataTypeFieldMask | MipMapCountFieldMask |
                     SideCountFieldMask | FrameCountFieldMask))
        calcSizes();

    if((whichField & ~(ParentsFieldMask | NameFieldMask)) != 0)
    {
        for(UInt32 i = 0; i < _mfParents.size(); ++i)
        {
            TextureChunkPtr texture = TextureChunkPtr::dcast(_mfParents[i]);
            if(texture != NullFC)
                texture->changed(TextureChunk::ImageFieldMask, ChangedOrigin::Child);
        }
    }

    Inherited::changed(whichField, origin);
}

void Image::dump(UInt32 uiIndent, const BitVector) const
{
    indentLog(uiIndent, PLOG);
    PLOG << "Image (" << this << ") " << getWidth() << "x" << getHeight() << "x"
         << getDepth() << " format 0x" << std::hex << getPixelFormat() << " type 0x"
         << getDataType() << std::dec << " " << _mfPixel.size() << " bytes"
         << std::endl;
}

} // namespace osg
