#include "OSGImageDecoding.h"

#include <jpeglib.h>
#include <png.h>

#include <csetjmp>
#include <cstring>
#include <vector>

namespace osg
{

namespace
{

bool isPNG(const UInt8 *data, std::size_t size)
{
    static const UInt8 signature[8] = { 0x89, 'P', 'N', 'G', '\r', '\n', 0x1a, '\n' };
    return size >= 8 && std::memcmp(data, signature, 8) == 0;
}

bool isJPEG(const UInt8 *data, std::size_t size)
{
    return size >= 3 && data[0] == 0xff && data[1] == 0xd8 && data[2] == 0xff;
}

bool decodePNG(Image &image, const UInt8 *data, std::size_t size, std::string &error)
{
    png_image png;
    std::memset(&png, 0, sizeof(png));
    png.version = PNG_IMAGE_VERSION;
    if(!png_image_begin_read_from_memory(&png, data, size))
    {
        error = png.message;
        return false;
    }

    png.format &= PNG_FORMAT_FLAG_COLOR | PNG_FORMAT_FLAG_ALPHA;

    UInt32 pixelFormat;
    switch(png.format)
    {
        case PNG_FORMAT_GRAY: pixelFormat = Image::OSG_L_PF;    break;
        case PNG_FORMAT_GA:   pixelFormat = Image::OSG_LA_PF;   break;
        case PNG_FORMAT_RGB:  pixelFormat = Image::OSG_RGB_PF;  break;
        default:              pixelFormat = Image::OSG_RGBA_PF; png.format = PNG_FORMAT_RGBA; break;
    }

    image.set(pixelFormat, Int32(png.width), Int32(png.height));

    // A negative stride makes libpng put the file's first row last.
    const png_int_32 stride = -png_int_32(image.getWidth() * image.getComponents());
    if(!png_image_finish_read(&png, NULL, image.editData(), stride, NULL))
    {
        error = png.message;
        png_image_free(&png);
        return false;
    }
    return true;
}

struct JPEGError
{
    jpeg_error_mgr manager;
    std::jmp_buf   jump;
    char           message[JMSG_LENGTH_MAX];
};

// libjpeg's default handler exits the process; jump back to the caller.
void jpegErrorExit(j_common_ptr info)
{
    JPEGError *err = reinterpret_cast<JPEGError *>(info->err);
    (*info->err->format_message)(info, err->message);
    std::longjmp(err->jump, 1);
}

void jpegSilence(j_common_ptr, int)
{
}

// Only plain data lives across setjmp here: the rows are written straight
// into the image, which the caller owns.
bool decodeJPEG(Image &image, const UInt8 *data, std::size_t size, std::string &error)
{
    jpeg_decompress_struct info;
    JPEGError              err;
    info.err                 = jpeg_std_error(&err.manager);
    err.manager.error_exit   = jpegErrorExit;
    err.manager.emit_message = jpegSilence;
    err.message[0]           = '\0';

    if(setjmp(err.jump))
    {
        error = err.message;
        jpeg_destroy_decompress(&info);
        return false;
    }

    jpeg_create_decompress(&info);
    jpeg_mem_src(&info, data, static_cast<unsigned long>(size));
    jpeg_read_header(&info, TRUE);

    const bool gray = info.jpeg_color_space == JCS_GRAYSCALE;
    info.out_color_space = gray ? JCS_GRAYSCALE : JCS_RGB;
    jpeg_start_decompress(&info);

    image.set(gray ? Image::OSG_L_PF : Image::OSG_RGB_PF,
              Int32(info.output_width), Int32(info.output_height));

    UInt8 *pixels = image.editData();
    const std::size_t rowSize = std::size_t(info.output_width) * info.output_components;
    while(info.output_scanline < info.output_height)
    {
        JSAMPROW row = pixels + (info.output_height - 1 - info.output_scanline) * rowSize;
        jpeg_read_scanlines(&info, &row, 1);
    }

    jpeg_finish_decompress(&info);
    jpeg_destroy_decompress(&info);
    return true;
}

} // namespace

bool decodeImageData(Image &image, const UInt8 *data, std::size_t size,
                     std::string &error)
{
    if(data == NULL || size == 0)
    {
        error = "no data";
        return false;
    }
    if(isPNG(data, size))
        return decodePNG(image, data, size, error);
    if(isJPEG(data, size))
        return decodeJPEG(image, data, size, error);

    error = "neither PNG nor JPEG data";
    return false;
}

} // namespace osg
