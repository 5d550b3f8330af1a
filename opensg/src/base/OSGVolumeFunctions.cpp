#include <OpenSG/OSGVolumeFunctions.h>
#include <OpenSG/OSGLog.h>

namespace osg
{

namespace
{
    const Volume &unwrap(const Volume &vol)
    {
        const DynamicVolume *dv = dynamic_cast<const DynamicVolume *>(&vol);
        return dv != NULL ? dv->getInstance() : vol;
    }

    // Kinds this file does not know intersect nothing.
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
        return false;
    }

    // The rules every extend shares; true when the caller merges. An empty
    // target takes the source as it is, through copy.
    template <class Target, class Source, class Copy>
    bool mayExtend(Target &srcVol, const Source &vol, Copy copy)
    {
        if((!srcVol.isValid() && !srcVol.isEmpty()) || srcVol.isInfinite() ||
           srcVol.isStatic() || !vol.isValid() || vol.isEmpty())
            return false;
        if(srcVol.isEmpty())
        {
            copy();
            return false;
        }
        return true;
    }

    void unionOf(const Pnt3f &min1, const Pnt3f &max1, const Pnt3f &min2, const Pnt3f &max2,
                 Pnt3f &min, Pnt3f &max)
    {
        for(UInt32 i = 0; i < 3; ++i)
        {
            min[i] = osgMin(min1[i], min2[i]);
            max[i] = osgMax(max1[i], max2[i]);
        }
    }

    // The sphere through the corners of a box, as the sphere extends build theirs.
    void circumscribe(SphereVolume &sphere, const Pnt3f &min, const Pnt3f &max)
    {
        const Pnt3f center((min[0] + max[0]) * 0.5f, (min[1] + max[1]) * 0.5f,
                           (min[2] + max[2]) * 0.5f);
        sphere.setValue(center, (max - min).length() * 0.5f);
    }

    void notImplemented(const char *what)
    {
        FFATAL(("%s is not impl.\n", what));
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

// Touching spheres do not intersect, as in 1.8.
bool intersect(const SphereVolume &sphere1, const SphereVolume &sphere2)
{
    if(sphere1.isEmpty() || sphere2.isEmpty())
        return false;
    if(sphere1.isInfinite() || sphere2.isInfinite())
        return true;

    return sphere1.getCenter().dist(sphere2.getCenter()) <
           sphere1.getRadius() + sphere2.getRadius();
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

bool intersect(const FrustumVolume &, const FrustumVolume &)
{
    notImplemented("intersect (frustum/frustum)");
    return false;
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

// 1.8 has no extend for volumes of unknown kind, the message included.
void extend(Volume &, const Volume &)
{
    notImplemented("extend (frustum/volume)");
}

void extend(BoxVolume &srcVol, const BoxVolume &vol)
{
    if(!mayExtend(srcVol, vol, [&] { srcVol = vol; }))
        return;

    Pnt3f min, max;
    unionOf(srcVol.getMin(), srcVol.getMax(), vol.getMin(), vol.getMax(), min, max);
    srcVol.setBounds(min, max);
    if(vol.isInfinite())
        srcVol.setInfinite(true);
}

void extend(BoxVolume &srcVol, const SphereVolume &vol)
{
    Pnt3f smin, smax;
    vol.getBounds(smin, smax);
    if(!mayExtend(srcVol, vol, [&] { srcVol.setBounds(smin, smax); }))
        return;

    Pnt3f min, max;
    unionOf(srcVol.getMin(), srcVol.getMax(), smin, smax, min, max);
    srcVol.setBounds(min, max);
    if(vol.isInfinite())
        srcVol.setInfinite(true);
}

void extend(BoxVolume &, const FrustumVolume &)
{
    notImplemented("extend (box/frustum)");
}

// Other kinds through their bounds; a frustum has none, so adds the origin.
void extend(BoxVolume &srcVol, const Volume &vol)
{
    const Volume &v = unwrap(vol);
    if(const BoxVolume *box = dynamic_cast<const BoxVolume *>(&v))
    {
        extend(srcVol, *box);
        return;
    }
    Pnt3f min, max;
    v.getBounds(min, max);
    extend(srcVol, BoxVolume(min, max));
}

// Sphere extends circumscribe the bounding boxes of both: loose, as in 1.8.
void extend(SphereVolume &srcVol, const BoxVolume &vol)
{
    if(!mayExtend(srcVol, vol, [&] { circumscribe(srcVol, vol.getMin(), vol.getMax()); }))
        return;

    Pnt3f smin, smax, min, max;
    srcVol.getBounds(smin, smax);
    unionOf(smin, smax, vol.getMin(), vol.getMax(), min, max);
    circumscribe(srcVol, min, max);
}

void extend(SphereVolume &srcVol, const SphereVolume &vol)
{
    if(!mayExtend(srcVol, vol, [&] { srcVol = vol; }))
        return;

    Pnt3f min1, max1, min2, max2, min, max;
    srcVol.getBounds(min1, max1);
    vol.getBounds(min2, max2);
    unionOf(min1, max1, min2, max2, min, max);
    circumscribe(srcVol, min, max);
}

void extend(SphereVolume &, const FrustumVolume &)
{
    notImplemented("extend (sphere/frustum)");
}

void extend(SphereVolume &srcVol, const Volume &vol)
{
    const Volume &v = unwrap(vol);
    if(const SphereVolume *sphere = dynamic_cast<const SphereVolume *>(&v))
    {
        extend(srcVol, *sphere);
        return;
    }
    Pnt3f min, max;
    v.getBounds(min, max);
    SphereVolume bounds;
    circumscribe(bounds, min, max);
    extend(srcVol, bounds);
}

void extend(FrustumVolume &, const BoxVolume &)
{
    notImplemented("extend (frustum/box)");
}

void extend(FrustumVolume &, const SphereVolume &)
{
    notImplemented("extend (frustum/sphere)");
}

void extend(FrustumVolume &, const FrustumVolume &)
{
    notImplemented("extend (frustum/frustum)");
}

void extend(FrustumVolume &, const Volume &)
{
    notImplemented("extend (frustum/volume)");
}

} // namespace osg
