#include <OpenSG/OSGTIFImageFileType.h>

#include <tiffio.h>

#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <vector>

namespace osg
{

namespace
{

const Char8 *tifSuffixes[] = { "tif", "tiff" };

// The file's bytes, read by libtiff through the client procedures.
struct MemoryFile
{
    const UInt8 *data;
    toff_t       size;
    toff_t       position;
    std::string  error;
};

tmsize_t memoryRead(thandle_t handle, void *buffer, tmsize_t count)
{
    MemoryFile *file = static_cast<MemoryFile *>(handle);
    if(count < 0 || file->position >= file->size)
        return 0;
    const toff_t left = file->size - file->position;
    const toff_t n    = toff_t(count) < left ? toff_t(count) : left;
    std::memcpy(buffer, file->data + file->position, std::size_t(n));
    file->position += n;
    return tmsize_t(n);
}

tmsize_t memoryWrite(thandle_t, void *, tmsize_t)
{
    return 0;
}

toff_t memorySeek(thandle_t handle, toff_t offset, int whence)
{
    MemoryFile *file = static_cast<MemoryFile *>(handle);
    toff_t base = 0;
    if(whence == SEEK_CUR)
        base = file->position;
    else if(whence == SEEK_END)
        base = file->size;
    file->position = base + offset;
    return file->position;
}

int memoryClose(thandle_t)
{
    return 0;
}

toff_t memorySize(thandle_t handle)
{
    return static_cast<MemoryFile *>(handle)->size;
}

// libtiff would print to stderr; the first error becomes the reason.
int keepError(TIFF *, void *user, const char *module, const char *format, va_list args)
{
    MemoryFile *file = static_cast<MemoryFile *>(user);
    if(file->error.empty())
    {
        char text[256];
        std::vsnprintf(text, sizeof(text), format, args);
        file->error = std::string(module != NULL ? module : "libtiff") + ": " + text;
    }
    return 1;
}

int ignoreWarning(TIFF *, void *, const char *, const char *, va_list)
{
    return 1;
}

} // namespace

TIFImageFileType TIFImageFileType::_the("image/tiff",
                                        tifSuffixes, sizeof(tifSuffixes),
                                        OSG_READ_SUPPORTED);

TIFImageFileType &TIFImageFileType::the(void)
{
    return _the;
}

TIFImageFileType::TIFImageFileType(const Char8 *mimeType, const Char8 *tifSuffixes[],
                                   UInt16 suffixByteCount, UInt32 flags) :
    ImageFileType(mimeType, tifSuffixes, suffixByteCount, flags)
{
    addSignature("II*\0", 4);
    addSignature("MM\0*", 4);
}

TIFImageFileType::~TIFImageFileType(void)
{
}

bool TIFImageFileType::decode(Image &image, const UInt8 *data, std::size_t size,
                              std::string &error)
{
    if(!matchesSignature(data, size))
    {
        error = "not a TIFF file";
        return false;
    }

    MemoryFile file = { data, toff_t(size), 0, std::string() };
    TIFFOpenOptions *options = TIFFOpenOptionsAlloc();
    TIFFOpenOptionsSetErrorHandlerExtR(options, keepError, &file);
    TIFFOpenOptionsSetWarningHandlerExtR(options, ignoreWarning, &file);
    // Bounds what a forged header can make libtiff allocate at once.
    TIFFOpenOptionsSetMaxSingleMemAlloc(options, 256 << 20);
    TIFF *tiff = TIFFClientOpenExt("memory", "rm", &file, memoryRead, memoryWrite,
                                   memorySeek, memoryClose, memorySize,
                                   NULL, NULL, options);
    TIFFOpenOptionsFree(options);
    if(tiff == NULL)
    {
        error = file.error.empty() ? "cannot be opened" : file.error;
        return false;
    }

    uint32_t  width = 0, height = 0;
    uint16_t  photometric = PHOTOMETRIC_RGB, extraCount = 0;
    uint16_t *extraTypes  = NULL;
    TIFFGetField(tiff, TIFFTAG_IMAGEWIDTH,  &width);
    TIFFGetField(tiff, TIFFTAG_IMAGELENGTH, &height);
    TIFFGetField(tiff, TIFFTAG_PHOTOMETRIC, &photometric);
    TIFFGetFieldDefaulted(tiff, TIFFTAG_EXTRASAMPLES, &extraCount, &extraTypes);

    std::vector<uint32_t> rgba;
    bool ok = width > 0 && height > 0 && width <= 65536 && height <= 65536;
    if(ok)
    {
        rgba.resize(std::size_t(width) * height);
        // Bottom row first, as the image keeps it.
        ok = TIFFReadRGBAImageOriented(tiff, width, height, rgba.data(),
                                       ORIENTATION_BOTLEFT, 0) != 0;
    }
    TIFFClose(tiff);
    if(!ok)
    {
        error = !file.error.empty() ? file.error : "unsupported size or layout";
        return false;
    }

    // Grey stays grey; palettes and other colour spaces come out as RGB.
    static const UInt32 formats[] =
        { Image::OSG_L_PF, Image::OSG_LA_PF, Image::OSG_RGB_PF, Image::OSG_RGBA_PF };
    const bool grey       = photometric == PHOTOMETRIC_MINISBLACK ||
                            photometric == PHOTOMETRIC_MINISWHITE;
    const int  components = (grey ? 1 : 3) + (extraCount > 0 ? 1 : 0);
    image.set(formats[components - 1], Int32(width), Int32(height));

    UInt8 *out = image.editData();
    for(uint32_t pixel : rgba)
    {
        const UInt8 rgbaBytes[4] = { UInt8(TIFFGetR(pixel)), UInt8(TIFFGetG(pixel)),
                                     UInt8(TIFFGetB(pixel)), UInt8(TIFFGetA(pixel)) };
        switch(components)
        {
            case 1:  *out++ = rgbaBytes[0]; break;
            case 2:  *out++ = rgbaBytes[0]; *out++ = rgbaBytes[3]; break;
            default:
                std::memcpy(out, rgbaBytes, std::size_t(components));
                out += components;
                break;
        }
    }
    return true;
}

} // namespace osg
