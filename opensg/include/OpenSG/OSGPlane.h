#ifndef _OSGPLANE_H_
#define _OSGPLANE_H_

#include <OpenSG/OSGBaseTypes.h>
#include <OpenSG/OSGVector.h>
#include <OpenSG/OSGMatrix.h>

#include <ostream>

namespace osg
{

class Line;

// Unit normal n and distance d; points with n.p - d >= 0 are inside.
class Plane
{
  public:
    Plane(void);
    Plane(const Plane &obj);
    Plane(const Pnt3f &p0, const Pnt3f &p1, const Pnt3f &p2);
    Plane(const Vec3f &normal, Real32 distance);
    Plane(const Vec3f &normal, const Pnt3f &point);

    void   offset(Real32 d) { _distance += d; }

    bool   intersect        (const Plane &pl, Line  &intersection) const;
    bool   intersect        (const Line  &l,  Pnt3f &intersection) const;
    bool   intersect        (const Line  &l,  Real32 &t          ) const;
    bool   intersectInfinite(const Line  &l,  Real32 &t          ) const;
    bool   intersectInfinite(const Line  &l,  Pnt3f &intersection) const;

    void   transform(const Matrix &matrix);

    // Sutherland-Hodgman against the half space; polyOut needs count + 1
    // entries. Returns the number of output points.
    int    clip(Pnt3f *polyIn, Pnt3f *polyOut, int count) const;

    bool   isOnPlane    (const Pnt3f &point) const;
    bool   isInHalfSpace(const Pnt3f &point) const;
    Real32 distance     (const Pnt3f &point) const;

    bool   isInHalfSpace (const Pnt3f &min, const Pnt3f &max) const;
    bool   isOutHalfSpace(const Pnt3f &min, const Pnt3f &max) const;

    void   set(const Vec3f &normal, Real32 distance);
    void   set(Real32 x, Real32 y, Real32 z, Real32 distance);
    void   set(const Vec4f &plane);

    const Vec3f &getNormal            (void) const { return _normalVec; }
    Real32       getDistanceFromOrigin(void) const { return _distance;  }

    Plane &operator  =(const Plane &other);
    bool   operator ==(const Plane &other) const;
    bool   operator !=(const Plane &other) const { return !(*this == other); }

  private:
    Vec3f  _normalVec;
    Real32 _distance;
};

std::ostream &operator <<(std::ostream &os, const Plane &pl);

} // namespace osg

#endif
