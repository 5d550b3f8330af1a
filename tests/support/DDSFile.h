#ifndef TESTS_SUPPORT_DDSFILE_H
#define TESTS_SUPPORT_DDSFILE_H

#include <cstdint>
#include <cstring>
#include <string>

// The bytes of a DirectDraw surface file: the magic, the 124-byte header
// as the format lays it out, then `payload`.
inline std::string ddsFile(std::uint32_t width, std::uint32_t height, std::uint32_t mipMaps,
                           const char *fourCC, const std::string &payload,
                           std::uint32_t rgbBits = 0, std::uint32_t redMask = 0)
{
    std::uint32_t header[31] = {};
    header[0]  = 124;
    header[1]  = 0x1 | 0x2 | 0x4 | 0x1000 | (mipMaps > 1 ? 0x20000 : 0);
    header[2]  = height;
    header[3]  = width;
    header[6]  = mipMaps;
    header[18] = 32;                               // pixel format size
    if(fourCC != nullptr)
    {
        header[19] = 0x4;                          // DDPF_FOURCC
        std::memcpy(&header[20], fourCC, 4);
    }
    else
    {
        header[19] = 0x40 | 0x1;                   // DDPF_RGB, DDPF_ALPHAPIXELS
        header[21] = rgbBits;
        header[22] = redMask;
        header[23] = 0x00ff00;
        header[24] = redMask == 0xff ? 0xff0000 : 0xff;
        header[25] = 0xff000000;
    }
    header[26] = 0x1000 | (mipMaps > 1 ? 0x400008 : 0);   // caps
    return std::string("DDS ", 4) +
           std::string(reinterpret_cast<const char *>(header), sizeof(header)) + payload;
}

#endif
