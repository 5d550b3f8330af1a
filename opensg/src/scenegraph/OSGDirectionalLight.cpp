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
void DirectionalLight::activateGL(GLenum light) const
{
    Inherited::activateGL(light);

    const Vec3f &d = getDirection();
    GLfloat dir[4] = { d[0], d[1], d[2], 0.f };
    glLightfv(light, GL_POSITION, dir);
}

} // namespace osg
