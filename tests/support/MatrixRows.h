#ifndef TESTS_SUPPORT_MATRIXROWS_H
#define TESTS_SUPPORT_MATRIXROWS_H

#include <OpenSG/OSGMatrix.h>

namespace testsupport
{

// A 4x4 matrix written as the math is, [row][column].
typedef double Rows[4][4];

// glFrustum and glOrtho as the GL reference writes them.
void frustumRows(Rows &out, double l, double r, double b, double t, double n, double f);
void orthoRows  (Rows &out, double l, double r, double b, double t, double n, double f);

// Rotation by angle about the axis (x, y, z), by Rodrigues' formula.
void rotationRows(Rows &out, double x, double y, double z, double angle);

void        toRows        (const osg::Matrix &m, Rows &out);
osg::Matrix fromRows      (const Rows &rows);
void        expectRowsNear(const osg::Matrix &m, const Rows &expected, double tol = 1e-5);

} // namespace testsupport

#endif
