#include "support/TextureImage.h"

#include <epoxy/gl.h>

#include <algorithm>
#include <cmath>

namespace testsupport
{

TextureImage::TextureImage(osg::TextureChunkPtr texture)
{
    GLint previous = 0;
    glGetIntegerv(GL_TEXTURE_BINDING_2D, &previous);
    glBindTexture(GL_TEXTURE_2D, texture->getGLTextureName());
    glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, GL_TEXTURE_WIDTH,  &_width);
    glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, GL_TEXTURE_HEIGHT, &_height);
    _texels.assign(std::size_t(_width) * std::size_t(_height) * 4, 0.0f);
    GLint alignment = 4;
    glGetIntegerv(GL_PACK_ALIGNMENT, &alignment);
    glPixelStorei(GL_PACK_ALIGNMENT, 4);
    glGetTexImage(GL_TEXTURE_2D, 0, GL_RGBA, GL_FLOAT, _texels.data());
    glPixelStorei(GL_PACK_ALIGNMENT, alignment);
    glBindTexture(GL_TEXTURE_2D, GLuint(previous));
}

float depthTexel(osg::TextureChunkPtr texture, int x, int y)
{
    GLint previous = 0, width = 0, height = 0;
    glGetIntegerv(GL_TEXTURE_BINDING_2D, &previous);
    glBindTexture(GL_TEXTURE_2D, texture->getGLTextureName());
    glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, GL_TEXTURE_WIDTH,  &width);
    glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, GL_TEXTURE_HEIGHT, &height);
    std::vector<float> depth(std::size_t(width) * std::size_t(height));
    glGetTexImage(GL_TEXTURE_2D, 0, GL_DEPTH_COMPONENT, GL_FLOAT, depth.data());
    glBindTexture(GL_TEXTURE_2D, GLuint(previous));
    return depth.at(std::size_t(y) * std::size_t(width) + std::size_t(x));
}

float TextureImage::maxValue() const
{
    float result = 0.0f;
    for(int y = 0; y < _height; ++y)
        for(int x = 0; x < _width; ++x)
            for(int c = 0; c < 3; ++c)
                result = std::max(result, std::fabs(at(x, y, c)));
    return result;
}

TextureImage::TextureImage(int width, int height) :
    _width(width),
    _height(height),
    _texels(std::size_t(width) * std::size_t(height) * 4, 0.0f)
{
}

float TextureImage::bilinear(float u, float v, int channel, Edge edge,
                             const WeightRounding &rounding) const
{
    if(edge == BlackBorder)
    {
        u = std::min(std::max(u, 0.0f), 1.0f);
        v = std::min(std::max(v, 0.0f), 1.0f);
    }
    const float fx = u * _width  - 0.5f;
    const float fy = v * _height - 0.5f;
    const int   x0 = int(std::floor(fx));
    const int   y0 = int(std::floor(fy));
    float       ax = fx - x0;
    float       ay = fy - y0;
    if(rounding.weightBits > 0)
    {
        const float steps = float(1 << rounding.weightBits);
        ax = (rounding.upX ? std::ceil(ax * steps) : std::floor(ax * steps)) / steps;
        ay = (rounding.upY ? std::ceil(ay * steps) : std::floor(ay * steps)) / steps;
    }
    auto texel = [&](int x, int y) {
        if(edge == BlackBorder && (x < 0 || y < 0 || x >= _width || y >= _height))
            return 0.0f;
        return at(std::min(std::max(x, 0), _width  - 1),
                  std::min(std::max(y, 0), _height - 1), channel);
    };
    // In this form equal ends give exactly their value, as a GPU's lerp does.
    auto lerp = [](float a, float b, float f) { return a + f * (b - a); };
    return lerp(lerp(texel(x0, y0    ), texel(x0 + 1, y0    ), ax),
                lerp(texel(x0, y0 + 1), texel(x0 + 1, y0 + 1), ax), ay);
}

} // namespace testsupport
