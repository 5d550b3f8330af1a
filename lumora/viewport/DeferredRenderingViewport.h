#ifndef _LUMORA_DEFERREDRENDERINGVIEWPORT_H_
#define _LUMORA_DEFERREDRENDERINGVIEWPORT_H_

#include <OpenSG/OSGConfig.h>
#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGAction.h>
#include <OpenSG/OSGRenderAction.h>
#include <OpenSG/OSGSHLChunk.h>
#include <OpenSG/OSGChunkMaterial.h>
#include <OpenSG/OSGBlendChunk.h>
#include <OpenSG/OSGDepthChunk.h>
#include <OpenSG/OSGPolygonForeground.h>
#include <OpenSG/OSGTextureChunk.h>
#include <OpenSG/OSGLight.h>
#include <OpenSG/OSGStatCollector.h>
#include <OpenSG/OSGStatElemTypes.h>

#include <Lumora/DeferredRenderingViewportBase.h>
#include <Lumora/IDeferredLight.h>
#include <Lumora/OSGRenderTarget.h>
#include <Lumora/VSMShadowMapper.h>
#include <Lumora/LumoraInit.h>
#include <Lumora/PassTimer.h>

#include <map>
#include <set>
#include <vector>

OSG_BEGIN_NAMESPACE

class IDeferredLight;
class DeferredLightBatch;
class IDeferredPostProcessor;

// A viewport that draws its scene with deferred shading: geometry into a
// G-buffer, light volumes into a float accumulation buffer, transparent
// geometry forward on top, the result over the viewport.
class DeferredRenderingViewport : public DeferredRenderingViewportBase
{
  private:
    typedef DeferredRenderingViewportBase Inherited;

  public:
    virtual void changed(BitVector whichField, UInt32 origin);

    virtual void dump(UInt32 uiIndent = 0, const BitVector bvFlags = 0) const;

    virtual void render(RenderActionBase *action);

    void prepareScene(NodePtr root);

    // Registers an OpenSG light that is on; its deferred counterpart is
    // initialised in the next frame. Lights that are off, already known or
    // of a type without a deferred counterpart are not registered.
    void addLight(LightPtr light);
    void subLight(LightPtr light);

    // Below 1 it overrides every light's own shadow intensity.
    void          setGlobalShadowIntensity(const Real32 &value) { globalShadowIntensity = value; }
    Real32       &getGlobalShadowIntensity(void)                { return globalShadowIntensity;  }
    const Real32 &getGlobalShadowIntensity(void) const          { return globalShadowIntensity;  }

    // Off by default. When on, every point and spot light that casts no
    // shadow is drawn in one screen pass that reads the G-buffer once per
    // pixel, looping over the lights that touch the pixel's screen tile;
    // shadowed and directional lights stay volumes. Same image; costs less
    // from a few lights on.
    void setLightBatching(bool on)       { lightBatching = on;   }
    bool getLightBatching(void) const    { return lightBatching; }

    // Off by default: every shadow map is drawn every frame. When on, a
    // light's maps are drawn again only when its light cameras or the
    // shadow-casting scene under the root changed (transforms, geometry,
    // traversal masks, switch choices); invalidateShadowMaps covers what the
    // scene graph does not show. Same image either way.
    void setShadowMapReuse   (bool on)       { shadowMapper.setReuse(on);       }
    bool getShadowMapReuse   (void) const    { return shadowMapper.getReuse();  }
    void invalidateShadowMaps(void)          { shadowMapper.invalidate();       }

    // The effects run in this order on the lit image, each switched on or
    // off; a switched-off effect is skipped and keeps its settings.
    enum PostProcessSlot
    {
        AAPostProcess   = 0,
        SSAOPostProcess = 1,
        HDRPostProcess  = 2,
        DoFPostProcess  = 3,
        CMBPostProcess  = 4,
        NumPostProcessors
    };

    void setAAPostProcessOn  (bool on) { postProcessOn[AAPostProcess]   = on; }
    void setSSAOPostProcessOn(bool on) { postProcessOn[SSAOPostProcess] = on; }
    void setHDRPostProcessOn (bool on) { postProcessOn[HDRPostProcess]  = on; }
    void setDoFPostProcessOn (bool on) { postProcessOn[DoFPostProcess]  = on; }
    void setCMBPostProcessOn (bool on) { postProcessOn[CMBPostProcess]  = on; }

    // Stored in the effects, whose defaults they are; a value set while an
    // effect is off is used once it is on. On the type's prototype, which
    // has no effects, setters do nothing and getters return 0.
    void   setHDRExposure           (Real32 value);
    Real32 getHDRExposure           (void) const;
    void   setHDRBrightPassThreshold(Real32 value);
    Real32 getHDRBrightPassThreshold(void) const;
    void   setDoFFocalDepth         (Real32 value);
    Real32 getDoFFocalDepth         (void) const;
    void   setDoFBlurCutoff         (Real32 value);
    Real32 getDoFBlurCutoff         (void) const;
    void   setCMBBlurScale          (Real32 value);
    Real32 getCMBBlurScale          (void) const;
    void   setSSAOScale             (Real32 value);
    Real32 getSSAOScale             (void) const;
    void   setSSAOAttenuation       (Real32 value);
    Real32 getSSAOAttenuation       (void) const;

    bool                    isPostProcessOn (UInt32 slot) const { return postProcessOn[slot];  }
    IDeferredPostProcessor *getPostProcessor(UInt32 slot) const { return postProcessors[slot]; }

    typedef std::map<LightPtr, IDeferredLight *> LightMap;

    // Per-pass times in milliseconds, measured while pass timing is on.
    // Where the window has timer queries they are the GPU's times of the
    // newest frame whose timestamps arrived, getPassTimesAge() frames ago,
    // and timing never waits for the GPU; elsewhere they are wall-clock
    // times of this frame, waiting for the GPU after each pass.
    struct PassTimes
    {
        Real64 geometry = 0.0;
        Real64 shadows  = 0.0;  // light updates and shadow maps
        Real64 lights   = 0.0;  // the light pass
        Real64 forward  = 0.0;
        Real64 effects[NumPostProcessors] = {0.0, 0.0, 0.0, 0.0, 0.0};
        Real64 final    = 0.0;
        // The light stage (updates, shadow maps, light pass) on the
        // rendering thread's CPU clock, and the fragments the light pass
        // drew, emissive screen pass included.
        Real64 lightsCpu   = 0.0;
        UInt64 lightPixels = 0;
        // False until the first measured frame's times have arrived.
        bool   measured    = false;
    };

    void             setPassTiming  (bool enabled) { passTiming = enabled;  }
    const PassTimes &getPassTimes   (void) const   { return passTimes;      }
    // The same passes on the rendering thread's clock, this frame.
    const PassTimes &getPassCpuTimes(void) const   { return passCpuTimes;   }
    UInt32           getPassTimesAge(void) const   { return passTimesAge;   }

    // The same times for a statistics foreground, in milliseconds: written
    // into the action's collector after each frame timed, for the elements
    // the collector holds (a foreground listing one makes it).
    static StatElemDesc<StatRealElem> statGeometryPassTime;
    static StatElemDesc<StatRealElem> statShadowPassTime;
    static StatElemDesc<StatRealElem> statLightPassTime;
    static StatElemDesc<StatRealElem> statForwardPassTime;
    static StatElemDesc<StatRealElem> statPostProcessTime;   // all effects together
    static StatElemDesc<StatRealElem> statFinalPassTime;

    // Read-only views of the pipeline's state, for tools and tests.
    Int32                       getLastWidth        (void) const { return lastWidth;         }
    Int32                       getLastHeight       (void) const { return lastHeight;        }
    const std::vector<NodePtr> &getForwardNodes     (void) const { return forwardNodes;      }
    const std::vector<NodePtr> &getDeferredNodes    (void) const { return deferredNodes;     }
    RenderTarget               &getGBufferTarget    (void)       { return gbufferTarget;     }
    RenderTarget               &getLightTarget      (void)       { return lightTarget;       }
    NodePtr                     getLightRoot        (void) const { return lightRoot;         }
    RenderAction               *getLightRenderAction(void) const { return lightRenderAction; }
    SHLChunkPtr                 getGBufferShader    (void) const { return gbufferShader;     }
    DepthChunkPtr               getForwardDepth     (void) const { return forwardDepth;      }
    const LightMap             &getLights           (void) const { return lights;            }
    IDeferredLight             *getEmissiveLight    (void) const { return emissiveLight;     }
    DeferredLightBatch         *getLightBatch       (void) const { return lightBatch;        }
    VSMShadowMapper            &getShadowMapper     (void)       { return shadowMapper;      }

  protected:
    DeferredRenderingViewport(void);
    DeferredRenderingViewport(const DeferredRenderingViewport &source);
    virtual ~DeferredRenderingViewport(void);

    void onCreate (const DeferredRenderingViewport *source = NULL);
    void writePassStatistics(RenderActionBase *action) const;
    virtual void onDestroy(void);

    Action::ResultE prepareNode(NodePtr &node);

    void initializeBuffers   (void);
    void showTextureFullscreen(RenderActionBase *action, TextureChunkPtr texture);
    void enableNodes         (const std::vector<NodePtr> &nodes, bool enable);

    // What prepareScene added to a material, taken out again when the
    // viewport goes or the material is left to the viewport alone.
    struct Conversion
    {
        ChunkMaterialPtr             material;    // referenced
        StateChunkPtr                parameters;  // null for transparent ones
        std::vector<StateChunkPtr>   silenced;    // chunks set to be ignored
    };
    void undoConversion   (const Conversion &conversion);
    void dropOrphanConversions(void);

    void            updateLightBatch   (const Matrix &projection, const Vec2f &camNearFar);
    IDeferredLight *createDeferredLight(LightPtr light);
    void            initNewLights      (void);
    void            releaseLight       (IDeferredLight *light);

    // The post-processing chain from the lit image; returns what to show.
    TextureChunkPtr runPostProcessors(const Matrix &viewing, const Matrix &projection,
                                      const Vec2f &camNearFar, TextureChunkPtr current);

    template <class EffectT>
    EffectT *effect(PostProcessSlot slot) const;
    // Ends a timed pass: its CPU time, and its GPU timestamp or, without
    // timer queries, its wall-clock time after waiting for the GPU.
    void            endPass                   (UInt32 pass, Real64 &cpu, Real64 &wall);
    static UInt16   countInitializedShadowmaps(IDeferredLight *light);
    static bool     hasFiniteFields           (LightPtr light);
    static bool     isFiniteSetting           (const char *operation, Real32 value);
    bool            fitsTheTextureLimit       (void);

    Int32                lastWidth;
    Int32                lastHeight;
    std::vector<NodePtr> forwardNodes;
    std::vector<NodePtr> deferredNodes;
    std::vector<Conversion> conversions;
    RenderTarget         gbufferTarget;
    RenderTarget         lightTarget;
    VSMShadowMapper      shadowMapper;
    SHLChunkPtr          gbufferShader;
    ChunkMaterialPtr     fullscreenMaterial;
    BlendChunkPtr        gbufferBlend;
    DepthChunkPtr        forwardDepth;
    NodePtr              lightRoot;
    RenderAction        *lightRenderAction;
    PolygonForegroundPtr fullscreenQuad;
    bool                 passTiming = false;
    PassTimes            passTimes;
    PassTimes            passCpuTimes;
    UInt32               passTimesAge = 0;
    PassTimer            passTimer;
    bool                 gpuTiming = false;  // this frame's timer queries run
    Real64               passStart = 0.0;    // steady clock, ms
    Real32               globalShadowIntensity;
    bool                 lightBatching = false;
    LightMap             lights;
    std::set<LightPtr>   nonFiniteLights;    // reported once until fixed
    Int32                refusedWidth  = 0;  // last size beyond the GL limits
    Int32                refusedHeight = 0;
    IDeferredLight      *emissiveLight;
    DeferredLightBatch  *lightBatch = NULL;
    std::vector<const IDeferredLight::BatchRecord *> batchRecords;
    bool                    postProcessOn [NumPostProcessors];
    IDeferredPostProcessor *postProcessors[NumPostProcessors];

    static const char *s_strGBufferVertex;
    static const char *s_strGBufferFragment;

  private:
    friend class FieldContainer;
    friend class DeferredRenderingViewportBase;

    static void initMethod(void);

    void operator =(const DeferredRenderingViewport &source);
};

typedef DeferredRenderingViewport *DeferredRenderingViewportP;

OSG_END_NAMESPACE

#endif
