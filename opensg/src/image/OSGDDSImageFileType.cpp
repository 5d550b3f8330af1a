#include <OpenSG/OSGDDSImageFileType.h>
#include <OpenSG/OSGLog.h>

#include <algorithm>
#include <cstring>

namespace osg
{

namespace
{

const Char8 *ddsSuffixes[] = { "dds" };

// Header fields, as byte offsets after the four-byte magic.
enum
{
    HeaderSize     = 124,
    OffHeight      = 8,
    OffWidth       = 12,
    OffDepth       = 20,
    OffMipMapCount = 24,
    OffPixelFlags  = 76,
    OffFourCC      = 80,
    OffBitCount    = 84,
    OffRedMask     = 88,
    OffCaps2       = 108
};

const UInt32 FlagFourCC      = 0x4;
const UInt32 FlagRGB         = 0x40;
const UInt32 FlagLuminance   = 0x20000;
const UInt32 Caps2CubeMap    = 0x200;
const UInt32 Caps2Volume     = 0x200000;

UInt32 readUInt32(const UInt8 *p)
{
    return UInt32(p[0]) | UInt32(p[1]) << 8 | UInt32(p[2]) << 16 | UInt32(p[3]) << 24;
}

UInt32 fourCC(const char *code)
{
    return readUInt32(reinterpret_cast<const UInt8 *>(code));
}

// Swaps rows i and rows - 1 - i of one 4x4 block (rows < 4 for the last
// block row of a level under four pixels high).
void flipBlockRows(UInt8 *block, UInt32 format, UInt32 rows)
{
    UInt8 *colour = block;
    if(format == Image::OSG_RGBA_DXT3)
    {
        // 16 bits of explicit alpha a row.
        for(UInt32 i = 0; i < rows / 2; ++i)
            std::swap_ranges(block + 2 * i, block + 2 * i + 2, block + 2 * (rows - 1 - i));
        colour = block + 8;
    }
    else if(format == Image::OSG_RGBA_DXT5)
    {
        // Two alpha end points, then 3-bit indices, 12 bits a row.
        UInt64 bits = 0;
        for(int b = 0; b < 6; ++b)
            bits |= UInt64(block[2 + b]) << (8 * b);
        UInt64 flipped = bits;
        for(UInt32 i = 0; i < rows; ++i)
        {
            const UInt64 row = (bits >> (12 * (rows - 1 - i))) & 0xfff;
            flipped = (flipped & ~(UInt64(0xfff) << (12 * i))) | row << (12 * i);
        }
        for(int b = 0; b < 6; ++b)
            block[2 + b] = UInt8(flipped >> (8 * b));
        colour = block + 8;
    }
    // Colour: two end points, then a byte of 2-bit indices a row.
    std::reverse(colour + 4, colour + 4 + rows);
}

// Turns a level upside down, so that its first row in memory is the
// bottom one. False where blocks cannot be re-ordered to that.
bool flipCompressedLevel(UInt8 *data, UInt32 format, UInt32 blockBytes,
                         UInt32 width, UInt32 height, UInt32 depth)
{
    const UInt32 blocksX = (width + 3) / 4;
    const UInt32 blocksY = (height + 3) / 4;
    if(height > 4 && height % 4 != 0)
        return false;

    const UInt32 rows     = std::min(height, 4u);
    const UInt32 rowBytes = blocksX * blockBytes;
    for(UInt32 z = 0; z < depth; ++z)
    {
        UInt8 *slice = data + std::size_t(z) * blocksY * rowBytes;
        for(UInt32 y = 0; y < blocksY / 2; ++y)
            std::swap_ranges(slice + y * rowBytes, slice + (y + 1) * rowBytes,
                             slice + (blocksY - 1 - y) * rowBytes);
        for(UInt32 b = 0; b < blocksX * blocksY; ++b)
            flipBlockRows(slice + b * blockBytes, format, rows);
    }
    return true;
}

void flipLevel(UInt8 *data, std::size_t rowBytes, UInt32 height, UInt32 depth)
{
    for(UInt32 z = 0; z < depth; ++z)
    {
        UInt8 *slice = data + z * rowBytes * height;
        for(UInt32 y = 0; y < height / 2; ++y)
            std::swap_ranges(slice + y * rowBytes, slice + (y + 1) * rowBytes,
                             slice + (height - 1 - y) * rowBytes);
    }
}

} // namespace

DDSImageFileType DDSImageFileType::_the("image/x-dds",
                                        ddsSuffixes, sizeof(ddsSuffixes),
                                        OSG_READ_SUPPORTED);

DDSImageFileType &DDSImageFileType::the(void)
{
    return _the;
}

DDSImageFileType::DDSImageFileType(const Char8 *mimeType, const Char8 *ddsSuffixes[],
                                   UInt16 suffixByteCount, UInt32 flags) :
    ImageFileType(mimeType, ddsSuffixes, suffixByteCount, flags)
{
    addSignature("DDS ", 4);
}

DDSImageFileType::~DDSImageFileType(void)
{
}

bool DDSImageFileType::decode(Image &image, const UInt8 *data, std::size_t size,
                              std::string &error)
{
    if(!matchesSignature(data, size) || size < 4 + HeaderSize ||
       readUInt32(data + 4) != HeaderSize)
    {
        error = "not a DDS file";
        return false;
    }

    const UInt8 *header = data + 4;
    const UInt32 width       = readUInt32(header + OffWidth);
    const UInt32 height      = readUInt32(header + OffHeight);
    const UInt32 caps2       = readUInt32(header + OffCaps2);
    const UInt32 pixelFlags  = readUInt32(header + OffPixelFlags);
    const UInt32 bitCount    = readUInt32(header + OffBitCount);
    const UInt32 redMask     = readUInt32(header + OffRedMask);
    const bool   cubeMap     = (caps2 & Caps2CubeMap) != 0;
    const UInt32 depth       = (caps2 & Caps2Volume) != 0 ?
                               std::max(readUInt32(header + OffDepth), 1u) : 1;
    const UInt32 mipMapCount = std::max(readUInt32(header + OffMipMapCount), 1u);

    if(width == 0 || height == 0 || width > 16384 || height > 16384 || depth > 2048 ||
       (cubeMap && depth > 1))
    {
        error = "unsupported size";
        return false;
    }

    UInt32 format     = Image::OSG_INVALID_PF;
    UInt32 blockBytes = 0;
    if(pixelFlags & FlagFourCC)
    {
        const UInt32 code = readUInt32(header + OffFourCC);
        if(code == fourCC("DXT1"))
        {
            format     = Image::OSG_RGB_DXT1;
            blockBytes = 8;
        }
        else if(code == fourCC("DXT3"))
        {
            format     = Image::OSG_RGBA_DXT3;
            blockBytes = 16;
        }
        else if(code == fourCC("DXT5"))
        {
            format     = Image::OSG_RGBA_DXT5;
            blockBytes = 16;
        }
    }
    else if((pixelFlags & FlagRGB) && bitCount == 32)
    {
        // Without an alpha mask the fourth byte is kept all the same.
        if(redMask == 0xff0000)
            format = Image::OSG_BGRA_PF;
        else if(redMask == 0xff)
            format = Image::OSG_RGBA_PF;
    }
    else if((pixelFlags & FlagRGB) && bitCount == 24)
    {
        if(redMask == 0xff0000)
            format = Image::OSG_BGR_PF;
        else if(redMask == 0xff)
            format = Image::OSG_RGB_PF;
    }
    else if((pixelFlags & FlagLuminance) && bitCount == 8)
        format = Image::OSG_L_PF;

    if(format == Image::OSG_INVALID_PF)
    {
        error = "unsupported pixel format (DXT1, DXT3, DXT5 and 8-bit BGR(A), RGB(A) "
                "and luminance are read)";
        return false;
    }

    // A full chain ends at 1x1; longer counts are forged.
    UInt32 levels = 1;
    while(levels < mipMapCount && (std::max(width, height) >> levels) > 0)
        ++levels;

    image.set(format, Int32(width), Int32(height), Int32(depth), Int32(levels), 1, 0.0,
              NULL, Image::OSG_UINT8_IMAGEDATA, false, cubeMap ? 6 : 1);

    // The file holds each face's whole chain in turn, as the image does.
    const std::size_t needed = image.getSize();
    if(size - 4 - HeaderSize < needed)
    {
        image.clearData();
        error = "the file ends inside the pixel data";
        return false;
    }
    image.setData(data + 4 + HeaderSize);

    // GL takes the bottom row first. Cube faces stay as stored: GL addresses
    // a cube map face top row first.
    for(UInt32 level = 0; level < levels && !cubeMap; ++level)
    {
        const UInt32 w = std::max(width  >> level, 1u);
        const UInt32 h = std::max(height >> level, 1u);
        const UInt32 d = std::max(depth  >> level, 1u);
        UInt8 *pixels = image.editData(level);
        if(blockBytes == 0)
            flipLevel(pixels, std::size_t(w) * image.getBpp(), h, d);
        else if(!flipCompressedLevel(pixels, format, blockBytes, w, h, d))
            SWARNING << "DDSImageFileType: mip-map level " << level << " (" << w << "x"
                     << h << ") cannot be turned over; it stays upside down" << std::endl;
    }
    return true;
}

} // namespace osg
