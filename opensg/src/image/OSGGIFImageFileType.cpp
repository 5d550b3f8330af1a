#include <OpenSG/OSGGIFImageFileType.h>

#include "OSGImageDecoding.h"

namespace osg
{

namespace
{

const Char8 *gifSuffixes[] = { "gif" };

} // namespace

GIFImageFileType GIFImageFileType::_the("image/gif",
                                        gifSuffixes, sizeof(gifSuffixes),
                                        OSG_READ_SUPPORTED);

GIFImageFileType &GIFImageFileType::the(void)
{
    return _the;
}

GIFImageFileType::GIFImageFileType(const Char8 *mimeType, const Char8 *gifSuffixes[],
                                   UInt16 suffixByteCount, UInt32 flags) :
    ImageFileType(mimeType, gifSuffixes, suffixByteCount, flags)
{
    addSignature("GIF87a", 6);
    addSignature("GIF89a", 6);
}

GIFImageFileType::~GIFImageFileType(void)
{
}

bool GIFImageFileType::decode(Image &image, const UInt8 *data, std::size_t size,
                              std::string &error)
{
    if(!matchesSignature(data, size))
    {
        error = "not a GIF file";
        return false;
    }
    return decodeStbData(image, data, size, error);
}

} // namespace osg
