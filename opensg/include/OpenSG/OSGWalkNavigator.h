#ifndef _OSGWALKNAVIGATOR_H_
#define _OSGWALKNAVIGATOR_H_

#include <OpenSG/OSGFlyNavigator.h>
#include <OpenSG/OSGIntersectAction.h>
#include <OpenSG/OSGNode.h>

namespace osg
{

// Walking: moves stay level (perpendicular to up) and keep the eye
// groundDistance + height above the ground below it. A step up by more
// than groundDistance, or one that ends within fatness + wallDistance of
// the world ahead, is not taken.
class WalkNavigator : public FlyNavigator
{
  public:
    WalkNavigator(void);
    ~WalkNavigator(void);

    void setGround(const NodePtr &new_ground);
    void setWorld (const NodePtr &new_world);

    void setGroundDistance  (Real32 groundDistance);
    void setMinWallDistance (Real32 wallDistance);
    void setPersonDimensions(Real32 height, Real32 width, Real32 fatness);

    void   rotate (Real32 deltaX, Real32 deltaY);
    // As FlyNavigator's; return step if the move was taken, else 0.
    Real32 forward(Real32 step);
    Real32 right  (Real32 step);

  private:
    WalkNavigator(const WalkNavigator &);
    WalkNavigator &operator =(const WalkNavigator &);

    Real32 move(const Vec3f &dir, Real32 step);

    NodePtr          _ground;
    NodePtr          _world;
    Real32           _groundDistance;
    Real32           _wallDistance;
    Real32           _height;
    Real32           _width;
    Real32           _fatness;
    IntersectAction *_act;
};

} // namespace osg

#endif
