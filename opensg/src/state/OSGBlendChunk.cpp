#include <OpenSG/OSGBlendChunk.h>

namespace osg
{

OSG_FC_IMPL(BlendChunk, "StateChunk")

BlendChunk::BlendChunk(void) :
    Inherited(),
    _sfSrcFactor      (GL_ONE),
    _sfDestFactor     (GL_ZERO),
    _sfEquation       (GL_NONE),
    _sfColor          (Color4f(0.f, 0.f, 0.f, 0.f)),
    _sfAlphaFunc      (GL_NONE),
    _sfAlphaValue     (0.f),
    _sfAlphaSrcFactor (OSG_GL_UNUSED),
    _sfAlphaDestFactor(OSG_GL_UNUSED)
{
}

BlendChunk::BlendChunk(const BlendChunk &source) :
    Inherited(source),
    _sfSrcFactor      (source._sfSrcFactor),
    _sfDestFactor     (source._sfDestFactor),
    _sfEquation       (source._sfEquation),
    _sfColor          (source._sfColor),
    _sfAlphaFunc      (source._sfAlphaFunc),
    _sfAlphaValue     (source._sfAlphaValue),
    _sfAlphaSrcFactor (source._sfAlphaSrcFactor),
    _sfAlphaDestFactor(source._sfAlphaDestFactor)
{
}

BlendChunk::~BlendChunk(void)
{
}

bool BlendChunk::blends(void) const
{
    const bool separateAlpha = getAlphaSrcFactor()  != OSG_GL_UNUSED &&
                               getAlphaDestFactor() != OSG_GL_UNUSED;
    return getSrcFactor() != GL_ONE || getDestFactor() != GL_ZERO || separateAlpha;
}

void BlendChunk::activate(DrawActionBase *, UInt32)
{
    if(blends())
    {
        if(getAlphaSrcFactor() != OSG_GL_UNUSED && getAlphaDestFactor() != OSG_GL_UNUSED)
            glBlendFuncSeparate(getSrcFactor(), getDestFactor(),
                                getAlphaSrcFactor(), getAlphaDestFactor());
        else
            glBlendFunc(getSrcFactor(), getDestFactor());

        glBlendColor(getColor()[0], getColor()[1], getColor()[2], getColor()[3]);
        glEnable(GL_BLEND);
    }

    if(getEquation() != GL_NONE)
        glBlendEquation(getEquation());

    if(getAlphaFunc() != GL_NONE)
    {
        glAlphaFunc(getAlphaFunc(), getAlphaValue());
        glEnable(GL_ALPHA_TEST);
    }
}

void BlendChunk::deactivate(DrawActionBase *, UInt32)
{
    if(blends())
    {
        glBlendFunc(GL_ONE, GL_ZERO);
        glDisable(GL_BLEND);
    }

    if(getEquation() != GL_NONE)
        glBlendEquation(GL_FUNC_ADD);

    if(getAlphaFunc() != GL_NONE)
        glDisable(GL_ALPHA_TEST);
}

bool BlendChunk::isTransparent(void) const
{
    return getDestFactor() != GL_ZERO;
}

} // namespace osg
