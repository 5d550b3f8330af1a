#include <OpenSG/OSGSHLChunk.h>
#include <OpenSG/OSGSHLParameterChunk.h>
#include <OpenSG/OSGState.h>

#include "support/GLTest.h"
#include "support/LogCapture.h"

#include <OpenSG/OSGPassiveWindow.h>
#include <OpenSG/OSGRenderAction.h>
#include "support/PixelProbe.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <string>

using namespace osg;

namespace
{

const char *s_strVertex =
    "void main()\n"
    "{\n"
    "    gl_Position = gl_Vertex;\n"
    "}\n";

class SHLChunkGL : public testsupport::GLTest
{
  protected:
    void SetUp() override
    {
        GLTest::SetUp();
        if(HasFatalFailure())
            return;
        shl = SHLChunk::create();
        addRefCP(shl);
        shl->setVertexProgram(s_strVertex);
    }
    void TearDown() override
    {
        subRefCP(shl);
        GLTest::TearDown();
    }

    // Clears to red and draws a full-screen quad with state, whatever
    // earlier tests left in the shared context.
    testsupport::RGBA8 drawQuad(StatePtr state)
    {
        glBindFramebuffer(GL_FRAMEBUFFER, 0);
        glViewport(0, 0, ContextWidth, ContextHeight);
        glDisable(GL_SCISSOR_TEST);
        glDisable(GL_CULL_FACE);
        glDisable(GL_BLEND);
        glDisable(GL_DEPTH_TEST);
        glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
        glClearColor(1.f, 0.f, 0.f, 1.f);
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        state->activate(NULL);
        glBegin(GL_QUADS);
        glVertex2f(-1.f, -1.f);
        glVertex2f( 1.f, -1.f);
        glVertex2f( 1.f,  1.f);
        glVertex2f(-1.f,  1.f);
        glEnd();
        state->deactivate(NULL);
        return testsupport::readPixelRGBA8(ContextWidth / 2, ContextHeight / 2);
    }

    StatePtr stateWith(StateChunkPtr a, StateChunkPtr b = NullFC)
    {
        StatePtr state = State::create();
        state->addChunk(a);
        if(b != NullFC)
            state->addChunk(b);
        return state;
    }

    GLint location(const char *name)
    {
        return glGetUniformLocation(shl->getProgram(), name);
    }

    SHLChunkPtr shl;
};

std::string lower(std::string s)
{
    std::transform(s.begin(), s.end(), s.begin(),
                   [](unsigned char c) { return char(std::tolower(c)); });
    return s;
}

TEST_F(SHLChunkGL, CompileErrorLogsTheDriverMessageAndDrawsNothing)
{
    expectGLErrors();   // the failed build is logged on purpose
    shl->setFragmentProgram("void main() { gl_FragColor = vec4(0.0, 1.0, 0.0, 1.0) }\n");

    StateRefPtr state(stateWith(shl));
    const testsupport::RGBA8 pixel = drawQuad(state);

    EXPECT_EQ(pixel, (testsupport::RGBA8{ 255, 0, 0, 255 }));
    EXPECT_TRUE(shl->hasFailed());
    EXPECT_EQ(shl->getProgram(), 0u);

    const std::string text = lower(log().text());
    EXPECT_NE(text.find("fragment shader compile failed: "), std::string::npos) << text;
    // The driver's own words follow.
    EXPECT_NE(text.find("error", text.find("failed: ")), std::string::npos) << text;
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
}

TEST_F(SHLChunkGL, LinkErrorIsReportedAsSuch)
{
    expectGLErrors();
    shl->setFragmentProgram("void helper() { gl_FragColor = vec4(1.0); }\n");

    EXPECT_EQ(shl->getProgram(), 0u);
    EXPECT_TRUE(shl->hasFailed());
    EXPECT_TRUE(log().contains("program link failed: ")) << log().text();
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
}

TEST_F(SHLChunkGL, ValidProgramDrawsWithItsUniforms)
{
    shl->setFragmentProgram(
        "uniform float fScale;\n"
        "uniform vec3  vColor;\n"
        "uniform float fOffsets[3];\n"
        "uniform mat4  mShift;\n"
        "uniform bool  bOpaque;\n"
        "void main()\n"
        "{\n"
        "    vec3 c = vColor * fScale + vec3(fOffsets[0] + fOffsets[1] + fOffsets[2]);\n"
        "    c += mShift[3].xyz;\n"
        "    gl_FragColor = vec4(c, bOpaque ? 1.0 : 0.5);\n"
        "}\n");

    const Real32 scale = 0.5f;
    const Vec3f  color(0.2f, 0.4f, 0.6f);
    MFReal32 offsets;
    offsets.push_back(0.05f);
    offsets.push_back(0.1f);
    offsets.push_back(0.15f);
    Matrix shift;
    shift.setTranslate(0.1f, 0.2f, 0.f);

    beginEditCP(shl, ShaderParameterChunk::ParametersFieldMask);
    shl->setUniformParameter("fScale",   scale);
    shl->setUniformParameter("vColor",   color);
    shl->setUniformParameter("fOffsets", offsets);
    shl->setUniformParameter("mShift",   shift);
    shl->setUniformParameter("bOpaque",  true);
    endEditCP(shl, ShaderParameterChunk::ParametersFieldMask);

    StateRefPtr state(stateWith(shl));
    const testsupport::RGBA8 pixel = drawQuad(state);
    ASSERT_NE(shl->getProgram(), 0u);
    EXPECT_FALSE(shl->hasFailed());

    // The whole array went up, and the matrix untransposed: GL's column 3
    // (elements 12..14) is the translation.
    GLfloat last = 0.f, m[16] = {};
    glGetUniformfv(shl->getProgram(), location("fOffsets[2]"), &last);
    glGetUniformfv(shl->getProgram(), location("mShift"), m);
    EXPECT_FLOAT_EQ(last, 0.15f);
    EXPECT_FLOAT_EQ(m[12], 0.1f);
    EXPECT_FLOAT_EQ(m[13], 0.2f);
    EXPECT_FLOAT_EQ(m[3], 0.f);

    const Real32 sum = 0.05f + 0.1f + 0.15f;
    const Real32 expected[3] = { color[0] * scale + sum + 0.1f,
                                 color[1] * scale + sum + 0.2f,
                                 color[2] * scale + sum };
    // 8-bit framebuffer: within one step of the exact value.
    EXPECT_NEAR(pixel.r, expected[0] * 255.f, 1.0);
    EXPECT_NEAR(pixel.g, expected[1] * 255.f, 1.0);
    EXPECT_NEAR(pixel.b, expected[2] * 255.f, 1.0);
    EXPECT_EQ(pixel.a, 255);
}

TEST_F(SHLChunkGL, ParameterChunkOverridesTheShadersOwnUniforms)
{
    shl->setFragmentProgram(
        "uniform float fLevel;\n"
        "void main() { gl_FragColor = vec4(fLevel); }\n");
    shl->setUniformParameter("fLevel", 0.25f);

    SHLParameterChunkPtr params = SHLParameterChunk::create();
    params->setSHLChunk(shl);
    params->setUniformParameter("fLevel", 0.75f);
    params->setUniformParameter("fNotInProgram", 1.f);

    // Added parameters first: the state still activates the shader first.
    StateRefPtr state(stateWith(params, shl));
    state->activate(NULL);
    GLfloat level = 0.f;
    glGetUniformfv(shl->getProgram(), location("fLevel"), &level);
    state->deactivate(NULL);

    EXPECT_FLOAT_EQ(level, 0.75f);
    EXPECT_FALSE(log().contains("fNotInProgram")) << log().text();
}

TEST_F(SHLChunkGL, EditedProgramTextIsRebuilt)
{
    shl->setFragmentProgram("void main() { gl_FragColor = vec4(0.0, 0.0, 1.0, 1.0); }\n");
    StateRefPtr state(stateWith(shl));
    EXPECT_EQ(drawQuad(state), (testsupport::RGBA8{ 0, 0, 255, 255 }));

    beginEditCP(shl, ShaderChunk::FragmentProgramFieldMask);
    shl->setFragmentProgram("void main() { gl_FragColor = vec4(0.0, 1.0, 0.0, 1.0); }\n");
    endEditCP(shl, ShaderChunk::FragmentProgramFieldMask);
    EXPECT_EQ(drawQuad(state), (testsupport::RGBA8{ 0, 255, 0, 255 }));
}

} // namespace

namespace
{

// GLId names the program among the window's GL objects; the window deletes
// the program at its frame end after the chunk is gone.
TEST_F(SHLChunkGL, GLIdIsTheProgramsWindowObject)
{
    PassiveWindowPtr window = PassiveWindow::create();
    addRefCP(window);
    window->init();
    RenderAction *action = RenderAction::create();
    action->setWindow(getCPtr(window));

    shl->setFragmentProgram("void main()\n"
                            "{\n"
                            "    gl_FragColor = vec4(0.0, 1.0, 0.0, 1.0);\n"
                            "}\n");
    StatePtr state = stateWith(shl);
    StateRefPtr hold(state);
    state->activate(action);
    state->deactivate(action);

    const UInt32 id = shl->getGLId();
    ASSERT_NE(id, 0u);
    const GLuint program = window->getGLObjectId(id);
    EXPECT_EQ(program, shl->getProgram());
    EXPECT_TRUE(glIsProgram(program));
    {
        testsupport::LogCapture log;
        window->validateGLObject(id);
        EXPECT_EQ(log.text(), "");
    }

    hold = NullFC;
    subRefCP(shl);
    shl = NullFC;
    EXPECT_TRUE(glIsProgram(program));
    window->frameExit();
    EXPECT_FALSE(glIsProgram(program));

    delete action;
    subRefCP(window);
}

} // namespace
