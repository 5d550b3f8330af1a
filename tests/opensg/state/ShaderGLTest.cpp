#include <OpenSG/OSGSHLChunk.h>
#include <OpenSG/OSGSHLParameterChunk.h>
#include <OpenSG/OSGState.h>

#include <OpenSG/OSGPointLight.h>
#include <OpenSG/OSGRenderAction.h>

#include "support/Builders.h"
#include "support/GLTest.h"
#include "support/LogCapture.h"
#include "support/PixelProbe.h"
#include "support/SceneSetup.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <string>
#include <vector>

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

    GLint location(const char *name) { return glGetUniformLocation(shl->getProgram(), name); }

    SHLChunkPtr shl;
};

std::string lower(std::string s)
{
    std::transform(s.begin(), s.end(), s.begin(),
                   [](unsigned char c) { return char(std::tolower(c)); });
    return s;
}

// A failed build logs which step failed and the driver's own words, and
// the chunk draws nothing.
TEST_F(SHLChunkGL, BuildErrorsLogTheDriverMessageAndDrawNothing)
{
    expectGLErrors();   // the failed builds are logged on purpose
    const struct { const char *fragment, *message; bool driverError; } cases[] = {
        { "void main() { gl_FragColor = vec4(0.0, 1.0, 0.0, 1.0) }\n", "fragment shader compile failed: ",
          true },
        { "void helper() { gl_FragColor = vec4(1.0); }\n", "program link failed: ", false },
    };
    for(const auto &c : cases)
    {
        SCOPED_TRACE(c.message);
        const std::size_t logged = log().text().size();
        testsupport::editCP(shl, ShaderChunk::FragmentProgramFieldMask,
                            [&] { shl->setFragmentProgram(c.fragment); });

        StateRefPtr state(stateWith(shl));
        EXPECT_EQ(drawQuad(state), (testsupport::RGBA8{ 255, 0, 0, 255 }));
        EXPECT_TRUE(shl->hasFailed());
        EXPECT_EQ(shl->getProgram(), 0u);

        const std::string text = lower(log().text().substr(logged));
        EXPECT_NE(text.find(c.message), std::string::npos) << text;
        if(c.driverError)
        {
            EXPECT_NE(text.find("error", text.find("failed: ")), std::string::npos) << text;
        }
        EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
    }
}

// As in 1.8: a parameter keeps the location of the first program that
// applies it, and one the program lacks warns each time it is applied (the
// chunk's own parameters when they change, a parameter chunk's whenever its
// state is activated) while UnknownParameterWarning is on.
TEST_F(SHLChunkGL, ParametersKeepTheirFirstLocationAndWarnWhenUnknown)
{
    expectGLErrors();   // the stale location does not fit the other program
    // fLevel sits at another location in the second program.
    shl->setFragmentProgram(
        "uniform float fLevel;\n"
        "void main() { gl_FragColor = vec4(fLevel); }\n");
    SHLChunkPtr other = SHLChunk::create();
    SHLChunkRefPtr otherRef(other);
    other->setVertexProgram(s_strVertex);
    other->setFragmentProgram(
        "uniform vec4 vPad[3];\n"
        "uniform float fLevel;\n"
        "void main() { gl_FragColor = vPad[0] + vPad[1] + vPad[2] + vec4(fLevel); }\n");

    SHLParameterChunkPtr params = SHLParameterChunk::create();
    params->setSHLChunk(shl);
    params->setUniformParameter("fLevel", 0.5f);
    params->setUniformParameter("fMissing", 1.f);
    StateRefPtr first(stateWith(shl, params));
    for(int i = 0; i < 3; ++i)
    {
        first->activate(NULL);
        first->deactivate(NULL);
    }
    EXPECT_EQ(log().count("Unknown parameter 'fMissing'!"), 3u) << log().text();

    ShaderParameterPtr level = params->getParameters()[0];
    const GLint firstLocation = glGetUniformLocation(shl->getProgram(), "fLevel");
    EXPECT_EQ(level->getLocation(), firstLocation);
    EXPECT_EQ(params->getParameters()[1]->getLocation(), -1);

    // Pointed at the other program, the parameter goes on using its first
    // location, where the other program has something else: its own
    // fLevel is never written.
    params->setSHLChunk(other);
    StateRefPtr second(stateWith(other, params));
    second->activate(NULL);
    second->deactivate(NULL);
    EXPECT_EQ(level->getLocation(), firstLocation);
    const GLint otherLocation = glGetUniformLocation(other->getProgram(), "fLevel");
    EXPECT_NE(otherLocation, firstLocation);
    GLfloat otherLevel = -1.f;
    glGetUniformfv(other->getProgram(), otherLocation, &otherLevel);
    EXPECT_EQ(otherLevel, 0.f);
    while(glGetError() != GL_NO_ERROR)
        ;

    // The chunk's own parameters warn when they change, not at every use,
    // and not at all with the warning switched off.
    log();
    testsupport::LogCapture own(LOG_WARNING);
    testsupport::editCP(shl, ShaderParameterChunk::ParametersFieldMask,
                        [&] { shl->setUniformParameter("fOwnMissing", 2.f); });
    StateRefPtr plain(stateWith(shl));
    plain->activate(NULL);
    plain->deactivate(NULL);
    plain->activate(NULL);
    plain->deactivate(NULL);
    EXPECT_EQ(own.count("Unknown parameter 'fOwnMissing'!"), 1u) << own.text();
    beginEditCP(shl, SHLChunk::UnknownParameterWarningFieldMask |
                     ShaderParameterChunk::ParametersFieldMask);
    shl->setUnknownParameterWarning(false);
    shl->setUniformParameter("fOwnMissing", 3.f);
    endEditCP(shl, SHLChunk::UnknownParameterWarningFieldMask |
                   ShaderParameterChunk::ParametersFieldMask);
    plain->activate(NULL);
    plain->deactivate(NULL);
    EXPECT_EQ(own.count("Unknown parameter 'fOwnMissing'!"), 1u) << own.text();
}

// Uploads skip values a location already holds; whatever the order of the
// materials sharing the program, each must still see its own, over the
// shader's own value and though the state holds the parameters first.
TEST_F(SHLChunkGL, MaterialsSharingAProgramEachGetTheirOwnValues)
{
    // chunk: whose state is activated; edit: a new value for that chunk first
    // (< 0: none); rebuild: the program text is edited first.
    struct Step { int chunk; Real32 edit; bool rebuild; Real32 expected; };
    struct Case { const char *name; std::vector<Step> steps; };
    const Case cases[] =
    {
        { "alternating materials",
          { {0, -1.f, false, 0.25f}, {1, -1.f, false, 0.75f},
            {0, -1.f, false, 0.25f}, {1, -1.f, false, 0.75f} } },
        { "the same value after a rebuilt program",
          { {0, -1.f, false, 0.25f}, {0, -1.f, true, 0.25f}, {1, -1.f, false, 0.75f} } },
        { "edited to the other material's value and back",
          { {0, 0.75f, false, 0.75f}, {1, -1.f, false, 0.75f},
            {0, 0.25f, false, 0.25f}, {1, -1.f, false, 0.75f} } },
    };

    for(const Case &c : cases)
    {
        SCOPED_TRACE(c.name);
        std::string text = "uniform float fLevel;\n"
                           "void main() { gl_FragColor = vec4(fLevel); }\n";
        const BitVector mask = ShaderChunk::FragmentProgramFieldMask |
                               ShaderParameterChunk::ParametersFieldMask;
        beginEditCP(shl, mask);
        shl->setFragmentProgram(text);
        shl->setUniformParameter("fLevel", 0.5f);
        endEditCP(shl, mask);

        SHLParameterChunkPtr params[2];
        StateRefPtr states[2];
        for(int i = 0; i < 2; ++i)
        {
            params[i] = SHLParameterChunk::create();
            params[i]->setSHLChunk(shl);
            params[i]->setUniformParameter("fLevel", i == 0 ? 0.25f : 0.75f);
            states[i] = stateWith(params[i], shl);
        }

        for(const Step &step : c.steps)
        {
            if(step.edit >= 0.f)
            {
                beginEditCP(params[step.chunk], ShaderParameterChunk::ParametersFieldMask);
                params[step.chunk]->setUniformParameter("fLevel", step.edit);
                endEditCP(params[step.chunk], ShaderParameterChunk::ParametersFieldMask);
            }
            if(step.rebuild)
            {
                text += "// edited\n";
                testsupport::editCP(shl, ShaderChunk::FragmentProgramFieldMask,
                                    [&] { shl->setFragmentProgram(text); });
            }
            states[step.chunk]->activate(NULL);
            GLfloat level = -1.f;
            glGetUniformfv(shl->getProgram(), location("fLevel"), &level);
            states[step.chunk]->deactivate(NULL);
            EXPECT_FLOAT_EQ(level, step.expected);
        }
    }
}

// The new program starts with its uniforms at zero, so the unchanged
// colour must go up to it again.
TEST_F(SHLChunkGL, EditedProgramTextIsRebuilt)
{
    shl->setFragmentProgram("uniform vec4 vColour;\n"
                            "void main() { gl_FragColor = vColour; }\n");
    shl->setUniformParameter("vColour", Vec4f(0.f, 0.f, 1.f, 1.f));
    StateRefPtr state(stateWith(shl));
    EXPECT_EQ(drawQuad(state), (testsupport::RGBA8{ 0, 0, 255, 255 }));

    beginEditCP(shl, ShaderChunk::FragmentProgramFieldMask);
    shl->setFragmentProgram("uniform vec4 vColour;\n"
                            "void main() { gl_FragColor = vColour.bgra; }\n");
    endEditCP(shl, ShaderChunk::FragmentProgramFieldMask);
    EXPECT_EQ(drawQuad(state), (testsupport::RGBA8{ 255, 0, 0, 255 }));
}

const char *s_strOSGUniformsVertex =
    "void main()\n"
    "{\n"
    "    gl_Position = ftransform();\n"
    "}\n";

// Red and green show the object's world translation; blue stays 0 but keeps
// every other uniform in use.
const char *s_strOSGUniformsFragment =
    "uniform mat4  OSGWorldMatrix;\n"
    "uniform mat4  OSGInvWorldMatrix;\n"
    "uniform mat4  OSGTransInvWorldMatrix;\n"
    "uniform mat4  OSGCameraOrientation;\n"
    "uniform vec3  OSGCameraPosition;\n"
    "uniform vec2  OSGNearFar;\n"
    "uniform int   OSGActiveLightsMask;\n"
    "uniform int   OSGActiveLightsCount;\n"
    "uniform int   OSGLight0Active;\n"
    "uniform int   OSGLight1Active;\n"
    "uniform float fUser;\n"
    "\n"
    "void main()\n"
    "{\n"
    "    float fKeep = OSGInvWorldMatrix[0][0] + OSGTransInvWorldMatrix[0][0] +\n"
    "                  OSGCameraOrientation[0][0] + OSGCameraPosition.x + OSGNearFar.x +\n"
    "                  float(OSGActiveLightsMask + OSGActiveLightsCount +\n"
    "                        OSGLight0Active + OSGLight1Active) + fUser;\n"
    "    gl_FragColor = vec4(OSGWorldMatrix[3].x, OSGWorldMatrix[3].y,\n"
    "                        step(1000.0, fKeep), 1.0);\n"
    "}\n";

void setUserUniform(PFNGLGETUNIFORMLOCATIONARBPROC getUniformLocation, DrawActionBase *,
                    GLuint program)
{
    glUniform1f(getUniformLocation(program, "fUser"), 0.5f);
}

NodePtr translated(NodePtr child, Real32 x, Real32 y)
{
    Matrix m;
    m.setTranslate(x, y, 0.f);
    NodePtr node = testsupport::makeTransformNode(m);
    testsupport::addChild(node, child);
    return node;
}

TEST_F(SHLChunkGL, DeclaredOSGUniformsAndCallbacksAreSuppliedPerObject)
{
    testsupport::SceneSetup setup(64, 64);

    beginEditCP(shl);
    shl->setVertexProgram(s_strOSGUniformsVertex);
    shl->setFragmentProgram(s_strOSGUniformsFragment);
    const char *matrices[] = { "OSGWorldMatrix", "OSGInvWorldMatrix",
                               "OSGTransInvWorldMatrix", "OSGCameraOrientation" };
    for(const char *name : matrices)
        shl->setUniformParameter(name, Matrix());
    shl->setUniformParameter("OSGCameraPosition", Vec3f(0, 0, 0));
    shl->setUniformParameter("OSGNearFar",        Vec2f(0, 0));
    const char *ints[] = { "OSGActiveLightsMask", "OSGActiveLightsCount",
                           "OSGLight0Active", "OSGLight1Active" };
    for(const char *name : ints)
        shl->setUniformParameter(name, Int32(7));
    shl->setUniformParameter("fUser", 0.f);
    endEditCP(shl);
    SHLChunk::addParameterCallback("fUser", &setUserUniform);

    ChunkMaterialPtr material = testsupport::makeChunkMaterial({ shl });

    // One light over two squares that share the material.
    PointLightPtr light = PointLight::create();
    testsupport::editCP(light, [&] { light->setBeacon(setup.cameraBeacon); });
    NodePtr lightNode = makeNodeFor(light);
    testsupport::addChild(lightNode, translated(testsupport::makeRect(-0.1f, -0.1f, 0.1f, 0.1f, 0.f, material), 0.25f, 0.5f));
    testsupport::addChild(lightNode, translated(testsupport::makeRect(-0.1f, -0.1f, 0.1f, 0.1f, 0.f, material), 0.75f, 0.25f));
    testsupport::addChild(setup.root, lightNode);

    setup.render();

    // 8-bit colour of the translations.
    const testsupport::RGBA8 first  = testsupport::readPixelRGBA8(40, 48);
    const testsupport::RGBA8 second = testsupport::readPixelRGBA8(56, 40);
    EXPECT_NEAR(first.r,  64, 2);
    EXPECT_NEAR(first.g,  128, 2);
    EXPECT_NEAR(second.r, 191, 2);
    EXPECT_NEAR(second.g, 64, 2);
    EXPECT_EQ(first.b, 0);

    // The values left from the last object drawn.
    const GLuint program = shl->getProgram();
    GLfloat world[16], inverse[16], position[3], nearFar[2], user = 0.f;
    glGetUniformfv(program, location("OSGWorldMatrix"),    world);
    glGetUniformfv(program, location("OSGInvWorldMatrix"), inverse);
    glGetUniformfv(program, location("OSGCameraPosition"), position);
    glGetUniformfv(program, location("OSGNearFar"),        nearFar);
    glGetUniformfv(program, location("fUser"),             &user);
    EXPECT_FLOAT_EQ(inverse[12], -world[12]);
    EXPECT_FLOAT_EQ(inverse[13], -world[13]);
    EXPECT_FLOAT_EQ(position[2], 5.f);
    EXPECT_FLOAT_EQ(nearFar[0],  1.f);
    EXPECT_FLOAT_EQ(nearFar[1],  9.f);
    EXPECT_FLOAT_EQ(user,        0.5f);

    const GLint expected[] = { 1, 1, 1, 0 };
    for(UInt32 i = 0; i < 4; ++i)
    {
        GLint value = -1;
        glGetUniformiv(program, location(ints[i]), &value);
        EXPECT_EQ(value, expected[i]) << ints[i];
    }
}

} // namespace
