#include <OpenSG/OSGPNMImageFileType.h>

#include "OSGImageDecoding.h"

namespace osg
{

namespace
{

const Char8 *pnmSuffixes[] = { "pnm", "pbm", "pgm", "ppm" };

} // namespace

PNMImageFileType PNMImageFileType::_the("image/x-portable-bitmap",
                                        pnmSuffixes, sizeof(pnmSuffixes),
                                        OSG_READ_SUPPORTED);

PNMImageFileType &PNMImageFileType::the(void)
{
    return _the;
}

PNMImageFileType::PNMImageFileType(const Char8 *mimeType, const Char8 *pnmSuffixes[],
                                   UInt16 suffixByteCount, UInt32 flags) :
    ImageFileType(mimeType, pnmSuffixes, suffixByteCount, flags)
{
    addSignature("P1", 2);
    addSignature("P2", 2);
    addSignature("P3", 2);
    addSignature("P4", 2);
    addSignature("P5", 2);
    addSignature("P6", 2);
}

PNMImageFileType::~PNMImageFileType(void)
{
}

bool PNMImageFileType::decode(Image &image, const UInt8 *data, std::size_t size,
                              std::string &error)
{
    if(!matchesSignature(data, size))
    {
        error = "not a PNM file";
        return false;
    }
    if(data[1] != '5' && data[1] != '6')
    {
        error = "only binary grey and colour maps (P5, P6) are supported";
        return false;
    }
    return decodeStbData(image, data, size, error);
}

} // namespace osg
