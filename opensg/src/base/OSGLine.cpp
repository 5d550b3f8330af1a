#include <OpenSG/OSGLine.h>
#include <OpenSG/OSGBoxVolume.h>
#include <OpenSG/OSGSphereVolume.h>
#include <OpenSG/OSGFrustumVolume.h>

#include <utility>

namespace osg
{

Line::Line(void) :
    _pos(0.f, 0.f, 0.f),
    _dir(0.f, 0.f, 0.f)
{
}

Line::Line(const Pnt3f &p0, const Pnt3f &p1)
{
    setValue(p0, p1);
}

Line::Line(const Pnt3f &pos, const Vec3f &dir)
{
    setValue(pos, dir);
}

void Line::setValue(const Pnt3f &p0, const Pnt3f &p1)
{
    _pos = p0;
    _dir = p1 - p0;
    _dir.normalize();
}

void Line::setValue(const Pnt3f &pos, const Vec3f &dir)
{
    _pos = pos;
    _dir = dir;
    _dir.normalize();
}

Pnt3f Line::getClosestPoint(const Pnt3f &point) const
{
    return _pos + _dir * _dir.dot(point - _pos);
}

bool Line::getClosestPoints(const Line &line2, Pnt3f &ptOnThis, Pnt3f &ptOnLine2) const
{
    const Vec3f  w = _pos - line2._pos;
    const Real32 b = _dir.dot(line2._dir);
    const Real32 d = _dir.dot(w);
    const Real32 e = line2._dir.dot(w);
    // Both directions are unit length, so a = c = 1.
    const Real32 denom = 1.f - b * b;

    if(denom < Eps)
        return false;

    const Real32 s = (b * e - d) / denom;
    const Real32 t = (e - b * d) / denom;

    ptOnThis  = _pos       + _dir       * s;
    ptOnLine2 = line2._pos + line2._dir * t;
    return true;
}

Real32 Line::distance(const Pnt3f &point) const
{
    return point.dist(getClosestPoint(point));
}

bool Line::intersect(const SphereVolume &sphere) const
{
    Real32 enter, exit;
    return intersect(sphere, enter, exit);
}

bool Line::intersect(const SphereVolume &sphere, Real32 &enter, Real32 &exit) const
{
    if(sphere.isEmpty())
        return false;

    const Vec3f  oc   = _pos - sphere.getCenter();
    const Real32 b    = _dir.dot(oc);
    const Real32 c    = oc.squareLength() - sphere.getRadius() * sphere.getRadius();
    const Real32 disc = b * b - c;

    if(disc < 0.f)
        return false;

    const Real32 root = osgsqrt(disc);
    enter = -b - root;
    exit  = -b + root;
    return exit >= 0.f;
}

bool Line::intersect(const FrustumVolume &frustum) const
{
    Real32 enter, exit;
    return intersect(frustum, enter, exit);
}

bool Line::intersect(const FrustumVolume &frustum, Real32 &enter, Real32 &exit) const
{
    Real32 tMin = -Inf;
    Real32 tMax =  Inf;

    const Plane *planes = frustum.getPlanes();
    for(UInt32 i = 0; i < 6; ++i)
    {
        const Real32 dist  = planes[i].distance(_pos);
        const Real32 denom = planes[i].getNormal().dot(_dir);

        if(osgabs(denom) < Eps)
        {
            if(dist < 0.f)
                return false;
            continue;
        }

        const Real32 t = -dist / denom;
        if(denom > 0.f)
            tMin = osgMax(tMin, t);
        else
            tMax = osgMin(tMax, t);
    }

    enter = tMin;
    exit  = tMax;
    return tMin <= tMax && tMax >= 0.f;
}

bool Line::intersect(const BoxVolume &box, Real32 &enter, Real32 &exit) const
{
    if(box.isEmpty())
        return false;

    Real32 tMin = -Inf;
    Real32 tMax =  Inf;

    const Pnt3f &min = box.getMin();
    const Pnt3f &max = box.getMax();

    for(UInt32 i = 0; i < 3; ++i)
    {
        if(osgabs(_dir[i]) < Eps)
        {
            if(_pos[i] < min[i] || _pos[i] > max[i])
                return false;
            continue;
        }

        Real32 t0 = (min[i] - _pos[i]) / _dir[i];
        Real32 t1 = (max[i] - _pos[i]) / _dir[i];
        if(t0 > t1)
            std::swap(t0, t1);

        tMin = osgMax(tMin, t0);
        tMax = osgMin(tMax, t1);
    }

    enter = tMin;
    exit  = tMax;
    return tMin <= tMax && tMax >= 0.f;
}

// Moeller-Trumbore.
bool Line::intersect(const Pnt3f &v0, const Pnt3f &v1, const Pnt3f &v2,
                     Real32 &t, Vec3f *normal) const
{
    const Vec3f  e1  = v1 - v0;
    const Vec3f  e2  = v2 - v0;
    const Vec3f  p   = _dir.cross(e2);
    const Real32 det = e1.dot(p);

    if(osgabs(det) < Eps * Eps)
        return false;

    const Real32 inv = 1.f / det;
    const Vec3f  s   = _pos - v0;
    const Real32 u   = s.dot(p) * inv;

    if(u < 0.f || u > 1.f)
        return false;

    const Vec3f  q = s.cross(e1);
    const Real32 v = _dir.dot(q) * inv;

    if(v < 0.f || u + v > 1.f)
        return false;

    const Real32 hit = e2.dot(q) * inv;
    if(hit < 0.f)
        return false;

    t = hit;
    if(normal != NULL)
    {
        *normal = e1.cross(e2);
        normal->normalize();
    }
    return true;
}

} // namespace osg
