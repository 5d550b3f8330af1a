#include "support/MatrixRows.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace testsupport
{

namespace
{

void assign(Rows &out, const Rows &rows)
{
    std::copy(&rows[0][0], &rows[0][0] + 16, &out[0][0]);
}

} // namespace

void frustumRows(Rows &out, double l, double r, double b, double t, double n, double f)
{
    const Rows rows = { { 2 * n / (r - l), 0, (r + l) / (r - l), 0 },
                        { 0, 2 * n / (t - b), (t + b) / (t - b), 0 },
                        { 0, 0, -(f + n) / (f - n), -2 * f * n / (f - n) },
                        { 0, 0, -1, 0 } };
    assign(out, rows);
}

void orthoRows(Rows &out, double l, double r, double b, double t, double n, double f)
{
    const Rows rows = { { 2 / (r - l), 0, 0, -(r + l) / (r - l) },
                        { 0, 2 / (t - b), 0, -(t + b) / (t - b) },
                        { 0, 0, -2 / (f - n), -(f + n) / (f - n) },
                        { 0, 0, 0, 1 } };
    assign(out, rows);
}

void rotationRows(Rows &out, double x, double y, double z, double angle)
{
    const double len = std::sqrt(x * x + y * y + z * z);
    x /= len; y /= len; z /= len;
    const double c = std::cos(angle), s = std::sin(angle), t = 1 - c;
    const Rows rows = { { t * x * x + c,     t * x * y - s * z, t * x * z + s * y, 0 },
                        { t * x * y + s * z, t * y * y + c,     t * y * z - s * x, 0 },
                        { t * x * z - s * y, t * y * z + s * x, t * z * z + c,     0 },
                        { 0, 0, 0, 1 } };
    assign(out, rows);
}

void toRows(const osg::Matrix &m, Rows &out)
{
    // Column-major memory: element (row r, column c) at c * 4 + r.
    const osg::Real32 *v = m.getValues();
    for(int r = 0; r < 4; ++r)
        for(int c = 0; c < 4; ++c)
            out[r][c] = v[c * 4 + r];
}

osg::Matrix fromRows(const Rows &m)
{
    return osg::Matrix(m[0][0], m[0][1], m[0][2], m[0][3],
                       m[1][0], m[1][1], m[1][2], m[1][3],
                       m[2][0], m[2][1], m[2][2], m[2][3],
                       m[3][0], m[3][1], m[3][2], m[3][3]);
}

void expectRowsNear(const osg::Matrix &m, const Rows &expected, double tol)
{
    Rows got;
    toRows(m, got);
    for(int r = 0; r < 4; ++r)
        for(int c = 0; c < 4; ++c)
            EXPECT_NEAR(got[r][c], expected[r][c], tol) << "row " << r << " col " << c;
}

} // namespace testsupport
