#include <OpenSG/OSGPerspectiveCamera.h>
#include <OpenSG/OSGMatrixUtility.h>

#include <cmath>

namespace osg
{

OSG_FC_IMPL(PerspectiveCamera, "Camera")

PerspectiveCamera::PerspectiveCamera(void) :
    Inherited(),
    _sfFov    (0.f),
    _sfFovMode(UInt32(FOV_vertical)),
    _sfAspect (1.f),
    FovMode   (FOV_vertical)
{
}

PerspectiveCamera::PerspectiveCamera(const PerspectiveCamera &source) :
    Inherited(source),
    _sfFov    (source._sfFov),
    _sfFovMode(source._sfFovMode),
    _sfAspect (source._sfAspect),
    FovMode   (source.FovMode)
{
}

PerspectiveCamera::~PerspectiveCamera(void)
{
}

void PerspectiveCamera::getProjection(Matrix &result, UInt32 width, UInt32 height)
{
    result.setIdentity();

    Real32 fov    = getFov();
    Real32 nearZ  = getNear();
    Real32 farZ   = getFar();

    // Values beyond a half turn can only be meant as degrees.
    if(fov > Pi)
        fov = osgdegree2rad(fov);

    if(width == 0 || height == 0)
        return;

    if(fov <= Eps || nearZ > farZ || osgabs(farZ - nearZ) < Eps)
    {
        SWARNING << "PerspectiveCamera::getProjection: invalid fov " << fov
                 << " or near/far " << nearZ << "/" << farZ << std::endl;
        return;
    }

    Real32 aspect = Real32(width) / Real32(height) * getAspect();
    Real32 extent = nearZ * std::tan(fov / 2.f);

    UInt32 mode = getFovMode();
    if(mode == FOV_smaller)
        mode = aspect < 1.f ? UInt32(FOV_horizontal) : UInt32(FOV_vertical);

    Real32 x, y;
    if(mode == FOV_horizontal)
    {
        x = extent;
        y = extent / aspect;
    }
    else
    {
        y = extent;
        x = extent * aspect;
    }

    MatrixFrustum(result, -x, x, -y, y, nearZ, farZ);
}

} // namespace osg
