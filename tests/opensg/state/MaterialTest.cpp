#include <OpenSG/OSGChunkMaterial.h>
#include <OpenSG/OSGSimpleMaterial.h>
#include <OpenSG/OSGSimpleTexturedMaterial.h>
#include <OpenSG/OSGBlendChunk.h>
#include <OpenSG/OSGDepthChunk.h>
#include <OpenSG/OSGMaterialChunk.h>
#include <OpenSG/OSGTextureChunk.h>
#include <OpenSG/OSGImage.h>

#include "support/Builders.h"
#include "support/LogCapture.h"

#include <gtest/gtest.h>

using namespace osg;

namespace
{

using testsupport::held;

TEST(ChunkMaterial, SubChunkReturnsFalseOnSuccessAndNeedsAMatchingSlot)
{
    ChunkMaterialPtr mat = held(ChunkMaterial::create());
    TextureChunkPtr  tex = held(TextureChunk::create());
    mat->addChunk(tex, 2);

    {
        testsupport::LogCapture log;
        EXPECT_TRUE(mat->subChunk(tex, 1));
        EXPECT_TRUE(log.contains("ChunkMaterial::subChunk"));
    }
    EXPECT_EQ(mat->find(tex), 0);

    EXPECT_FALSE(mat->subChunk(tex, 2));
    EXPECT_EQ(tex.getRefCount(), 1);
    EXPECT_EQ(mat->find(tex), -1);
    EXPECT_TRUE(mat->getSlots().empty());

    mat->addChunk(tex);
    EXPECT_FALSE(mat->subChunk(tex));

    testsupport::LogCapture log;
    EXPECT_TRUE(mat->subChunk(tex));

    subRefCP(mat);
    subRefCP(tex);
}

TEST(ChunkMaterial, FindByTypeCountsChunksOfExactlyThatType)
{
    ChunkMaterialPtr mat = held(ChunkMaterial::create());
    TextureChunkPtr  t0  = TextureChunk::create();
    TextureChunkPtr  t1  = TextureChunk::create();
    mat->addChunk(BlendChunk::create());
    mat->addChunk(t0);
    mat->addChunk(t1);

    EXPECT_EQ(mat->find(TextureChunk::getClassType()), t0);
    EXPECT_EQ(mat->find(TextureChunk::getClassType(), 1), t1);
    EXPECT_EQ(mat->find(TextureChunk::getClassType(), 2), NullFC);
    EXPECT_EQ(mat->find(DepthChunk::getClassType()), NullFC);

    mat->clearChunks();
    EXPECT_TRUE(mat->getChunks().empty());
    subRefCP(mat);
}

TEST(ChunkMaterial, EndEditRebuildsTheStateWithTheRecordedSlots)
{
    ChunkMaterialPtr mat = held(ChunkMaterial::create());
    TextureChunkPtr  t0  = TextureChunk::create();
    TextureChunkPtr  t1  = TextureChunk::create();
    TextureChunkPtr  t2  = TextureChunk::create();

    beginEditCP(mat, ChunkMaterial::ChunksFieldMask);
    mat->addChunk(t0);
    mat->addChunk(t1, 5);
    mat->addChunk(t2);
    endEditCP(mat, ChunkMaterial::ChunksFieldMask);

    const UInt32 tex = TextureChunk::getStaticClassId();
    StatePtr state = mat->getState();
    ASSERT_NE(state, NullFC);
    EXPECT_EQ(state->getChunk(tex + 0), t0);
    EXPECT_EQ(state->getChunk(tex + 1), t2);
    EXPECT_EQ(state->getChunk(tex + 5), t1);

    beginEditCP(mat, ChunkMaterial::ChunksFieldMask);
    mat->subChunk(t0);
    endEditCP(mat, ChunkMaterial::ChunksFieldMask);
    EXPECT_EQ(mat->getState(), state);
    EXPECT_EQ(state->getChunk(tex + 0), t2);
    EXPECT_FALSE(state->chunkPresent(tex + 1));

    subRefCP(mat);
}

TEST(Transparency, ChunksDecideOnTheirOwnSettings)
{
    BlendChunkPtr blend = held(BlendChunk::create());
    EXPECT_FALSE(blend->isTransparent());
    blend->setSrcFactor(GL_SRC_ALPHA);
    EXPECT_FALSE(blend->isTransparent());
    blend->setDestFactor(GL_ONE);
    EXPECT_TRUE(blend->isTransparent());
    subRefCP(blend);

    MaterialChunkPtr mc = held(MaterialChunk::create());
    EXPECT_FALSE(mc->isTransparent());
    mc->setDiffuse(Color4f(1.f, 1.f, 1.f, 0.5f));
    EXPECT_TRUE(mc->isTransparent());
    subRefCP(mc);

    TextureChunkPtr tex = held(TextureChunk::create());
    EXPECT_FALSE(tex->isTransparent());
    subRefCP(tex);
}

TEST(Transparency, ModeOverridesWhatTheChunksSay)
{
    struct Case { Int32 mode; bool transparentChunk; bool expected; };
    const Case cases[] =
    {
        { Material::TransparencyAutoDetection,    false, false },
        { Material::TransparencyAutoDetection,    true,  true  },
        { Material::TransparencyForceTransparent, false, true  },
        { Material::TransparencyForceOpaque,      true,  false },
    };
    for(const Case &tc : cases)
    {
        SCOPED_TRACE(testing::Message() << "mode " << tc.mode << " chunk "
                                        << tc.transparentChunk);
        ChunkMaterialPtr mat   = held(ChunkMaterial::create());
        BlendChunkPtr    blend = BlendChunk::create();
        blend->setDestFactor(tc.transparentChunk ? GL_ONE_MINUS_SRC_ALPHA : GL_ZERO);
        mat->addChunk(blend);
        mat->setTransparencyMode(tc.mode);
        EXPECT_EQ(mat->isTransparent(), tc.expected);
        subRefCP(mat);
    }
}

TEST(SimpleTexturedMaterial, ImageWithAlphaIsTransparentUnlessDecal)
{
    struct Case { UInt32 format; GLenum envMode; bool expected; };
    const Case cases[] =
    {
        { Image::OSG_RGBA_PF, GL_REPLACE,  true  },
        { Image::OSG_RGBA_PF, GL_MODULATE, true  },
        { Image::OSG_RGBA_PF, GL_DECAL,    false },
        { Image::OSG_RGB_PF,  GL_REPLACE,  false },
    };
    for(const Case &tc : cases)
    {
        SCOPED_TRACE(testing::Message() << "format " << tc.format << " env " << tc.envMode);
        SimpleTexturedMaterialPtr mat = held(SimpleTexturedMaterial::create());
        ImagePtr image = Image::create();
        image->set(tc.format, 2, 2);

        beginEditCP(mat);
        mat->setImage(image);
        mat->setEnvMode(tc.envMode);
        endEditCP(mat);

        EXPECT_EQ(mat->isTransparent(), tc.expected);
        TextureChunkPtr tex = TextureChunkPtr::dcast(
            mat->getState()->getChunk(TextureChunk::getStaticClassId()));
        ASSERT_NE(tex, NullFC);
        EXPECT_EQ(tex->getImage(), image);
        EXPECT_EQ(tex->getEnvMode(), tc.envMode);
        subRefCP(mat);
    }
}

} // namespace
