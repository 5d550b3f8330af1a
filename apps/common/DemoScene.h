#ifndef LUMORA_APPS_DEMOSCENE_H
#define LUMORA_APPS_DEMOSCENE_H

// The scene the command-line renderers draw, so that forward and deferred
// images and timings compare the same thing.

#include <OpenSG/OSGGeometry.h>
#include <OpenSG/OSGLight.h>
#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGPerspectiveCamera.h>
#include <OpenSG/OSGSimpleMaterial.h>

#include <string>
#include <vector>

namespace demo
{

osg::NodePtr makeTransformNode(const osg::Matrix &m);
osg::NodePtr makeGroupNode    (void);
void         addChild         (osg::NodePtr parent, osg::NodePtr child);

osg::SimpleMaterialPtr makeMaterial(osg::Real32 r, osg::Real32 g, osg::Real32 b);

// A courtyard: a tiled floor, brick walls on three sides, columns with
// glowing lamp globes, a fountain, crates, spheres, cones and a torus, all
// textured or coloured in code; with glass, panes and a globe of glass too.
osg::NodePtr buildObjects(bool withGlass);

// The number of columns, each with a lamp globe, and the i-th globe's centre.
int        demoColumnCount(void);
osg::Pnt3f lampPosition   (int i);

// A camera looking at the objects from above and in front; its beacon is
// hung under root.
osg::PerspectiveCameraPtr makeCamera(osg::NodePtr root);

// Beacon position of the i-th of n point lights circling the objects.
osg::Pnt3f pointLightPosition(int i, int n);

// Lights of the deferred demo, each with a beacon under root: one sun, a
// lamp by the fountain, one light in each column globe, coloured point
// lights in rings and spot lights on the walls aimed across the yard. With
// shadows, the sun, the fountain lamp and the first spot light cast them;
// no other light does. The light cores are not in the
// scene; the caller holds one reference on each.
std::vector<osg::LightPtr> makeDemoLights(osg::NodePtr root, int pointLights,
                                          int spotLights, bool sun, bool shadows = false);

// The sphere around the bounding box of everything under root; false if
// there is nothing of finite, non-zero size.
bool boundingSphere(osg::NodePtr root, osg::Pnt3f &center, osg::Real32 &radius);

// A camera looking at the sphere from in front and a little above, near
// and far planes just outside it, the sphere filling the view; its beacon
// is hung under parent.
osg::PerspectiveCameraPtr makeFramingCamera(osg::NodePtr parent, const osg::Pnt3f &center,
                                            osg::Real32 radius);

// Lights for a scene of any size around a sphere (center, radius): a sun, a
// ring of coloured point lights and spot lights aimed at the centre from
// above. With shadows, the sun and the first spot light cast them. Beacons
// and references as for makeDemoLights.
std::vector<osg::LightPtr> makeLightsAround(osg::NodePtr root, const osg::Pnt3f &center,
                                            osg::Real32 radius, int pointLights,
                                            int spotLights, bool sun, bool shadows);

// A street of shops and houses, 40 wide and 80 long along Z, paved in
// 8 x 8 tiles, with lamp columns along both kerbs, a fountain in the middle
// at the origin, crates by the house fronts and polished spheres about,
// four of them on the square around the fountain;
// about two hundred opaque objects and no glass.
osg::NodePtr buildStreet(void);

// The street's width across X; its lights reach a tenth of it.
osg::Real32 streetWidth(void);

// A camera above one end of the street looking along it; its beacon is hung
// under root.
osg::PerspectiveCameraPtr makeStreetCamera(osg::NodePtr root);

// count lights over the street, none casting shadows, each with a range
// (IDeferredLight::maxLightDistance) of a tenth of the street's width: the
// first ten ring the fountain, the rest are placed by a fixed seed, the
// second of those and every sixth after it a spot light aimed at a house
// front. Beacons under root;
// the caller holds one reference on each.
std::vector<osg::LightPtr> makeStreetLights(osg::NodePtr root, int count);

// Writes the current read framebuffer's lower-left width x height pixels.
bool writeFramebufferPng(const std::string &path, int width, int height);

// Parses a whole decimal integer within [minValue, maxValue].
bool parseInt(const char *text, int minValue, int maxValue, int &result);

// Parses a whole finite decimal number.
bool parseReal(const char *text, osg::Real32 &result);

} // namespace demo

#endif
