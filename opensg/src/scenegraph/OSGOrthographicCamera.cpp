#include <OpenSG/OSGOrthographicCamera.h>
#include <OpenSG/OSGMatrixUtility.h>

namespace osg
{

OSG_FC_IMPL(OrthographicCamera, "Camera")

OrthographicCamera::OrthographicCamera(void) :
    Inherited        (),
    _sfVerticalSize  (0.f),
    _sfHorizontalSize(-1.f),
    _sfAspect        (1.f)
{
}

OrthographicCamera::OrthographicCamera(const OrthographicCamera &source) :
    Inherited        (source),
    _sfVerticalSize  (source._sfVerticalSize),
    _sfHorizontalSize(source._sfHorizontalSize),
    _sfAspect        (source._sfAspect)
{
}

OrthographicCamera::~OrthographicCamera(void)
{
}

void OrthographicCamera::getProjection(Matrix &result, UInt32 width, UInt32 height)
{
    result.setIdentity();

    if(width == 0 || height == 0)
        return;

    Real32 aspect = Real32(width) / Real32(height) * getAspect();
    Real32 v      = getVerticalSize();
    Real32 h      = getHorizontalSize();

    if(v <= 0 && h <= 0)
    {
        SWARNING << "OrthographicCamera::getProjection: no positive size" << std::endl;
        return;
    }

    if(h <= 0)
        h = v * aspect;
    else if(v <= 0)
        v = h / aspect;
    else if(h / v < aspect)
        h = v * aspect;
    else
        v = h / aspect;

    MatrixOrthogonal(result, -h / 2, h / 2, -v / 2, v / 2, getNear(), getFar());
}

} // namespace osg
