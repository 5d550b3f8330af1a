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

// As 1.8: a ray from the position; enter and exit are written only on a hit.
bool Line::intersect(const SphereVolume &sphere, Real32 &enter, Real32 &exit) const
{
    const Vec3f  toCenter = sphere.getCenter() - _pos;
    const Real32 outside  = toCenter.dot(toCenter) - sphere.getRadius() * sphere.getRadius();
    const Real32 along    = toCenter.dot(_dir);

    if(outside >= 0.f && along <= 0.f)
        return false;

    const Real32 disc = along * along - outside;
    if(disc < 0.f)
        return false;

    const Real32 root = osgsqrt(disc);
    if(along + root < Eps)
        return false;

    enter = along - root;
    exit  = along + root;
    return true;
}

bool Line::intersect(const FrustumVolume &frustum) const
{
    Real32 enter, exit;
    return intersect(frustum, enter, exit);
}

// As 1.8: the ray from the position to 2^17 along the line is clipped plane
// by plane, and the distances are measured to the clipped end points.
bool Line::intersect(const FrustumVolume &frustum, Real32 &enter, Real32 &exit) const
{
    Pnt3f enterPoint = _pos;
    Pnt3f exitPoint  = _pos + _dir * Real32(2 << 16);

    const Plane *planes = frustum.getPlanes();
    for(UInt32 i = 0; i < 6; ++i)
    {
        const Real32 atEnter = planes[i].distance(enterPoint);
        const Real32 atExit  = planes[i].distance(exitPoint);

        if(atEnter < 0.f && atExit < 0.f)
            return false;
        if(atEnter > 0.f && atExit < 0.f)
            planes[i].intersect(*this, exitPoint);
        if(atEnter < 0.f && atExit > 0.f)
            planes[i].intersect(*this, enterPoint);
    }

    const Vec3f toEnter = enterPoint - _pos;
    const Vec3f toExit  = exitPoint  - _pos;
    Real32 along = toEnter.dot(_dir);
    enter = along != 0.f ? toEnter.dot(toEnter) / along : 0.f;
    along = toExit.dot(_dir);
    if(along != 0.f)
        exit = toExit.dot(toExit) / along;
    else
        enter = 0.f;      // sic: 1.8 leaves exit alone here
    return true;
}

// Slabs, as 1.8: the ray starts at the position, flat boxes count as hit,
// and a miss found by the y slab leaves enter and exit alone.
bool Line::intersect(const BoxVolume &box, Real32 &enter, Real32 &exit) const
{
    Pnt3f low, high;
    box.getBounds(low, high);

    Real32 in  = 0.f;
    Real32 out = Inf;
    for(UInt32 i = 0; i < 3; ++i)
    {
        if(osgabs(_dir[i]) <= Eps)
        {
            if(_pos[i] < low[i] || _pos[i] > high[i])
                return false;
            continue;
        }
        const Real32 r  = 1.f / _dir[i];
        const Real32 te = ((_dir[i] > 0.f ? low : high)[i] - _pos[i]) * r;
        const Real32 tl = ((_dir[i] > 0.f ? high : low)[i] - _pos[i]) * r;
        out = osgMin(out, tl);
        in  = osgMax(in,  te);
        if(i == 1 && in - out >= Eps)
            return false;
    }

    enter = in;
    exit  = out;
    return in - out < Eps;
}

// Moeller-Trumbore in 1.8's form: the bounds are tested before dividing by
// the determinant, and a triangle behind the position is a hit at a negative t.
bool Line::intersect(const Pnt3f &v0, const Pnt3f &v1, const Pnt3f &v2,
                     Real32 &t, Vec3f *normal) const
{
    const Real32 tiny  = 1E-10f;
    const Vec3f  edge1 = v1 - v0;
    const Vec3f  edge2 = v2 - v0;
    const Vec3f  p     = _dir.cross(edge2);
    const Real32 det   = edge1.dot(p);

    if(det <= tiny && det >= -tiny)
        return false;

    const Vec3f  s = _pos - v0;
    const Real32 u = s.dot(p);
    const Vec3f  q = s.cross(edge1);
    const Real32 v = _dir.dot(q);
    if(det > 0.f ? (u < 0.f || u > det || v < 0.f || u + v > det)
                 : (u > 0.f || u < det || v > 0.f || u + v < det))
        return false;

    t = edge2.dot(q) * (1.f / det);
    if(normal != NULL)
    {
        *normal = edge1.cross(edge2);
        normal->normalize();
    }
    return true;
}

} // namespace osg
