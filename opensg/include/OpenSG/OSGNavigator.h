#ifndef _OSGNAVIGATOR_H_
#define _OSGNAVIGATOR_H_

#include <OpenSG/OSGFlyNavigator.h>
#include <OpenSG/OSGMatrix.h>
#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGVector.h>
#include <OpenSG/OSGViewport.h>
#include <OpenSG/OSGWalkNavigator.h>

namespace osg
{

// Turns mouse and key input into a camera placement looking from a point
// at another. In TRACKBALL mode a left drag turns the camera about the
// point looked at, a middle drag moves both points across the view, a
// right drag and the wheel move the camera towards or away from it.
// FLY and WALK keep placements of their own (FlyNavigator, WalkNavigator):
// a drag turns the view, with the left button held moving forwards, with
// the right backwards; keys move and turn. WALK walks on the viewport's
// root. Switching modes does not carry the placement over.
class Navigator
{
  public:
    enum Mode        { TRACKBALL = 0, FLY, WALK, NONE };
    enum State       { IDLE = 0, ROTATING, TRANSLATING_XY, TRANSLATING_Z,
                       TRANSLATING_ZPLUS = 10, TRANSLATING_ZMINUS };
    enum MouseButton { LEFT_MOUSE = 0, MIDDLE_MOUSE, RIGHT_MOUSE, UP_MOUSE, DOWN_MOUSE };
    enum Key         { LEFT = 0, RIGHT, FORWARDS, BACKWARDS, LEFTROT, RIGHTROT };

    Navigator(void);
    virtual ~Navigator(void);

    virtual void buttonPress  (Int16 button, Int16 x, Int16 y);
    virtual void buttonRelease(Int16 button, Int16 x, Int16 y);
    virtual void keyPress     (Int16 key,    Int16 x, Int16 y);
    virtual void moveTo       (Int16 x, Int16 y);
    virtual void idle         (Int16 buttons, Int16 x, Int16 y);

    // Writes the placement into the camera transformation's Transform core.
    void updateCameraTransformation(void);

    void setMode          (Mode mode);
    void setViewport      (ViewportPtr viewport);
    void setRotationAngle (Real32 angle);
    void setMotionFactor  (Real32 factor);
    void setFrom          (Pnt3f from);
    void setAt            (Pnt3f at);
    void setDistance      (Real32 distance);
    void setUp            (Vec3f up);
    void set              (Pnt3f from, Pnt3f at, Vec3f up);
    void set              (const Matrix &matrix);
    void setCameraTransformation(const NodePtr &node);
    bool setClickCenter   (bool state);

    const Matrix &getMatrix       (void);
    const Pnt3f  &getFrom         (void);
    const Pnt3f  &getAt           (void);
    const Vec3f  &getUp           (void);
    Real32        getDistance     (void);
    Mode          getMode         (void);
    State         getState        (void);
    Real32        getRotationAngle(void);
    Real32        getMotionFactor (void);
    ViewportPtr   getViewport     (void);

    WalkNavigator *getWalkNavigator(void) { return &_walker; }

  private:
    void   rotate      (Real32 fromX, Real32 fromY, Real32 toX, Real32 toY);
    void   pan         (Int16 dx, Int16 dy);
    void   zoom        (Int16 dy);
    void   moveForwards(Real32 amount);
    void   flyRotate   (Real32 deltaX, Real32 deltaY);
    void   flyForward  (Real32 step);
    void   flyRight    (Real32 step);
    void   turnAbout   (const Pnt3f &center, const Vec3f &axis, Real32 angle);
    Real32 unitsPerPixelAtTarget(void);
    Real32 normX       (Int16 x);
    Real32 normY       (Int16 y);

    FlyNavigator  _flyer;
    WalkNavigator _walker;

    Mode        _mode;
    State       _state;
    Real32      _rotationAngle;
    Real32      _motionFactor;
    bool        _clickCenter;
    Pnt3f       _from;
    Pnt3f       _at;
    Vec3f       _up;
    Matrix      _matrix;
    Int16       _lastX;
    Int16       _lastY;
    ViewportPtr _viewport;
    NodePtr     _cameraTransformation;
};

} // namespace osg

#endif
