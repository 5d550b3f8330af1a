#ifndef _OSGVOLUMEFUNCTIONS_H_
#define _OSGVOLUMEFUNCTIONS_H_

#include <OpenSG/OSGVolume.h>
#include <OpenSG/OSGBoxVolume.h>
#include <OpenSG/OSGSphereVolume.h>
#include <OpenSG/OSGFrustumVolume.h>
#include <OpenSG/OSGDynamicVolume.h>

namespace osg
{

// As 1.8: box/frustum and sphere/frustum tests are conservative, false only
// if the volume lies entirely outside one plane; touching spheres do not
// intersect; frustum/frustum is not implemented. Volume arguments dispatch on the
// dynamic type and look inside DynamicVolume.

bool intersect(const BoxVolume     &box1,    const BoxVolume     &box2   );
bool intersect(const BoxVolume     &box,     const SphereVolume  &sphere );
bool intersect(const BoxVolume     &box,     const FrustumVolume &frustum);
bool intersect(const BoxVolume     &box,     const Volume        &vol    );

bool intersect(const SphereVolume  &sphere,  const BoxVolume     &box    );
bool intersect(const SphereVolume  &sphere1, const SphereVolume  &sphere2);
bool intersect(const SphereVolume  &sphere,  const FrustumVolume &frustum);
bool intersect(const SphereVolume  &sphere,  const Volume        &vol    );

bool intersect(const FrustumVolume &frustum, const BoxVolume     &box    );
bool intersect(const FrustumVolume &frustum, const SphereVolume  &sphere );
bool intersect(const FrustumVolume &frustum1, const FrustumVolume &frustum2);
bool intersect(const FrustumVolume &frustum, const Volume        &vol    );

bool intersect(const Volume        &vol,     const BoxVolume     &box    );
bool intersect(const Volume        &vol,     const SphereVolume  &sphere );
bool intersect(const Volume        &vol,     const FrustumVolume &frustum);
bool intersect(const Volume        &vol1,    const Volume        &vol2   );

// Grow the first volume to enclose the second. Empty or invalid sources
// change nothing, an infinite one makes a box infinite; static, infinite and
// invalid targets stay as they are. As 1.8, spheres grow to the sphere around
// both bounding boxes, and nothing extends by or into a frustum, nor a plain
// Volume (a DynamicVolume extends through extendBy).

void extend(BoxVolume     &srcVol, const BoxVolume     &vol);
void extend(BoxVolume     &srcVol, const SphereVolume  &vol);
void extend(BoxVolume     &srcVol, const FrustumVolume &vol);
void extend(BoxVolume     &srcVol, const Volume        &vol);

void extend(SphereVolume  &srcVol, const BoxVolume     &vol);
void extend(SphereVolume  &srcVol, const SphereVolume  &vol);
void extend(SphereVolume  &srcVol, const FrustumVolume &vol);
void extend(SphereVolume  &srcVol, const Volume        &vol);

void extend(FrustumVolume &srcVol, const BoxVolume     &vol);
void extend(FrustumVolume &srcVol, const SphereVolume  &vol);
void extend(FrustumVolume &srcVol, const FrustumVolume &vol);
void extend(FrustumVolume &srcVol, const Volume        &vol);

void extend(Volume        &srcVol, const Volume        &vol);

} // namespace osg

#endif
