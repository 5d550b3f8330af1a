#ifndef TESTS_LUMORA_POSTPROCESS_POSTPROCESSORTEST_H
#define TESTS_LUMORA_POSTPROCESS_POSTPROCESSORTEST_H

#include <Lumora/OSGRenderTarget.h>

#include "support/DeferredScene.h"

#include <functional>
#include <memory>
#include <vector>

namespace posttest
{

// What a G-buffer holds at one pixel, before encoding.
struct Surface
{
    bool        geometry;
    osg::Vec3f  normal;
    osg::Real32 depth; // linear eye depth
};

// Inputs of a post-processor built by hand: a Size x Size window and render
// action, a G-buffer of two float textures (0 the encoded normals with alpha
// 1 where geometry is, 1 the stored depth in red), and a scene image.
class PostProcessorTest : public testsupport::WindowTest
{
  public:
    static constexpr int         Size = 64;
    static constexpr osg::Real32 Near = 1.0f;
    static constexpr osg::Real32 Far  = 100.0f;

  protected:
    void TearDown() override;

    // Texture 0 the normals, texture 1 the depth, sampled nearest so that
    // every lookup hits one texel; pass 2 as the texture count.
    osg::RenderTarget &makeGBuffer(const std::function<Surface(int, int)> &surface);

    // RGB = colour(x, y), linearly filtered as the lit image is.
    osg::TextureChunkPtr makeScene(const std::function<osg::Vec3f(int, int)> &colour);

    // The depth-buffer value that the camera's near and far map back to
    // the linear depth.
    static osg::Real32 storedDepth(osg::Real32 linearDepth);

  private:
    std::unique_ptr<osg::RenderTarget> _gbuffer;
    std::vector<osg::TextureChunkPtr>  _textures;
};

} // namespace posttest

#endif
