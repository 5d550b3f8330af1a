#include <OpenSG/OSGBoxVolume.h>
#include <OpenSG/OSGVolumeFunctions.h>
#include <OpenSG/OSGLine.h>
#include <OpenSG/OSGLog.h>

namespace osg
{

BoxVolume::BoxVolume(void) :
    Volume(),
    _min  (0.f, 0.f, 0.f),
    _max  (0.f, 0.f, 0.f)
{
}

BoxVolume::BoxVolume(Real32 xmin, Real32 ymin, Real32 zmin,
                     Real32 xmax, Real32 ymax, Real32 zmax) :
    Volume()
{
    setBounds(xmin, ymin, zmin, xmax, ymax, zmax);
}

BoxVolume::BoxVolume(const Pnt3f &min, const Pnt3f &max) :
    Volume()
{
    setBounds(min, max);
}

BoxVolume::BoxVolume(const BoxVolume &obj) :
    Volume(obj),
    _min  (obj._min),
    _max  (obj._max)
{
}

BoxVolume::~BoxVolume(void)
{
}

BoxVolume &BoxVolume::operator =(const BoxVolume &obj)
{
    Volume::operator =(obj);
    _min = obj._min;
    _max = obj._max;
    return *this;
}

bool BoxVolume::operator ==(const BoxVolume &other) const
{
    return getState() == other.getState() && _min == other._min && _max == other._max;
}

void BoxVolume::getCenter(Pnt3f &center) const
{
    if(isEmpty())
        center.setValues(0.f, 0.f, 0.f);
    else
        center.setValues(0.5f * (_min[0] + _max[0]),
                         0.5f * (_min[1] + _max[1]),
                         0.5f * (_min[2] + _max[2]));
}

float BoxVolume::getScalarVolume(void) const
{
    if(isEmpty())
        return 0.f;
    return (_max[0] - _min[0]) * (_max[1] - _min[1]) * (_max[2] - _min[2]);
}

void BoxVolume::getBounds(Pnt3f &min, Pnt3f &max) const
{
    min = _min;
    max = _max;
}

void BoxVolume::getOrigin(Real32 &originX, Real32 &originY, Real32 &originZ) const
{
    originX = _min[0];
    originY = _min[1];
    originZ = _min[2];
}

void BoxVolume::getSize(Real32 &width, Real32 &height, Real32 &depth) const
{
    width  = _max[0] - _min[0];
    height = _max[1] - _min[1];
    depth  = _max[2] - _min[2];
}

void BoxVolume::getSize(Vec3f &vec) const
{
    vec = _max - _min;
}

void BoxVolume::setBounds(Real32 w, Real32 h, Real32 d)
{
    setBounds(-w / 2.f, -h / 2.f, -d / 2.f, w / 2.f, h / 2.f, d / 2.f);
}

void BoxVolume::setBounds(Real32 xmin, Real32 ymin, Real32 zmin,
                          Real32 xmax, Real32 ymax, Real32 zmax)
{
    _min.setValues(xmin, ymin, zmin);
    _max.setValues(xmax, ymax, zmax);

    setValid   (true );
    setEmpty   (false);
    setInfinite(false);
}

void BoxVolume::setBounds(const Pnt3f &min, const Pnt3f &max)
{
    setBounds(min[0], min[1], min[2], max[0], max[1], max[2]);
}

void BoxVolume::setBoundsByCenterAndSize(const Pnt3f &center, const Vec3f &size)
{
    setBounds(center - size * 0.5f, center + size * 0.5f);
}

void BoxVolume::extendBy(const Pnt3f &pt)
{
    if(isUntouchable())
        return;

    if(isEmpty())
    {
        _min = pt;
        _max = pt;
        setEmpty(false);
        return;
    }

    for(UInt32 i = 0; i < 3; ++i)
    {
        _min[i] = osgMin(_min[i], pt[i]);
        _max[i] = osgMax(_max[i], pt[i]);
    }
}

void BoxVolume::extendBy(const Volume &volume)
{
    extend(*this, volume);
}

void BoxVolume::extendBy(const BoxVolume &bb)
{
    extend(*this, bb);
}

// As 1.8: the faces are outside, and an infinite box goes by its bounds.
bool BoxVolume::intersect(const Pnt3f &point) const
{
    if(isEmpty())
        return false;

    for(UInt32 i = 0; i < 3; ++i)
        if(point[i] <= _min[i] || point[i] >= _max[i])
            return false;
    return true;
}

bool BoxVolume::intersect(const Line &line) const
{
    Real32 enter, exit;
    return line.intersect(*this, enter, exit);
}

bool BoxVolume::intersect(const Line &line, Real32 &enter, Real32 &exit) const
{
    return line.intersect(*this, enter, exit);
}

bool BoxVolume::intersect(const Volume &volume) const
{
    return osg::intersect(*this, volume);
}

bool BoxVolume::isOnSurface(const Pnt3f &point) const
{
    if(isEmpty())
        return false;

    bool onFace = false;
    for(UInt32 i = 0; i < 3; ++i)
    {
        if(point[i] < _min[i] - Eps || point[i] > _max[i] + Eps)
            return false;
        if(osgabs(point[i] - _min[i]) < Eps || osgabs(point[i] - _max[i]) < Eps)
            onFace = true;
    }
    return onFace;
}

// Each new bound is the translation plus, axis by axis, the larger (or the
// smaller) of the old bounds' contributions, added in 1.8's order so that
// boxes agree to the bit.
void BoxVolume::transform(const Matrix &matrix)
{
    if(isEmpty() || isInfinite())
        return;

    Pnt3f newMin, newMax;
    for(UInt32 j = 0; j < 3; ++j)
    {
        newMin[j] = newMax[j] = matrix[3][j];
        for(UInt32 i = 0; i < 3; ++i)
        {
            const Real32 a = _max[i] * matrix[i][j];
            const Real32 b = _min[i] * matrix[i][j];
            newMax[j] += a >= b ? a : b;
            newMin[j] += a >= b ? b : a;
        }
    }
    _min = newMin;
    _max = newMax;
}

void BoxVolume::dump(UInt32 uiIndent, const BitVector) const
{
    indentLog(uiIndent, PLOG);
    PLOG << "Box(" << _min << "|" << _max << ")";
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
