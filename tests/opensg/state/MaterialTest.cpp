#include <OpenSG/OSGChunkMaterial.h>
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

    testsupport::editCP(mat, ChunkMaterial::ChunksFieldMask, [&] { mat->subChunk(t0); });
    EXPECT_EQ(mat->getState(), state);
    EXPECT_EQ(state->getChunk(tex + 0), t2);
    EXPECT_FALSE(state->chunkPresent(tex + 1));

    subRefCP(mat);
}

// A blend chunk is transparent when its destination keeps some of what is
// there, a material chunk when its diffuse alpha is below one; the
// material's mode overrides what its chunks say.
TEST(Transparency, ChunksDecideUnlessTheModeOverrides)
{
    const Int32 automatic = Material::TransparencyAutoDetection;
    MaterialChunkPtr halfAlpha = MaterialChunk::create();
    halfAlpha->setDiffuse(Color4f(1.f, 1.f, 1.f, 0.5f));
    auto blend = [](GLenum src, GLenum dst)
    {
        BlendChunkPtr b = BlendChunk::create();
        b->setSrcFactor(src);
        b->setDestFactor(dst);
        return StateChunkPtr(b);
    };
    const struct { const char *what; StateChunkPtr chunk; Int32 mode; bool chunkSays, expected; } cases[] =
    {
        { "default blend",      BlendChunk::create(),            automatic, false, false },
        { "source alpha only",  blend(GL_SRC_ALPHA, GL_ZERO),    automatic, false, false },
        { "adding blend",       blend(GL_SRC_ALPHA, GL_ONE),     automatic, true,  true  },
        { "opaque material",    MaterialChunk::create(),         automatic, false, false },
        { "half alpha",         halfAlpha,                       automatic, true,  true  },
        { "texture",            TextureChunk::create(),          automatic, false, false },
        { "forced transparent", blend(GL_ONE, GL_ZERO), Material::TransparencyForceTransparent,
          false, true },
        { "forced opaque", blend(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA),
          Material::TransparencyForceOpaque, true, false },
    };
    for(const auto &c : cases)
    {
        SCOPED_TRACE(c.what);
        ChunkMaterialPtr mat = held(ChunkMaterial::create());
        mat->addChunk(c.chunk);
        mat->setTransparencyMode(c.mode);
        EXPECT_EQ(c.chunk->isTransparent(), c.chunkSays);
        EXPECT_EQ(mat->isTransparent(), c.expected);
        subRefCP(mat);
    }
}

// The transparency value counts even when the mode forces opaque.
TEST(SimpleMaterial, TransparencyValueOrModeMakesItTransparent)
{
    const Int32 automatic = Material::TransparencyAutoDetection;
    const struct { Real32 transparency; Int32 mode; bool expected; } cases[] =
    {
        { 0.0f, automatic, false }, { 0.5f, automatic, true },
        { 0.0f, Material::TransparencyForceTransparent, true },
        { 0.0f, Material::TransparencyForceOpaque, false },
        { 0.5f, Material::TransparencyForceOpaque, true },
    };
    for(const auto &c : cases)
    {
        SimpleMaterialPtr mat = held(SimpleMaterial::create());
        mat->setTransparency(c.transparency);
        mat->setTransparencyMode(c.mode);
        EXPECT_EQ(mat->isTransparent(), c.expected) << c.transparency << " mode " << c.mode;
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
