#include <OpenSG/OSGDirectionalLight.h>
#include <OpenSG/OSGLightChunk.h>
#include <OpenSG/OSGPointLight.h>
#include <OpenSG/OSGSpotLight.h>

#include "support/GLTest.h"

#include <cmath>

using namespace osg;

namespace
{

using LightChunkGL = testsupport::GLTest;

struct ChunkCase
{
    const char *name;
    LightPtr    light;
    Vec4f       position;
    Real32      cutoff;
};

// makeChunk fills the chunk from the light's fields, in the light's own
// coordinates: points have w = 1, directions w = 0, cut-offs in degrees.
TEST_F(LightChunkGL, MakeChunkMirrorsEachKindOfLight)
{
    PointLightPtr point = PointLight::create();
    beginEditCP(point);
    point->setPosition(1, 2, 3);
    point->setAttenuation(1.f, 0.5f, 0.25f);
    point->setDiffuse(0.5f, 0.25f, 1.f, 1.f);
    endEditCP(point);

    SpotLightPtr spot = SpotLight::create();
    beginEditCP(spot);
    spot->setPosition(0, 1, 0);
    spot->setDirection(Vec3f(0, -1, 0));
    spot->setSpotCutOffDeg(30.f);
    spot->setSpotExponent(4.f);
    endEditCP(spot);

    SpotLightPtr wide = SpotLight::create();
    beginEditCP(wide);
    wide->setSpotCutOffDeg(120.f);
    endEditCP(wide);

    DirectionalLightPtr directional = DirectionalLight::create();
    beginEditCP(directional);
    directional->setDirection(Vec3f(0, 0, 1));
    endEditCP(directional);

    // No chunk until one is asked for.
    EXPECT_EQ(spot->getChunk(), NullFC);

    const ChunkCase cases[] = {
        { "point",       point,       Vec4f(1, 2, 3, 1), 180.f },
        { "spot",        spot,        Vec4f(0, 1, 0, 1),  30.f },
        { "wide spot",   wide,        Vec4f(0, 0, 0, 1), 180.f },
        { "directional", directional, Vec4f(0, 0, 1, 0), 180.f },
    };
    for(const ChunkCase &c : cases)
    {
        SCOPED_TRACE(c.name);
        addRefCP(c.light);
        EXPECT_EQ(c.light->getChunk(), NullFC);
        c.light->makeChunk();
        LightChunkPtr chunk = c.light->getChunk();
        ASSERT_NE(chunk, NullFC);
        EXPECT_EQ(chunk->getPosition(), c.position);
        EXPECT_NEAR(chunk->getCutoff(), c.cutoff, 1e-4);
        EXPECT_EQ(chunk->getDiffuse(), c.light->getDiffuse());
        EXPECT_EQ(chunk->getLinearAttenuation(), c.light->getLinearAttenuation());
        EXPECT_EQ(chunk->getQuadraticAttenuation(), c.light->getQuadraticAttenuation());

        // Made once, refilled after.
        c.light->makeChunk();
        EXPECT_EQ(c.light->getChunk(), chunk);
        subRefCP(c.light);
    }
}

TEST_F(LightChunkGL, ActivateSetsAndEnablesTheSlotsGLLight)
{
    EXPECT_EQ(std::string(LightChunk::getStaticClass()->getName()), "Light");
    EXPECT_EQ(LightChunk::getStaticClass()->getNumSlots(), 8);

    LightChunkPtr chunk = LightChunk::create();
    addRefCP(chunk);
    beginEditCP(chunk);
    chunk->setDiffuse(Color4f(0.25f, 0.5f, 0.75f, 1.f));
    chunk->setPosition(Vec4f(0.f, 0.f, 1.f, 0.f));
    chunk->setCutoff(45.f);
    chunk->setLinearAttenuation(0.5f);
    endEditCP(chunk);

    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    chunk->activate(NULL, 3);
    EXPECT_TRUE(glIsEnabled(GL_LIGHT3));
    GLfloat diffuse[4] = { 0, 0, 0, 0 }, cutoff = 0.f, linear = 0.f;
    glGetLightfv(GL_LIGHT3, GL_DIFFUSE, diffuse);
    glGetLightfv(GL_LIGHT3, GL_SPOT_CUTOFF, &cutoff);
    glGetLightfv(GL_LIGHT3, GL_LINEAR_ATTENUATION, &linear);
    EXPECT_FLOAT_EQ(diffuse[1], 0.5f);
    EXPECT_FLOAT_EQ(cutoff, 45.f);
    EXPECT_FLOAT_EQ(linear, 0.5f);

    chunk->deactivate(NULL, 3);
    EXPECT_FALSE(glIsEnabled(GL_LIGHT3));
    subRefCP(chunk);
}

} // namespace
