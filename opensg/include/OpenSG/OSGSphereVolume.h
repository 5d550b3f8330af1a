#ifndef _OSGSPHEREVOLUME_H_
#define _OSGSPHEREVOLUME_H_

#include <OpenSG/OSGVolume.h>

namespace osg
{

class SphereVolume : public Volume
{
  public:
    SphereVolume(void);
    SphereVolume(const Pnt3f &c, Real32 r);
    SphereVolume(const SphereVolume &obj);
    virtual ~SphereVolume(void);

    SphereVolume &operator =(const SphereVolume &obj);

    void setValue (const Pnt3f &c, Real32 r);
    void setCenter(const Pnt3f &c) { _center = c; }
    void setRadius(Real32 r)       { _radius = r; }

    const Pnt3f &getCenter(void) const { return _center; }
    Real32       getRadius(void) const { return _radius; }

    virtual void  getCenter      (Pnt3f &center) const;
    virtual float getScalarVolume(void) const;
    virtual void  getBounds      (Pnt3f &min, Pnt3f &max) const;

    virtual void extendBy(const Pnt3f  &pt    );
    virtual void extendBy(const Volume &volume);

    virtual bool intersect(const Pnt3f  &point ) const;
    virtual bool intersect(const Line   &line  ) const;
    virtual bool intersect(const Line   &line,
                           Real32 &enter, Real32 &exit) const;
    virtual bool intersect(const Volume &volume) const;

    virtual bool isOnSurface(const Pnt3f &point) const;

    virtual void transform(const Matrix &matrix);

    virtual void dump(UInt32 uiIndent = 0, const BitVector bvFlags = 0) const;

  private:
    Pnt3f  _center;
    Real32 _radius;
};

} // namespace osg

// The free intersect/extend functions come with every volume type.
#include <OpenSG/OSGVolumeFunctions.h>

#endif
