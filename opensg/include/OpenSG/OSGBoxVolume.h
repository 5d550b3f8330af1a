#ifndef _OSGBOXVOLUME_H_
#define _OSGBOXVOLUME_H_

#include <OpenSG/OSGVolume.h>

namespace osg
{

class BoxVolume : public Volume
{
  public:
    BoxVolume(void);
    BoxVolume(Real32 xmin, Real32 ymin, Real32 zmin,
              Real32 xmax, Real32 ymax, Real32 zmax);
    BoxVolume(const Pnt3f &min, const Pnt3f &max);
    BoxVolume(const BoxVolume &obj);
    virtual ~BoxVolume(void);

    BoxVolume &operator =(const BoxVolume &obj);

    const Pnt3f &getMin(void) const { return _min; }
    const Pnt3f &getMax(void) const { return _max; }

    virtual void  getCenter      (Pnt3f &center) const;
    virtual float getScalarVolume(void) const;
    // The stored corners, also when empty.
    virtual void  getBounds      (Pnt3f &min, Pnt3f &max) const;

    void getOrigin(Real32 &originX, Real32 &originY, Real32 &originZ) const;
    void getSize  (Real32 &width,   Real32 &height,  Real32 &depth  ) const;
    void getSize  (Vec3f &vec) const;

    // These make the box valid, non-empty and finite.
    void setBounds(Real32 w, Real32 h, Real32 d);
    void setBounds(Real32 xmin, Real32 ymin, Real32 zmin,
                   Real32 xmax, Real32 ymax, Real32 zmax);
    void setBounds(const Pnt3f &min, const Pnt3f &max);
    void setBoundsByCenterAndSize(const Pnt3f &center, const Vec3f &size);

    virtual void extendBy(const Pnt3f     &pt    );
    virtual void extendBy(const Volume    &volume);
            void extendBy(const BoxVolume &bb    );

    virtual bool intersect(const Pnt3f  &point ) const;
    virtual bool intersect(const Line   &line  ) const;
    virtual bool intersect(const Line   &line,
                           Real32 &enter, Real32 &exit) const;
    virtual bool intersect(const Volume &volume) const;

    virtual bool isOnSurface(const Pnt3f &point) const;

    virtual void transform(const Matrix &matrix);

    virtual void dump(UInt32 uiIndent = 0, const BitVector bvFlags = 0) const;

    bool operator ==(const BoxVolume &other) const;
    bool operator !=(const BoxVolume &other) const { return !(*this == other); }

  private:
    Pnt3f _min;
    Pnt3f _max;
};

} // namespace osg

// The free intersect/extend functions come with every volume type.
#include <OpenSG/OSGVolumeFunctions.h>

#endif
