#include <OpenSG/OSGDynamicVolume.h>
#include <OpenSG/OSGVolumeFunctions.h>
#include <OpenSG/OSGLog.h>

#include <new>

namespace osg
{

DynamicVolume::DynamicVolume(Type type) :
    Volume()
{
    construct(type, NULL);
}

// As 1.8, a copy keeps the original's own state, whatever its instance says.
DynamicVolume::DynamicVolume(const DynamicVolume &obj) :
    Volume(obj)
{
    construct(obj._type, &obj.getInstance());
    setState(obj.getState());
}

DynamicVolume::~DynamicVolume(void)
{
    destroy();
}

DynamicVolume &DynamicVolume::operator =(const DynamicVolume &obj)
{
    if(this != &obj)
    {
        destroy();
        construct(obj._type, &obj.getInstance());
    }
    return *this;
}

void DynamicVolume::construct(Type type, const Volume *source)
{
    _type = type;

    if(type == SPHERE_VOLUME)
    {
        const SphereVolume *s = static_cast<const SphereVolume *>(source);
        if(s != NULL)
            _instance = new (_volumeMem) SphereVolume(*s);
        else
            _instance = new (_volumeMem) SphereVolume;
    }
    else
    {
        const BoxVolume *b = static_cast<const BoxVolume *>(source);
        if(b != NULL)
            _instance = new (_volumeMem) BoxVolume(*b);
        else
            _instance = new (_volumeMem) BoxVolume;
    }

    instanceChanged();
}

void DynamicVolume::destroy(void)
{
    getInstance().~Volume();
}

Volume &DynamicVolume::getInstance(void)
{
    return *_instance;
}

const Volume &DynamicVolume::getInstance(void) const
{
    return *_instance;
}

void DynamicVolume::instanceChanged(void)
{
    _state = getInstance().getState();
}

void DynamicVolume::setVolumeType(Type type)
{
    destroy();
    construct(type, NULL);
}

// As 1.8: the new volume holds the old one's bounds, set anew, so it is
// never empty; a sphere's centre is taken as max - min.
void DynamicVolume::morphToType(Type type)
{
    if(type == _type)
        return;

    Pnt3f min, max;
    getBounds(min, max);
    destroy();
    construct(type, NULL);
    if(type == BOX_VOLUME)
    {
        static_cast<BoxVolume &>(getInstance()).setBounds(min, max);
    }
    else
    {
        const Vec3f size = max - min;
        static_cast<SphereVolume &>(getInstance()).setValue(size.addToZero(), size.length() / 2);
    }
    instanceChanged();
}

void DynamicVolume::setValid(const bool value)
{
    getInstance().setValid(value);
    instanceChanged();
}

void DynamicVolume::setEmpty(const bool value)
{
    getInstance().setEmpty(value);
    instanceChanged();
}

void DynamicVolume::setStatic(const bool value)
{
    getInstance().setStatic(value);
    instanceChanged();
}

void DynamicVolume::setInfinite(const bool value)
{
    getInstance().setInfinite(value);
    instanceChanged();
}

void DynamicVolume::getCenter(Pnt3f &center) const
{
    getInstance().getCenter(center);
}

float DynamicVolume::getScalarVolume(void) const
{
    return getInstance().getScalarVolume();
}

void DynamicVolume::getBounds(Pnt3f &min, Pnt3f &max) const
{
    getInstance().getBounds(min, max);
}

void DynamicVolume::extendBy(const Pnt3f &pt)
{
    getInstance().extendBy(pt);
    instanceChanged();
}

void DynamicVolume::extendBy(const Volume &volume)
{
    getInstance().extendBy(volume);
    instanceChanged();
}

bool DynamicVolume::intersect(const Pnt3f &point) const
{
    return getInstance().intersect(point);
}

bool DynamicVolume::intersect(const Line &line) const
{
    return getInstance().intersect(line);
}

bool DynamicVolume::intersect(const Line &line, Real32 &enter, Real32 &exit) const
{
    return getInstance().intersect(line, enter, exit);
}

bool DynamicVolume::intersect(const Volume &volume) const
{
    return getInstance().intersect(volume);
}

bool DynamicVolume::isOnSurface(const Pnt3f &point) const
{
    return getInstance().isOnSurface(point);
}

void DynamicVolume::transform(const Matrix &matrix)
{
    getInstance().transform(matrix);
    instanceChanged();
}

void DynamicVolume::dump(UInt32 uiIndent, const BitVector bvFlags) const
{
    indentLog(uiIndent, PLOG);
    PLOG << "Dynamic";
    getInstance().dump(0, bvFlags);
}

} // namespace osg
