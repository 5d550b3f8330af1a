#ifndef TESTS_SUPPORT_DEFERREDSCENE_H
#define TESTS_SUPPORT_DEFERREDSCENE_H

#include <Lumora/DeferredRenderingViewport.h>

#include <OpenSG/OSGPassiveWindow.h>
#include <OpenSG/OSGPerspectiveCamera.h>
#include <OpenSG/OSGRenderAction.h>
#include <OpenSG/OSGSimpleMaterial.h>
#include <OpenSG/OSGSolidBackground.h>

#include "support/Builders.h"
#include "support/GLTest.h"
#include "support/PixelProbe.h"
#include "support/TextureImage.h"

#include <memory>

namespace testsupport
{

// A PassiveWindow over the current context and a render action for it.
// Holds the one reference to the window.
struct WindowAndAction
{
    WindowAndAction(int width, int height);
    ~WindowAndAction();

    WindowAndAction(const WindowAndAction &)            = delete;
    WindowAndAction &operator=(const WindowAndAction &) = delete;

    void addPort(osg::ViewportPtr port);
    void subPort(osg::ViewportPtr port);

    osg::PassiveWindowPtr window;
    osg::RenderAction    *action;
};

// GLTest with a window and action of the fixture's size.
class WindowTest : public GLTest
{
  protected:
    virtual int windowWidth () const { return 64; }
    virtual int windowHeight() const { return 64; }

    void SetUp   () override;
    void TearDown() override;

    void addPort(osg::ViewportPtr port) { _windowAndAction->addPort(port); }
    void subPort(osg::ViewportPtr port) { _windowAndAction->subPort(port); }

    osg::PassiveWindowPtr window;
    osg::RenderAction    *action = nullptr;

  private:
    std::unique_ptr<WindowAndAction> _windowAndAction;
};

struct DeferredSceneOptions
{
    int          width           = 64;
    int          height          = 64;
    osg::Color3f background      = osg::Color3f(0, 0, 0);
    osg::Real32  backgroundAlpha = 0.0f;
    osg::Real32  fovDegrees      = 60.0f;
    osg::Real32  nearPlane       = 1.0f;
    osg::Real32  farPlane        = 10.0f;
    // The camera sits on the +Z axis looking down -Z.
    osg::Real32  eyeZ            = 5.0f;
};

// A deferred viewport filling a window, over a Group root that holds the
// camera beacon. Holds one reference on each container it made.
class DeferredScene
{
  public:
    explicit DeferredScene(const DeferredSceneOptions &options = DeferredSceneOptions());
    ~DeferredScene();

    DeferredScene(const DeferredScene &)            = delete;
    DeferredScene &operator=(const DeferredScene &) = delete;

    // A deferred viewport on the same camera, background and root, not yet
    // in the window; the caller holds its one reference.
    osg::DeferredRenderingViewportPtr makeViewport(osg::Real32 left   = 0, osg::Real32 bottom = 0,
                                                   osg::Real32 right  = 1,
                                                   osg::Real32 top    = 1) const;

    osg::NodePtr addToRoot(osg::NodePtr node);
    // A square of the given edge length in the plane z, facing +Z.
    osg::NodePtr addPlane(osg::Real32 size, osg::Real32 z, osg::MaterialPtr mat);

    // prepareScene, then one frame.
    void renderFrame();

    // World point where the ray through pixel (x, y)'s centre meets the
    // plane at height z.
    osg::Pnt3f pixelOnPlane(int x, int y, osg::Real32 z) const;
    osg::Pnt3f eye() const { return osg::Pnt3f(0, 0, options.eyeZ); }

    DeferredSceneOptions              options;
    WindowAndAction                   windowAndAction;
    osg::PassiveWindowPtr             window;
    osg::RenderAction                *action;
    osg::NodePtr                      root;
    osg::NodePtr                      cameraBeacon;
    osg::PerspectiveCameraPtr         camera;
    osg::SolidBackgroundPtr           background;
    osg::DeferredRenderingViewportPtr viewport;
};

// The lit image (light target texture 0), read at once.
class LitImage : public TextureImage
{
  public:
    explicit LitImage(osg::DeferredRenderingViewportPtr viewport)
        : TextureImage(viewport->getLightTarget().getTargetTexture(0)) {}
};

// GLTest around a DeferredScene made from sceneOptions().
class DeferredSceneTest : public GLTest
{
  public:
    static constexpr int Size = 64;

  protected:
    virtual DeferredSceneOptions sceneOptions() const { return DeferredSceneOptions(); }

    void SetUp   () override;
    void TearDown() override;

    // A lit material: no ambient, no emission unless given, shininess 1
    // unless given.
    static osg::SimpleMaterialPtr material(const osg::Color3f &diffuse,
                                           const osg::Color3f &specular  = osg::Color3f(0, 0, 0),
                                           osg::Real32         shininess = 1.0f,
                                           const osg::Color3f &emission  = osg::Color3f(0, 0, 0));

    osg::NodePtr addPlane(osg::Real32 size, osg::Real32 z, osg::MaterialPtr mat)
    {
        return scene->addPlane(size, z, mat);
    }
    void       renderFrame() { scene->renderFrame(); }
    osg::Pnt3f pixelOnPlane(int x, int y, osg::Real32 z) const
    {
        return scene->pixelOnPlane(x, y, z);
    }
    std::unique_ptr<DeferredScene>    scene;
    osg::PassiveWindowPtr             window;
    osg::RenderAction                *action = nullptr;
    osg::NodePtr                      root;
    osg::NodePtr                      cameraBeacon;
    osg::PerspectiveCameraPtr         camera;
    osg::SolidBackgroundPtr           background;
    osg::DeferredRenderingViewportPtr viewport;
};

} // namespace testsupport

#endif
