#ifndef _OSGLINE_H_
#define _OSGLINE_H_

#include <OpenSG/OSGBaseTypes.h>
#include <OpenSG/OSGVector.h>

#include <cstddef>

namespace osg
{

class BoxVolume;
class SphereVolume;
class FrustumVolume;

// A ray: position plus normalised direction. The intersections report
// entry and exit parameters along it and miss what lies entirely behind.
class Line
{
  public:
    Line(void);
    Line(const Pnt3f &p0, const Pnt3f &p1);
    Line(const Pnt3f &pos, const Vec3f &dir);

    void setValue(const Pnt3f &p0, const Pnt3f &p1);
    void setValue(const Pnt3f &pos, const Vec3f &dir);

    const Pnt3f &getPosition (void) const { return _pos; }
    const Vec3f &getDirection(void) const { return _dir; }

    Pnt3f  getClosestPoint (const Pnt3f &point) const;
    // False if the lines are parallel.
    bool   getClosestPoints(const Line &line2, Pnt3f &ptOnThis, Pnt3f &ptOnLine2) const;
    Real32 distance        (const Pnt3f &point) const;

    bool intersect(const SphereVolume  &sphere) const;
    bool intersect(const SphereVolume  &sphere,  Real32 &enter, Real32 &exit) const;
    bool intersect(const FrustumVolume &frustum) const;
    bool intersect(const FrustumVolume &frustum, Real32 &enter, Real32 &exit) const;
    bool intersect(const BoxVolume     &box,     Real32 &enter, Real32 &exit) const;

    bool intersect(const Pnt3f &v0, const Pnt3f &v1, const Pnt3f &v2,
                   Real32 &t, Vec3f *normal = NULL) const;

  private:
    Pnt3f _pos;
    Vec3f _dir;
};

} // namespace osg

#endif
