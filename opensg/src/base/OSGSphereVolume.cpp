#include <OpenSG/OSGSphereVolume.h>
#include <OpenSG/OSGVolumeFunctions.h>
#include <OpenSG/OSGLine.h>
#include <OpenSG/OSGLog.h>

namespace osg
{

SphereVolume::SphereVolume(void) :
    Volume (),
    _center(0.f, 0.f, 0.f),
    _radius(0.f)
{
}

SphereVolume::SphereVolume(const Pnt3f &c, Real32 r) :
    Volume()
{
    setValue(c, r);
}

// As 1.8, copies take the centre and radius but not the state: a copy is
// a valid, non-empty sphere, and an assigned one keeps its own flags.
SphereVolume::SphereVolume(const SphereVolume &obj) :
    Volume (),
    _center(obj._center),
    _radius(obj._radius)
{
    setEmpty(false);
}

SphereVolume::~SphereVolume(void)
{
}

SphereVolume &SphereVolume::operator =(const SphereVolume &obj)
{
    _center = obj._center;
    _radius = obj._radius;
    return *this;
}

void SphereVolume::setValue(const Pnt3f &c, Real32 r)
{
    _center = c;
    _radius = r;
    setValid   (true );
    setEmpty   (false);
    setInfinite(false);
}

void SphereVolume::getCenter(Pnt3f &center) const
{
    center = _center;
}

float SphereVolume::getScalarVolume(void) const
{
    if(isEmpty())
        return 0.f;
    return 4.f / 3.f * Pi * _radius * _radius * _radius;
}

void SphereVolume::getBounds(Pnt3f &min, Pnt3f &max) const
{
    const Vec3f r(_radius, _radius, _radius);
    min = _center - r;
    max = _center + r;
}

// As 1.8: the centre stays and the radius reaches the point.
void SphereVolume::extendBy(const Pnt3f &pt)
{
    if(isUntouchable())
        return;

    if(isEmpty())
    {
        setValue(pt, 0.f);
        return;
    }
    _radius = osgMax(_radius, _center.dist(pt));
}

void SphereVolume::extendBy(const Volume &volume)
{
    extend(*this, volume);
}

bool SphereVolume::intersect(const Pnt3f &point) const
{
    if(isEmpty())
        return false;
    if(isInfinite())
        return true;
    return _center.dist2(point) <= _radius * _radius;
}

bool SphereVolume::intersect(const Line &line) const
{
    return line.intersect(*this);
}

bool SphereVolume::intersect(const Line &line, Real32 &enter, Real32 &exit) const
{
    return line.intersect(*this, enter, exit);
}

bool SphereVolume::intersect(const Volume &volume) const
{
    return osg::intersect(*this, volume);
}

bool SphereVolume::isOnSurface(const Pnt3f &point) const
{
    return !isEmpty() && osgabs(_center.dist(point) - _radius) < Eps;
}

// As 1.8: the radius follows the point above the centre, which assumes a
// uniform scale.
void SphereVolume::transform(const Matrix &matrix)
{
    if(isEmpty() || isInfinite())
        return;

    Pnt3f top(_center);
    top += Vec3f(0.f, _radius, 0.f);
    matrix.multMatrixPnt(_center);
    matrix.multMatrixPnt(top);
    _radius = (top - _center).length();
}

void SphereVolume::dump(UInt32 uiIndent, const BitVector) const
{
    indentLog(uiIndent, PLOG);
    PLOG << "Sphere(" << _center << "|" << _radius << ")";
    if(isEmpty())
        PLOG << " empty";
    if(isInfinite())
        PLOG << " infinite";
    if(!isValid())
        PLOG << " invalid";
    if(isStatic())
        PLOG << " static";
    PLOG << std::endl;
}

} // namespace osg
