#ifndef _OSGIMAGEDECODING_H_
#define _OSGIMAGEDECODING_H_

#include <OpenSG/OSGImage.h>

#include <cstddef>
#include <iosfwd>
#include <string>
#include <vector>

namespace osg
{

// Decoders shared by the image file types. Each fills `image` with the
// first row in memory being the bottom one, as GL wants it; on failure it
// returns false and says why in `error`.
bool decodePNGData (Image &image, const UInt8 *data, std::size_t size, std::string &error);
bool decodeJPEGData(Image &image, const UInt8 *data, std::size_t size, std::string &error);

// Whatever stb_image reads: 8- or 16-bit integer images, Radiance HDR as
// 32-bit float RGB. `components` (1 to 4) overrides the count stb_image
// gives, for formats it always widens.
bool decodeStbData(Image &image, const UInt8 *data, std::size_t size, std::string &error,
                   int components = 0);

// The first level, frame and side of `image` as files store pixels: top
// row first, no padding, RGB order, converted to `type` (OSG_UINT8_IMAGEDATA
// or OSG_FLOAT32_IMAGEDATA). `components` gets 1 to 4.
bool fileRows(const ImagePtr &image, Int32 type, std::vector<UInt8> &rows,
              int &components, std::string &error);

// Writes what stb_image_write produces into `os`. `kind` is "tga", "bmp",
// "jpg" or "hdr".
bool encodeStbData(const ImagePtr &image, const char *kind, int quality,
                   std::ostream &os, std::string &error);

} // namespace osg

#endif
