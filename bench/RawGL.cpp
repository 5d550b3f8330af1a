#include "RawGL.h"

#include <OpenSG/OSGBaseFunctions.h>

#include <algorithm>
#include <chrono>
#include <cstdio>

namespace rawgl
{

namespace
{

GLuint compile(GLenum type, const char *text, std::string &error)
{
    GLuint shader = glCreateShader(type);
    glShaderSource(shader, 1, &text, NULL);
    glCompileShader(shader);
    GLint ok = GL_FALSE;
    glGetShaderiv(shader, GL_COMPILE_STATUS, &ok);
    if(ok == GL_TRUE)
        return shader;
    char log[4096] = {0};
    glGetShaderInfoLog(shader, sizeof(log), NULL, log);
    error = std::string("compile: ") + log;
    glDeleteShader(shader);
    return 0;
}

} // namespace

GLuint buildProgram(const char *vertex, const char *fragment,
                    std::initializer_list<const char *> attributes, std::string &error)
{
    GLuint vs = compile(GL_VERTEX_SHADER, vertex, error);
    GLuint fs = vs != 0 ? compile(GL_FRAGMENT_SHADER, fragment, error) : 0;
    if(fs == 0)
    {
        glDeleteShader(vs);
        return 0;
    }
    GLuint program = glCreateProgram();
    glAttachShader(program, vs);
    glAttachShader(program, fs);
    GLuint location = 0;
    for(const char *name : attributes)
        glBindAttribLocation(program, location++, name);
    glLinkProgram(program);
    glDeleteShader(vs);
    glDeleteShader(fs);
    GLint ok = GL_FALSE;
    glGetProgramiv(program, GL_LINK_STATUS, &ok);
    if(ok == GL_TRUE)
        return program;
    char log[4096] = {0};
    glGetProgramInfoLog(program, sizeof(log), NULL, log);
    error = std::string("link: ") + log;
    glDeleteProgram(program);
    return 0;
}

double nowMilliseconds(void)
{
    return std::chrono::duration<double, std::milli>(
        std::chrono::steady_clock::now().time_since_epoch()).count();
}

std::unique_ptr<lumora::HeadlessContext> openTableContext(const char *program,
                                                          const std::vector<int> &heights)
{
    int maxHeight = 0;
    for(int height : heights)
        maxHeight = std::max(maxHeight, height);
    std::unique_ptr<lumora::HeadlessContext> context(
        new lumora::HeadlessContext(maxHeight * 16 / 9, maxHeight));
    if(!context->isValid())
    {
        std::fprintf(stderr, "%s: no GL context: %s\n", program,
                     context->errorString().c_str());
        return nullptr;
    }
    osg::osgInit(0, NULL);
    return context;
}

} // namespace rawgl
