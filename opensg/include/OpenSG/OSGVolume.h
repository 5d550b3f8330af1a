#ifndef _OSGVOLUME_H_
#define _OSGVOLUME_H_

#include <OpenSG/OSGBaseTypes.h>
#include <OpenSG/OSGVector.h>
#include <OpenSG/OSGMatrix.h>

namespace osg
{

class Line;

class Volume
{
  public:
    Volume(void);
    Volume(const Volume &obj);
    virtual ~Volume(void);

    Volume &operator =(const Volume &obj);

    // Virtual so that a DynamicVolume can keep its instance in step.
    virtual void setValid   (const bool value = true);
    virtual void setEmpty   (const bool value = true);
    virtual void setStatic  (const bool value = true);
    virtual void setInfinite(const bool value = true);

    bool isValid     (void) const { return (_state & OSGVALID   ) != 0; }
    bool isEmpty     (void) const { return (_state & OSGEMPTY   ) != 0; }
    bool isStatic    (void) const { return (_state & OSGSTATIC  ) != 0; }
    bool isInfinite  (void) const { return (_state & OSGINFINITE) != 0; }
    // Empty or not: only static, infinite or invalid volumes keep still.
    bool isUntouchable(void) const
    {
        return (_state & (OSGINFINITE | OSGVALID | OSGSTATIC)) != OSGVALID;
    }

    UInt16 getState(void) const { return _state; }
    void   setState(UInt16 val) { _state = val;  }

    virtual void  getCenter      (Pnt3f &center) const = 0;
    virtual float getScalarVolume(void) const = 0;
    virtual void  getBounds      (Pnt3f &min, Pnt3f &max) const = 0;

    Pnt3f getMin(void) const;
    Pnt3f getMax(void) const;

    virtual void extendBy(const Pnt3f  &pt    ) = 0;
    virtual void extendBy(const Volume &volume) = 0;

    virtual bool intersect(const Pnt3f  &point ) const = 0;
    virtual bool intersect(const Line   &line  ) const = 0;
    virtual bool intersect(const Line   &line,
                           Real32 &enter, Real32 &exit) const = 0;
    virtual bool intersect(const Volume &volume) const = 0;

    virtual bool isOnSurface(const Pnt3f &point) const = 0;

    virtual void transform(const Matrix &matrix) = 0;

    virtual void dump(UInt32 uiIndent = 0, const BitVector bvFlags = 0) const = 0;

  protected:
    enum State
    {
        OSGVALID    = 1,
        OSGEMPTY    = 2,
        OSGSTATIC   = 4,
        OSGINFINITE = 8
    };

    UInt16 _state;
};

} // namespace osg

#endif
