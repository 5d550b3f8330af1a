#ifndef _OSGFLYNAVIGATOR_H_
#define _OSGFLYNAVIGATOR_H_

#include <OpenSG/OSGBaseTypes.h>
#include <OpenSG/OSGMatrix.h>
#include <OpenSG/OSGVector.h>

namespace osg
{

// Free flight: the camera turns in place and moves along its view.
class FlyNavigator
{
  public:
    FlyNavigator(void);
    virtual ~FlyNavigator(void);

    Matrix &getMatrix(void);
    Pnt3f  &getFrom  (void);
    Pnt3f  &getAt    (void);
    Vec3f  &getUp    (void);

    void setFrom(Pnt3f new_from);
    void setAt  (Pnt3f new_at);
    void setUp  (Vec3f new_up);
    void set    (Pnt3f new_from, Pnt3f new_at, Vec3f new_up);
    void set    (Matrix new_matrix);

    // Turns the view by deltaX about up and by deltaY about the side axis,
    // in radians; from stays.
    void   rotate (Real32 deltaX, Real32 deltaY);
    // Moves from and at by step along from - at: a negative step goes
    // forwards. Returns 0.
    Real32 forward(Real32 step);
    // Moves from and at by step along (from - at) x up, to the left for a
    // positive step. Returns 0.
    Real32 right  (Real32 step);

  protected:
    Pnt3f  _rFrom;
    Pnt3f  _rAt;
    Vec3f  _vUp;
    Matrix _tMatrix;
};

} // namespace osg

#endif
