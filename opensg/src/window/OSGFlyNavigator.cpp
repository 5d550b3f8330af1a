#include <OpenSG/OSGFlyNavigator.h>
#include <OpenSG/OSGMatrixUtility.h>
#include <OpenSG/OSGQuaternion.h>

namespace osg
{

namespace
{

// p turned by angle about the axis through center.
Pnt3f turnAbout(const Pnt3f &p, const Pnt3f &center, const Vec3f &axis, Real32 angle)
{
    Matrix turn;
    turn.setRotate(Quaternion(axis, angle));
    Vec3f offset = p - center, turned;
    turn.multMatrixVec(offset, turned);
    return center + turned;
}

} // namespace

FlyNavigator::FlyNavigator(void) :
    _rFrom  (0.f, 0.f, 0.f),
    _rAt    (0.f, 0.f, 1.f),
    _vUp    (0.f, 1.f, 0.f),
    _tMatrix()
{
}

FlyNavigator::~FlyNavigator(void)
{
}

Matrix &FlyNavigator::getMatrix(void)
{
    MatrixLookAt(_tMatrix, _rFrom, _rAt, _vUp);
    return _tMatrix;
}

Pnt3f &FlyNavigator::getFrom(void) { return _rFrom; }
Pnt3f &FlyNavigator::getAt  (void) { return _rAt;   }
Vec3f &FlyNavigator::getUp  (void) { return _vUp;   }

void FlyNavigator::setFrom(Pnt3f new_from) { _rFrom = new_from; }
void FlyNavigator::setAt  (Pnt3f new_at)   { _rAt   = new_at;   }
void FlyNavigator::setUp  (Vec3f new_up)   { _vUp   = new_up;   }

void FlyNavigator::set(Pnt3f new_from, Pnt3f new_at, Vec3f new_up)
{
    _rFrom = new_from;
    _rAt   = new_at;
    _vUp   = new_up;
}

// The camera looks down its -Z axis: at is one unit along it.
void FlyNavigator::set(Matrix new_matrix)
{
    _rFrom.setValues(new_matrix[3][0], new_matrix[3][1], new_matrix[3][2]);
    _rAt.setValues(new_matrix[3][0] - new_matrix[2][0],
                   new_matrix[3][1] - new_matrix[2][1],
                   new_matrix[3][2] - new_matrix[2][2]);
    _vUp.setValues(new_matrix[1][0], new_matrix[1][1], new_matrix[1][2]);
}

void FlyNavigator::rotate(Real32 deltaX, Real32 deltaY)
{
    _rAt = turnAbout(_rAt, _rFrom, _vUp, -deltaX);

    Vec3f side = _rAt - _rFrom;
    side.normalize();
    side = side.cross(_vUp);
    side.normalize();
    _rAt = turnAbout(_rAt, _rFrom, side, -deltaY);
}

Real32 FlyNavigator::forward(Real32 step)
{
    Vec3f back = _rFrom - _rAt;
    back.normalize();
    _rFrom += back * step;
    _rAt   += back * step;
    return 0.f;
}

Real32 FlyNavigator::right(Real32 step)
{
    Vec3f side = _rFrom - _rAt;
    side = side.cross(_vUp);
    side.normalize();
    _rFrom += side * step;
    _rAt   += side * step;
    return 0.f;
}

} // namespace osg
