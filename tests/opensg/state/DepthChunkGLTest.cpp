#include <OpenSG/OSGDepthChunk.h>

#include "support/GLTest.h"

#include <gtest/gtest.h>

using namespace osg;

namespace
{

using DepthChunkGL = testsupport::GLTest;

GLboolean depthWrites(void)
{
    GLboolean mask = GL_FALSE;
    glGetBooleanv(GL_DEPTH_WRITEMASK, &mask);
    return mask;
}

// 1.8 sets the write mask whichever way the chunk says, so a writable chunk
// on a transparent material writes depth although the render action turned
// writes off for transparent objects; deactivating turns them back on.
TEST_F(DepthChunkGL, ActivateSetsTheWriteMaskBothWays)
{
    const struct { bool readOnly; GLboolean before; GLboolean active; } cases[] =
    {
        { false, GL_FALSE, GL_TRUE  },
        { false, GL_TRUE,  GL_TRUE  },
        { true,  GL_TRUE,  GL_FALSE },
        { true,  GL_FALSE, GL_FALSE },
    };
    for(const auto &c : cases)
    {
        SCOPED_TRACE(testing::Message() << "read-only " << c.readOnly
                                        << ", writes before " << int(c.before));
        DepthChunkPtr chunk = DepthChunk::create();
        DepthChunkRefPtr hold(chunk);
        chunk->setReadOnly(c.readOnly);

        glDepthMask(c.before);
        chunk->activate(NULL);
        EXPECT_EQ(depthWrites(), c.active);
        chunk->deactivate(NULL);
        EXPECT_EQ(depthWrites(), GLboolean(GL_TRUE));
    }
}

} // namespace
