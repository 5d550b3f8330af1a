#include <OpenSG/OSGGL.h>
#include <OpenSG/OSGLog.h>

OSG_BEGIN_NAMESPACE

bool osgGlCheckError(const char *file, int line, const char *msg)
{
    bool clean = true;
#ifdef OSG_DEBUG
    for(GLenum error = glGetError(); error != GL_NO_ERROR; error = glGetError())
    {
        SWARNING << "(" << file << "," << line << "): " << msg << " failed: GL error 0x"
                 << std::hex << error << std::dec << std::endl;
        clean = false;
    }
#else
    (void)file; (void)line; (void)msg;
#endif
    return clean;
}

OSG_END_NAMESPACE
