#include <OpenSG/OSGPSDImageFileType.h>

#include "OSGImageDecoding.h"

namespace osg
{

namespace
{

const Char8 *psdSuffixes[] = { "psd" };

} // namespace

PSDImageFileType PSDImageFileType::_the("image/x-photoshop",
                                        psdSuffixes, sizeof(psdSuffixes),
                                        OSG_READ_SUPPORTED);

PSDImageFileType &PSDImageFileType::the(void)
{
    return _the;
}

PSDImageFileType::PSDImageFileType(const Char8 *mimeType, const Char8 *psdSuffixes[],
                                   UInt16 suffixByteCount, UInt32 flags) :
    ImageFileType(mimeType, psdSuffixes, suffixByteCount, flags)
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
    // stb_image widens everything to RGBA; keep the file's channels. The
    // header holds them big-endian at 12 and the colour mode at 24.
    if(size < 26)
    {
        error = "the header is cut short";
        return false;
    }
    const int  channels  = data[12] << 8 | data[13];
    const bool greyscale = (data[24] << 8 | data[25]) == 1;
    const int  colour    = greyscale ? 1 : 3;
    return decodeStbData(image, data, size, error, channels > colour ? colour + 1 : colour);
}

} // namespace osg
