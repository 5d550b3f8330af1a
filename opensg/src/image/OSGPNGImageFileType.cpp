#include <OpenSG/OSGPNGImageFileType.h>

#include "OSGImageDecoding.h"

#include <png.h>

#include <cstring>
#include <ostream>
#include <vector>

namespace osg
{

namespace
{

const Char8 *pngSuffixes[] = { "png" };

} // namespace

PNGImageFileType PNGImageFileType::_the("image/png",
                                        pngSuffixes, sizeof(pngSuffixes),
                                        OSG_READ_SUPPORTED | OSG_WRITE_SUPPORTED);

PNGImageFileType &PNGImageFileType::the(void)
{
    return _the;
}

PNGImageFileType::PNGImageFileType(const Char8 *mimeType, const Char8 *pngSuffixes[],
                                   UInt16 suffixByteCount, UInt32 flags) :
    ImageFileType(mimeType, pngSuffixes, suffixByteCount, flags)
{
    addSignature("\x89PNG\r\n\x1a\n", 8);
}

PNGImageFileType::~PNGImageFileType(void)
{
}

bool PNGImageFileType::decode(Image &image, const UInt8 *data, std::size_t size,
                              std::string &error)
{
    if(!matchesSignature(data, size))
    {
        error = "not a PNG file";
        return false;
    }
    return decodePNGData(image, data, size, error);
}

bool PNGImageFileType::encode(const ImagePtr &image, std::ostream &os, std::string &error)
{
    std::vector<UInt8> rows;
    int components = 0;
    if(!fileRows(image, Image::OSG_UINT8_IMAGEDATA, rows, components, error))
        return false;

    static const png_uint_32 formats[] =
        { PNG_FORMAT_GRAY, PNG_FORMAT_GA, PNG_FORMAT_RGB, PNG_FORMAT_RGBA };

    png_image png;
    std::memset(&png, 0, sizeof(png));
    png.version = PNG_IMAGE_VERSION;
    png.width   = png_uint_32(image->getWidth());
    png.height  = png_uint_32(image->getHeight());
    png.format  = formats[components - 1];

    // Asked for the size first, then written.
    png_alloc_size_t size = 0;
    if(png_image_write_to_memory(&png, NULL, &size, 0, rows.data(), 0, NULL))
    {
        std::vector<UInt8> file(size);
        if(png_image_write_to_memory(&png, file.data(), &size, 0, rows.data(), 0, NULL))
        {
            os.write(reinterpret_cast<const char *>(file.data()), std::streamsize(size));
            return true;
        }
    }
    error = png.message;
    return false;
}

} // namespace osg
