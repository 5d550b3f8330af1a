#include <OpenSG/OSGVolume.h>

namespace osg
{

// A new volume is valid and empty.
Volume::Volume(void) :
    _state(OSGVALID | OSGEMPTY)
{
}

Volume::Volume(const Volume &obj) :
    _state(obj._state)
{
}

Volume::~Volume(void)
{
}

Volume &Volume::operator =(const Volume &obj)
{
    _state = obj._state;
    return *this;
}

void Volume::setValid(const bool value)
{
    if(isStatic())
        return;

    if(value)
        _state |= OSGVALID;
    else
        _state &= ~OSGVALID;
}

void Volume::setEmpty(const bool value)
{
    if(value)
    {
        _state |=  (OSGEMPTY | OSGVALID);
        _state &= ~OSGINFINITE;
    }
    else
    {
        _state &= ~OSGEMPTY;
    }
}

void Volume::setStatic(const bool value)
{
    if(value)
        _state |= OSGSTATIC;
    else
        _state &= ~OSGSTATIC;
}

void Volume::setInfinite(const bool value)
{
    if(value)
    {
        _state |=  (OSGINFINITE | OSGVALID);
        _state &= ~OSGEMPTY;
    }
    else
    {
        _state &= ~OSGINFINITE;
    }
}

Pnt3f Volume::getMin(void) const
{
    Pnt3f min, max;
    getBounds(min, max);
    return min;
}

Pnt3f Volume::getMax(void) const
{
    Pnt3f min, max;
    getBounds(min, max);
    return max;
}

} // namespace osg
