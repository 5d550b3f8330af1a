#include "support/Builders.h"
#include "support/GLTest.h"
#include "support/LiveObjects.h"
#include "support/PixelProbe.h"
#include "support/SceneSetup.h"
#include "support/TextureImage.h"

#include <OpenSG/OSGChunkMaterial.h>
#include <OpenSG/OSGCubeTextureChunk.h>
#include <OpenSG/OSGFBOViewport.h>
#include <OpenSG/OSGImage.h>
#include <OpenSG/OSGPolygonForeground.h>
#include <OpenSG/OSGSHLChunk.h>
#include <OpenSG/OSGTextureChunk.h>

#include <vector>

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

// One texel of a depth texture's level 0.
float depthAt(TextureChunkPtr tex, int x, int y)
{
    glActiveTexture(GL_TEXTURE0);
    glBindTexture(GL_TEXTURE_2D, tex->getGLTextureName());
    GLint width = 0, height = 0;
    glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, GL_TEXTURE_WIDTH,  &width);
    glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, GL_TEXTURE_HEIGHT, &height);
    std::vector<float> data(size_t(width) * size_t(height));
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glGetTexImage(GL_TEXTURE_2D, 0, GL_DEPTH_COMPONENT, GL_FLOAT, data.data());
    glBindTexture(GL_TEXTURE_2D, 0);
    return data.at(size_t(y) * size_t(width) + size_t(x));
}

// An FBOViewport of the given pixel size on the setup's window, rendering
// the setup's camera and background.
FBOViewportPtr makeFBOViewport(SceneSetup &setup, int width, int height, NodePtr root)
{
    FBOViewportPtr fbo = FBOViewport::create();
    addRefCP(fbo);
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
    beginEditCP(fbo, FBOViewport::TexturesFieldMask);
    fbo->getTextures().push_back(tex);
    endEditCP(fbo, FBOViewport::TexturesFieldMask);
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
    beginEditCP(setup.background);
    setup.background->setAlpha(0.f);
    endEditCP(setup.background);
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
    EXPECT_NEAR(depthAt(depth, 4,  16), 0.5f, 1e-5);
    EXPECT_NEAR(depthAt(depth, 28, 16), 1.0f, 1e-5);

    releaseTextures(fbo);
    subRefCP(scene);
}

// The second viewport does not clear depth: the first one's depth decides
// which of its quads survive, also after both are resized.
TEST_F(FBOViewportTest, TwoViewportsShareOneDepthTextureAcrossAResize)
{
    SceneSetup setup(64, 64);
    setup.action->setWindow(getCPtr(setup.window));

    NodePtr first = testsupport::makeGroupNode();
    addRefCP(first);
    addChild(first, testsupport::makeFullQuad(0.f, makeUnlitMaterial(Color3f(1.f, 0.f, 0.f))));

    // Behind the first quad on the left, in front of it on the right.
    NodePtr second = testsupport::makeGroupNode();
    addRefCP(second);
    addChild(second, makeRect(-1.f, -1.f, 0.f, 1.f, -1.f, makeUnlitMaterial(Color3f(0.f, 1.f, 0.f))));
    addChild(second, makeRect( 0.f, -1.f, 1.f, 1.f,  1.f, makeUnlitMaterial(Color3f(0.f, 0.f, 1.f))));

    SolidBackgroundPtr keepDepth = SolidBackground::create();
    addRefCP(keepDepth);
    beginEditCP(keepDepth);
    keepDepth->setColor(Color3f(0.5f, 0.5f, 0.5f));
    keepDepth->setClearDepth(false);
    endEditCP(keepDepth);

    int size = 32;
    TextureChunkPtr depth  = makeDepthTarget(size);
    TextureChunkPtr colorA = makeColorTarget(size);
    TextureChunkPtr colorB = makeColorTarget(size);

    FBOViewportPtr fboA = makeFBOViewport(setup, size, size, first);
    addTexture(fboA, colorA);
    addTexture(fboA, depth);
    FBOViewportPtr fboB = makeFBOViewport(setup, size, size, second);
    beginEditCP(fboB, Viewport::BackgroundFieldMask);
    fboB->setBackground(keepDepth);
    endEditCP(fboB, Viewport::BackgroundFieldMask);
    addTexture(fboB, depth);
    addTexture(fboB, colorB);

    for(int round = 0; round < 2; ++round)
    {
        SCOPED_TRACE(round == 0 ? "first size" : "after resize");
        if(round == 1)
        {
            size = 16;
            for(TextureChunkPtr tex : { depth, colorA, colorB })
            {
                ImagePtr old = tex->getImage();
                beginEditCP(tex, TextureChunk::ImageFieldMask);
                tex->setImage(makeImage(old->getPixelFormat(), size, size, old->getDataType()));
                endEditCP(tex, TextureChunk::ImageFieldMask);
            }
            for(FBOViewportPtr fbo : { fboA, fboB })
            {
                beginEditCP(fbo);
                fbo->setSize(0.f, 0.f, Real32(size - 1), Real32(size - 1));
                fbo->setStorageWidth(size);
                fbo->setStorageHeight(size);
                fbo->setDirty(true);
                endEditCP(fbo);
            }
        }

        fboA->render(setup.action);
        fboB->render(setup.action);

        const testsupport::TextureImage data(colorB);
        ASSERT_EQ(data.width(), size);
        const float tol = 0.6f / 255.f;
        // Left: the green quad is hidden, the background colour remains.
        EXPECT_NEAR(data.at(size / 4, size / 2, 0), 0.5f, 1.f / 255.f);
        EXPECT_NEAR(data.at(size / 4, size / 2, 1), 0.5f, 1.f / 255.f);
        // Right: blue in front.
        EXPECT_NEAR(data.at(3 * size / 4, size / 2, 0), 0.f, tol);
        EXPECT_NEAR(data.at(3 * size / 4, size / 2, 2), 1.f, tol);
        EXPECT_NEAR(depthAt(depth, size / 4,     size / 2), 0.5f,   1e-5);
        EXPECT_NEAR(depthAt(depth, 3 * size / 4, size / 2), 0.375f, 1e-5);
    }

    releaseTextures(fboA);
    releaseTextures(fboB);
    subRefCP(keepDepth);
    subRefCP(first);
    subRefCP(second);
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
    beginEditCP(fbo, FBOViewport::FboOnFieldMask);
    fbo->setFboOn(false);
    endEditCP(fbo, FBOViewport::FboOnFieldMask);
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

TEST_F(FBOViewportTest, HalfFloatTargetKeepsValuesAboveOne)
{
    const float values[3] = { 2.5f, 7.25f, 0.125f };   // exact in half floats
    SceneSetup setup(64, 64);
    setup.action->setWindow(getCPtr(setup.window));

    NodePtr scene = testsupport::makeGroupNode();
    addRefCP(scene);
    addChild(scene, testsupport::makeFullQuad(0.f, makeShaderMaterial(
        "void main()\n"
        "{\n"
        "    gl_FragData[0] = vec4(2.5, 7.25, 0.125, 1.0);\n"
        "}\n")));

    const int size = 8;
    FBOViewportPtr fbo = makeFBOViewport(setup, size, size, scene);
    TextureChunkPtr hdr = makeTarget(size, GL_RGB16F_ARB, Image::OSG_RGB_PF,
                                     Image::OSG_FLOAT16_IMAGEDATA);
    addTexture(fbo, hdr);

    fbo->render(setup.action);

    const testsupport::TextureImage data(hdr);
    for(int c = 0; c < 3; ++c)
        EXPECT_FLOAT_EQ(data.at(3, 3, c), values[c]);

    releaseTextures(fbo);
    subRefCP(scene);
}

struct FaceCase
{
    const char *face;
    Vec3f       direction;
    int         index;      // into the colour table below
};

// Images: -Z (the inherited Image field), +Z, +X, -X, +Y, -Y.
const Color3f s_faceColors[6] = {
    Color3f(1.f, 0.f, 0.f), Color3f(0.f, 1.f, 0.f), Color3f(0.f, 0.f, 1.f),
    Color3f(1.f, 1.f, 0.f), Color3f(0.f, 1.f, 1.f), Color3f(1.f, 0.f, 1.f) };

const FaceCase s_faceCases[] = {
    { "-Z", Vec3f( 0.f,  0.f, -1.f), 0 },
    { "+Z", Vec3f( 0.f,  0.f,  1.f), 1 },
    { "+X", Vec3f( 1.f,  0.f,  0.f), 2 },
    { "-X", Vec3f(-1.f,  0.f,  0.f), 3 },
    { "+Y", Vec3f( 0.f,  1.f,  0.f), 4 },
    { "-Y", Vec3f( 0.f, -1.f,  0.f), 5 },
};

ImagePtr makeFaceImage(const Color3f &color)
{
    ImagePtr img = makeImage(Image::OSG_RGB_PF, 1, 1);
    UInt8 *data = img->editData();
    for(int c = 0; c < 3; ++c)
        data[c] = UInt8(color[c] * 255.f);
    return img;
}

// A polygon foreground with one texture coordinate everywhere samples one
// face of the cube texture over the whole viewport.
TEST_F(FBOViewportTest, CubeTextureLookupPicksTheFaceOfTheDirection)
{
    CubeTextureChunkPtr cube = CubeTextureChunk::create();
    ImagePtr faces[6];
    for(int i = 0; i < 6; ++i)
        faces[i] = makeFaceImage(s_faceColors[i]);
    beginEditCP(cube);
    cube->setImage(faces[0]);
    cube->setPosZImage(faces[1]);
    cube->setPosXImage(faces[2]);
    cube->setNegXImage(faces[3]);
    cube->setPosYImage(faces[4]);
    cube->setNegYImage(faces[5]);
    cube->setMinFilter(GL_NEAREST);
    cube->setMagFilter(GL_NEAREST);
    endEditCP(cube);

    ChunkMaterialPtr mat = testsupport::makeChunkMaterial({ cube });

    for(const FaceCase &c : s_faceCases)
    {
        SCOPED_TRACE(c.face);
        SceneSetup setup(16, 16);

        PolygonForegroundPtr fg = PolygonForeground::create();
        beginEditCP(fg);
        fg->setMaterial(mat);
        const Pnt2f corners[4] = { Pnt2f(0.f, 0.f), Pnt2f(1.f, 0.f),
                                   Pnt2f(1.f, 1.f), Pnt2f(0.f, 1.f) };
        for(const Pnt2f &corner : corners)
        {
            fg->getPositions().push_back(corner);
            fg->getTexCoords().push_back(c.direction);
        }
        endEditCP(fg);
        setup.viewport->addForeground(fg);

        setup.render();

        testsupport::RGBAf pixel = testsupport::readPixelFloat(8, 8);
        const Color3f &expected = s_faceColors[c.index];
        for(int ch = 0; ch < 3; ++ch)
            EXPECT_NEAR(pixel[ch], expected[ch], 0.6f / 255.f);
    }
}

// The framebuffer and depth renderbuffer of a viewport go with it, also
// those replaced by a resize; the window deletes them at its frame end.
TEST_F(FBOViewportTest, DestroyedViewportDeletesItsFramebufferAndRenderbuffers)
{
    SceneSetup setup(16, 16);
    setup.window->frameExit();
    const testsupport::LiveObjects before = testsupport::LiveObjects::count();

    FBOViewportPtr fbo = makeFBOViewport(setup, 8, 8, setup.root);
    addTexture(fbo, makeColorTarget(8));
    setup.action->setWindow(getCPtr(setup.window));
    fbo->render(setup.action);

    const testsupport::LiveObjects rendered = testsupport::LiveObjects::count();
    EXPECT_EQ(rendered.gl.at("framebuffer"),  before.gl.at("framebuffer") + 1);
    EXPECT_EQ(rendered.gl.at("renderbuffer"), before.gl.at("renderbuffer") + 1);

    beginEditCP(fbo, FBOViewport::DirtyFieldMask);
    fbo->setDirty(true);
    endEditCP(fbo, FBOViewport::DirtyFieldMask);
    fbo->render(setup.action);
    EXPECT_EQ(testsupport::differences(rendered, testsupport::LiveObjects::count()), "");

    releaseTextures(fbo);
    setup.window->frameExit();
    EXPECT_EQ(testsupport::differences(before, testsupport::LiveObjects::count()), "");
}

} // namespace
