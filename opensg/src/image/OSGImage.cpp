#include <OpenSG/OSGImage.h>
#include <OpenSG/OSGImageFileHandler.h>
#include <OpenSG/OSGTextureChunk.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <type_traits>
#include <vector>

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

namespace
{

// Calls work with a null pointer of the component type of dataType; false
// for types without one.
template <class Work>
bool withComponentType(Int32 dataType, Work work)
{
    switch(dataType)
    {
        case Image::OSG_UINT8_IMAGEDATA:   work(static_cast<UInt8  *>(NULL)); return true;
        case Image::OSG_UINT16_IMAGEDATA:  work(static_cast<UInt16 *>(NULL)); return true;
        case Image::OSG_UINT32_IMAGEDATA:  work(static_cast<UInt32 *>(NULL)); return true;
        case Image::OSG_FLOAT16_IMAGEDATA: work(static_cast<Real16 *>(NULL)); return true;
        case Image::OSG_FLOAT32_IMAGEDATA: work(static_cast<Real32 *>(NULL)); return true;
        default:                           return false;
    }
}

const Int32 Mean = -1;

// For each channel of the new format, the old channel it copies, or Mean
// for the mean of red, green and blue: the conversions 1.8 makes.
bool reformatChannels(UInt32 from, UInt32 to, std::vector<Int32> &channels)
{
    const bool single = from == Image::OSG_A_PF || from == Image::OSG_I_PF ||
                        from == Image::OSG_L_PF;
    const bool toSingle = to == Image::OSG_A_PF || to == Image::OSG_I_PF ||
                          to == Image::OSG_L_PF;
    const Int32 alpha = from == Image::OSG_LA_PF ? 1 : 3;
    const Int32 gray  = from == Image::OSG_LA_PF ? 0 : Mean;

    if(single)
    {
        if(formatComponents(to) == 0 || to == Image::OSG_BGR_PF || to == Image::OSG_BGRA_PF)
            return false;
        channels.assign(formatComponents(to), 0);
    }
    else if(from == Image::OSG_LA_PF || from == Image::OSG_RGBA_PF || from == Image::OSG_RGB_PF)
    {
        const bool hasAlpha = from != Image::OSG_RGB_PF;
        if(to == Image::OSG_A_PF)
            channels = { hasAlpha ? alpha : Mean };
        else if(toSingle)
            channels = { gray };
        else if(to == Image::OSG_LA_PF)
            channels = { gray, hasAlpha ? alpha : Mean };
        else if(to == Image::OSG_RGB_PF)
            channels = gray == 0 ? std::vector<Int32>{ 0, 0, 0 } : std::vector<Int32>{ 0, 1, 2 };
        else if(to == Image::OSG_RGBA_PF)
            channels = gray == 0 ? std::vector<Int32>{ 0, 0, 0, 1 }
                                 : std::vector<Int32>{ 0, 1, 2, hasAlpha ? 3 : Mean };
        else
            return false;
    }
    else if(from == Image::OSG_BGRA_PF && to == Image::OSG_RGBA_PF)
    {
        channels = { 2, 1, 0, 3 };
    }
    else
    {
        return false;
    }
    return true;
}

template <class T>
void reformatPixels(const UInt8 *src, UInt8 *dst, size_t pixels, UInt32 srcChannels,
                    const std::vector<Int32> &channels)
{
    const T *in  = reinterpret_cast<const T *>(src);
    T       *out = reinterpret_cast<T *>(dst);
    for(size_t p = 0; p < pixels; ++p, in += srcChannels)
        for(Int32 c : channels)
            // Integer means round down, as 1.8's integer sums do.
            *out++ = c == Mean ? T((Real64(in[0]) + Real64(in[1]) + Real64(in[2])) / 3.0) : in[c];
}

// One level down, 1.8's box filter: the mean of the two (four, eight)
// texels each halved axis folds, the last of an odd size left out.
template <class T>
void halveLevel(const T *src, T *dst, Int32 w, Int32 h, Int32 d, UInt32 channels)
{
    const Int32 wm = w == 1 ? 1 : w >> 1, hm = h == 1 ? 1 : h >> 1, dm = d == 1 ? 1 : d >> 1;
    const Int32 sw = w > wm ? 2 : 1, sh = h > hm ? 2 : 1, sd = d > dm ? 2 : 1;
    const Int32 taps = sw * sh * sd;
    for(Int32 z = 0; z < dm; ++z)
        for(Int32 y = 0; y < hm; ++y)
            for(Int32 x = 0; x < wm; ++x)
                for(UInt32 c = 0; c < channels; ++c)
                {
                    Real64 sum = 0;
                    for(Int32 k = 0; k < taps; ++k)
                    {
                        const Int32 tx = x * sw + k % sw, ty = y * sh + (k / sw) % sh,
                                    tz = z * sd + k / (sw * sh);
                        sum += Real64(src[((size_t(tz) * h + ty) * w + tx) * channels + c]);
                    }
                    *dst++ = std::numeric_limits<T>::is_integer ? T(std::floor(sum / taps))
                                                                : T(Real32(sum / taps));
                }
}

} // namespace

// As 1.8: into destination, or in place when there is none (a change of
// format only). Pairs 1.8 does not convert are refused here with a warning.
bool Image::reformat(const PixelFormat pixelFormat, ImagePtr destination)
{
    if(isCompressed())
    {
        SWARNING << "Image::reformat: compressed images are not reformatted" << std::endl;
        return false;
    }
    if(!withComponentType(getDataType(), [](auto *) {}))
    {
        SWARNING << "Image::reformat: unsupported data type " << getDataType() << std::endl;
        return false;
    }
    if(getSize() == 0 || pixelFormat == 0 ||
       (destination == NullFC && UInt32(pixelFormat) == getPixelFormat()))
        return false;

    std::vector<Int32> channels;
    if(!reformatChannels(getPixelFormat(), pixelFormat, channels))
    {
        SWARNING << "Image::reformat: no conversion from pixel format " << getPixelFormat()
                 << " to " << pixelFormat << std::endl;
        return false;
    }

    // Only an image made here is held, so that it goes with this call.
    ImageRefPtr made(destination == NullFC ? Image::create() : ImagePtr(NullFC));
    ImagePtr    dest = destination != NullFC ? destination : ImagePtr(made);
    beginEditCP(dest);
    dest->set(pixelFormat, getWidth(), getHeight(), getDepth(), getMipMapCount(),
              getFrameCount(), getFrameDelay(), NULL, getDataType(), true, getSideCount());
    const size_t pixels = getSize() / getBpp();
    const UInt32 from   = formatComponents(getPixelFormat());
    withComponentType(getDataType(), [&](auto *type)
    {
        reformatPixels<std::remove_pointer_t<decltype(type)>>(getData(), dest->editData(),
                                                              pixels, from, channels);
    });
    endEditCP(dest);
    if(destination == NullFC)
        set(dest);
    return true;
}

// Nearest texels, as 1.8, level by level.
bool Image::scale(Int32 width, Int32 height, Int32 depth, ImagePtr destination)
{
    if(width == getWidth() && height == getHeight() && depth == getDepth())
    {
        if(destination != NullFC)
            destination->set(ImagePtr(this));
        return true;
    }
    if(isCompressed())
    {
        SWARNING << "Image::scale: compressed images are not scaled" << std::endl;
        return false;
    }

    // Keep the old levels: the destination may be this image.
    const Int32 oldW = getWidth(), oldH = getHeight(), oldD = getDepth();
    const Int32 levels = getMipMapCount(), frames = getFrameCount(), sides = getSideCount();
    const UInt32 bpp = getBpp();
    std::vector<std::vector<UInt8> > old;
    for(Int32 f = 0; f < frames; ++f)
        for(Int32 s = 0; s < sides; ++s)
            for(Int32 m = 0; m < levels; ++m)
            {
                const UInt8 *level = getData(m, f, s);
                old.emplace_back(level, level + getLevelSize(m));
            }

    ImagePtr dest = destination != NullFC ? destination : ImagePtr(this);
    beginEditCP(dest);
    dest->set(getPixelFormat(), width, height, depth, levels, frames, getFrameDelay(), NULL,
              getDataType(), true, sides);
    size_t block = 0;
    for(Int32 f = 0; f < frames; ++f)
        for(Int32 s = 0; s < sides; ++s)
            for(Int32 m = 0; m < levels; ++m)
            {
                const Int32 sw = std::max(oldW >> m, 1), sh = std::max(oldH >> m, 1),
                            sd = std::max(oldD >> m, 1);
                const Int32 dw = std::max(dest->getWidth() >> m, 1),
                            dh = std::max(dest->getHeight() >> m, 1),
                            dd = std::max(dest->getDepth() >> m, 1);
                const std::vector<UInt8> &src = old[block++];
                UInt8 *out = dest->editData(m, f, s);
                for(Int32 z = 0; z < dd; ++z)
                    for(Int32 y = 0; y < dh; ++y)
                        for(Int32 x = 0; x < dw; ++x, out += bpp)
                        {
                            const size_t from = ((size_t(Real32(sd) / dd * z) * sh +
                                                  size_t(Real32(sh) / dh * y)) * sw +
                                                 size_t(Real32(sw) / dw * x)) * bpp;
                            std::memcpy(out, &src[from], bpp);
                        }
            }
    endEditCP(dest);
    return true;
}

bool Image::createMipmap(Int32 level, ImagePtr destination)
{
    if(isCompressed())
    {
        SWARNING << "Image::createMipmap: compressed images get no mip-maps here" << std::endl;
        return false;
    }
    if(!withComponentType(getDataType(), [](auto *) {}))
    {
        SWARNING << "Image::createMipmap: unsupported data type " << getDataType() << std::endl;
        return false;
    }
    if(level < 0)
    {
        // Down to one texel, as 1.8 counts.
        level = 1;
        for(Int32 w = getWidth(), h = getHeight(), d = getDepth(); w > 1 || h > 1 || d > 1; ++level)
        {
            w = std::max(w >> 1, 1);
            h = std::max(h >> 1, 1);
            d = std::max(d >> 1, 1);
        }
    }

    // Only an image made here is held, so that it goes with this call.
    ImageRefPtr made(destination == NullFC ? Image::create() : ImagePtr(NullFC));
    ImagePtr    dest = destination != NullFC ? destination : ImagePtr(made);
    const UInt32 channels = formatComponents(getPixelFormat());
    beginEditCP(dest);
    dest->set(getPixelFormat(), getWidth(), getHeight(), getDepth(), level, getFrameCount(),
              getFrameDelay(), NULL, getDataType(), true, getSideCount());
    for(Int32 f = 0; f < getFrameCount(); ++f)
        for(Int32 s = 0; s < getSideCount(); ++s)
        {
            std::memcpy(dest->editData(0, f, s), getData(0, f, s), getLevelSize(0));
            for(Int32 m = 1; m < level; ++m)
                withComponentType(getDataType(), [&](auto *type)
                {
                    using T = std::remove_pointer_t<decltype(type)>;
                    halveLevel(reinterpret_cast<const T *>(dest->getData(m - 1, f, s)),
                               reinterpret_cast<T *>(dest->editData(m, f, s)),
                               std::max(getWidth() >> (m - 1), 1),
                               std::max(getHeight() >> (m - 1), 1),
                               std::max(getDepth() >> (m - 1), 1), channels);
                });
        }
    endEditCP(dest);
    if(destination == NullFC)
        set(dest);
    return true;
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
