#include "support/PixelProbe.h"

#include <limits>
#include <vector>

namespace testsupport
{

namespace
{

// Restores what a test may have set, so a probe never changes the outcome
// of the code under test.
class PackStateGuard
{
  public:
    PackStateGuard()
    {
        glGetIntegerv(GL_PACK_ALIGNMENT,         &_alignment);
        glGetIntegerv(GL_PACK_ROW_LENGTH,        &_rowLength);
        glGetIntegerv(GL_PACK_SKIP_ROWS,         &_skipRows);
        glGetIntegerv(GL_PACK_SKIP_PIXELS,       &_skipPixels);
        glGetIntegerv(GL_PIXEL_PACK_BUFFER_BINDING, &_packBuffer);

        glPixelStorei(GL_PACK_ALIGNMENT,   1);
        glPixelStorei(GL_PACK_ROW_LENGTH,  0);
        glPixelStorei(GL_PACK_SKIP_ROWS,   0);
        glPixelStorei(GL_PACK_SKIP_PIXELS, 0);
        glBindBuffer(GL_PIXEL_PACK_BUFFER, 0);
    }

    ~PackStateGuard()
    {
        glPixelStorei(GL_PACK_ALIGNMENT,   _alignment);
        glPixelStorei(GL_PACK_ROW_LENGTH,  _rowLength);
        glPixelStorei(GL_PACK_SKIP_ROWS,   _skipRows);
        glPixelStorei(GL_PACK_SKIP_PIXELS, _skipPixels);
        glBindBuffer(GL_PIXEL_PACK_BUFFER, GLuint(_packBuffer));
    }

  private:
    GLint _alignment  = 4;
    GLint _rowLength  = 0;
    GLint _skipRows   = 0;
    GLint _skipPixels = 0;
    GLint _packBuffer = 0;
};

} // namespace

std::ostream &operator<<(std::ostream &os, const RGBA8 &c)
{
    return os << "(" << int(c.r) << ", " << int(c.g) << ", " << int(c.b)
              << ", " << int(c.a) << ")";
}

RGBA8 readPixelRGBA8(int x, int y)
{
    PackStateGuard guard;
    RGBA8 pixel = { 0, 0, 0, 0 };
    glReadPixels(x, y, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, &pixel);
    return pixel;
}

RGBAf readPixelFloat(int x, int y)
{
    PackStateGuard guard;
    RGBAf pixel = { { 0.0f, 0.0f, 0.0f, 0.0f } };
    glReadPixels(x, y, 1, 1, GL_RGBA, GL_FLOAT, pixel.data());
    return pixel;
}

float readDepth(int x, int y)
{
    PackStateGuard guard;
    float depth = -1.0f;
    glReadPixels(x, y, 1, 1, GL_DEPTH_COMPONENT, GL_FLOAT, &depth);
    return depth;
}

RGBAf readTexelFloat(int x, int y, GLenum target, int level)
{
    PackStateGuard guard;
    GLint width = 0, height = 0;
    glGetTexLevelParameteriv(target, level, GL_TEXTURE_WIDTH,  &width);
    glGetTexLevelParameteriv(target, level, GL_TEXTURE_HEIGHT, &height);

    // NaN fails every comparison, so a probe off the texture cannot pass.
    const float nan = std::numeric_limits<float>::quiet_NaN();
    RGBAf texel = { { nan, nan, nan, nan } };
    if(x < 0 || y < 0 || x >= width || y >= height)
        return texel;

    std::vector<float> image(size_t(width) * size_t(height) * 4);
    glGetTexImage(target, level, GL_RGBA, GL_FLOAT, image.data());
    const size_t at = (size_t(y) * size_t(width) + size_t(x)) * 4;
    for(size_t c = 0; c < 4; ++c)
        texel[c] = image[at + c];
    return texel;
}

} // namespace testsupport
