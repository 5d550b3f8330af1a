#ifndef TESTS_SUPPORT_SCENESETUP_H
#define TESTS_SUPPORT_SCENESETUP_H

#include <OpenSG/OSGMaterial.h>
#include <OpenSG/OSGMatrix.h>
#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGOrthographicCamera.h>
#include <OpenSG/OSGPassiveWindow.h>
#include <OpenSG/OSGRenderAction.h>
#include <OpenSG/OSGSolidBackground.h>
#include <OpenSG/OSGViewport.h>

namespace testsupport
{

// A PassiveWindow over the current context with one full-window viewport,
// an empty Group root, a black SolidBackground and an orthographic camera
// at (0, 0, 5) looking down -Z: x and y in [-1, 1] fill the viewport, near
// 1 and far 9, so z = 0 lands at depth 0.5. Holds one reference on each
// container it made.
class SceneSetup
{
  public:
    SceneSetup(int width, int height);
    ~SceneSetup();

    SceneSetup(const SceneSetup &)            = delete;
    SceneSetup &operator=(const SceneSetup &) = delete;

    // Window::render with the setup's action.
    void render();

    // Pixel (x, y) centre in world x/y on the z = 0 plane.
    osg::Real32 worldX(int x) const;
    osg::Real32 worldY(int y) const;

    osg::PassiveWindowPtr      window;
    osg::ViewportPtr           viewport;
    osg::SolidBackgroundPtr    background;
    osg::OrthographicCameraPtr camera;
    osg::NodePtr               cameraBeacon;
    osg::NodePtr               root;
    osg::RenderAction         *action;

  private:
    int _width;
    int _height;
};

osg::NodePtr makeGroupNode    ();
osg::NodePtr makeTransformNode(const osg::Matrix &matrix);
void         addChild         (osg::NodePtr parent, osg::NodePtr child);

// The rectangle [x0, x1] x [y0, y1] at height z, facing +Z (counter-
// clockwise seen from the camera), drawn with mat.
osg::NodePtr makeRect(osg::Real32 x0, osg::Real32 y0, osg::Real32 x1, osg::Real32 y1,
                      osg::Real32 z, osg::MaterialPtr mat);

// Covers the setup's whole view at height z.
osg::NodePtr makeFullQuad(osg::Real32 z, osg::MaterialPtr mat);

// An unlit SimpleMaterial: draws color with alpha 1 - transparency.
osg::MaterialPtr makeUnlitMaterial(const osg::Color3f &color,
                                   osg::Real32 transparency = 0.f);

} // namespace testsupport

#endif
