#include "support/Builders.h"
#include "support/GLTest.h"
#include "support/PixelProbe.h"
#include "support/SceneSetup.h"
#include "support/TextureImage.h"

#include <OpenSG/OSGChunkMaterial.h>
#include <OpenSG/OSGFBOViewport.h>
#include <OpenSG/OSGImage.h>
#include <OpenSG/OSGSHLChunk.h>
#include <OpenSG/OSGTextureChunk.h>

#include <malloc.h>

using namespace osg;
using testsupport::addChild;
using testsupport::makeImage;
using testsupport::makeRect;
using testsupport::makeUnlitMaterial;
using testsupport::SceneSetup;

namespace
{

TextureChunkPtr makeTarget(int size, GLenum internalFormat, UInt32 pixelFormat, Int32 type)
{
    TextureChunkPtr tex = TextureChunk::create();
    beginEditCP(tex);
    tex->setImage(makeImage(pixelFormat, size, size, type));
    tex->setInternalFormat(internalFormat);
    tex->setExternalFormat(pixelFormat);
    tex->setMinFilter(GL_NEAREST);
    tex->setMagFilter(GL_NEAREST);
    tex->setWrapS(GL_CLAMP_TO_EDGE);
    tex->setWrapT(GL_CLAMP_TO_EDGE);
    endEditCP(tex);
    return tex;
}

TextureChunkPtr makeColorTarget(int size)
{
    return makeTarget(size, GL_RGBA8, Image::OSG_RGBA_PF, Image::OSG_UINT8_IMAGEDATA);
}

TextureChunkPtr makeDepthTarget(int size)
{
    return makeTarget(size, GL_DEPTH_COMPONENT24, GL_DEPTH_COMPONENT, Image::OSG_FLOAT32_IMAGEDATA);
}

// An FBOViewport of the given pixel size on the setup's window, rendering
// the setup's camera and background.
FBOViewportPtr makeFBOViewport(SceneSetup &setup, int width, int height, NodePtr root)
{
    FBOViewportPtr fbo = testsupport::held(FBOViewport::create());
    beginEditCP(fbo);
    fbo->setParent(setup.window);
    fbo->setCamera(setup.camera);
    fbo->setBackground(setup.background);
    fbo->setRoot(root);
    fbo->setSize(0.f, 0.f, Real32(width - 1), Real32(height - 1));
    fbo->setStorageWidth(width);
    fbo->setStorageHeight(height);
    endEditCP(fbo);
    return fbo;
}

void addTexture(FBOViewportPtr fbo, TextureChunkPtr tex)
{
    addRefCP(tex);
    testsupport::editCP(fbo, FBOViewport::TexturesFieldMask,
                        [&] { fbo->getTextures().push_back(tex); });
}

void releaseTextures(FBOViewportPtr fbo)
{
    for(UInt32 i = 0; i < fbo->getTextures().size(); ++i)
        subRefCP(fbo->getTextures(i));
    subRefCP(fbo);
}

MaterialPtr makeShaderMaterial(const std::string &fragmentProgram)
{
    SHLChunkPtr shl = SHLChunk::create();
    beginEditCP(shl);
    shl->setVertexProgram("void main() { gl_Position = ftransform(); }\n");
    shl->setFragmentProgram(fragmentProgram);
    endEditCP(shl);
    return testsupport::makeChunkMaterial({ shl });
}

class FBOViewportTest : public testsupport::GLTest
{
  protected:
    void TearDown() override { glDisable(GL_SCISSOR_TEST); GLTest::TearDown(); }
};

// The depth texture sits between the colour textures in the list: it goes
// to the depth attachment, the others keep their order as attachments 0..3.
TEST_F(FBOViewportTest, ShaderFillsFourColourTexturesAndTheDepthTexture)
{
    const int size = 32;
    const float outputs[4][4] = { { 1.0f, 0.0f, 0.0f, 1.0f },
                                  { 0.0f, 0.6f, 0.0f, 0.2f },
                                  { 0.0f, 0.0f, 0.4f, 1.0f },
                                  { 0.8f, 0.2f, 0.6f, 0.4f } };
    std::string fragment = "void main()\n{\n";
    for(int i = 0; i < 4; ++i)
    {
        fragment += "    gl_FragData[" + std::to_string(i) + "] = vec4(";
        for(int c = 0; c < 4; ++c)
            fragment += std::to_string(outputs[i][c]) + (c < 3 ? ", " : ");\n");
    }
    fragment += "}\n";

    SceneSetup setup(64, 64);
    testsupport::editCP(setup.background, [&] { setup.background->setAlpha(0.f); });
    NodePtr scene = testsupport::makeGroupNode();
    addRefCP(scene);
    // Left half only, at z = 0: depth 0.5 there, the cleared 1 elsewhere.
    addChild(scene, makeRect(-1.f, -1.f, 0.f, 1.f, 0.f, makeShaderMaterial(fragment)));

    FBOViewportPtr fbo = makeFBOViewport(setup, size, size, scene);
    TextureChunkPtr colors[4] = { makeColorTarget(size), makeColorTarget(size),
                                  makeColorTarget(size), makeColorTarget(size) };
    TextureChunkPtr depth = makeDepthTarget(size);
    addTexture(fbo, colors[0]);
    addTexture(fbo, colors[1]);
    addTexture(fbo, depth);
    addTexture(fbo, colors[2]);
    addTexture(fbo, colors[3]);

    GLint before = -1;
    glGetIntegerv(GL_FRAMEBUFFER_BINDING, &before);
    setup.action->setWindow(getCPtr(setup.window));
    fbo->render(setup.action);

    GLint after = -1;
    glGetIntegerv(GL_FRAMEBUFFER_BINDING, &after);
    EXPECT_EQ(after, before) << "the framebuffer bound before is bound again";

    // 8-bit targets: half a step of rounding.
    const float tol = 0.6f / 255.f;
    for(int i = 0; i < 4; ++i)
    {
        SCOPED_TRACE(testing::Message() << "texture " << i);
        const testsupport::TextureImage data(colors[i]);
        ASSERT_EQ(data.width(), size);
        for(int c = 0; c < 4; ++c)
        {
            EXPECT_NEAR(data.at(4, 16, c), outputs[i][c], tol);
            EXPECT_NEAR(data.at(28, 16, c), 0.f, tol) << "background";
        }
    }
    // 24-bit depth.
    EXPECT_NEAR(testsupport::depthTexel(depth, 4,  16), 0.5f, 1e-5);
    EXPECT_NEAR(testsupport::depthTexel(depth, 28, 16), 1.0f, 1e-5);

    releaseTextures(fbo);
    subRefCP(scene);
}

TEST_F(FBOViewportTest, WithoutFramebufferObjectsTheImageIsCopiedIntoTheTexture)
{
    SceneSetup setup(64, 64);
    setup.action->setWindow(getCPtr(setup.window));

    NodePtr scene = testsupport::makeGroupNode();
    addRefCP(scene);
    addChild(scene, makeRect(-1.f, -1.f, 0.f, 1.f, 0.f, makeUnlitMaterial(Color3f(1.f, 0.f, 0.f))));

    const int size = 16;
    FBOViewportPtr fbo = makeFBOViewport(setup, size, size, scene);
    testsupport::editCP(fbo, FBOViewport::FboOnFieldMask, [&] { fbo->setFboOn(false); });
    TextureChunkPtr color = makeColorTarget(size);
    addTexture(fbo, color);

    fbo->render(setup.action);

    const testsupport::TextureImage data(color);
    EXPECT_FLOAT_EQ(data.at(4,  8, 0), 1.f);
    EXPECT_FLOAT_EQ(data.at(12, 8, 0), 0.f);
    EXPECT_FLOAT_EQ(data.at(12, 8, 3), 1.f);

    releaseTextures(fbo);
    subRefCP(scene);
}

double heapMegabytes(void)
{
    malloc_trim(0);
    const struct mallinfo2 info = mallinfo2();
    return double(info.uordblks + info.hblkhd) / 1048576.0;
}

// Some drivers keep the last drawn framebuffer's storage alive after it is
// deleted; a destroyed target must still give its memory back.
TEST_F(FBOViewportTest, DestroyedTargetGivesItsMemoryBack)
{
    SceneSetup setup(64, 64);
    setup.action->setWindow(getCPtr(setup.window));
    NodePtr scene = testsupport::makeGroupNode();
    addRefCP(scene);
    addChild(scene, makeRect(-1.f, -1.f, 1.f, 1.f, 0.f, makeUnlitMaterial(Color3f(1.f, 0.f, 0.f))));

    double before = 0.0;
    // A small target first, so that the driver's per-format code is made.
    for(int size : { 8, 1024 })
    {
        before = heapMegabytes();
        FBOViewportPtr fbo = makeFBOViewport(setup, size, size, scene);
        addTexture(fbo, makeTarget(size, GL_RGBA32F, Image::OSG_RGBA_PF, Image::OSG_FLOAT32_IMAGEDATA));
        fbo->render(setup.action);
        glFinish();
        releaseTextures(fbo);
        setup.window->frameExit();
        glFinish();
    }
    // 16 MB of colour and 4 MB of depth were drawn.
    EXPECT_LT(heapMegabytes(), before + 1.0) << before;
    subRefCP(scene);
}

} // namespace
