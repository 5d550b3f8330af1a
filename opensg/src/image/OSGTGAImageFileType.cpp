#include <OpenSG/OSGTGAImageFileType.h>

#include "OSGImageDecoding.h"

namespace osg
{

namespace
{

const Char8 *tgaSuffixes[] = { "tga", "targa" };

} // namespace

TGAImageFileType TGAImageFileType::_the("image/x-targa",
                                        tgaSuffixes, sizeof(tgaSuffixes),
                                        OSG_READ_SUPPORTED | OSG_WRITE_SUPPORTED);

TGAImageFileType &TGAImageFileType::the(void)
{
    return _the;
}

TGAImageFileType::TGAImageFileType(const Char8 *mimeType, const Char8 *tgaSuffixes[],
                                   UInt16 suffixByteCount, UInt32 flags) :
    ImageFileType(mimeType, tgaSuffixes, suffixByteCount, flags)
{}

TGAImageFileType::~TGAImageFileType(void)
{
}

bool TGAImageFileType::decode(Image &image, const UInt8 *data, std::size_t size,
                              std::string &error)
{
    return decodeStbData(image, data, size, error);
}

bool TGAImageFileType::encode(const ImagePtr &image, std::ostream &os, std::string &error)
{
    return encodeStbData(image, "tga", 0, os, error);
}

} // namespace osg
