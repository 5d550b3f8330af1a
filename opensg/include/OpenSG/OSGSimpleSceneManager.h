#ifndef _OSGSIMPLESCENEMANAGER_H_
#define _OSGSIMPLESCENEMANAGER_H_

#include <OpenSG/OSGDirectionalLight.h>
#include <OpenSG/OSGImageForeground.h>
#include <OpenSG/OSGNavigator.h>
#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGPerspectiveCamera.h>
#include <OpenSG/OSGRenderAction.h>
#include <OpenSG/OSGSimpleStatisticsForeground.h>
#include <OpenSG/OSGWindow.h>

namespace osg
{

// Everything a small viewer needs around a scene: a camera with a
// headlight, a viewport if the window has none, and mouse navigation.
class SimpleSceneManager
{
  public:
    enum
    {
        MouseLeft   = 0,
        MouseMiddle = 1,
        MouseRight  = 2,
        MouseUp     = 3,
        MouseDown   = 4,
        NoButton    = -1
    };

    SimpleSceneManager(void);
    virtual ~SimpleSceneManager(void);

    virtual void      setWindow(WindowPtr win);
    virtual WindowPtr getWindow(void);

    // The internal root holds the light beacon, the camera beacon and the
    // headlight, and below it the user's root, which getRoot returns.
    virtual void    setRoot(NodePtr root);
    virtual NodePtr getRoot(void);

    virtual void            setAction(RenderAction *action);
    virtual DrawActionBase *getAction(void);

    virtual void                 setCamera(PerspectiveCameraPtr camera);
    virtual PerspectiveCameraPtr getCamera(void);

    virtual void                setHeadlight(bool on);
    virtual void                turnHeadlightOn(void);
    virtual void                turnHeadlightOff(void);
    virtual bool                getHeadlightState(void);
    virtual DirectionalLightPtr getHeadlight(void);

    virtual void    setHighlight(NodePtr obj);
    virtual NodePtr getHighlight(void);

    // Looks along -Z at the centre of the bounding sphere of the user's
    // root, from just far enough for the sphere to fill the view.
    virtual void showAll(void);

    // Shows frame rate and counts over the viewport the manager made; an
    // application that brought its own viewport shows its own foreground.
    virtual void setStatistics(bool on);
    virtual void useOpenSGLogo(void);
    inline  bool setClickCenter(bool mode) { return _navigator.setClickCenter(mode); }

    virtual void resize(UInt16 width, UInt16 height);
    virtual void mouseMove(Int16 x, Int16 y);
    virtual void mouseButtonPress(UInt16 button, Int16 x, Int16 y);
    virtual void mouseButtonRelease(UInt16 button, Int16 x, Int16 y);
    virtual void key(UChar8 key, Int16 x, Int16 y);

    virtual void redraw(void);
    virtual void idle(void);

    virtual Navigator *getNavigator(void);

  protected:
    void initialize(void);

  private:
    SimpleSceneManager(const SimpleSceneManager &);
    SimpleSceneManager &operator =(const SimpleSceneManager &);

    WindowPtr            _win;
    NodePtr              _root;
    NodePtr              _internalRoot;
    NodePtr              _headlightNode;
    DirectionalLightPtr  _headlight;
    NodePtr              _cart;
    PerspectiveCameraPtr _camera;
    ViewportPtr          _ownViewport;
    RenderAction        *_action;
    RenderAction        *_ownAction;
    NodePtr              _highlight;
    ImageForegroundPtr   _foreground;
    SimpleStatisticsForegroundPtr _statforeground;
    bool                 _statstate;
    Navigator            _navigator;
    Int16                _lastX;
    Int16                _lastY;
    UInt16               _mouseButtons;
};

} // namespace osg

#endif
