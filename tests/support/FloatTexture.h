#ifndef TESTS_SUPPORT_FLOATTEXTURE_H
#define TESTS_SUPPORT_FLOATTEXTURE_H

#include <OpenSG/OSGGL.h>
#include <OpenSG/OSGTextureChunk.h>
#include <OpenSG/OSGVector.h>

#include <functional>

namespace testsupport
{

// A width x height RGBA 32-bit float texture with texel (x, y) = f(x, y),
// rows from the bottom, clamped to its edge texels; filter is the GL
// minification and magnification filter. The caller holds the one
// reference and releases it with subRefCP.
osg::TextureChunkPtr makeFloatTexture(int width, int height,
                                      const std::function<osg::Vec4f(int, int)> &f,
                                      osg::UInt32 filter = GL_LINEAR);

} // namespace testsupport

#endif
