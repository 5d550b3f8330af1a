#include "PostProcessorTest.h"

#include "support/FloatTexture.h"

using namespace osg;

namespace posttest
{

void PostProcessorTest::TearDown()
{
    _gbuffer.reset();
    for(TextureChunkPtr texture : _textures)
        subRefCP(texture);
    _textures.clear();
    WindowTest::TearDown();
}

RenderTarget &PostProcessorTest::makeGBuffer(const std::function<Surface(int, int)> &surface)
{
    TextureChunkPtr normals = testsupport::makeFloatTexture(Size, Size, [&](int x, int y) {
        const Surface s = surface(x, y);
        if(!s.geometry)
            return Vec4f(0, 0, 0, 0);
        Vec3f n = s.normal;
        n.normalize();
        return Vec4f(n[0] * 0.5f + 0.5f, n[1] * 0.5f + 0.5f, n[2] * 0.5f + 0.5f, 1.0f);
    }, GL_NEAREST);
    TextureChunkPtr depth = testsupport::makeFloatTexture(Size, Size, [&](int x, int y) {
        const Surface s = surface(x, y);
        const Real32  z = s.geometry ? storedDepth(s.depth) : 1.0f;
        return Vec4f(z, z, z, 1.0f);
    }, GL_NEAREST);
    _textures.push_back(normals);
    _textures.push_back(depth);

    _gbuffer.reset(new RenderTarget());
    _gbuffer->initialize(window, 0, 0, Size - 1, Size - 1);
    _gbuffer->addTargetTexture(normals);
    _gbuffer->addTargetTexture(depth);
    return *_gbuffer;
}

TextureChunkPtr PostProcessorTest::makeScene(const std::function<Vec3f(int, int)> &colour)
{
    TextureChunkPtr scene = testsupport::makeFloatTexture(Size, Size, [&](int x, int y) {
        const Vec3f c = colour(x, y);
        return Vec4f(c[0], c[1], c[2], 1.0f);
    }, GL_LINEAR);
    _textures.push_back(scene);
    return scene;
}

Real32 PostProcessorTest::storedDepth(Real32 linearDepth)
{
    return (Far - Near * Far / linearDepth) / (Far - Near);
}

} // namespace posttest
