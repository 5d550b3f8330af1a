#include <OpenSG/OSGWalkNavigator.h>

namespace osg
{

WalkNavigator::WalkNavigator(void) :
    FlyNavigator   (),
    _ground        (NullFC),
    _world         (NullFC),
    _groundDistance(0.75f),
    _wallDistance  (0.1f),
    _height        (0.85f),
    _width         (0.5f),
    _fatness       (0.5f),
    _act           (IntersectAction::create())
{
}

WalkNavigator::~WalkNavigator(void)
{
    delete _act;
}

void WalkNavigator::setGround(const NodePtr &new_ground) { _ground = new_ground; }
void WalkNavigator::setWorld (const NodePtr &new_world)  { _world  = new_world;  }

void WalkNavigator::setGroundDistance (Real32 groundDistance) { _groundDistance = groundDistance; }
void WalkNavigator::setMinWallDistance(Real32 wallDistance)   { _wallDistance   = wallDistance;   }

void WalkNavigator::setPersonDimensions(Real32 height, Real32 width, Real32 fatness)
{
    _height  = height;
    _width   = width;
    _fatness = fatness;
}

void WalkNavigator::rotate(Real32 deltaX, Real32 deltaY)
{
    FlyNavigator::rotate(deltaX, deltaY);
}

// The level part of from - at: forward(-s) walks towards at.
Real32 WalkNavigator::forward(Real32 step)
{
    Vec3f up = _vUp;
    up.normalize();
    Vec3f back = _rFrom - _rAt;
    back.normalize();
    Vec3f level = back - up * up.dot(back);
    level.normalize();
    return move(level, step);
}

Real32 WalkNavigator::right(Real32 step)
{
    Vec3f up = _vUp;
    up.normalize();
    Vec3f back = _rFrom - _rAt;
    back.normalize();
    Vec3f level = back - up * up.dot(back);
    level.normalize();
    Vec3f side = level.cross(up);
    side.normalize();
    return move(side, step);
}

Real32 WalkNavigator::move(const Vec3f &dir, Real32 step)
{
    Vec3f up = _vUp;
    up.normalize();

    Pnt3f from = _rFrom + dir * step;
    Pnt3f at   = _rAt   + dir * step;

    if(_ground != NullFC)
    {
        _act->setLine(Line(from, -up));
        _act->apply(_ground);
        if(_act->didHit())
        {
            const Real32 dist = _act->getHitT();
            // The eye would sink below height above the new ground: the
            // step up is too high to take.
            if(dist < _height)
                return 0.f;
            const Real32 lift = _groundDistance + _height - dist;
            from += up * lift;
            at   += up * lift;
        }
    }

    if(_world != NullFC && from != _rFrom)
    {
        _act->setLine(Line(from, from - _rFrom));
        _act->apply(_world);
        if(_act->didHit() && _act->getHitT() <= _fatness + _wallDistance)
            return 0.f;
    }

    _rFrom = from;
    _rAt   = at;
    return step;
}

} // namespace osg
