#ifndef TESTS_LUMORA_LIGHTS_DEFERREDSCENETEST_H
#define TESTS_LUMORA_LIGHTS_DEFERREDSCENETEST_H

#include <Lumora/DeferredRenderingViewport.h>

#include <OpenSG/OSGPassiveWindow.h>
#include <OpenSG/OSGPerspectiveCamera.h>
#include <OpenSG/OSGRenderAction.h>
#include <OpenSG/OSGSimpleMaterial.h>
#include <OpenSG/OSGSolidBackground.h>

#include "support/GLTest.h"
#include "support/PixelProbe.h"

namespace lighttest
{

// A 64x64 deferred viewport looking down -Z from (0, 0, 5): fov 60 degrees,
// near 1, far 10, black background, so that pixels without geometry stay
// black whatever the lights do.
class DeferredSceneTest : public testsupport::GLTest
{
  public:
    static constexpr int Size = 64;

  protected:
    void SetUp   () override;
    void TearDown() override;

    // A lit material: no emission unless given, shininess 1 unless given.
    static osg::SimpleMaterialPtr material(const osg::Color3f &diffuse,
                                           const osg::Color3f &specular  = osg::Color3f(0, 0, 0),
                                           osg::Real32         shininess = 1.0f,
                                           const osg::Color3f &emission  = osg::Color3f(0, 0, 0));

    // A square of the given edge length in the plane z, facing +Z.
    osg::NodePtr addPlane(osg::Real32 size, osg::Real32 z, osg::MaterialPtr mat);

    // prepareScene, then one frame.
    void renderFrame();

    // The lit image (light target texture 0) at pixel (x, y), as float.
    testsupport::RGBAf lit(int x, int y);

    // World point where the ray through pixel (x, y)'s centre meets the
    // plane at height z.
    osg::Pnt3f pixelOnPlane(int x, int y, osg::Real32 z) const;

    osg::PassiveWindowPtr             window;
    osg::NodePtr                      root;
    osg::NodePtr                      cameraBeacon;
    osg::PerspectiveCameraPtr         camera;
    osg::SolidBackgroundPtr           background;
    osg::DeferredRenderingViewportPtr viewport;
    osg::RenderAction                *action = nullptr;
};

// Phong terms as the light pass defines them, for expected values.
struct Phong
{
    osg::Vec3f diffuse;   // N.L * material diffuse * light diffuse
    osg::Vec3f specular;  // (R.V)^s * material specular * light specular
};

// Lighting of a surface point P with normal N seen from eye E by a light
// in direction L (unit, towards the light).
Phong phong(const osg::Pnt3f &P, const osg::Vec3f &N, const osg::Pnt3f &E, const osg::Vec3f &L,
            const osg::Color3f &materialDiffuse, const osg::Color3f &materialSpecular,
            osg::Real32 shininess,
            const osg::Color3f &lightDiffuse, const osg::Color3f &lightSpecular);

} // namespace lighttest

#endif
