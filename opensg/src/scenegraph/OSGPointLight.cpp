#include <OpenSG/OSGPointLight.h>

namespace osg
{

OSG_FC_IMPL(PointLight, "Light")

PointLight::PointLight(void) :
    Inherited  (),
    _sfPosition(Pnt3f(0, 0, 0))
{
}

PointLight::PointLight(const PointLight &source) :
    Inherited  (source),
    _sfPosition(source._sfPosition)
{
}

PointLight::~PointLight(void)
{
}

void PointLight::setPosition(Real32 x, Real32 y, Real32 z)
{
    _sfPosition.getValue().setValues(x, y, z);
}

void PointLight::setAttenuation(Real32 constant, Real32 linear, Real32 quadratic)
{
    setConstantAttenuation (constant);
    setLinearAttenuation   (linear);
    setQuadraticAttenuation(quadratic);
}

void PointLight::makeChunk(void)
{
    Inherited::makeChunk();

    const Pnt3f &p = getPosition();
    _pChunk->setPosition(Vec4f(p[0], p[1], p[2], 1.f));
}

} // namespace osg
