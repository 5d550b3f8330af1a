#include "support/PixelProbe.h"


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
        glGetIntegerv(GL_PIXEL_PACK_BUFFER_BINDING, &_packBuffer);
        glBindBuffer(GL_PIXEL_PACK_BUFFER, 0);
        for(int i = 0; i < 4; ++i)
        {
            glGetIntegerv(Names[i], &_saved[i]);
            glPixelStorei(Names[i], i == 0 ? 1 : 0);
        }
    }

    ~PackStateGuard()
    {
        for(int i = 0; i < 4; ++i)
            glPixelStorei(Names[i], _saved[i]);
        glBindBuffer(GL_PIXEL_PACK_BUFFER, GLuint(_packBuffer));
    }

  private:
    static constexpr GLenum Names[4] = {GL_PACK_ALIGNMENT, GL_PACK_ROW_LENGTH,
                                        GL_PACK_SKIP_ROWS, GL_PACK_SKIP_PIXELS};
    GLint _saved[4]   = {4, 0, 0, 0};
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

} // namespace testsupport
