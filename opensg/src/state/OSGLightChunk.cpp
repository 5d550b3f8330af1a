#include <OpenSG/OSGLightChunk.h>

namespace osg
{

OSG_FC_IMPL(LightChunk, "StateChunk")

LightChunk::LightChunk(void) :
    Inherited              (),
    _sfDiffuse             (Color4f(1, 1, 1, 1)),
    _sfAmbient             (Color4f(0, 0, 0, 1)),
    _sfSpecular            (Color4f(1, 1, 1, 1)),
    _sfPosition            (Vec4f(0, 0, 1, 0)),
    _sfDirection           (Vec3f(0, 0, -1)),
    _sfExponent            (0.f),
    _sfCutoff              (180.f),
    _sfConstantAttenuation (1.f),
    _sfLinearAttenuation   (0.f),
    _sfQuadraticAttenuation(0.f)
{
}

LightChunk::LightChunk(const LightChunk &source) :
    Inherited              (source),
    _sfDiffuse             (source._sfDiffuse),
    _sfAmbient             (source._sfAmbient),
    _sfSpecular            (source._sfSpecular),
    _sfPosition            (source._sfPosition),
    _sfDirection           (source._sfDirection),
    _sfExponent            (source._sfExponent),
    _sfCutoff              (source._sfCutoff),
    _sfConstantAttenuation (source._sfConstantAttenuation),
    _sfLinearAttenuation   (source._sfLinearAttenuation),
    _sfQuadraticAttenuation(source._sfQuadraticAttenuation)
{
}

LightChunk::~LightChunk(void)
{
}

void LightChunk::activate(DrawActionBase *, UInt32 index)
{
    const GLenum light = GLenum(GL_LIGHT0 + index);
    glLightfv(light, GL_DIFFUSE,  getDiffuse ().getValuesRGBA());
    glLightfv(light, GL_AMBIENT,  getAmbient ().getValuesRGBA());
    glLightfv(light, GL_SPECULAR, getSpecular().getValuesRGBA());
    glLightfv(light, GL_POSITION, getPosition().getValues());
    glLightfv(light, GL_SPOT_DIRECTION, getDirection().getValues());
    glLightf (light, GL_SPOT_EXPONENT,  getExponent());
    glLightf (light, GL_SPOT_CUTOFF,    getCutoff());
    glLightf (light, GL_CONSTANT_ATTENUATION,  getConstantAttenuation ());
    glLightf (light, GL_LINEAR_ATTENUATION,    getLinearAttenuation   ());
    glLightf (light, GL_QUADRATIC_ATTENUATION, getQuadraticAttenuation());
    glEnable(light);
}

void LightChunk::changeFrom(DrawActionBase *action, StateChunk *, UInt32 index)
{
    activate(action, index);
}

void LightChunk::deactivate(DrawActionBase *, UInt32 index)
{
    glDisable(GLenum(GL_LIGHT0 + index));
}

} // namespace osg
