#ifndef TESTS_SUPPORT_PIXELPROBE_H
#define TESTS_SUPPORT_PIXELPROBE_H

#include <epoxy/gl.h>

#include <array>
#include <cstdint>
#include <ostream>

namespace testsupport
{

struct RGBA8
{
    std::uint8_t r, g, b, a;

    bool operator==(const RGBA8 &o) const
    {
        return r == o.r && g == o.g && b == o.b && a == o.a;
    }
    bool operator!=(const RGBA8 &o) const { return !(*this == o); }
};

std::ostream &operator<<(std::ostream &os, const RGBA8 &c);

typedef std::array<float, 4> RGBAf;

// Read from the current read framebuffer, window coordinates (origin bottom
// left). Pack state and any bound pixel-pack buffer are left as found.
RGBA8 readPixelRGBA8(int x, int y);
RGBAf readPixelFloat(int x, int y);
float readDepth     (int x, int y);

} // namespace testsupport

#endif
