#include <OpenSG/OSGMaterialChunk.h>

#include "OSGStateGL.h"

#include <algorithm>

namespace osg
{

OSG_FC_IMPL(MaterialChunk, "StateChunk")

MaterialChunk::MaterialChunk(void) :
    Inherited(),
    _sfDiffuse          (Color4f(1.f, 1.f, 1.f, 1.f)),
    _sfAmbient          (Color4f(.2f, .2f, .2f, 1.f)),
    _sfSpecular         (Color4f(.5f, .5f, .5f, 1.f)),
    _sfEmission         (Color4f(0.f, 0.f, 0.f, 1.f)),
    _sfShininess        (10.f),
    _sfLit              (true),
    _sfColorMaterial    (GL_DIFFUSE),
    _sfBackMaterial     (false),
    _sfBackDiffuse      (Color4f(1.f, 1.f, 1.f, 0.f)),
    _sfBackAmbient      (Color4f(.2f, .2f, .2f, 0.f)),
    _sfBackSpecular     (Color4f(.5f, .5f, .5f, 0.f)),
    _sfBackEmission     (Color4f(0.f, 0.f, 0.f, 0.f)),
    _sfBackShininess    (10.f),
    _sfBackColorMaterial(GL_DIFFUSE)
{
}

MaterialChunk::MaterialChunk(const MaterialChunk &source) :
    Inherited(source),
    _sfDiffuse          (source._sfDiffuse),
    _sfAmbient          (source._sfAmbient),
    _sfSpecular         (source._sfSpecular),
    _sfEmission         (source._sfEmission),
    _sfShininess        (source._sfShininess),
    _sfLit              (source._sfLit),
    _sfColorMaterial    (source._sfColorMaterial),
    _sfBackMaterial     (source._sfBackMaterial),
    _sfBackDiffuse      (source._sfBackDiffuse),
    _sfBackAmbient      (source._sfBackAmbient),
    _sfBackSpecular     (source._sfBackSpecular),
    _sfBackEmission     (source._sfBackEmission),
    _sfBackShininess    (source._sfBackShininess),
    _sfBackColorMaterial(source._sfBackColorMaterial)
{
}

MaterialChunk::~MaterialChunk(void)
{
}

namespace
{

void setFaceMaterial(GLenum face, const Color4f &diffuse, const Color4f &ambient,
                     const Color4f &specular, const Color4f &emission,
                     Real32 shininess)
{
    glMaterialfv(face, GL_DIFFUSE,  diffuse.getValuesRGBA());
    glMaterialfv(face, GL_AMBIENT,  ambient.getValuesRGBA());
    glMaterialfv(face, GL_SPECULAR, specular.getValuesRGBA());
    glMaterialfv(face, GL_EMISSION, emission.getValuesRGBA());
    // GL rejects exponents outside [0, 128].
    glMaterialf (face, GL_SHININESS, std::min(std::max(shininess, 0.f), 128.f));
}

} // namespace

void MaterialChunk::activate(DrawActionBase *, UInt32)
{
    if(!stateGLCaps().fixedFunction)
        return;

    // Unlit geometry without colours shows the diffuse colour.
    glColor4fv(getDiffuse().getValuesRGBA());

    if(getBackMaterial())
    {
        setFaceMaterial(GL_FRONT, getDiffuse(), getAmbient(), getSpecular(),
                        getEmission(), getShininess());
        setFaceMaterial(GL_BACK, getBackDiffuse(), getBackAmbient(),
                        getBackSpecular(), getBackEmission(), getBackShininess());
    }
    else
    {
        setFaceMaterial(GL_FRONT_AND_BACK, getDiffuse(), getAmbient(),
                        getSpecular(), getEmission(), getShininess());
    }

    if(getColorMaterial() != GL_NONE)
    {
        glColorMaterial(getBackMaterial() ? GL_FRONT : GL_FRONT_AND_BACK,
                        getColorMaterial());
        glEnable(GL_COLOR_MATERIAL);
    }
    else
        glDisable(GL_COLOR_MATERIAL);

    if(getLit())
        glEnable(GL_LIGHTING);
    else
        glDisable(GL_LIGHTING);
}

void MaterialChunk::deactivate(DrawActionBase *, UInt32)
{
    if(!stateGLCaps().fixedFunction)
        return;

    if(getLit())
        glDisable(GL_LIGHTING);
    if(getColorMaterial() != GL_NONE)
        glDisable(GL_COLOR_MATERIAL);
}

bool MaterialChunk::isTransparent(void) const
{
    return getDiffuse()[3] < 1.f - Eps;
}

} // namespace osg
