#ifndef _OSGSIMPLEGEOMETRY_H_
#define _OSGSIMPLEGEOMETRY_H_

#include <OpenSG/OSGGeometry.h>
#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGMaterial.h>

namespace osg
{

// Each make*Geo returns a new geometry (NullFC and a warning for invalid
// arguments); each make* returns a new node with that geometry as core.

GeometryPtr makePlaneGeo(Real32 xsize, Real32 ysize, UInt16 hor, UInt16 vert);
NodePtr     makePlane   (Real32 xsize, Real32 ysize, UInt16 hor, UInt16 vert);

GeometryPtr makeBoxGeo(Real32 xsize, Real32 ysize, Real32 zsize,
                       UInt16 hor, UInt16 vert, UInt16 depth);
NodePtr     makeBox   (Real32 xsize, Real32 ysize, Real32 zsize,
                       UInt16 hor, UInt16 vert, UInt16 depth);

GeometryPtr makeConeGeo(Real32 height, Real32 botradius, UInt16 sides,
                        bool doSide, bool doBottom);
NodePtr     makeCone   (Real32 height, Real32 botradius, UInt16 sides,
                        bool doSide, bool doBottom);

GeometryPtr makeCylinderGeo(Real32 height, Real32 radius, UInt16 sides,
                            bool doSide, bool doTop, bool doBottom);
NodePtr     makeCylinder   (Real32 height, Real32 radius, UInt16 sides,
                            bool doSide, bool doTop, bool doBottom);

GeometryPtr makeConicalFrustumGeo(Real32 height, Real32 topradius, Real32 botradius,
                                  UInt16 sides, bool doSide, bool doTop, bool doBottom);
NodePtr     makeConicalFrustum   (Real32 height, Real32 topradius, Real32 botradius,
                                  UInt16 sides, bool doSide, bool doTop, bool doBottom);

GeometryPtr makeTorusGeo(Real32 innerRadius, Real32 outerRadius, UInt16 sides, UInt16 rings);
NodePtr     makeTorus   (Real32 innerRadius, Real32 outerRadius, UInt16 sides, UInt16 rings);

// Any radius is taken: 0 collapses the sphere, a negative one turns it
// inside out.
GeometryPtr makeSphereGeo(UInt16 depth, Real32 radius);
NodePtr     makeSphere   (UInt16 depth, Real32 radius);

GeometryPtr makeLatLongSphereGeo(UInt16 latres, UInt16 longres, Real32 radius);
NodePtr     makeLatLongSphere   (UInt16 latres, UInt16 longres, Real32 radius);

// Shared materials, created on first use and kept for the program's life.
MaterialPtr getDefaultMaterial     (void);
MaterialPtr getDefaultUnlitMaterial(void);

} // namespace osg

#endif
