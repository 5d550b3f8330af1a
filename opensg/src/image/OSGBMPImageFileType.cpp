#include <OpenSG/OSGBMPImageFileType.h>

#include "OSGImageDecoding.h"

namespace osg
{

namespace
{

const Char8 *bmpSuffixes[] = { "bmp", "dib", "rle" };

} // namespace

BMPImageFileType BMPImageFileType::_the("image/bmp",
                                        bmpSuffixes, sizeof(bmpSuffixes),
                                        OSG_READ_SUPPORTED | OSG_WRITE_SUPPORTED);

BMPImageFileType &BMPImageFileType::the(void)
{
    return _the;
}

BMPImageFileType::BMPImageFileType(const Char8 *mimeType, const Char8 *bmpSuffixes[],
                                   UInt16 suffixByteCount, UInt32 flags) :
    ImageFileType(mimeType, bmpSuffixes, suffixByteCount, flags)
{
    addSignature("BM", 2);
}

BMPImageFileType::~BMPImageFileType(void)
{
}

bool BMPImageFileType::decode(Image &image, const UInt8 *data, std::size_t size,
                              std::string &error)
{
    if(!matchesSignature(data, size))
    {
        error = "not a BMP file";
        return false;
    }
    return decodeStbData(image, data, size, error);
}

bool BMPImageFileType::encode(const ImagePtr &image, std::ostream &os, std::string &error)
{
    return encodeStbData(image, "bmp", 0, os, error);
}

} // namespace osg
