#ifndef _OSGDRAWACTIONBASE_H_
#define _OSGDRAWACTIONBASE_H_

#include <OpenSG/OSGAction.h>
#include <OpenSG/OSGMatrix.h>
#include <OpenSG/OSGFrustumVolume.h>
#include <OpenSG/OSGStatCollector.h>
#include <OpenSG/OSGStatElemTypes.h>

namespace osg
{

class Viewport;
class Camera;
class Background;
class Window;
class Material;
class Node;

class DrawActionBase : public Action
{
  public:
    static StatElemDesc<StatTimeElem> statTravTime;
    static StatElemDesc<StatIntElem>  statCullTestedNodes;
    static StatElemDesc<StatIntElem>  statCulledNodes;

    virtual ~DrawActionBase(void);

    Viewport   *getViewport  (void) const { return _viewport;   }
    void        setViewport  (Viewport *viewport) { _viewport = viewport; }
    Camera     *getCamera    (void) const { return _camera;     }
    void        setCamera    (Camera *cam) { _camera = cam; }
    Background *getBackground(void) const { return _background; }
    void        setBackground(Background *background) { _background = background; }
    Window     *getWindow    (void) const { return _window;     }
    void        setWindow    (Window *window) { _window = window; }

    const Matrix &getCameraToWorld(void) { return _mCameraToWorld; }

    // Without a collector set, a traversal counts into one of its own,
    // made on demand and dropped when the traversal ends.
    StatCollector *getStatistics     (void);
    void           setStatistics     (StatCollector *stat);
    bool           hasOwnStat        (void) { return _ownStat; }
    // Off: the elements add up over traversals until the owner resets them.
    bool           getResetStatistics(void) const { return _resetStat; }
    void           setResetStatistics(bool value) { _resetStat = value; }

    bool getFrustumCulling(void) const { return _frustumCulling; }
    void setFrustumCulling(bool val = true) { _frustumCulling = val; }
    bool getAutoFrustum   (void) const { return _autoFrustum; }
    void setAutoFrustum   (bool val = true) { _autoFrustum = val; }
    bool getVolumeDrawing (void) const { return _volumeDrawing; }
    void setVolumeDrawing (bool val = false) { _volumeDrawing = val; }

    const FrustumVolume &getFrustum(void) const { return _frustum; }
    void                 setFrustum(FrustumVolume &frust) { _frustum = frust; }

    virtual bool isVisible(Node *node) = 0;
    UInt32 selectVisibles(void);

    Material *getMaterial    (void) const { return _material;     }
    NodePtr   getMaterialNode(void) const { return _materialNode; }
    void      setMaterial    (Material *pMaterial, NodePtr node)
    { _material = pMaterial; _materialNode = node; }

  protected:
    DrawActionBase(void);
    DrawActionBase(const DrawActionBase &source);

    virtual ResultE start(void) override;
    virtual ResultE stop (ResultE res) override;

    Viewport      *_viewport;
    Camera        *_camera;
    Background    *_background;
    Window        *_window;
    StatCollector *_statistics;
    bool           _ownStat;
    bool           _resetStat;
    Material      *_material;
    NodePtr        _materialNode;
    bool           _frustumCulling;
    bool           _autoFrustum;
    bool           _volumeDrawing;
    FrustumVolume  _frustum;
    Matrix         _mCameraToWorld;
};

} // namespace osg

#endif
