#include <OpenSG/OSGVolumeFunctions.h>
#include <OpenSG/OSGLog.h>

namespace osg
{

namespace
{
    const Volume &unwrap(const Volume &vol)
    {
        const DynamicVolume *dv = dynamic_cast<const DynamicVolume *>(&vol);
        return dv != NULL ? unwrap(dv->getInstance()) : vol;
    }

    // For volume classes this file does not know: their bounding box.
    BoxVolume boundsOf(const Volume &vol)
    {
        BoxVolume box;
        box.setState(vol.getState());
        if(!vol.isEmpty() && !vol.isInfinite())
        {
            Pnt3f min, max;
            vol.getBounds(min, max);
            box.setBounds(min, max);
            box.setState(vol.getState());
        }
        return box;
    }

    template <class A>
    bool intersectWith(const A &a, const Volume &vol)
    {
        const Volume &v = unwrap(vol);

        if(const BoxVolume *b = dynamic_cast<const BoxVolume *>(&v))
            return intersect(a, *b);
        if(const SphereVolume *s = dynamic_cast<const SphereVolume *>(&v))
            return intersect(a, *s);
        if(const FrustumVolume *f = dynamic_cast<const FrustumVolume *>(&v))
            return intersect(a, *f);

        return intersect(a, boundsOf(v));
    }

    template <class A>
    void extendWith(A &a, const Volume &vol)
    {
        const Volume &v = unwrap(vol);

        if(const BoxVolume *b = dynamic_cast<const BoxVolume *>(&v))
            extend(a, *b);
        else if(const SphereVolume *s = dynamic_cast<const SphereVolume *>(&v))
            extend(a, *s);
        else if(const FrustumVolume *f = dynamic_cast<const FrustumVolume *>(&v))
            extend(a, *f);
        else
            extend(a, boundsOf(v));
    }

    template <class B>
    void extendVolume(Volume &srcVol, const B &vol)
    {
        if(DynamicVolume *dv = dynamic_cast<DynamicVolume *>(&srcVol))
        {
            extend(dv->getInstance(), vol);
            dv->instanceChanged();
        }
        else if(BoxVolume *b = dynamic_cast<BoxVolume *>(&srcVol))
        {
            extend(*b, vol);
        }
        else if(SphereVolume *s = dynamic_cast<SphereVolume *>(&srcVol))
        {
            extend(*s, vol);
        }
        else if(FrustumVolume *f = dynamic_cast<FrustumVolume *>(&srcVol))
        {
            extend(*f, vol);
        }
        else
        {
            SWARNING << "extend: unknown volume type!" << endLog;
        }
    }

    // Shared rules of every extend; true if the caller has to merge.
    bool mayExtend(Volume &srcVol, const Volume &vol)
    {
        if(srcVol.isStatic() || srcVol.isInfinite())
            return false;
        if(!srcVol.isValid() && !srcVol.isEmpty())
            return false;
        if(!vol.isValid() || vol.isEmpty())
            return false;
        if(vol.isInfinite())
        {
            srcVol.setInfinite();
            return false;
        }
        return true;
    }

    bool outsideSomePlane(const FrustumVolume &frustum, const Pnt3f *pts, UInt32 n)
    {
        const Plane *planes = frustum.getPlanes();
        for(UInt32 i = 0; i < 6; ++i)
        {
            UInt32 out = 0;
            while(out < n && !planes[i].isInHalfSpace(pts[out]))
                ++out;
            if(out == n)
                return true;
        }
        return false;
    }
}

bool intersect(const BoxVolume &box1, const BoxVolume &box2)
{
    if(box1.isEmpty() || box2.isEmpty())
        return false;
    if(box1.isInfinite() || box2.isInfinite())
        return true;

    for(UInt32 i = 0; i < 3; ++i)
        if(box1.getMin()[i] > box2.getMax()[i] || box2.getMin()[i] > box1.getMax()[i])
            return false;
    return true;
}

bool intersect(const BoxVolume &box, const SphereVolume &sphere)
{
    if(box.isEmpty() || sphere.isEmpty())
        return false;
    if(box.isInfinite() || sphere.isInfinite())
        return true;

    // Distance from the centre to the nearest point of the box.
    Real32 d2 = 0.f;
    for(UInt32 i = 0; i < 3; ++i)
    {
        const Real32 c = sphere.getCenter()[i];
        const Real32 p = osgClamp(box.getMin()[i], c, box.getMax()[i]);
        d2 += (c - p) * (c - p);
    }
    return d2 <= sphere.getRadius() * sphere.getRadius();
}

bool intersect(const BoxVolume &box, const FrustumVolume &frustum)
{
    if(box.isInfinite())
        return true;

    const Plane *planes = frustum.getPlanes();
    for(UInt32 i = 0; i < 6; ++i)
        if(planes[i].isOutHalfSpace(box.getMin(), box.getMax()))
            return false;
    return true;
}

bool intersect(const BoxVolume &box, const Volume &vol)
{
    return intersectWith(box, vol);
}

bool intersect(const SphereVolume &sphere, const BoxVolume &box)
{
    return intersect(box, sphere);
}

bool intersect(const SphereVolume &sphere1, const SphereVolume &sphere2)
{
    if(sphere1.isEmpty() || sphere2.isEmpty())
        return false;
    if(sphere1.isInfinite() || sphere2.isInfinite())
        return true;

    const Real32 r = sphere1.getRadius() + sphere2.getRadius();
    return sphere1.getCenter().dist2(sphere2.getCenter()) <= r * r;
}

bool intersect(const SphereVolume &sphere, const FrustumVolume &frustum)
{
    if(sphere.isInfinite())
        return true;

    const Plane *planes = frustum.getPlanes();
    for(UInt32 i = 0; i < 6; ++i)
        if(planes[i].distance(sphere.getCenter()) < -sphere.getRadius())
            return false;
    return true;
}

bool intersect(const SphereVolume &sphere, const Volume &vol)
{
    return intersectWith(sphere, vol);
}

bool intersect(const FrustumVolume &frustum, const BoxVolume &box)
{
    return intersect(box, frustum);
}

bool intersect(const FrustumVolume &frustum, const SphereVolume &sphere)
{
    return intersect(sphere, frustum);
}

// Separated if the corners of one lie outside a single plane of the other.
bool intersect(const FrustumVolume &frustum1, const FrustumVolume &frustum2)
{
    Pnt3f c1[8], c2[8];
    if(!frustum1.getCorners(c1) || !frustum2.getCorners(c2))
        return true;

    return !outsideSomePlane(frustum1, c2, 8) && !outsideSomePlane(frustum2, c1, 8);
}

bool intersect(const FrustumVolume &frustum, const Volume &vol)
{
    return intersectWith(frustum, vol);
}

bool intersect(const Volume &vol, const BoxVolume &box)
{
    return intersectWith(box, vol);
}

bool intersect(const Volume &vol, const SphereVolume &sphere)
{
    return intersectWith(sphere, vol);
}

bool intersect(const Volume &vol, const FrustumVolume &frustum)
{
    return intersectWith(frustum, vol);
}

bool intersect(const Volume &vol1, const Volume &vol2)
{
    return intersectWith(vol1, vol2);
}

void extend(BoxVolume &srcVol, const BoxVolume &vol)
{
    if(!mayExtend(srcVol, vol))
        return;

    if(srcVol.isEmpty())
    {
        srcVol.setBounds(vol.getMin(), vol.getMax());
        return;
    }

    Pnt3f min = srcVol.getMin();
    Pnt3f max = srcVol.getMax();
    for(UInt32 i = 0; i < 3; ++i)
    {
        min[i] = osgMin(min[i], vol.getMin()[i]);
        max[i] = osgMax(max[i], vol.getMax()[i]);
    }
    srcVol.setBounds(min, max);
}

void extend(BoxVolume &srcVol, const SphereVolume &vol)
{
    if(!mayExtend(srcVol, vol))
        return;

    Pnt3f min, max;
    vol.getBounds(min, max);
    extend(srcVol, BoxVolume(min, max));
}

void extend(BoxVolume &srcVol, const FrustumVolume &vol)
{
    if(!mayExtend(srcVol, vol))
        return;

    Pnt3f corners[8];
    vol.getCorners(corners);
    for(UInt32 i = 0; i < 8; ++i)
        srcVol.extendBy(corners[i]);
}

void extend(BoxVolume &srcVol, const Volume &vol)
{
    extendWith(srcVol, vol);
}

// The box through its circumscribed sphere.
void extend(SphereVolume &srcVol, const BoxVolume &vol)
{
    if(!mayExtend(srcVol, vol))
        return;

    Pnt3f center;
    vol.getCenter(center);
    extend(srcVol, SphereVolume(center, center.dist(vol.getMax())));
}

void extend(SphereVolume &srcVol, const SphereVolume &vol)
{
    if(!mayExtend(srcVol, vol))
        return;

    if(srcVol.isEmpty())
    {
        srcVol.setValue(vol.getCenter(), vol.getRadius());
        return;
    }

    const Real32 r1 = srcVol.getRadius();
    const Real32 r2 = vol.getRadius();
    const Real32 d  = srcVol.getCenter().dist(vol.getCenter());

    if(d + r2 <= r1)
        return;

    if(d + r1 <= r2)
    {
        srcVol.setValue(vol.getCenter(), r2);
        return;
    }

    const Real32 r = 0.5f * (d + r1 + r2);
    const Pnt3f  c = srcVol.getCenter() +
                     (vol.getCenter() - srcVol.getCenter()) * ((r - r1) / d);
    srcVol.setValue(c, r);
}

void extend(SphereVolume &srcVol, const FrustumVolume &vol)
{
    if(!mayExtend(srcVol, vol))
        return;

    Pnt3f corners[8];
    vol.getCorners(corners);
    for(UInt32 i = 0; i < 8; ++i)
        srcVol.extendBy(corners[i]);
}

void extend(SphereVolume &srcVol, const Volume &vol)
{
    extendWith(srcVol, vol);
}

// A set of planes cannot be widened to hold another volume.
void extend(FrustumVolume &, const BoxVolume     &) {}
void extend(FrustumVolume &, const SphereVolume  &) {}
void extend(FrustumVolume &, const FrustumVolume &) {}
void extend(FrustumVolume &, const Volume        &) {}

void extend(Volume &srcVol, const BoxVolume &vol)
{
    extendVolume(srcVol, vol);
}

void extend(Volume &srcVol, const SphereVolume &vol)
{
    extendVolume(srcVol, vol);
}

void extend(Volume &srcVol, const FrustumVolume &vol)
{
    extendVolume(srcVol, vol);
}

void extend(Volume &srcVol, const Volume &vol)
{
    extendVolume(srcVol, unwrap(vol));
}

} // namespace osg
