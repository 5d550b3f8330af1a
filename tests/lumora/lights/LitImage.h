#ifndef TESTS_LUMORA_LIGHTS_LITIMAGE_H
#define TESTS_LUMORA_LIGHTS_LITIMAGE_H

#include <Lumora/DeferredRenderingViewport.h>

#include <OpenSG/OSGMatrix.h>

#include "support/PixelProbe.h"

#include <algorithm>
#include <cmath>
#include <sstream>
#include <string>
#include <vector>

namespace lighttest
{

// The whole lit image (light target texture 0) in one read, rows from the
// bottom, as the probes address it.
class LitImage
{
  public:
    explicit LitImage(osg::DeferredRenderingViewportPtr viewport)
    {
        osg::TextureChunkPtr texture = viewport->getLightTarget().getTargetTexture(0);
        glBindTexture(GL_TEXTURE_2D, texture->getGLTextureName());
        glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, GL_TEXTURE_WIDTH,  &_width);
        glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, GL_TEXTURE_HEIGHT, &_height);
        _texels.assign(std::size_t(_width) * std::size_t(_height) * 4, 0.0f);
        glPixelStorei(GL_PACK_ALIGNMENT, 4);
        glGetTexImage(GL_TEXTURE_2D, 0, GL_RGBA, GL_FLOAT, _texels.data());
        glBindTexture(GL_TEXTURE_2D, 0);
    }

    int width () const { return _width;  }
    int height() const { return _height; }

    float at(int x, int y, int channel) const
    {
        return _texels[(std::size_t(y) * std::size_t(_width) + std::size_t(x)) * 4 + channel];
    }

    // Largest colour channel anywhere.
    float maxValue() const
    {
        float result = 0.0f;
        for(int y = 0; y < _height; ++y)
            for(int x = 0; x < _width; ++x)
                for(int c = 0; c < 3; ++c)
                    result = std::max(result, std::fabs(at(x, y, c)));
        return result;
    }

  private:
    int                _width  = 0;
    int                _height = 0;
    std::vector<float> _texels;
};

// Collects pixels outside their expected range, so that a wrong image
// reports a few of them rather than thousands. The tolerance is absolute
// plus 1 % of the expected value, for the half-float lit image.
class PixelMismatches
{
  public:
    explicit PixelMismatches(float tolerance = 0.01f) : _tolerance(tolerance) {}

    void check(int x, int y, int channel, float got, float low, float high)
    {
        const float tolerance = _tolerance + 0.01f * std::fabs(high);
        if(got >= low - tolerance && got <= high + tolerance)
            return;
        if(++_count <= 5)
            _text << "pixel " << x << "," << y << " channel " << channel << ": got " << got
                  << ", expected " << low << ".." << high << "\n";
    }

    int         count() const { return _count; }
    std::string text () const { return _text.str(); }

  private:
    float              _tolerance;
    int                _count = 0;
    std::ostringstream _text;
};

// The shininess reaches the light pass as log2(s) / 8 in eight bits, so the
// shader sees s up to half a step away in log2.
inline osg::Real32 shininessLow (osg::Real32 s) { return s * std::pow(2.0f, -4.0f / 255.0f); }
inline osg::Real32 shininessHigh(osg::Real32 s) { return s * std::pow(2.0f,  4.0f / 255.0f); }

// Rotation by angle (radians) about X followed by a translation, written out
// row by row.
inline osg::Matrix rotateXThenTranslate(osg::Real32 angle, const osg::Vec3f &t)
{
    const osg::Real32 c = std::cos(angle);
    const osg::Real32 s = std::sin(angle);
    osg::Matrix m;
    m.setValue(1, 0,  0, t[0],
               0, c, -s, t[1],
               0, s,  c, t[2],
               0, 0,  0, 1);
    return m;
}

} // namespace lighttest

#endif
