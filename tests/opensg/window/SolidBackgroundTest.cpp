#include "support/Builders.h"
#include "support/GLTest.h"
#include "support/PixelProbe.h"
#include "support/SceneSetup.h"

#include <OpenSG/OSGSolidBackground.h>

#include <cmath>

using namespace osg;
using testsupport::readDepth;
using testsupport::readPixelRGBA8;
using testsupport::SceneSetup;

namespace
{

struct ClearCase { const char *name; bool clearColor; bool clearDepth; Int32 stencilBit; };

const ClearCase s_clearCases[] = {
    { "everything",        true,  true,  5  },
    { "colour and depth",  true,  true,  -1 },
    { "colour only",       true,  false, -1 },
    { "depth only",        false, true,  -1 },
    { "stencil only",      false, false, 3  },
    { "nothing",           false, false, -1 },
};

int toByte(float v) { return int(std::lround(v * 255.f)); }

int readStencil(int x, int y)
{
    GLubyte value = 0;
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glReadPixels(x, y, 1, 1, GL_STENCIL_INDEX, GL_UNSIGNED_BYTE, &value);
    return value;
}

using SolidBackgroundTest = testsupport::GLTest;

TEST_F(SolidBackgroundTest, ClearsExactlyTheSelectedBuffers)
{
    const float prefill[4]  = { 0.9f, 0.8f, 0.7f, 0.6f };
    const float prefillDepth = 0.25f;
    const int   prefillStencil = 7;
    const float color[3]    = { 0.2f, 0.4f, 0.6f };
    const float alpha        = 0.5f;
    const float depth        = 0.75f;

    for(const ClearCase &c : s_clearCases)
    {
        SCOPED_TRACE(c.name);
        SceneSetup setup(64, 64);

        beginEditCP(setup.background);
        setup.background->setColor(Color3f(color[0], color[1], color[2]));
        setup.background->setAlpha(alpha);
        setup.background->setDepth(depth);
        setup.background->setClearColor(c.clearColor);
        setup.background->setClearDepth(c.clearDepth);
        setup.background->setClearStencilBit(c.stencilBit);
        endEditCP(setup.background);

        glDisable(GL_SCISSOR_TEST);
        glDepthMask(GL_TRUE);
        glClearColor(prefill[0], prefill[1], prefill[2], prefill[3]);
        glClearDepth(prefillDepth);
        glClearStencil(prefillStencil);
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT | GL_STENCIL_BUFFER_BIT);

        setup.render();

        const testsupport::RGBA8 pixel = readPixelRGBA8(32, 32);
        const float *expColor = c.clearColor ? color : prefill;
        const float  expAlpha = c.clearColor ? alpha : prefill[3];
        // 8-bit channels: one step of rounding either way.
        EXPECT_NEAR(pixel.r, toByte(expColor[0]), 1);
        EXPECT_NEAR(pixel.g, toByte(expColor[1]), 1);
        EXPECT_NEAR(pixel.b, toByte(expColor[2]), 1);
        EXPECT_NEAR(pixel.a, toByte(expAlpha),    1);

        // 24-bit depth.
        EXPECT_NEAR(readDepth(32, 32), c.clearDepth ? depth : prefillDepth, 1e-5);
        EXPECT_EQ(readStencil(32, 32), c.stencilBit >= 0 ? c.stencilBit : prefillStencil);
    }
}

TEST_F(SolidBackgroundTest, ClearsDepthEvenIfTheLastDrawLeftDepthWritesOff)
{
    SceneSetup setup(64, 64);
    testsupport::editCP(setup.background, [&] { setup.background->setDepth(0.3f); });

    glDepthMask(GL_FALSE);
    setup.render();

    EXPECT_NEAR(readDepth(10, 10), 0.3f, 1e-5);
    GLboolean mask = GL_TRUE;
    glGetBooleanv(GL_DEPTH_WRITEMASK, &mask);
    EXPECT_EQ(mask, GLboolean(GL_TRUE)) << "the frame's draw turns depth writes on";
}

} // namespace
