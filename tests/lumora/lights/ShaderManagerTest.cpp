#include <Lumora/ShaderManager.h>

#include "support/GLTest.h"

#include <string>

using namespace osg;

namespace
{

std::string compileLog(GLuint object, bool program)
{
    GLint length = 0;
    program ? glGetProgramiv(object, GL_INFO_LOG_LENGTH, &length)
            : glGetShaderiv (object, GL_INFO_LOG_LENGTH, &length);
    std::string text(length > 0 ? length : 1, '\0');
    program ? glGetProgramInfoLog(object, length, NULL, &text[0])
            : glGetShaderInfoLog (object, length, NULL, &text[0]);
    return text;
}

// Compiles and links the pair; returns the failure log, or "" on success.
std::string buildProgram(const std::string &vertex, const std::string &fragment)
{
    std::string failure;
    GLuint      program = glCreateProgram();
    const std::string *texts[2] = {&vertex, &fragment};
    const GLenum       kinds[2] = {GL_VERTEX_SHADER, GL_FRAGMENT_SHADER};
    for(int i = 0; i < 2; ++i)
    {
        GLuint      shader = glCreateShader(kinds[i]);
        const char *source = texts[i]->c_str();
        glShaderSource(shader, 1, &source, NULL);
        glCompileShader(shader);
        GLint ok = 0;
        glGetShaderiv(shader, GL_COMPILE_STATUS, &ok);
        if(!ok)
            failure += (i == 0 ? "vertex: " : "fragment: ") + compileLog(shader, false);
        glAttachShader(program, shader);
        glDeleteShader(shader);
    }
    if(failure.empty())
    {
        glLinkProgram(program);
        GLint ok = 0;
        glGetProgramiv(program, GL_LINK_STATUS, &ok);
        if(!ok)
            failure = "link: " + compileLog(program, true);
    }
    glDeleteProgram(program);
    return failure;
}

class ShaderProgramTest : public testsupport::GLTest
{
};

} // namespace

TEST_F(ShaderProgramTest, EveryLightProgramCompilesAndLinks)
{
    ShaderManager &m = ShaderManager::getInstance();
    const ShaderManager::LightType types[] =
    {
        ShaderManager::DIRECTIONAL_LIGHT, ShaderManager::SPOT_LIGHT,
        ShaderManager::POINT_LIGHT,       ShaderManager::EMISSIVE_LIGHT
    };
    for(ShaderManager::LightType type : types)
    {
        UInt16 splits = type == ShaderManager::DIRECTIONAL_LIGHT ? 3 : 1;
        EXPECT_EQ(buildProgram(m.generateLightVertexShader(type),
                               m.generateLightFragmentShader(type, 5, splits)), "")
            << "light type " << type;
    }
}

TEST_F(ShaderProgramTest, TooFewGBufferSamplersDoNotCompile)
{
    expectGLErrors();
    ShaderManager &m = ShaderManager::getInstance();
    EXPECT_NE(buildProgram(m.generateLightVertexShader(ShaderManager::POINT_LIGHT),
                           m.generateLightFragmentShader(ShaderManager::POINT_LIGHT, 3, 1)),
              "");
}
