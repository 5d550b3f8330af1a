#include "OSGImageDecoding.h"

#include <jpeglib.h>
#include <png.h>
#include <stb_image.h>
#include <stb_image_write.h>

#include <algorithm>
#include <csetjmp>
#include <cstdint>
#include <cstring>
#include <ostream>

namespace osg
{

namespace
{

UInt32 formatForComponents(int components)
{
    switch(components)
    {
        case 1:  return Image::OSG_L_PF;
        case 2:  return Image::OSG_LA_PF;
        case 3:  return Image::OSG_RGB_PF;
        case 4:  return Image::OSG_RGBA_PF;
        default: return Image::OSG_INVALID_PF;
    }
}

// Copies rows given top first into the image's bottom-first storage.
void copyRowsFlipped(UInt8 *dst, const UInt8 *src, std::size_t rowBytes, std::size_t rows)
{
    for(std::size_t y = 0; y < rows; ++y)
        std::memcpy(dst + (rows - 1 - y) * rowBytes, src + y * rowBytes, rowBytes);
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

} // namespace

bool decodePNGData(Image &image, const UInt8 *data, std::size_t size, std::string &error)
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

// Only plain data lives across setjmp here: the rows are written straight
// into the image, which the caller owns.
bool decodeJPEGData(Image &image, const UInt8 *data, std::size_t size, std::string &error)
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

bool decodeStbData(Image &image, const UInt8 *data, std::size_t size, std::string &error,
                   int wanted)
{
    if(size > std::size_t(INT32_MAX))
    {
        error = "file too large";
        return false;
    }
    const int length = int(size);
    int width = 0, height = 0, components = 0;

    Int32  type;
    void  *pixels;
    if(stbi_is_hdr_from_memory(data, length))
    {
        // Radiance files are read as stored: linear RGB, no tone mapping.
        pixels = stbi_loadf_from_memory(data, length, &width, &height, &components, 3);
        components = 3;
        type       = Image::OSG_FLOAT32_IMAGEDATA;
    }
    else if(stbi_is_16_bit_from_memory(data, length))
    {
        pixels = stbi_load_16_from_memory(data, length, &width, &height, &components, wanted);
        type   = Image::OSG_UINT16_IMAGEDATA;
    }
    else
    {
        pixels = stbi_load_from_memory(data, length, &width, &height, &components, wanted);
        type   = Image::OSG_UINT8_IMAGEDATA;
    }

    if(pixels == NULL)
    {
        const char *reason = stbi_failure_reason();
        error = reason != NULL ? reason : "cannot be decoded";
        return false;
    }

    if(wanted != 0)
        components = wanted;
    const UInt32 pixelFormat = formatForComponents(components);
    if(pixelFormat == Image::OSG_INVALID_PF ||
       !image.set(pixelFormat, width, height, 1, 1, 1, 0.0, NULL, type))
    {
        stbi_image_free(pixels);
        error = "unsupported channel count";
        return false;
    }

    const std::size_t rowBytes = std::size_t(width) * image.getBpp();
    copyRowsFlipped(image.editData(), static_cast<const UInt8 *>(pixels),
                    rowBytes, std::size_t(height));
    stbi_image_free(pixels);
    return true;
}

bool fileRows(const ImagePtr &image, Int32 type, std::vector<UInt8> &rows,
              int &components, std::string &error)
{
    const UInt32 format = image->getPixelFormat();
    const bool   bgr    = format == Image::OSG_BGR_PF || format == Image::OSG_BGRA_PF;
    switch(format)
    {
        case Image::OSG_L_PF: case Image::OSG_I_PF: case Image::OSG_A_PF:
        case Image::OSG_LA_PF: case Image::OSG_RGB_PF: case Image::OSG_RGBA_PF:
        case Image::OSG_BGR_PF: case Image::OSG_BGRA_PF:
            break;
        default:
            error = "this pixel format cannot be stored in the file";
            return false;
    }

    // Converted on a copy; the caller's image stays as it is.
    ImagePtr copy = Image::create();
    addRefCP(copy);
    copy->set(format, image->getWidth(), image->getHeight(), 1, 1, 1, 0.0,
              image->getData(), image->getDataType());
    if(!copy->convertDataTypeTo(type))
    {
        subRefCP(copy);
        error = "this data type cannot be stored in the file";
        return false;
    }

    components = copy->getComponents();
    const std::size_t pixelBytes = copy->getBpp();
    const std::size_t rowBytes   = std::size_t(copy->getWidth()) * pixelBytes;
    const std::size_t height     = std::size_t(copy->getHeight());
    rows.resize(rowBytes * height);
    copyRowsFlipped(rows.data(), copy->getData(), rowBytes, height);
    subRefCP(copy);

    if(bgr)
    {
        const std::size_t channelBytes = pixelBytes / std::size_t(components);
        for(std::size_t p = 0; p < rows.size(); p += pixelBytes)
            std::swap_ranges(&rows[p], &rows[p] + channelBytes, &rows[p + 2 * channelBytes]);
    }
    return true;
}

namespace
{

void writeToStream(void *context, void *data, int size)
{
    static_cast<std::ostream *>(context)->write(static_cast<const char *>(data), size);
}

} // namespace

bool encodeStbData(const ImagePtr &image, const char *kind, int quality,
                   std::ostream &os, std::string &error)
{
    const bool hdr = std::strcmp(kind, "hdr") == 0;
    std::vector<UInt8> rows;
    int components = 0;
    if(!fileRows(image, hdr ? Image::OSG_FLOAT32_IMAGEDATA : Image::OSG_UINT8_IMAGEDATA,
                 rows, components, error))
        return false;

    const int w = image->getWidth();
    const int h = image->getHeight();
    int written = 0;
    if(hdr)
        written = stbi_write_hdr_to_func(writeToStream, &os, w, h, components,
                                         reinterpret_cast<const float *>(rows.data()));
    else if(std::strcmp(kind, "tga") == 0)
        written = stbi_write_tga_to_func(writeToStream, &os, w, h, components, rows.data());
    else if(std::strcmp(kind, "bmp") == 0)
        written = stbi_write_bmp_to_func(writeToStream, &os, w, h, components, rows.data());
    else if(std::strcmp(kind, "jpg") == 0)
        written = stbi_write_jpg_to_func(writeToStream, &os, w, h, components, rows.data(),
                                         quality);
    if(written == 0)
        error = "the encoder refused the image";
    return written != 0;
}

} // namespace osg
