#include "OSGStateGL.h"

namespace osg
{

const StateGLCaps &stateGLCaps(void)
{
    static StateGLCaps caps;
    static bool        queried = false;
    if(queried)
        return caps;
    queried = true;

    const int version = epoxy_gl_version();

    caps.fixedFunction = true;
    if(version >= 32)
    {
        GLint mask = 0;
        glGetIntegerv(GL_CONTEXT_PROFILE_MASK, &mask);
        caps.fixedFunction = (mask & GL_CONTEXT_CORE_PROFILE_BIT) == 0;
    }

    caps.maxFixedUnits = 0;
    if(caps.fixedFunction)
        glGetIntegerv(GL_MAX_TEXTURE_UNITS, &caps.maxFixedUnits);

    caps.maxImageUnits = 0;
    glGetIntegerv(GL_MAX_COMBINED_TEXTURE_IMAGE_UNITS, &caps.maxImageUnits);

    caps.anisotropy    = version >= 46 ||
                         epoxy_has_gl_extension("GL_EXT_texture_filter_anisotropic") ||
                         epoxy_has_gl_extension("GL_ARB_texture_filter_anisotropic");
    caps.maxAnisotropy = 1.f;
    if(caps.anisotropy)
        glGetFloatv(GL_MAX_TEXTURE_MAX_ANISOTROPY_EXT, &caps.maxAnisotropy);

    caps.programUniform = version >= 41 ||
                          epoxy_has_gl_extension("GL_ARB_separate_shader_objects");
    caps.textureS3TC    = epoxy_has_gl_extension("GL_EXT_texture_compression_s3tc");
    return caps;
}

} // namespace osg
