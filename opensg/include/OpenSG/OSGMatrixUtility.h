#ifndef _OSGMATRIXUTILITY_H_
#define _OSGMATRIXUTILITY_H_

#include <OpenSG/OSGBaseTypes.h>
#include <OpenSG/OSGMatrix.h>

namespace osg
{

// All return true on failure, leaving result the identity.

bool MatrixOrthogonal(Matrix &result,
                      Real32 rLeft,   Real32 rRight,
                      Real32 rBottom, Real32 rTop,
                      Real32 rNear,   Real32 rFar);

bool MatrixFrustum(Matrix &result,
                   Real32 rLeft,   Real32 rRight,
                   Real32 rBottom, Real32 rTop,
                   Real32 rNear,   Real32 rFar);

// rFovy is half the vertical opening angle, in radians.
bool MatrixPerspective(Matrix &result,
                       Real32 rFovy, Real32 rAspect,
                       Real32 rNear, Real32 rFar);

// rFovy is the full vertical angle; rWhicheye 0 is the left eye, 1 the right.
bool MatrixStereoPerspective(Matrix &projection, Matrix &projtrans,
                             Real32 rFovy,         Real32 rAspect,
                             Real32 rNear,         Real32 rFfar,
                             Real32 rZeroparallax, Real32 rEyedistance,
                             Real32 rWhicheye,     Real32 rOverlap);

// Camera-to-world: columns right, up, back, translation from.
bool MatrixLookAt(Matrix &result,
                  Real32 fromx, Real32 fromy, Real32 fromz,
                  Real32 atx,   Real32 aty,   Real32 atz,
                  Real32 upx,   Real32 upy,   Real32 upz);

bool MatrixLookAt(Matrix &result, Pnt3f from, Pnt3f at, Vec3f up);

bool MatrixProjection(Matrix &result,
                      Real32 rLeft,   Real32 rRight,
                      Real32 rBottom, Real32 rTop,
                      Real32 rNear,   Real32 rFar);

} // namespace osg

#endif
