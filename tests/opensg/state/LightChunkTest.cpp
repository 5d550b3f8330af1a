#include <OpenSG/OSGLightChunk.h>

#include "support/GLTest.h"

using namespace osg;

namespace
{

using LightChunkGL = testsupport::GLTest;

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
