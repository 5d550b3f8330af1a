#ifndef TESTS_SUPPORT_FLOATTEXTURE_H
#define TESTS_SUPPORT_FLOATTEXTURE_H

#include <OpenSG/OSGTextureChunk.h>
#include <OpenSG/OSGVector.h>

#include <functional>

namespace testsupport
{

// A width x height RGBA 32-bit float texture with texel (x, y) = f(x, y),
// linear filtering, clamped to its edge texels. The caller holds the one
// reference and releases it with subRefCP.
osg::TextureChunkPtr makeFloatTexture(int width, int height,
                                      const std::function<osg::Vec4f(int, int)> &f);

} // namespace testsupport

#endif
