#include <OpenSG/OSGPSDImageFileType.h>

#include "OSGImageDecoding.h"

namespace osg
{

namespace
{

const Char8 *suffixArray[] = { "psd" };

} // namespace

PSDImageFileType PSDImageFileType::_the("image/x-photoshop",
                                        suffixArray, sizeof(suffixArray),
                                        OSG_READ_SUPPORTED);

PSDImageFileType &PSDImageFileType::the(void)
{
    return _the;
}

PSDImageFileType::PSDImageFileType(const Char8 *mimeType, const Char8 *suffixArray[],
                                   UInt16 suffixByteCount, UInt32 flags) :
    ImageFileType(mimeType, suffixArray, suffixByteCount, flags)
{
    addSignature("8BPS", 4);
}

PSDImageFileType::~PSDImageFileType(void)
{
}

bool PSDImageFileType::decode(Image &image, const UInt8 *data, std::size_t size,
                              std::string &error)
{
    if(!matchesSignature(data, size))
    {
        error = "not a Photoshop file";
        return false;
    }
    return decodeStbData(image, data, size, error);
}

} // namespace osg
