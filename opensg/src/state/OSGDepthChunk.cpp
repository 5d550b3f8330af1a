#include <OpenSG/OSGDepthChunk.h>

namespace osg
{

OSG_FC_IMPL(DepthChunk, "StateChunk")

DepthChunk::DepthChunk(void) :
    Inherited(),
    _sfEnable  (true),
    _sfFunc    (GL_LEQUAL),
    _sfNear    (-1.f),
    _sfFar     (-1.f),
    _sfReadOnly(false)
{
}

DepthChunk::DepthChunk(const DepthChunk &source) :
    Inherited(source),
    _sfEnable  (source._sfEnable),
    _sfFunc    (source._sfFunc),
    _sfNear    (source._sfNear),
    _sfFar     (source._sfFar),
    _sfReadOnly(source._sfReadOnly)
{
}

DepthChunk::~DepthChunk(void)
{
}

void DepthChunk::activate(DrawActionBase *, UInt32)
{
    if(getEnable())
        glEnable(GL_DEPTH_TEST);
    else
        glDisable(GL_DEPTH_TEST);

    if(getFunc() != GL_NONE)
        glDepthFunc(getFunc());

    if(getNear() >= 0.f && getFar() >= 0.f)
        glDepthRange(getNear(), getFar());

    // Both ways, as 1.8: a writable chunk turns writes back on where the
    // render action had turned them off for transparent objects.
    glDepthMask(getReadOnly() ? GL_FALSE : GL_TRUE);
}

void DepthChunk::deactivate(DrawActionBase *, UInt32)
{
    if(!getEnable())
        glEnable(GL_DEPTH_TEST);

    if(getFunc() != GL_NONE && getFunc() != GL_LEQUAL)
        glDepthFunc(GL_LEQUAL);

    if(getNear() >= 0.f && getFar() >= 0.f)
        glDepthRange(0.0, 1.0);

    glDepthMask(GL_TRUE);
}

} // namespace osg
