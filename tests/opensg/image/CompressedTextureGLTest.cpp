#include <OpenSG/OSGImage.h>
#include <OpenSG/OSGTextureChunk.h>

#include "support/Builders.h"
#include "support/DDSFile.h"
#include "support/GLTest.h"
#include "support/PixelProbe.h"
#include "support/SceneSetup.h"

using namespace osg;

namespace
{

using CompressedTextureGL = testsupport::GLTest;

// A 4x8 DXT1 file: the top block pure red, the bottom one pure blue (RGB565
// end points, all indices 0), three more levels of one block each.
TEST_F(CompressedTextureGL, DXT1IsUploadedCompressedAndDrawnTheRightWayUp)
{
    const std::string r("\x00\xf8\x00\x00\0\0\0\0", 8), b("\x1f\x00\x00\x00\0\0\0\0", 8);
    ImagePtr image = testsupport::readImageBytes(
        "compressed.dds", ddsFile(4, 8, 4, "DXT1", r + b + b + b + b));
    ASSERT_NE(image, NullFC);

    TextureChunkPtr texture = TextureChunk::create();
    texture->setImage(image);
    subRefCP(image);
    texture->setMagFilter(GL_NEAREST);
    texture->setEnvMode(GL_REPLACE);
    ChunkMaterialPtr material = testsupport::makeChunkMaterial({ texture });

    testsupport::SceneSetup scene(ContextWidth, ContextHeight);
    testsupport::addChild(scene.root, testsupport::makeFullQuad(0.f, material));
    scene.render();

    if(!epoxy_has_gl_extension("GL_EXT_texture_compression_s3tc"))
    {
        EXPECT_TRUE(log().contains("GL_EXT_texture_compression_s3tc")) << log().text();
        GTEST_SKIP() << "no S3TC in this context: only the warning is checked";
    }

    // Each level as GL holds it: DXT1, one 8-byte block per 4x4 texels.
    glBindTexture(GL_TEXTURE_2D, texture->getGLTextureName());
    const GLint sizes[4] = { 16, 8, 8, 8 };
    for(GLint level = 0; level < 4; ++level)
    {
        GLint format = 0, size = 0;
        glGetTexLevelParameteriv(GL_TEXTURE_2D, level, GL_TEXTURE_INTERNAL_FORMAT, &format);
        glGetTexLevelParameteriv(GL_TEXTURE_2D, level, GL_TEXTURE_COMPRESSED_IMAGE_SIZE, &size);
        EXPECT_EQ(GLenum(format), GLenum(GL_COMPRESSED_RGB_S3TC_DXT1_EXT)) << "level " << level;
        EXPECT_EQ(size, sizes[level]) << "level " << level;
    }
    glBindTexture(GL_TEXTURE_2D, 0);

    // Window origin bottom left: blue below, red above. RGB565 end points
    // of 31 expand to 255 exactly.
    const testsupport::RGBA8 red  = { 255, 0, 0, 255 };
    const testsupport::RGBA8 blue = { 0, 0, 255, 255 };
    EXPECT_EQ(testsupport::readPixelRGBA8(ContextWidth / 2, ContextHeight / 4), blue);
    EXPECT_EQ(testsupport::readPixelRGBA8(ContextWidth / 2, 3 * ContextHeight / 4), red);
}

} // namespace
