#include <OpenSG/OSGTextureChunk.h>
#include <OpenSG/OSGImage.h>
#include <OpenSG/OSGState.h>

#include "support/Builders.h"
#include "support/GLTest.h"

#include <gtest/gtest.h>

#include <cstring>
#include <vector>

using namespace osg;

namespace
{

class TextureChunkGL : public testsupport::GLTest
{
  protected:
    void SetUp() override
    {
        GLTest::SetUp();
        if(HasFatalFailure())
            return;
        tex = TextureChunk::create();
        addRefCP(tex);
    }
    void TearDown() override
    {
        subRefCP(tex);
        GLTest::TearDown();
    }

    static GLint level0(GLenum pname)
    {
        GLint value = 0;
        glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, pname, &value);
        return value;
    }

    // The texture's level 0 as tightly packed bytes.
    static std::vector<UInt8> texels(GLenum format, size_t size)
    {
        std::vector<UInt8> data(size);
        glPixelStorei(GL_PACK_ALIGNMENT, 1);
        glGetTexImage(GL_TEXTURE_2D, 0, format, GL_UNSIGNED_BYTE, data.data());
        glPixelStorei(GL_PACK_ALIGNMENT, 4);
        return data;
    }

    TextureChunkPtr tex;
};

TEST_F(TextureChunkGL, UploadsUnpaddedRowsOnTheSlotsUnit)
{
    // 3 RGB texels per row: 9 bytes, not a multiple of GL's default 4.
    const UInt8 pixels[18] = { 1,  2,  3,  4,  5,  6,  7,  8,  9,
                               10, 11, 12, 13, 14, 15, 16, 17, 18 };
    ImagePtr image = Image::create();
    image->set(Image::OSG_RGB_PF, 3, 2, 1, 1, 1, 0.0, pixels);
    tex->setImage(image);
    tex->setMinFilter(GL_NEAREST);

    StatePtr state = State::create();
    StateRefPtr hold(state);
    state->addChunk(tex, 2);
    state->activate(NULL);

    GLint active = 0;
    glGetIntegerv(GL_ACTIVE_TEXTURE, &active);
    EXPECT_EQ(active, GL_TEXTURE0);

    glActiveTexture(GL_TEXTURE2);
    GLint bound = 0;
    glGetIntegerv(GL_TEXTURE_BINDING_2D, &bound);
    EXPECT_EQ(GLuint(bound), tex->getGLTextureName());
    const std::vector<UInt8> data = texels(GL_RGB, sizeof(pixels));
    EXPECT_EQ(std::memcmp(data.data(), pixels, sizeof(pixels)), 0);
    EXPECT_TRUE(glIsEnabled(GL_TEXTURE_2D));
    glActiveTexture(GL_TEXTURE0);

    state->deactivate(NULL);
    glActiveTexture(GL_TEXTURE2);
    EXPECT_FALSE(glIsEnabled(GL_TEXTURE_2D));
    glActiveTexture(GL_TEXTURE0);
}

TEST_F(TextureChunkGL, EditedImageIsUploadedAgain)
{
    const UInt8 first[4] = { 10, 20, 30, 40 };
    ImagePtr image = Image::create();
    image->set(Image::OSG_L_PF, 2, 2, 1, 1, 1, 0.0, first);
    tex->setImage(image);
    tex->setMinFilter(GL_NEAREST);
    tex->validate();
    EXPECT_EQ(texels(GL_LUMINANCE, 4), std::vector<UInt8>(first, first + 4));

    testsupport::editCP(image, Image::PixelFieldMask, [&] { image->editData()[3] = 99; });
    tex->validate();
    EXPECT_EQ(texels(GL_LUMINANCE, 4), (std::vector<UInt8>{ 10, 20, 30, 99 }));
}

} // namespace
