#ifndef TESTS_LUMORA_SHADOWS_SHADOWTESTGEOMETRY_H
#define TESTS_LUMORA_SHADOWS_SHADOWTESTGEOMETRY_H

#include <OpenSG/OSGMatrix.h>
#include <OpenSG/OSGVector.h>

#include <algorithm>
#include <cmath>
#include <vector>

// Geometry the shadow tests compute for themselves: occluder rectangles,
// ray tests against them, and light cameras built from their definitions.
namespace shadowtest
{

// An axis-aligned rectangle in a plane of constant z, facing +Z.
struct Rect { osg::Real32 x0, y0, x1, y1, z; };

enum class Cover { Inside, Outside, Edge };

// Whether the segment from a to b crosses one of the rectangles, with a
// margin around their edges inside which the answer is Edge (soft shadow
// borders, pixel footprints).
inline Cover segmentCover(const osg::Pnt3f &a, const osg::Pnt3f &b,
                          const std::vector<Rect> &rects, osg::Real32 margin)
{
    Cover result = Cover::Outside;
    for(const Rect &r : rects)
    {
        const osg::Real32 dz = b[2] - a[2];
        if(std::fabs(dz) < 1e-6f)
            continue;
        const osg::Real32 t = (r.z - a[2]) / dz;
        if(t <= 0.0f || t >= 1.0f)
            continue;
        const osg::Real32 x = a[0] + t * (b[0] - a[0]);
        const osg::Real32 y = a[1] + t * (b[1] - a[1]);
        // Signed distance to the rectangle's border, positive inside.
        const osg::Real32 inside = std::min(std::min(x - r.x0, r.x1 - x),
                                            std::min(y - r.y0, r.y1 - y));
        if(inside > margin)
            return Cover::Inside;
        if(inside > -margin)
            result = Cover::Edge;
    }
    return result;
}

// World-to-view matrix of a camera at eye looking along forward with up,
// as a right-handed view looking down -Z.
inline osg::Matrix viewMatrix(const osg::Vec3f &eye, osg::Vec3f forward, const osg::Vec3f &up)
{
    forward.normalize();
    osg::Vec3f z = -forward;
    osg::Vec3f x = up.cross(z);
    x.normalize();
    osg::Vec3f y = z.cross(x);
    osg::Matrix m;
    m.setValue(x[0], x[1], x[2], -x.dot(eye),
               y[0], y[1], y[2], -y.dot(eye),
               z[0], z[1], z[2], -z.dot(eye),
               0,    0,    0,    1);
    return m;
}

// OpenGL's perspective projection for a full vertical angle in radians.
inline osg::Matrix perspective(osg::Real32 fovy, osg::Real32 aspect, osg::Real32 n, osg::Real32 f)
{
    const osg::Real32 c = 1.0f / std::tan(fovy / 2.0f);
    osg::Matrix m;
    m.setValue(c / aspect, 0, 0,                  0,
               0,          c, 0,                  0,
               0,          0, (f + n) / (n - f),  2 * f * n / (n - f),
               0,          0, -1,                 0);
    return m;
}

// OpenGL's orthographic projection.
inline osg::Matrix orthographic(osg::Real32 l, osg::Real32 r, osg::Real32 b, osg::Real32 t,
                                osg::Real32 n, osg::Real32 f)
{
    osg::Matrix m;
    m.setValue(2 / (r - l), 0,           0,            -(r + l) / (r - l),
               0,           2 / (t - b), 0,            -(t + b) / (t - b),
               0,           0,           -2 / (f - n), -(f + n) / (f - n),
               0,           0,           0,            1);
    return m;
}

inline osg::Pnt3f transformed(const osg::Matrix &m, const osg::Pnt3f &p)
{
    osg::Pnt3f result;
    m.multFullMatrixPnt(p, result);
    return result;
}

// Chebyshev's bound on the lit fraction from the two moments, with the
// light-bleeding cut at 0.3 and the variance floor 1e-6.
inline osg::Real32 varianceShadowFactor(osg::Real32 mean, osg::Real32 meanSquare,
                                        osg::Real32 depth, osg::Real32 *rawBound = nullptr)
{
    const osg::Real32 variance = std::max(meanSquare - mean * mean, 0.000001f);
    const osg::Real32 delta    = depth - mean;
    osg::Real32 lit = depth <= mean ? 1.0f : variance / (variance + delta * delta);
    if(rawBound)
        *rawBound = lit;
    return std::min(1.0f, std::max(0.0f, (lit - 0.3f) / 0.7f));
}

// The three cascades' boundaries over the viewing depths [near, far]: 0.8
// of the logarithmic division plus 0.2 of the uniform one.
inline std::vector<osg::Real32> cascadeSplits(osg::Real32 near, osg::Real32 far)
{
    std::vector<osg::Real32> splits;
    for(int i = 0; i < 4; ++i)
    {
        const double logarithmic = near * std::pow(double(far) / near, i / 3.0);
        const double uniform     = near + (far - near) * i / 3.0;
        splits.push_back(osg::Real32(0.8 * logarithmic + 0.2 * uniform));
    }
    return splits;
}

} // namespace shadowtest

#endif
