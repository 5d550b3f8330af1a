#ifndef _OSGFRUSTUMVOLUME_H_
#define _OSGFRUSTUMVOLUME_H_

#include <OpenSG/OSGVolume.h>
#include <OpenSG/OSGPlane.h>

namespace osg
{

// Six planes, normals pointing into the frustum.
class FrustumVolume : public Volume
{
  public:
    enum
    {
        P_NONE   = 0,
        P_NEAR   = 1,
        P_FAR    = 2,
        P_LEFT   = 4,
        P_RIGHT  = 8,
        P_TOP    = 16,
        P_BOTTOM = 32,
        P_ALL    = P_NEAR | P_FAR | P_LEFT | P_RIGHT | P_TOP | P_BOTTOM
    };

    typedef UInt8 PlaneSet;

    FrustumVolume(void);
    FrustumVolume(const Plane &pnear, const Plane &pfar,
                  const Plane &left,  const Plane &right,
                  const Plane &top,   const Plane &bottom);
    FrustumVolume(const FrustumVolume &obj);
    virtual ~FrustumVolume(void);

    FrustumVolume &operator =(const FrustumVolume &obj);

    const Plane &getNear  (void) const { return _planeVec[0]; }
    const Plane &getFar   (void) const { return _planeVec[1]; }
    const Plane &getLeft  (void) const { return _planeVec[2]; }
    const Plane &getRight (void) const { return _planeVec[3]; }
    const Plane &getTop   (void) const { return _planeVec[4]; }
    const Plane &getBottom(void) const { return _planeVec[5]; }

    // [0] near, [1] far, [2] left, [3] right, [4] top, [5] bottom
    const Plane *getPlanes(void) const { return _planeVec; }

    void setPlanes(const Plane &pnear, const Plane &pfar,
                   const Plane &left,  const Plane &right,
                   const Plane &top,   const Plane &bottom);
    void setPlanes(const Pnt3f &nlt, const Pnt3f &nlb,
                   const Pnt3f &nrt, const Pnt3f &nrb,
                   const Pnt3f &flt, const Pnt3f &flb,
                   const Pnt3f &frt, const Pnt3f &frb);
    // From a projection * modelview matrix; the planes come out normalised.
    void setPlanes(const Matrix &matrix);

    // Corners where the planes meet, order nlt nlb nrt nrb flt flb frt frb;
    // false if some triple of planes does not meet in a point.
    bool getCorners(Pnt3f *corners) const;

    virtual void  getCenter      (Pnt3f &center) const;
    virtual float getScalarVolume(void) const;
    // Not provided for frusta: leaves min and max untouched.
    virtual void  getBounds      (Pnt3f &min, Pnt3f &max) const;

    // A set of planes cannot grow to hold a point: no-op.
    virtual void extendBy(const Pnt3f  &pt    );
    virtual void extendBy(const Volume &volume);

    virtual bool intersect(const Pnt3f         &point  ) const;
    virtual bool intersect(const Line          &line   ) const;
    virtual bool intersect(const Line          &line,
                           Real32 &enter, Real32 &exit) const;
    virtual bool intersect(const Volume        &volume ) const;
            bool intersect(const FrustumVolume &frustum) const;

    virtual bool isOnSurface(const Pnt3f &point) const;

    virtual void transform(const Matrix &m);

    virtual void dump(UInt32 uiIndent = 0, const BitVector bvFlags = 0) const;

    bool operator ==(const FrustumVolume &other) const;
    bool operator !=(const FrustumVolume &other) const { return !(*this == other); }

  private:
    Plane _planeVec[6];
};

// Adds to inplanes every plane that vol lies entirely inside; false if vol
// lies entirely outside one of the planes not yet in inplanes.
bool intersect(const FrustumVolume &frustum, const Volume &vol,
               FrustumVolume::PlaneSet &inplanes);

} // namespace osg

// The free intersect/extend functions come with every volume type.
#include <OpenSG/OSGVolumeFunctions.h>

#endif
