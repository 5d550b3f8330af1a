#ifndef _OSGSTATEGL_H_
#define _OSGSTATEGL_H_

#include <OpenSG/OSGBaseTypes.h>
#include <OpenSG/OSGGL.h>

namespace osg
{

// What the current context offers, queried once: the runtime drives one
// kind of context per process.
struct StateGLCaps
{
    bool   fixedFunction;     // compatibility profile
    GLint  maxFixedUnits;     // units with texture enables and texture env
    GLint  maxImageUnits;     // units a shader can sample
    bool   anisotropy;
    Real32 maxAnisotropy;
    bool   programUniform;    // glProgramUniform* without binding
    bool   textureS3TC;       // DXT1/3/5 compressed textures
};

const StateGLCaps &stateGLCaps(void);

} // namespace osg

#endif
