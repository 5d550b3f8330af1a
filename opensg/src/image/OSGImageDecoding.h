#ifndef _OSGIMAGEDECODING_H_
#define _OSGIMAGEDECODING_H_

#include <OpenSG/OSGImage.h>

#include <cstddef>
#include <string>

namespace osg
{

// Decodes a PNG or JPEG file held in memory into `image` (first row in
// memory is the bottom one, as GL wants it). The format is told by the
// data's signature. On failure returns false and says why in `error`.
bool decodeImageData(Image &image, const UInt8 *data, std::size_t size,
                     std::string &error);

} // namespace osg

#endif
