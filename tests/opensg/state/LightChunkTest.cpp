#include <OpenSG/OSGLightChunk.h>

#include "support/Builders.h"
#include "support/GLTest.h"

using namespace osg;

namespace
{

using LightChunkGL = testsupport::GLTest;

// The values themselves are checked by the lighting tests, all on light 0.
TEST_F(LightChunkGL, ActivateSetsAndEnablesTheSlotsGLLight)
{
    EXPECT_EQ(LightChunk::getStaticClass()->getNumSlots(), 8);

    LightChunkPtr chunk = LightChunk::create();
    LightChunkRefPtr hold(chunk);
    testsupport::editCP(chunk, [&] { chunk->setDiffuse(Color4f(0.25f, 0.5f, 0.75f, 1.f)); });

    chunk->activate(NULL, 3);
    EXPECT_TRUE(glIsEnabled(GL_LIGHT3));
    GLfloat diffuse[4] = { 0, 0, 0, 0 };
    glGetLightfv(GL_LIGHT3, GL_DIFFUSE, diffuse);
    EXPECT_FLOAT_EQ(diffuse[1], 0.5f);

    chunk->deactivate(NULL, 3);
    EXPECT_FALSE(glIsEnabled(GL_LIGHT3));
}

} // namespace
