// System GL, EGL, GLU and GLUT headers before the installed runtime's.
#include <EGL/egl.h>
#include <GL/gl.h>
#include <GL/glext.h>
#include <GL/glu.h>
#include <GL/glut.h>

#include <OpenSG/OSGConfig.h>
#include <OpenSG/OSGGLEXT.h>
#include <OpenSG/OSGTextureChunk.h>

OSG_USING_NAMESPACE

bool textureChunkKeepsSystemEnums(void)
{
    TextureChunkPtr chunk = TextureChunk::create();
    addRefCP(chunk);
    beginEditCP(chunk, TextureChunk::MinFilterFieldMask | TextureChunk::InternalFormatFieldMask);
    chunk->setMinFilter(GL_LINEAR_MIPMAP_LINEAR);
    chunk->setInternalFormat(GL_RGBA16F_ARB);
    endEditCP(chunk, TextureChunk::MinFilterFieldMask | TextureChunk::InternalFormatFieldMask);
    const bool ok = chunk->getMinFilter() == GL_LINEAR_MIPMAP_LINEAR &&
                    chunk->getInternalFormat() == GL_RGBA16F_ARB;
    subRefCP(chunk);
    return ok;
}
