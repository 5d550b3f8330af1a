#include <OpenSG/OSGMatrixUtility.h>
#include <OpenSG/OSGLog.h>

namespace osg
{

bool MatrixOrthogonal(Matrix &result,
                      Real32 rLeft,   Real32 rRight,
                      Real32 rBottom, Real32 rTop,
                      Real32 rNear,   Real32 rFar)
{
    result.setValue(2.f / (rRight - rLeft), 0.f, 0.f,
                    -(rRight + rLeft) / (rRight - rLeft),

                    0.f, 2.f / (rTop - rBottom), 0.f,
                    -(rTop + rBottom) / (rTop - rBottom),

                    0.f, 0.f, -2.f / (rFar - rNear),
                    -(rFar + rNear) / (rFar - rNear),

                    0.f, 0.f, 0.f, 1.f);
    return false;
}

// In float throughout, as 1.8: a far distance whose product with twice the
// near one overflows gives an infinite depth offset there too.
bool MatrixFrustum(Matrix &result,
                   Real32 rLeft,   Real32 rRight,
                   Real32 rBottom, Real32 rTop,
                   Real32 rNear,   Real32 rFar)
{
    const Real32 dx     = rRight - rLeft;
    const Real32 dy     = rTop   - rBottom;
    const Real32 dz     = rFar   - rNear;
    const Real32 twoNear = 2.f * rNear;

    result.setValue(twoNear / dx, 0.f, (rRight + rLeft) / dx, 0.f,
                    0.f, twoNear / dy, (rTop + rBottom) / dy, 0.f,
                    0.f, 0.f, -(rFar + rNear) / dz, -(rFar * twoNear) / dz,
                    0.f, 0.f, -1.f, 0.f);
    return false;
}

bool MatrixPerspective(Matrix &result,
                       Real32 rFovy, Real32 rAspect,
                       Real32 rNear, Real32 rFar)
{
    // Each bad argument is named, as 1.8 does, before the identity is given.
    bool bad = false;
    if(rNear > rFar)
    {
        SWARNING << "MatrixPerspective: near " << rNear << " lies beyond far " << rFar
                 << endLog;
        bad = true;
    }
    if(rFovy <= Eps)
    {
        SWARNING << "MatrixPerspective: field of view " << rFovy << " is too small" << endLog;
        bad = true;
    }
    if(osgabs(rNear - rFar) < Eps)
    {
        SWARNING << "MatrixPerspective: near " << rNear << " and far " << rFar
                 << " nearly coincide" << endLog;
        bad = true;
    }
    if(rAspect < Eps)
    {
        SWARNING << "MatrixPerspective: aspect ratio " << rAspect << " is too small" << endLog;
        bad = true;
    }
    if(bad)
    {
        result.setIdentity();
        return true;
    }

    const Real32 top   = rNear * osgtan(rFovy);
    const Real32 right = top * rAspect;

    return MatrixFrustum(result, -right, right, -top, top, rNear, rFar);
}

bool MatrixStereoPerspective(Matrix &projection, Matrix &projtrans,
                             Real32 rFovy,         Real32 rAspect,
                             Real32 rNear,         Real32 rFar,
                             Real32 rZeroparallax, Real32 rEyedistance,
                             Real32 rWhicheye,     Real32 rOverlap)
{
    if(rNear > rFar || rFovy <= Eps || osgabs(rNear - rFar) < Eps ||
       rAspect < Eps || rZeroparallax < Eps)
    {
        projection.setIdentity();
        projtrans .setIdentity();
        return true;
    }

    const Real32 top   = rNear * osgtan(rFovy / 2.f);
    const Real32 right = top * rAspect;

    // Each eye sits eyeOffset along x; its frustum is sheared so that both
    // meet on the zero-parallax plane, scaled by how much they overlap.
    const Real32 eyeOffset = (rWhicheye - 0.5f) * rEyedistance;
    const Real32 shift     = eyeOffset * rNear / rZeroparallax * rOverlap;

    MatrixFrustum(projection, -right - shift, right - shift, -top, top, rNear, rFar);

    projtrans.setIdentity();
    projtrans.setTranslate(-eyeOffset, 0.f, 0.f);

    return false;
}

bool MatrixLookAt(Matrix &result,
                  Real32 fromx, Real32 fromy, Real32 fromz,
                  Real32 atx,   Real32 aty,   Real32 atz,
                  Real32 upx,   Real32 upy,   Real32 upz)
{
    return MatrixLookAt(result,
                        Pnt3f(fromx, fromy, fromz),
                        Pnt3f(atx, aty, atz),
                        Vec3f(upx, upy, upz));
}

// Degenerate input (up along the view) leaves result as it was.
bool MatrixLookAt(Matrix &result, Pnt3f from, Pnt3f at, Vec3f up)
{
    Vec3f back = from - at;
    back.normalize();

    Vec3f right = up.cross(back);
    if(right.dot(right) < Eps)
        return true;
    right.normalize();

    Vec3f newUp = back.cross(right);

    // Translation times rotation, multiplied out as 1.8 does.
    Matrix rotation;
    rotation.setValue(right[0], newUp[0], back[0], 0.f,
                      right[1], newUp[1], back[1], 0.f,
                      right[2], newUp[2], back[2], 0.f,
                      0.f,      0.f,      0.f,     1.f);
    result.setIdentity();
    result.setTranslate(from[0], from[1], from[2]);
    result.mult(rotation);
    return false;
}

// Not implemented in 1.8 either, which stops there; this leaves the
// matrix alone and says so.
bool MatrixProjection(Matrix &, Real32, Real32, Real32, Real32, Real32, Real32)
{
    SFATAL << "MatrixProjection: Not yet implemented!" << endLog;
    return false;
}

} // namespace osg
