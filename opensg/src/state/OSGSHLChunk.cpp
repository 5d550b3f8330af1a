#include <OpenSG/OSGSHLChunk.h>
#include <OpenSG/OSGDrawActionBase.h>
#include <OpenSG/OSGBaseFunctions.h>
#include <OpenSG/OSGWindow.h>
#include <OpenSG/OSGCamera.h>
#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGRenderAction.h>
#include <OpenSG/OSGShaderParameterBool.h>
#include <OpenSG/OSGShaderParameterInt.h>
#include <OpenSG/OSGShaderParameterReal.h>
#include <OpenSG/OSGShaderParameterVec2f.h>
#include <OpenSG/OSGShaderParameterVec3f.h>
#include <OpenSG/OSGShaderParameterVec4f.h>
#include <OpenSG/OSGShaderParameterMatrix.h>
#include <OpenSG/OSGShaderParameterMInt.h>
#include <OpenSG/OSGShaderParameterMReal.h>
#include <OpenSG/OSGShaderParameterMVec2f.h>
#include <OpenSG/OSGShaderParameterMVec3f.h>
#include <OpenSG/OSGShaderParameterMVec4f.h>
#include <OpenSG/OSGShaderParameterMMatrix.h>

#include "OSGStateGL.h"

#include <cstring>
#include <vector>

namespace osg
{

OSG_FC_IMPL(SHLChunk, "ShaderChunk")

SHLChunk::SHLChunk(void) :
    Inherited(),
    _sfCgFrontEnd             (false),
    _sfPointSize              (false),
    _mfProgramParameterNames  (),
    _mfProgramParameterValues (),
    _sfGLId                   (0),
    _sfIgnoreGLForAspect      (-1),
    _sfUnknownParameterWarning(true),
    _program                  (0),
    _needsBuild               (true),
    _failed                   (false),
    _paramsChanged            (true),
    _locations                (),
    _windowHandled            (false)
{
}

// The copy builds a program of its own.
SHLChunk::SHLChunk(const SHLChunk &source) :
    Inherited(source),
    _sfCgFrontEnd             (source._sfCgFrontEnd),
    _sfPointSize              (source._sfPointSize),
    _mfProgramParameterNames  (source._mfProgramParameterNames),
    _mfProgramParameterValues (source._mfProgramParameterValues),
    _sfGLId                   (0),
    _sfIgnoreGLForAspect      (source._sfIgnoreGLForAspect),
    _sfUnknownParameterWarning(source._sfUnknownParameterWarning),
    _program                  (0),
    _needsBuild               (true),
    _failed                   (false),
    _paramsChanged            (true),
    _locations                (),
    _windowHandled            (false)
{
}

SHLChunk::~SHLChunk(void)
{
}

void SHLChunk::onCreate(const SHLChunk *source)
{
    Inherited::onCreate(source);
    if(GlobalSystemState != Startup)
        registerGLObject();
}

// GLId is the program's id among the window GL objects: each window that
// draws with the chunk keeps the program name under it and deletes the
// program when the chunk goes.
void SHLChunk::registerGLObject(void)
{
    _sfGLId.setValue(Window::registerGLObject(Window::GLObjectFunctor(
        [](Window *win, UInt32 idstatus)
        {
            UInt32 id;
            Window::GLObjectStatusE status;
            Window::unpackIdStatus(idstatus, id, status);
            GLuint name = win->getGLObjectId(id);
            if(status == Window::destroy && name != 0)
                glDeleteProgram(name);
        })));
}

void SHLChunk::validateGLObject(DrawActionBase *action)
{
    Window *win = action != NULL ? action->getWindow() : NULL;
    if(win == NULL)
        return;
    if(getGLId() == 0)
        registerGLObject();
    win->validateGLObject(getGLId());
    win->setGLObjectId(getGLId(), _program);
    _windowHandled = true;
}

void SHLChunk::onDestroy(void)
{
    if(getGLId() != 0)
        Window::destroyGLObject(getGLId());
    if(_windowHandled)
        _program = 0;
    releaseProgram();
    Inherited::onDestroy();
}

void SHLChunk::changed(BitVector whichField, UInt32 origin)
{
    if(whichField & (VertexProgramFieldMask | FragmentProgramFieldMask |
                     GeometryProgramFieldMask | CgFrontEndFieldMask |
                     ProgramParameterNamesFieldMask | ProgramParameterValuesFieldMask))
        _needsBuild = true;
    if(whichField & ParametersFieldMask)
        _paramsChanged = true;

    Inherited::changed(whichField, origin);
}

void SHLChunk::addProgramParameter(GLenum name, UInt32 value)
{
    _mfProgramParameterNames.push_back(name);
    _mfProgramParameterValues.push_back(value);
}

void SHLChunk::subProgramParameter(GLenum name)
{
    for(UInt32 i = 0; i < _mfProgramParameterNames.size(); ++i)
    {
        if(_mfProgramParameterNames[i] != name)
            continue;
        _mfProgramParameterNames.erase(_mfProgramParameterNames.begin() + i);
        if(i < _mfProgramParameterValues.size())
            _mfProgramParameterValues.erase(_mfProgramParameterValues.begin() + i);
        return;
    }
}

void SHLChunk::setProgramParameter(GLenum name, UInt32 value)
{
    for(UInt32 i = 0; i < _mfProgramParameterNames.size(); ++i)
    {
        if(_mfProgramParameterNames[i] == name && i < _mfProgramParameterValues.size())
        {
            _mfProgramParameterValues[i] = value;
            return;
        }
    }
    addProgramParameter(name, value);
}

UInt32 SHLChunk::getProgramParameter(GLenum name)
{
    for(UInt32 i = 0; i < _mfProgramParameterNames.size(); ++i)
    {
        if(_mfProgramParameterNames[i] == name && i < _mfProgramParameterValues.size())
            return _mfProgramParameterValues[i];
    }
    return 0;
}

namespace
{

std::string shaderLog(GLuint shader)
{
    GLint length = 0;
    glGetShaderiv(shader, GL_INFO_LOG_LENGTH, &length);
    std::vector<GLchar> text(std::max(length, 1), '\0');
    glGetShaderInfoLog(shader, GLsizei(text.size()), NULL, text.data());
    return text.data();
}

std::string programLog(GLuint program)
{
    GLint length = 0;
    glGetProgramiv(program, GL_INFO_LOG_LENGTH, &length);
    std::vector<GLchar> text(std::max(length, 1), '\0');
    glGetProgramInfoLog(program, GLsizei(text.size()), NULL, text.data());
    return text.data();
}

// 0 and the driver's message in log on failure.
GLuint compileShader(GLenum type, const std::string &source, std::string &log)
{
    GLuint shader = glCreateShader(type);
    const GLchar *text = source.c_str();
    glShaderSource(shader, 1, &text, NULL);
    glCompileShader(shader);

    GLint ok = GL_FALSE;
    glGetShaderiv(shader, GL_COMPILE_STATUS, &ok);
    if(ok != GL_TRUE)
    {
        log = shaderLog(shader);
        glDeleteShader(shader);
        return 0;
    }
    return shader;
}

GLuint linkProgram(const std::vector<GLuint> &shaders, std::string &log)
{
    GLuint program = glCreateProgram();
    for(GLuint shader : shaders)
        glAttachShader(program, shader);
    glLinkProgram(program);

    GLint ok = GL_FALSE;
    glGetProgramiv(program, GL_LINK_STATUS, &ok);
    if(ok != GL_TRUE)
    {
        log = programLog(program);
        glDeleteProgram(program);
        return 0;
    }
    for(GLuint shader : shaders)
        glDetachShader(program, shader);
    return program;
}

// Bound in place of a program that failed to build: every vertex lands
// behind the far plane and every fragment is discarded.
GLuint discardProgram(void)
{
    static GLuint program = 0;
    if(program != 0 && glIsProgram(program))
        return program;

    const bool compat = stateGLCaps().fixedFunction;
    const char *vertex   = compat ? "void main() { gl_Position = vec4(0.0, 0.0, 2.0, 1.0); }"
                                  : "#version 150\nvoid main() { gl_Position = vec4(0.0, 0.0, 2.0, 1.0); }";
    const char *fragment = compat ? "void main() { discard; }"
                                  : "#version 150\nout vec4 color;\nvoid main() { discard; }";

    std::string log;
    std::vector<GLuint> shaders;
    shaders.push_back(compileShader(GL_VERTEX_SHADER,   vertex,   log));
    shaders.push_back(compileShader(GL_FRAGMENT_SHADER, fragment, log));
    program = linkProgram(shaders, log);
    for(GLuint shader : shaders)
        glDeleteShader(shader);
    return program;
}

} // namespace

void SHLChunk::releaseProgram(void)
{
    if(_program != 0)
        glDeleteProgram(_program);
    _program = 0;
    _locations.clear();
    _slots.clear();
    _sent.clear();
}

void SHLChunk::buildProgram(void)
{
    releaseProgram();
    _needsBuild    = false;
    _failed        = false;
    _paramsChanged = true;

    const struct { GLenum type; const std::string *source; const char *kind; } stages[] =
    {
        { GL_VERTEX_SHADER,   &getVertexProgram(),   "vertex"   },
        { GL_GEOMETRY_SHADER, &getGeometryProgram(), "geometry" },
        { GL_FRAGMENT_SHADER, &getFragmentProgram(), "fragment" }
    };

    std::vector<GLuint> shaders;
    for(const auto &stage : stages)
    {
        if(stage.source->empty())
            continue;

        std::string log;
        GLuint shader = compileShader(stage.type, *stage.source, log);
        if(shader == 0)
        {
            SWARNING << "SHLChunk: " << stage.kind << " shader compile failed: "
                     << log << std::endl;
            _failed = true;
            continue;
        }
        shaders.push_back(shader);
    }

    // Without any program text the chunk leaves fixed function in place.
    if(!_failed && !shaders.empty())
    {
        if(!_mfProgramParameterNames.empty())
            SWARNING << "SHLChunk: program parameters are not supported and "
                        "are ignored" << std::endl;

        std::string log;
        _program = linkProgram(shaders, log);
        if(_program == 0)
        {
            SWARNING << "SHLChunk: program link failed: " << log << std::endl;
            _failed = true;
        }
    }

    for(GLuint shader : shaders)
        glDeleteShader(shader);

    // A new program has new locations for the chunk's own parameters; those
    // of parameter chunks pointing here keep theirs.
    const MFShaderParameterPtr &params = getParameters();
    for(UInt32 i = 0; i < params.size(); ++i)
    {
        if(params[i] != NullFC)
            params[i]->setLocation(_program != 0 ?
                glGetUniformLocation(_program, params[i]->getName().c_str()) : GLint(-2));
    }
}

GLuint SHLChunk::getProgram(void)
{
    if(_needsBuild)
        buildProgram();
    return _program;
}

GLint SHLChunk::uniformLocation(const std::string &name)
{
    std::map<std::string, GLint>::iterator it = _locations.find(name);
    if(it != _locations.end())
        return it->second;

    const GLint location = glGetUniformLocation(_program, name.c_str());
    _locations[name] = location;
    return location;
}

namespace
{

// False, and last takes the value, when it differs from what was sent.
bool alreadySent(std::vector<UInt8> &last, const void *data, size_t bytes)
{
    if(last.size() == bytes && std::memcmp(last.data(), data, bytes) == 0)
        return true;
    last.assign(static_cast<const UInt8 *>(data), static_cast<const UInt8 *>(data) + bytes);
    return false;
}

// The program must be current unless glProgramUniform is available. A value
// equal to the location's last one is not sent again.
void uploadUniform(GLuint program, GLint loc, ShaderParameter *param, bool direct,
                   std::vector<UInt8> &last)
{
    if(ShaderParameterBool *p = dynamic_cast<ShaderParameterBool *>(param))
    {
        const GLint value = p->getValue() ? 1 : 0;
        if(alreadySent(last, &value, sizeof(value))) return;
        if(direct) glProgramUniform1i(program, loc, p->getValue() ? 1 : 0);
        else       glUniform1i(loc, p->getValue() ? 1 : 0);
    }
    else if(ShaderParameterInt *p = dynamic_cast<ShaderParameterInt *>(param))
    {
        const GLint value = p->getValue();
        if(alreadySent(last, &value, sizeof(value))) return;
        if(direct) glProgramUniform1i(program, loc, p->getValue());
        else       glUniform1i(loc, p->getValue());
    }
    else if(ShaderParameterReal *p = dynamic_cast<ShaderParameterReal *>(param))
    {
        const GLfloat value = p->getValue();
        if(alreadySent(last, &value, sizeof(value))) return;
        if(direct) glProgramUniform1f(program, loc, p->getValue());
        else       glUniform1f(loc, p->getValue());
    }
    else if(ShaderParameterVec2f *p = dynamic_cast<ShaderParameterVec2f *>(param))
    {
        if(alreadySent(last, p->getValue().getValues(), 2 * sizeof(GLfloat))) return;
        if(direct) glProgramUniform2fv(program, loc, 1, p->getValue().getValues());
        else       glUniform2fv(loc, 1, p->getValue().getValues());
    }
    else if(ShaderParameterVec3f *p = dynamic_cast<ShaderParameterVec3f *>(param))
    {
        if(alreadySent(last, p->getValue().getValues(), 3 * sizeof(GLfloat))) return;
        if(direct) glProgramUniform3fv(program, loc, 1, p->getValue().getValues());
        else       glUniform3fv(loc, 1, p->getValue().getValues());
    }
    else if(ShaderParameterVec4f *p = dynamic_cast<ShaderParameterVec4f *>(param))
    {
        if(alreadySent(last, p->getValue().getValues(), 4 * sizeof(GLfloat))) return;
        if(direct) glProgramUniform4fv(program, loc, 1, p->getValue().getValues());
        else       glUniform4fv(loc, 1, p->getValue().getValues());
    }
    else if(ShaderParameterMatrix *p = dynamic_cast<ShaderParameterMatrix *>(param))
    {
        if(alreadySent(last, p->getValue().getValues(), 16 * sizeof(GLfloat))) return;
        if(direct) glProgramUniformMatrix4fv(program, loc, 1, GL_FALSE, p->getValue().getValues());
        else       glUniformMatrix4fv(loc, 1, GL_FALSE, p->getValue().getValues());
    }
    else if(ShaderParameterMInt *p = dynamic_cast<ShaderParameterMInt *>(param))
    {
        const MFInt32 &v = p->getValue();
        if(v.empty()) return;
        std::vector<GLint> values(v.begin(), v.end());
        if(alreadySent(last, values.data(), values.size() * sizeof(GLint))) return;
        if(direct) glProgramUniform1iv(program, loc, GLsizei(values.size()), values.data());
        else       glUniform1iv(loc, GLsizei(values.size()), values.data());
    }
    else if(ShaderParameterMReal *p = dynamic_cast<ShaderParameterMReal *>(param))
    {
        const MFReal32 &v = p->getValue();
        if(v.empty()) return;
        if(alreadySent(last, &v[0], v.size() * sizeof(GLfloat))) return;
        if(direct) glProgramUniform1fv(program, loc, GLsizei(v.size()), &v[0]);
        else       glUniform1fv(loc, GLsizei(v.size()), &v[0]);
    }
    else if(ShaderParameterMVec2f *p = dynamic_cast<ShaderParameterMVec2f *>(param))
    {
        const MFVec2f &v = p->getValue();
        if(v.empty()) return;
        std::vector<GLfloat> values;
        for(UInt32 i = 0; i < v.size(); ++i)
            values.insert(values.end(), v[i].getValues(), v[i].getValues() + 2);
        if(alreadySent(last, values.data(), values.size() * sizeof(GLfloat))) return;
        if(direct) glProgramUniform2fv(program, loc, GLsizei(v.size()), values.data());
        else       glUniform2fv(loc, GLsizei(v.size()), values.data());
    }
    else if(ShaderParameterMVec3f *p = dynamic_cast<ShaderParameterMVec3f *>(param))
    {
        const MFVec3f &v = p->getValue();
        if(v.empty()) return;
        std::vector<GLfloat> values;
        for(UInt32 i = 0; i < v.size(); ++i)
            values.insert(values.end(), v[i].getValues(), v[i].getValues() + 3);
        if(alreadySent(last, values.data(), values.size() * sizeof(GLfloat))) return;
        if(direct) glProgramUniform3fv(program, loc, GLsizei(v.size()), values.data());
        else       glUniform3fv(loc, GLsizei(v.size()), values.data());
    }
    else if(ShaderParameterMVec4f *p = dynamic_cast<ShaderParameterMVec4f *>(param))
    {
        const MFVec4f &v = p->getValue();
        if(v.empty()) return;
        std::vector<GLfloat> values;
        for(UInt32 i = 0; i < v.size(); ++i)
            values.insert(values.end(), v[i].getValues(), v[i].getValues() + 4);
        if(alreadySent(last, values.data(), values.size() * sizeof(GLfloat))) return;
        if(direct) glProgramUniform4fv(program, loc, GLsizei(v.size()), values.data());
        else       glUniform4fv(loc, GLsizei(v.size()), values.data());
    }
    else if(ShaderParameterMMatrix *p = dynamic_cast<ShaderParameterMMatrix *>(param))
    {
        const MFMatrix &v = p->getValue();
        if(v.empty()) return;
        std::vector<GLfloat> values;
        for(UInt32 i = 0; i < v.size(); ++i)
            values.insert(values.end(), v[i].getValues(), v[i].getValues() + 16);
        if(alreadySent(last, values.data(), values.size() * sizeof(GLfloat))) return;
        if(direct) glProgramUniformMatrix4fv(program, loc, GLsizei(v.size()), GL_FALSE, values.data());
        else       glUniformMatrix4fv(loc, GLsizei(v.size()), GL_FALSE, values.data());
    }
}

// --- the OSG* uniforms ----------------------------------------------------

// Where the object being drawn is: the render action's current matrix, or
// the node it visits.
Matrix worldMatrix(DrawActionBase *action)
{
    if(RenderAction *ra = dynamic_cast<RenderAction *>(action))
        return ra->top_matrix();
    Matrix m;
    if(action != NULL && action->getActNode() != NullFC)
        action->getActNode()->getToWorld(m);
    return m;
}

Matrix cameraToWorld(DrawActionBase *action)
{
    return action != NULL ? action->getCameraToWorld() : Matrix();
}

UInt32 activeLightsMask(DrawActionBase *action)
{
    RenderAction *ra = dynamic_cast<RenderAction *>(action);
    return ra != NULL ? ra->getActiveLightsMask() : 0;
}

void uniformMatrix(PFNGLGETUNIFORMLOCATIONARBPROC getLocation, GLuint program,
                   const char *name, const Matrix &m)
{
    glUniformMatrix4fv(getLocation(program, name), 1, GL_FALSE, m.getValues());
}

void uniformInt(PFNGLGETUNIFORMLOCATIONARBPROC getLocation, GLuint program,
                const char *name, Int32 value)
{
    glUniform1i(getLocation(program, name), value);
}

void uniformReal(PFNGLGETUNIFORMLOCATIONARBPROC getLocation, GLuint program,
                 const char *name, Real32 value)
{
    glUniform1f(getLocation(program, name), value);
}

void osgWorldMatrix(PFNGLGETUNIFORMLOCATIONARBPROC getLocation, DrawActionBase *action,
                    GLuint program)
{
    uniformMatrix(getLocation, program, "OSGWorldMatrix", worldMatrix(action));
}

void osgInvWorldMatrix(PFNGLGETUNIFORMLOCATIONARBPROC getLocation, DrawActionBase *action,
                       GLuint program)
{
    Matrix m = worldMatrix(action);
    m.invert();
    uniformMatrix(getLocation, program, "OSGInvWorldMatrix", m);
}

void osgTransInvWorldMatrix(PFNGLGETUNIFORMLOCATIONARBPROC getLocation,
                            DrawActionBase *action, GLuint program)
{
    Matrix m = worldMatrix(action);
    m.invert();
    m.transpose();
    uniformMatrix(getLocation, program, "OSGTransInvWorldMatrix", m);
}

void osgCameraOrientation(PFNGLGETUNIFORMLOCATIONARBPROC getLocation,
                          DrawActionBase *action, GLuint program)
{
    Matrix m = cameraToWorld(action);
    m[3][0] = m[3][1] = m[3][2] = 0.f;
    uniformMatrix(getLocation, program, "OSGCameraOrientation", m);
}

void osgCameraPosition(PFNGLGETUNIFORMLOCATIONARBPROC getLocation, DrawActionBase *action,
                       GLuint program)
{
    const Matrix m = cameraToWorld(action);
    glUniform3f(getLocation(program, "OSGCameraPosition"), m[3][0], m[3][1], m[3][2]);
}

void osgViewMatrix(PFNGLGETUNIFORMLOCATIONARBPROC getLocation, DrawActionBase *action,
                   GLuint program)
{
    Matrix m = cameraToWorld(action);
    m.invert();
    uniformMatrix(getLocation, program, "OSGViewMatrix", m);
}

void osgInvViewMatrix(PFNGLGETUNIFORMLOCATIONARBPROC getLocation, DrawActionBase *action,
                      GLuint program)
{
    uniformMatrix(getLocation, program, "OSGInvViewMatrix", cameraToWorld(action));
}

void osgNearFar(PFNGLGETUNIFORMLOCATIONARBPROC getLocation, DrawActionBase *action,
                GLuint program)
{
    Camera *camera = action != NULL ? action->getCamera() : NULL;
    if(camera != NULL)
        glUniform2f(getLocation(program, "OSGNearFar"), camera->getNear(), camera->getFar());
}

void osgNearDist(PFNGLGETUNIFORMLOCATIONARBPROC getLocation, DrawActionBase *action,
                 GLuint program)
{
    Camera *camera = action != NULL ? action->getCamera() : NULL;
    if(camera != NULL)
        uniformReal(getLocation, program, "OSGNearDist", camera->getNear());
}

void osgFarDist(PFNGLGETUNIFORMLOCATIONARBPROC getLocation, DrawActionBase *action,
                GLuint program)
{
    Camera *camera = action != NULL ? action->getCamera() : NULL;
    if(camera != NULL)
        uniformReal(getLocation, program, "OSGFarDist", camera->getFar());
}

// No stereo decorators and no cluster here: the values say so.
void osgStereoLeftEye(PFNGLGETUNIFORMLOCATIONARBPROC getLocation, DrawActionBase *,
                      GLuint program)
{
    uniformInt(getLocation, program, "OSGStereoLeftEye", -1);
}

void osgClusterId(PFNGLGETUNIFORMLOCATIONARBPROC getLocation, DrawActionBase *,
                  GLuint program)
{
    uniformInt(getLocation, program, "OSGClusterId", -1);
}

void osgActiveLightsMask(PFNGLGETUNIFORMLOCATIONARBPROC getLocation, DrawActionBase *action,
                         GLuint program)
{
    uniformInt(getLocation, program, "OSGActiveLightsMask", Int32(activeLightsMask(action)));
}

void osgActiveLightsCount(PFNGLGETUNIFORMLOCATIONARBPROC getLocation,
                          DrawActionBase *action, GLuint program)
{
    Int32 count = 0;
    for(UInt32 mask = activeLightsMask(action); mask != 0; mask &= mask - 1)
        ++count;
    uniformInt(getLocation, program, "OSGActiveLightsCount", count);
}

template <UInt32 LightI>
void osgLightActive(PFNGLGETUNIFORMLOCATIONARBPROC getLocation, DrawActionBase *action,
                    GLuint program)
{
    static const std::string name = "OSGLight" + std::to_string(LightI) + "Active";
    uniformInt(getLocation, program, name.c_str(),
               (activeLightsMask(action) >> LightI) & 1u);
}

// Counts registrations, so that a cached parameter slot notices a callback
// added after it; never 0, which a fresh slot holds.
UInt32 &callbackGeneration(void)
{
    static UInt32 generation = 1;
    return generation;
}

std::map<std::string, SHLChunk::parametercbfp> &parameterCallbacks(void)
{
    static std::map<std::string, SHLChunk::parametercbfp> callbacks = {
        { "OSGWorldMatrix",         &osgWorldMatrix         },
        { "OSGInvWorldMatrix",      &osgInvWorldMatrix      },
        { "OSGTransInvWorldMatrix", &osgTransInvWorldMatrix },
        { "OSGCameraOrientation",   &osgCameraOrientation   },
        { "OSGCameraPosition",      &osgCameraPosition      },
        { "OSGViewMatrix",          &osgViewMatrix          },
        { "OSGInvViewMatrix",       &osgInvViewMatrix       },
        { "OSGNearFar",             &osgNearFar             },
        { "OSGNearDist",            &osgNearDist            },
        { "OSGFarDist",             &osgFarDist             },
        { "OSGStereoLeftEye",       &osgStereoLeftEye       },
        { "OSGClusterId",           &osgClusterId           },
        { "OSGActiveLightsMask",    &osgActiveLightsMask    },
        { "OSGActiveLightsCount",   &osgActiveLightsCount   },
        { "OSGLight0Active",        &osgLightActive<0>      },
        { "OSGLight1Active",        &osgLightActive<1>      },
        { "OSGLight2Active",        &osgLightActive<2>      },
        { "OSGLight3Active",        &osgLightActive<3>      },
        { "OSGLight4Active",        &osgLightActive<4>      },
        { "OSGLight5Active",        &osgLightActive<5>      },
        { "OSGLight6Active",        &osgLightActive<6>      },
        { "OSGLight7Active",        &osgLightActive<7>      },
    };
    return callbacks;
}

// Same signature as the ARB entry point the callbacks are given.
GLint OSG_APIENTRY callbackUniformLocation(GLhandleARB program, const GLcharARB *name)
{
    return glGetUniformLocation(program, name);
}

// Runs the callback of a parameter with the program current; false when
// the name has none.
bool callParameterCallback(const std::string &name, DrawActionBase *action, GLuint program)
{
    std::map<std::string, SHLChunk::parametercbfp>::const_iterator it =
        parameterCallbacks().find(name);
    if(it == parameterCallbacks().end())
        return false;

    GLint current = 0;
    glGetIntegerv(GL_CURRENT_PROGRAM, &current);
    if(GLuint(current) != program)
        glUseProgram(program);
    it->second(&callbackUniformLocation, action, program);
    if(GLuint(current) != program)
        glUseProgram(GLuint(current));
    return true;
}

bool isOSGParameter(const std::string &name)
{
    return name.size() > 3 && name.compare(0, 3, "OSG") == 0;
}

} // namespace

void SHLChunk::applyParameters(const MFShaderParameterPtr &params,
                               DrawActionBase *action, bool values, bool callbacks)
{
    if(getProgram() == 0)
        return;

    const bool direct = stateGLCaps().programUniform;
    if(!direct)
        glUseProgram(_program);

    for(UInt32 i = 0; i < params.size(); ++i)
    {
        ShaderParameter *param = getCPtr(params[i]);
        if(param == NULL)
            continue;

        if(isOSGParameter(param->getName()))
        {
            if(!callbacks)
                continue;
            ParameterSlot &slot = parameterSlot(param);
            if(slot.location >= 0 &&
               (!slot.callback || !callParameterCallback(param->getName(), action, _program)))
                uploadUniform(_program, slot.location, param, direct, _sent[slot.location]);
            continue;
        }
        if(!values)
            continue;

        // The location lives in the parameter, found in whichever program
        // first applies it, and is trusted from then on.
        if(param->getLocation() == -2)
            param->setLocation(glGetUniformLocation(_program, param->getName().c_str()));
        const GLint loc = param->getLocation();
        if(loc >= 0)
            uploadUniform(_program, loc, param, direct, _sent[loc]);
        else if(getUnknownParameterWarning())
            SWARNING << "Unknown parameter '" << param->getName() << "'!" << std::endl;
    }
}

SHLChunk::ParameterSlot &SHLChunk::parameterSlot(ShaderParameter *param)
{
    ParameterSlot &slot = _slots[param];
    if(slot.name != param->getName() || slot.callbackGeneration != callbackGeneration())
    {
        slot.name               = param->getName();
        slot.location           = uniformLocation(slot.name);
        slot.callback           = parameterCallbacks().count(slot.name) != 0;
        slot.callbackGeneration = callbackGeneration();
    }
    return slot;
}

void SHLChunk::addParameterCallback(const char *name, parametercbfp fp)
{
    if(name == NULL || fp == NULL)
    {
        SWARNING << "SHLChunk::addParameterCallback: needs a name and a callback"
                 << std::endl;
        return;
    }
    parameterCallbacks()[name] = fp;
    ++callbackGeneration();
}

void SHLChunk::updateCallbackParameters(DrawActionBase *action)
{
    if(_program == 0 || _failed)
        return;
    const MFShaderParameterPtr &params = getParameters();
    for(UInt32 i = 0; i < params.size(); ++i)
    {
        ShaderParameter *param = getCPtr(params[i]);
        if(param != NULL && uniformLocation(param->getName()) >= 0)
            callParameterCallback(param->getName(), action, _program);
    }
}

void SHLChunk::activate(DrawActionBase *action, UInt32)
{
    getProgram();
    validateGLObject(action);

    if(_failed)
    {
        glUseProgram(discardProgram());
        return;
    }

    glUseProgram(_program);
    // Values go up when they changed or the program was built; the OSG*
    // uniforms at every activation.
    if(_program != 0)
    {
        applyParameters(getParameters(), action, _paramsChanged, true);
        _paramsChanged = false;
    }

    if(getPointSize())
        glEnable(GL_VERTEX_PROGRAM_POINT_SIZE);
}

void SHLChunk::changeFrom(DrawActionBase *action, StateChunk *old, UInt32 index)
{
    if(old == this && !_needsBuild && !_paramsChanged)
        return;

    if(old != NULL && old != this)
        old->deactivate(action, index);
    activate(action, index);
}

void SHLChunk::deactivate(DrawActionBase *, UInt32)
{
    glUseProgram(0);
    if(getPointSize() && !_failed)
        glDisable(GL_VERTEX_PROGRAM_POINT_SIZE);
}

void SHLChunk::dump(UInt32 uiIndent, const BitVector) const
{
    indentLog(uiIndent, PLOG);
    PLOG << "SHLChunk (" << this << ") program " << _program
         << (_failed ? " (failed)" : "") << ", " << getParameters().size()
         << " parameters" << std::endl;
}

} // namespace osg
