#include <OpenSG/OSGSolidBackground.h>
#include <OpenSG/OSGGL.h>
#include <OpenSG/OSGLog.h>

namespace osg
{

OSG_FC_IMPL(SolidBackground, "Background")

SolidBackground::SolidBackground(void) :
    Inherited(),
    _sfColor          (Color3f(0.f, 0.f, 0.f)),
    _sfClearStencilBit(-1),
    _sfAlpha          (1.f),
    _sfDepth          (1.f),
    _sfClearDepth     (true),
    _sfClearColor     (true)
{
}

SolidBackground::SolidBackground(const SolidBackground &source) :
    Inherited(source),
    _sfColor          (source._sfColor),
    _sfClearStencilBit(source._sfClearStencilBit),
    _sfAlpha          (source._sfAlpha),
    _sfDepth          (source._sfDepth),
    _sfClearDepth     (source._sfClearDepth),
    _sfClearColor     (source._sfClearColor)
{
}

SolidBackground::~SolidBackground(void)
{
}

void SolidBackground::clear(DrawActionBase *, Viewport *)
{
    GLbitfield mask = 0;

    if(getClearColor())
    {
        const Color3f &c = getColor();
        glClearColor(c.red(), c.green(), c.blue(), getAlpha());
        mask |= GL_COLOR_BUFFER_BIT;
    }
    if(getClearDepth())
    {
        glClearDepth(getDepth());
        mask |= GL_DEPTH_BUFFER_BIT;
    }
    if(getClearStencilBit() >= 0)
    {
        glClearStencil(getClearStencilBit());
        mask |= GL_STENCIL_BUFFER_BIT;
    }

    if(mask == 0)
        return;

    // A clear honours the write masks; a previous draw may have left them off.
    GLboolean depthWrite = GL_TRUE;
    glGetBooleanv(GL_DEPTH_WRITEMASK, &depthWrite);
    if(mask & GL_DEPTH_BUFFER_BIT)
        glDepthMask(GL_TRUE);

    glClear(mask);

    glDepthMask(depthWrite);
}

void SolidBackground::dump(UInt32, const BitVector) const
{
    SLOG << "SolidBackground (" << getColor().red() << ", " << getColor().green()
         << ", " << getColor().blue() << ", " << getAlpha() << ")" << std::endl;
}

} // namespace osg
