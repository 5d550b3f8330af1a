#include <OpenSG/OSGHDRImageFileType.h>

#include "OSGImageDecoding.h"

namespace osg
{

namespace
{

const Char8 *hdrSuffixes[] = { "hdr" };

} // namespace

HDRImageFileType HDRImageFileType::_the("image/x-hdr",
                                        hdrSuffixes, sizeof(hdrSuffixes),
                                        OSG_READ_SUPPORTED | OSG_WRITE_SUPPORTED);

HDRImageFileType &HDRImageFileType::the(void)
{
    return _the;
}

HDRImageFileType::HDRImageFileType(const Char8 *mimeType, const Char8 *hdrSuffixes[],
                                   UInt16 suffixByteCount, UInt32 flags) :
    ImageFileType(mimeType, hdrSuffixes, suffixByteCount, flags)
{
    addSignature("#?", 2);
}

HDRImageFileType::~HDRImageFileType(void)
{
}

bool HDRImageFileType::decode(Image &image, const UInt8 *data, std::size_t size,
                              std::string &error)
{
    if(!matchesSignature(data, size))
    {
        error = "not a Radiance file";
        return false;
    }
    return decodeStbData(image, data, size, error);
}

bool HDRImageFileType::encode(const ImagePtr &image, std::ostream &os, std::string &error)
{
    return encodeStbData(image, "hdr", 0, os, error);
}

} // namespace osg
