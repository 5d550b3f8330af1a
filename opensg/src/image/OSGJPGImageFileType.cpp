#include <OpenSG/OSGJPGImageFileType.h>

#include "OSGImageDecoding.h"

#include <cstdio>

namespace osg
{

namespace
{

const Char8 *jpgSuffixes[] = { "jpg", "jpeg", "jpe", "jfif" };

} // namespace

JPGImageFileType JPGImageFileType::_the("image/jpeg",
                                        jpgSuffixes, sizeof(jpgSuffixes),
                                        OSG_READ_SUPPORTED | OSG_WRITE_SUPPORTED);

JPGImageFileType &JPGImageFileType::the(void)
{
    return _the;
}

JPGImageFileType::JPGImageFileType(const Char8 *mimeType, const Char8 *jpgSuffixes[],
                                   UInt16 suffixByteCount, UInt32 flags) :
    ImageFileType(mimeType, jpgSuffixes, suffixByteCount, flags)
{
    addSignature("\xff\xd8\xff", 3);
}

JPGImageFileType::~JPGImageFileType(void)
{
}

bool JPGImageFileType::decode(Image &image, const UInt8 *data, std::size_t size,
                              std::string &error)
{
    if(!matchesSignature(data, size))
    {
        error = "not a JPEG file";
        return false;
    }
    return decodeJPEGData(image, data, size, error);
}

bool JPGImageFileType::encode(const ImagePtr &image, std::ostream &os, std::string &error)
{
    int quality = 95;
    std::sscanf(_options.c_str(), "quality=%d", &quality);
    return encodeStbData(image, "jpg", quality, os, error);
}

} // namespace osg
