#ifndef _OSGRENDERACTION_H_
#define _OSGRENDERACTION_H_

#include <OpenSG/OSGRenderActionBase.h>
#include <OpenSG/OSGMaterial.h>
#include <OpenSG/OSGMatrix.h>

#include <map>
#include <vector>

namespace osg
{

class Geometry;
class Light;
class State;

class RenderAction : public RenderActionBase
{
  public:
    static StatElemDesc<StatTimeElem   > statDrawTime;
    static StatElemDesc<StatIntElem    > statNMaterials;
    static StatElemDesc<StatIntElem    > statNMatrices;
    static StatElemDesc<StatIntElem    > statNLights;
    static StatElemDesc<StatIntElem    > statNGeometries;
    static StatElemDesc<StatIntElem    > statNTransGeometries;
    static StatElemDesc<StatIntOnceElem> statNTextures;
    static StatElemDesc<StatIntOnceElem> statNTexBytes;
    static StatElemDesc<StatStringElem > statNOcclusionMode;
    static StatElemDesc<StatIntElem    > statNOcclusionTests;
    static StatElemDesc<StatIntElem    > statNOcclusionCulled;

    static RenderAction *create(void);

    static void          setPrototype(RenderAction *proto);
    static RenderAction *getPrototype(void);

    static void registerEnterDefault(const FieldContainerType &type,
                                     const Action::Functor   &func);
    static void registerLeaveDefault(const FieldContainerType &type,
                                     const Action::Functor   &func);

    virtual ~RenderAction(void);

    void          push_matrix(const Matrix &matrix);
    void          pop_matrix (void);
    const Matrix &top_matrix (void);

    void dropGeometry(Geometry *pGeo);
    void dropFunctor (Material::DrawFunctor &func, Material *mat);

    void dropLight  (Light *pLight);
    void undropLight(Light *pLight);

    std::vector<Light *> getActiveLights     (void);
    UInt32               getActiveLightsMask (void);
    UInt32               getActiveLightsCount(void);

    State *getCurrentState(void);

    void setStateSorting(bool s);
    bool getStateSorting(void);

    void setSortTrans(bool bVal);
    bool getSortTrans(void) const;

    void setZWriteTrans(bool bVal);
    bool getZWriteTrans(void) const;

    void setLocalLights(bool bVal);
    bool getLocalLights(void) const;

    void setCorrectTwoSidedLighting(bool bVal);
    bool getCorrectTwoSidedLighting(void);

    void setUseGLFinish(bool s);
    bool getUseGLFinish(void);

    void  setOcclusionCulling    (bool bVal);
    bool  getOcclusionCulling    (void);
    void  setOcclusionCullingMode(Int32 mode);
    Int32 getOcclusionCullingMode(void);
    void  setSmallFeatureCulling (bool bVal);
    bool  getSmallFeatureCulling (void);

    virtual bool isVisible(Node *node) override;

    // Hierarchical culling: push on enter, pop on leave, also when the
    // push said "not visible".
    bool pushVisibility(void);
    void popVisibility (void);

    // Runtime extensions for tests and benchmarks, reset by start():
    // draw calls issued (one per item and pass), triangles those calls
    // drew (from each geometry's primitive types and lengths), and state
    // switches (activate or changeFrom between different states).
    UInt32 getNumDrawnNodes  (void) const { return _numDrawnNodes;   }
    UInt32 getNumTriangles   (void) const { return _numTriangles;    }
    UInt32 getNumStateChanges(void) const { return _numStateChanges; }

  protected:
    RenderAction(void);
    RenderAction(const RenderAction &source);

    virtual std::vector<Functor> *getDefaultEnterFunctors(void) override;
    virtual std::vector<Functor> *getDefaultLeaveFunctors(void) override;

    virtual ResultE start(void) override;
    virtual ResultE stop (ResultE res) override;

  private:
    struct DrawItem
    {
        Material::DrawFunctor functor;
        Geometry             *geometry;
        Material             *material;
        State                *state;
        Matrix                world;
        Matrix                modelview;
        Real32                eyeZ;
        UInt32                lightsMask;
        UInt32                triangles;
        bool                  transparent;
    };

    struct Bucket
    {
        // Opaque items grouped per material, groups in first-seen order.
        std::vector<std::vector<DrawItem> > groups;
        std::map<Material *, size_t>       groupIndex;
        std::vector<DrawItem>               transparent;
    };

    struct LightEntry
    {
        Light *light;
        Matrix matrix;
    };

    void addItem    (const Material::DrawFunctor &func, Geometry *geo,
                     Material *mat);
    void drawItem   (DrawItem &item);
    void activateLights  (void);
    void setupLight      (UInt32 index, const LightEntry &entry);
    void deactivateLights(void);
    void setLightsMask   (UInt32 mask);

    static RenderAction *_prototype;

    std::vector<Matrix>              _matrixStack;
    // The same transforms multiplied onto the viewing matrix one by one, as
    // 1.8 keeps them, so that the modelview rounds as it does there.
    std::vector<Matrix>              _modelviewStack;
    Matrix                           _viewing;
    Matrix                           _currentWorld;
    bool                             _drawing;

    std::vector<FrustumVolume::PlaneSet> _visibilityStack;

    std::vector<DrawItem>            _unsortedOpaque;
    std::vector<DrawItem>            _unsortedTransparent;
    std::map<Int32, Bucket>          _buckets;

    std::vector<LightEntry>          _lights;
    std::vector<UInt32>              _lightPath;
    UInt32                           _activeLightsMask;

    State                           *_currentState;

    bool                             _stateSorting;
    bool                             _sortTrans;
    bool                             _zwriteTrans;
    bool                             _localLights;
    bool                             _correctTwoSidedLighting;
    bool                             _useGLFinish;
    bool                             _occlusionCulling;
    Int32                            _occlusionCullingMode;
    bool                             _smallFeatureCulling;

    UInt32                           _numDrawnNodes;
    UInt32                           _numTriangles;
    UInt32                           _numStateChanges;
    UInt32                           _numMatrixChanges;
    UInt32                           _numTransGeometries;

    double                           _startTime;
};

} // namespace osg

#endif
