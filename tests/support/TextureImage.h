#ifndef TESTS_SUPPORT_TEXTUREIMAGE_H
#define TESTS_SUPPORT_TEXTUREIMAGE_H

#include <OpenSG/OSGTextureChunk.h>

#include <vector>

namespace testsupport
{

struct WeightRounding { int weightBits = 0; bool upX = false; bool upY = false; };

// Level 0 of a 2D texture chunk's GL texture, read at once as RGBA float;
// rows from the bottom.
class TextureImage
{
  public:
    explicit TextureImage(osg::TextureChunkPtr texture);
    // All zero, for building an expected image in.
    TextureImage(int width, int height);

    int width () const { return _width;  }
    int height() const { return _height; }

    float  at(int x, int y, int channel) const { return _texels[index(x, y, channel)]; }
    float &at(int x, int y, int channel)       { return _texels[index(x, y, channel)]; }

    // RGBA, row by row from the bottom.
    const std::vector<float> &texels() const { return _texels; }

    // Largest magnitude of the colour channels anywhere.
    float maxValue() const;

    // What lies past the edge: the edge texels, or, as with GL_CLAMP and a
    // black border, the coordinate clamped to [0, 1] and the border mixed in.
    enum Edge { EdgeTexels, BlackBorder };

    // GL's bilinear lookup at texture coordinate (u, v). With weightBits,
    // the weights are cut to that many fractional bits, rounded up or down
    // along each axis, as a texture unit may do.
    float bilinear(float u, float v, int channel, Edge edge = EdgeTexels,
                   const WeightRounding &rounding = WeightRounding()) const;

  private:
    std::size_t index(int x, int y, int channel) const
    {
        return (std::size_t(y) * std::size_t(_width) + std::size_t(x)) * 4 + std::size_t(channel);
    }

    int                _width  = 0;
    int                _height = 0;
    std::vector<float> _texels;
};

// One texel of a depth texture's level 0.
float depthTexel(osg::TextureChunkPtr texture, int x, int y);

} // namespace testsupport

#endif
