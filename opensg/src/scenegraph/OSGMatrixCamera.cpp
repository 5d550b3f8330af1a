#include <OpenSG/OSGMatrixCamera.h>

namespace osg
{

OSG_FC_IMPL(MatrixCamera, "Camera")

MatrixCamera::MatrixCamera(void) :
    Inherited          (),
    _sfProjectionMatrix(),
    _sfModelviewMatrix ()
{
    _sfProjectionMatrix.getValue().setIdentity();
    _sfModelviewMatrix .getValue().setIdentity();
}

MatrixCamera::MatrixCamera(const MatrixCamera &source) :
    Inherited          (source),
    _sfProjectionMatrix(source._sfProjectionMatrix),
    _sfModelviewMatrix (source._sfModelviewMatrix)
{
}

MatrixCamera::~MatrixCamera(void)
{
}

void MatrixCamera::getProjection(Matrix &result, UInt32, UInt32)
{
    result = getProjectionMatrix();
}

void MatrixCamera::getViewing(Matrix &result, UInt32, UInt32)
{
    result = getModelviewMatrix();
}

} // namespace osg
