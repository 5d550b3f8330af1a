#include <OpenSG/OSGNavigator.h>

#include <OpenSG/OSGBaseFunctions.h>
#include <OpenSG/OSGLog.h>
#include <OpenSG/OSGMatrixUtility.h>
#include <OpenSG/OSGPerspectiveCamera.h>
#include <OpenSG/OSGQuaternion.h>
#include <OpenSG/OSGTransform.h>

#include <algorithm>
#include <cmath>

namespace osg
{

namespace
{

// Radius of the virtual trackball in normalised window coordinates; off
// the ball the drag follows a hyperbolic sheet so that it stays smooth.
const Real32 TrackballRadius = 0.8f;

Real32 projectToTrackball(Real32 x, Real32 y)
{
    const Real32 d = osgsqrt(x * x + y * y);
    if(d < TrackballRadius * 0.70710678f)
        return osgsqrt(TrackballRadius * TrackballRadius - d * d);
    const Real32 t = TrackballRadius / 1.41421356f;
    return t * t / d;
}

// The camera never gets closer to the point it looks at than this share
// of the distance it had, so that a zoom can always be undone.
const Real32 MinimumDistanceShare = 0.05f;

} // namespace

Navigator::Navigator(void) :
    _flyer        (),
    _walker       (),
    _mode         (TRACKBALL),
    _state        (IDLE),
    _rotationAngle(osgdegree2rad(5.f)),
    _motionFactor (1.f),
    _clickCenter  (true),
    _from         (0.f, 0.f, 1.f),
    _at           (0.f, 0.f, 0.f),
    _up           (0.f, 1.f, 0.f),
    _matrix       (),
    _lastX        (0),
    _lastY        (0),
    _viewport     (NullFC),
    _cameraTransformation(NullFC)
{
}

Navigator::~Navigator(void)
{
}

Real32 Navigator::normX(Int16 x)
{
    const Int32 width = _viewport != NullFC ? _viewport->getPixelWidth() : 0;
    return width > 0 ? 2.f * Real32(x) / Real32(width) - 1.f : 0.f;
}

// Window y grows downwards; the trackball's grows upwards.
Real32 Navigator::normY(Int16 y)
{
    const Int32 height = _viewport != NullFC ? _viewport->getPixelHeight() : 0;
    return height > 0 ? 1.f - 2.f * Real32(y) / Real32(height) : 0.f;
}

void Navigator::buttonPress(Int16 button, Int16 x, Int16 y)
{
    _lastX = x;
    _lastY = y;
    if(_mode == NONE)
        return;
    if(_mode == FLY || _mode == WALK)
    {
        switch(button)
        {
            case LEFT_MOUSE:   _state = TRANSLATING_ZPLUS;  break;
            case MIDDLE_MOUSE: _state = ROTATING;           break;
            case RIGHT_MOUSE:  _state = TRANSLATING_ZMINUS; break;
            case UP_MOUSE:     _state = IDLE; flyForward(-_motionFactor); break;
            case DOWN_MOUSE:   _state = IDLE; flyForward( _motionFactor); break;
            default:
                SWARNING << "Navigator::buttonPress: unknown button " << button << endLog;
                break;
        }
        return;
    }
    switch(button)
    {
        case LEFT_MOUSE:   _state = ROTATING;       break;
        case MIDDLE_MOUSE: _state = TRANSLATING_XY; break;
        case RIGHT_MOUSE:  _state = TRANSLATING_Z;  break;
        case UP_MOUSE:
            _state = TRANSLATING_ZPLUS;
            moveForwards(_motionFactor);
            break;
        case DOWN_MOUSE:
            _state = TRANSLATING_ZMINUS;
            moveForwards(-_motionFactor);
            break;
        default:
            SWARNING << "Navigator::buttonPress: unknown button " << button << endLog;
            break;
    }
}

void Navigator::buttonRelease(Int16, Int16 x, Int16 y)
{
    _lastX = x;
    _lastY = y;
    _state = IDLE;
}

void Navigator::keyPress(Int16 key, Int16, Int16)
{
    if(_mode == NONE)
        return;
    if(_mode == FLY || _mode == WALK)
    {
        switch(key)
        {
            case LEFTROT:   flyRotate(-_rotationAngle, 0.f); break;
            case RIGHTROT:  flyRotate( _rotationAngle, 0.f); break;
            case LEFT:      flyRight ( _motionFactor);       break;
            case RIGHT:     flyRight (-_motionFactor);       break;
            case FORWARDS:  flyForward(-_motionFactor);      break;
            case BACKWARDS: flyForward( _motionFactor);      break;
            default:
                SNOTICE << "Navigator::keyPress: unknown key " << key << endLog;
                break;
        }
        return;
    }
    // The trackball only zooms from the keyboard, as in 1.8: sideways keys
    // do nothing and turning keys are unknown.
    switch(key)
    {
        case FORWARDS:  moveForwards( _motionFactor); break;
        case BACKWARDS: moveForwards(-_motionFactor); break;
        case LEFT:
        case RIGHT:
            break;
        default:
            SNOTICE << "Navigator::keyPress: unknown key " << key << endLog;
            break;
    }
}

void Navigator::moveTo(Int16 x, Int16 y)
{
    if(_mode == FLY || _mode == WALK)
    {
        // The view follows the mouse; the held button walks on.
        flyRotate(normX(x) - normX(_lastX), normY(_lastY) - normY(y));
        if(_state == TRANSLATING_ZPLUS)
            flyForward(-_motionFactor);
        else if(_state == TRANSLATING_ZMINUS)
            flyForward(_motionFactor);
    }
    else if(_mode != NONE)
    {
        switch(_state)
        {
            case ROTATING:       rotate(normX(_lastX), normY(_lastY), normX(x), normY(y)); break;
            case TRANSLATING_XY: pan(x - _lastX, y - _lastY);                             break;
            case TRANSLATING_Z:  zoom(y - _lastY);                                        break;
            default:                                                                      break;
        }
    }
    _lastX = x;
    _lastY = y;
}

// The trackball only moves while dragged; flying and walking go on while
// a button is held.
void Navigator::idle(Int16 buttons, Int16 x, Int16 y)
{
    if((_mode == FLY || _mode == WALK) && buttons != 0)
        moveTo(x, y);
}

void Navigator::flyRotate(Real32 deltaX, Real32 deltaY)
{
    if(_mode == WALK)
        _walker.rotate(deltaX, deltaY);
    else
        _flyer.rotate(deltaX, deltaY);
}

void Navigator::flyForward(Real32 step)
{
    if(_mode == WALK)
        _walker.forward(step);
    else
        _flyer.forward(step);
}

void Navigator::flyRight(Real32 step)
{
    if(_mode == WALK)
        _walker.right(step);
    else
        _flyer.right(step);
}

// Turns from and up about the axis through center, in world space.
void Navigator::turnAbout(const Pnt3f &center, const Vec3f &axis, Real32 angle)
{
    Matrix turn;
    turn.setRotate(Quaternion(axis, angle));
    Vec3f offset = _from - center;
    turn.multMatrixVec(offset, offset);
    turn.multMatrixVec(_up, _up);
    _from = center + offset;
}

// The scene turns with the drag as if it sat in a ball under the mouse;
// the camera therefore turns the other way about the point looked at.
void Navigator::rotate(Real32 fromX, Real32 fromY, Real32 toX, Real32 toY)
{
    if(fromX == toX && fromY == toY)
        return;
    const Vec3f p1(fromX, fromY, projectToTrackball(fromX, fromY));
    const Vec3f p2(toX,   toY,   projectToTrackball(toX,   toY));
    Vec3f axis = p1.cross(p2);
    if(axis.length() < 1e-12f)
        return;
    const Real32 t     = std::min(1.f, (p2 - p1).length() / (2.f * TrackballRadius));
    const Real32 angle = 2.f * std::asin(t);

    // The axis is in eye space; the eye's axes in world space are the
    // columns of the placement.
    const Matrix &eye = getMatrix();
    Vec3f worldAxis;
    eye.multMatrixVec(axis, worldAxis);
    worldAxis.normalize();
    turnAbout(_at, worldAxis, -angle);
}

// World size of one pixel in the plane of the point looked at, so that this
// point follows the mouse.
Real32 Navigator::unitsPerPixelAtTarget(void)
{
    const Real32 distance = getDistance();
    if(_viewport == NullFC || _viewport->getPixelHeight() <= 0 || _viewport->getPixelWidth() <= 0)
        return distance / 100.f;
    const Real32 width  = Real32(_viewport->getPixelWidth());
    const Real32 height = Real32(_viewport->getPixelHeight());
    PerspectiveCameraPtr camera = PerspectiveCameraPtr::dcast(_viewport->getCamera());
    if(camera == NullFC)
        return 2.f * distance / height;
    Real32 fov = camera->getFov();
    if(fov > Pi)
        fov = osgdegree2rad(fov);
    const Real32 half = osgtan(fov / 2.f) * distance;
    bool horizontal = camera->getFovMode() == PerspectiveCamera::FOV_horizontal ||
                      (camera->getFovMode() == PerspectiveCamera::FOV_smaller && width < height);
    return horizontal ? 2.f * half / width : 2.f * half / height;
}

void Navigator::pan(Int16 dx, Int16 dy)
{
    const Real32 scale = unitsPerPixelAtTarget();
    const Matrix &eye  = getMatrix();
    Vec3f right, up;
    eye.multMatrixVec(Vec3f(1.f, 0.f, 0.f), right);
    eye.multMatrixVec(Vec3f(0.f, 1.f, 0.f), up);
    const Vec3f shift = right * (-Real32(dx) * scale) + up * (Real32(dy) * scale);
    _from += shift;
    _at   += shift;
}

// Dragging down by the viewport's height moves the camera e^2 times as far
// away; dragging up as far brings it as much closer.
void Navigator::zoom(Int16 dy)
{
    const Int32 height = _viewport != NullFC ? _viewport->getPixelHeight() : 0;
    if(height <= 0)
        return;
    setDistance(getDistance() * std::exp(2.f * Real32(dy) / Real32(height)));
}

void Navigator::moveForwards(Real32 amount)
{
    const Real32 distance = getDistance();
    setDistance(std::max(distance - amount, distance * MinimumDistanceShare));
}

void Navigator::updateCameraTransformation(void)
{
    if(_cameraTransformation == NullFC)
    {
        SWARNING << "Navigator::updateCameraTransformation: no camera transformation" << endLog;
        return;
    }
    TransformPtr transform = TransformPtr::dcast(_cameraTransformation->getCore());
    if(transform == NullFC)
    {
        SWARNING << "Navigator::updateCameraTransformation: the camera transformation's core "
                    "is no Transform" << endLog;
        return;
    }
    const Matrix &m = getMatrix();
    if(transform->getMatrix() == m)
        return;
    beginEditCP(transform, Transform::MatrixFieldMask);
    transform->setMatrix(m);
    endEditCP(transform, Transform::MatrixFieldMask);
}

void Navigator::setMode(Mode mode)
{
    _mode  = mode;
    _state = IDLE;
}

void Navigator::setViewport(ViewportPtr viewport)
{
    _viewport = viewport;
    if(_viewport != NullFC)
    {
        _walker.setGround(_viewport->getRoot());
        _walker.setWorld (_viewport->getRoot());
    }
}

void Navigator::setRotationAngle(Real32 angle)     { _rotationAngle = angle; }
void Navigator::setMotionFactor(Real32 factor)     { _motionFactor = factor; }

void Navigator::setFrom(Pnt3f from)
{
    switch(_mode)
    {
        case FLY:  _flyer.setFrom(from);  break;
        case WALK: _walker.setFrom(from); break;
        default:   _from = from;          break;
    }
}

void Navigator::setAt(Pnt3f at)
{
    switch(_mode)
    {
        case FLY:  _flyer.setAt(at);  break;
        case WALK: _walker.setAt(at); break;
        default:   _at = at;          break;
    }
}

void Navigator::setUp(Vec3f up)
{
    switch(_mode)
    {
        case FLY:  _flyer.setUp(up);  break;
        case WALK: _walker.setUp(up); break;
        default:   _up = up;          break;
    }
}

void Navigator::setDistance(Real32 distance)
{
    if(_mode == FLY || _mode == WALK)
    {
        flyForward(distance);
        return;
    }
    Vec3f back = _from - _at;
    if(distance <= 0.f || back.length() == 0.f)
    {
        SWARNING << "Navigator::setDistance: " << distance
                 << " is no distance from the point looked at" << endLog;
        return;
    }
    back.normalize();
    _from = _at + back * distance;
}

void Navigator::set(Pnt3f from, Pnt3f at, Vec3f up)
{
    if(_mode == FLY || _mode == WALK)
    {
        (_mode == FLY ? _flyer : static_cast<FlyNavigator &>(_walker)).set(from, at, up);
        return;
    }
    _from = from;
    _at   = at;
    _up   = up;
}

// Keeps the distance to the point looked at.
void Navigator::set(const Matrix &matrix)
{
    if(_mode == FLY || _mode == WALK)
    {
        (_mode == FLY ? _flyer : static_cast<FlyNavigator &>(_walker)).set(matrix);
        return;
    }
    const Real32 distance = getDistance();
    Vec3f back(matrix[2][0], matrix[2][1], matrix[2][2]);
    back.normalize();
    _from.setValues(matrix[3][0], matrix[3][1], matrix[3][2]);
    _at = _from - back * distance;
    _up.setValues(matrix[1][0], matrix[1][1], matrix[1][2]);
}

void Navigator::setCameraTransformation(const NodePtr &node) { _cameraTransformation = node; }

bool Navigator::setClickCenter(bool state)
{
    const bool old = _clickCenter;
    _clickCenter   = state;
    return old;
}

const Matrix &Navigator::getMatrix(void)
{
    if(_mode == FLY)
        return _flyer.getMatrix();
    if(_mode == WALK)
        return _walker.getMatrix();
    // A degenerate placement (from on at, up along the view) keeps the last.
    Matrix lookAt;
    if(!MatrixLookAt(lookAt, _from, _at, _up))
        _matrix = lookAt;
    return _matrix;
}

const Pnt3f &Navigator::getFrom(void)
{
    return _mode == FLY ? _flyer.getFrom() : _mode == WALK ? _walker.getFrom() : _from;
}

const Pnt3f &Navigator::getAt(void)
{
    return _mode == FLY ? _flyer.getAt() : _mode == WALK ? _walker.getAt() : _at;
}

const Vec3f &Navigator::getUp(void)
{
    return _mode == FLY ? _flyer.getUp() : _mode == WALK ? _walker.getUp() : _up;
}

// Flying and walking look at no particular point.
Real32 Navigator::getDistance(void)
{
    return _mode == FLY || _mode == WALK ? 0.f : (_from - _at).length();
}
Navigator::Mode  Navigator::getMode(void)  { return _mode; }
Navigator::State Navigator::getState(void) { return _state; }
Real32 Navigator::getRotationAngle(void) { return _rotationAngle; }
Real32 Navigator::getMotionFactor(void)  { return _motionFactor; }
ViewportPtr Navigator::getViewport(void) { return _viewport; }

} // namespace osg
