#include <OpenSG/OSGDirectionalLight.h>

namespace osg
{

OSG_FC_IMPL(DirectionalLight, "Light")

DirectionalLight::DirectionalLight(void) :
    Inherited   (),
    _sfDirection(Vec3f(0, 0, 1))
{
}

DirectionalLight::DirectionalLight(const DirectionalLight &source) :
    Inherited   (source),
    _sfDirection(source._sfDirection)
{
}

DirectionalLight::~DirectionalLight(void)
{
}

void DirectionalLight::setDirection(Real32 x, Real32 y, Real32 z)
{
    _sfDirection.getValue().setValues(x, y, z);
}

// w = 0 makes GL treat the direction as a light at infinity.
void DirectionalLight::makeChunk(void)
{
    Inherited::makeChunk();

    const Vec3f &d = getDirection();
    _pChunk->setPosition(Vec4f(d[0], d[1], d[2], 0.f));
}

} // namespace osg
