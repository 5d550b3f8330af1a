#ifndef _LUMORA_IDEFERREDLIGHT_H_
#define _LUMORA_IDEFERREDLIGHT_H_

#include <OpenSG/OSGConfig.h>
#include <OpenSG/OSGBaseTypes.h>
#include <OpenSG/OSGBlendChunk.h>
#include <OpenSG/OSGBoxVolume.h>
#include <OpenSG/OSGChunkMaterial.h>
#include <OpenSG/OSGDepthChunk.h>
#include <OpenSG/OSGDynamicVolume.h>
#include <OpenSG/OSGFrustumVolume.h>
#include <OpenSG/OSGLight.h>
#include <OpenSG/OSGMatrix.h>
#include <OpenSG/OSGMatrixCamera.h>
#include <OpenSG/OSGMFVecTypes.h>
#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGGeometry.h>
#include <OpenSG/OSGPlane.h>
#include <OpenSG/OSGPolygonChunk.h>
#include <OpenSG/OSGSHLChunk.h>
#include <OpenSG/OSGSHLParameterChunk.h>
#include <OpenSG/OSGStateChunk.h>

#include <Lumora/OSGRenderTarget.h>
#include <Lumora/ShaderManager.h>

#include <map>
#include <vector>

OSG_BEGIN_NAMESPACE

// A light of the deferred pipeline: a small subgraph (the light volume)
// whose material reads the G-buffer and adds the light's colour to the
// accumulation buffer, plus the shadow maps the light may cast.
//
// Per frame: initialize once, then update; while castShadows is set the
// shadow mapper asks updateLightCamera for each map and renders those it
// accepts; then the light pass draws the volume.
class IDeferredLight
{
  public:
    IDeferredLight(void);
    virtual ~IDeferredLight(void);

    virtual void initialize(RenderTarget &gbuffer, UInt16 numGBufferTextures) = 0;

    virtual void update(const Matrix &viewing,
                        const Matrix &projection,
                        const Vec2f  &camNearFar,
                        LightPtr      light,
                        Real32        globalShadowIntensity) = 0;

    virtual NodePtr getVolumeRoot(void);

    virtual UInt16        getNumShadowmaps(void)         = 0;
    virtual RenderTarget *getShadowmap    (UInt16 index) = 0;

    virtual bool updateLightCamera(UInt16           index,
                                   FrustumVolume   &cameraFrustum,
                                   DynamicVolume   &sceneVolume,
                                   MatrixCameraPtr  lightCamera) = 0;

    // What a screen pass over many lights needs of a point or spot light,
    // in eye space. Beyond radius the volume draws nothing either.
    struct BatchRecord
    {
        Vec3f  position;
        Real32 radius      = 0.0f;
        Vec3f  diffuse;
        Real32 cosCutoff   = -2.0f;  // below -1: a point light
        Vec3f  specular;
        Real32 exponent    = 0.0f;
        Vec3f  attenuation;
        Vec3f  direction;
    };

    // While batching is offered, an update of a light that can join the
    // batch fills its record and hides the volume instead of setting it up.
    void               setBatchingOffered(bool offered) { batchingOffered = offered; }
    bool               isBatched     (void) const { return batched; }
    const BatchRecord &getBatchRecord(void) const { return batchRecord; }

    bool                 isInitialized     (void) const { return initialized;     }
    bool                 isEnabled         (void) const { return enabled;         }
    bool                 getCastShadows    (void) const { return castShadows;     }
    Real32               getShadowIntensity(void) const { return shadowIntensity; }
    UInt16               getNextTextureUnit(void) const { return nextTextureUnit; }
    ChunkMaterialPtr     getMaterial       (void) const { return material;        }
    // The parameters of the light's own program, which hold every uniform;
    // the active ones are those of the program the volume draws with.
    SHLParameterChunkPtr getParameterChunk      (void) const { return parameterChunk;   }
    SHLParameterChunkPtr getActiveParameterChunk(void) const { return activeParameters; }

    // Binds every G-buffer texture but the emissive one (index 3).
    void attachGBuffer(RenderTarget &gbuffer, UInt16 numGBufferTextures);

    // Distance at which the highest-order attenuation term alone reaches
    // 1/1000; 1000000 when there is none.
    static Real32 maxLightDistance(Real32 linearAttenuation, Real32 quadraticAttenuation);

    // Corners in the order near/far, left/right, top/bottom (near-left-top
    // first); a corner whose planes do not meet is left out with a warning.
    static MFPnt3f   getFrustumCorners(const FrustumVolume &frustum);
    static BoxVolume getFrustumAABB   (const FrustumVolume &frustum);

    // Box around a perspective frustum: fov is the full vertical angle in
    // radians, aspect width over height; direction and up need not be unit.
    static BoxVolume getFrustumAABB(Vec3f  position,
                                    Vec3f  direction,
                                    Vec3f  up,
                                    Real32 nearDist,
                                    Real32 farDist,
                                    Real32 fov,
                                    Real32 aspect);

    // False, with result untouched, when two of the planes are parallel.
    static bool intersectPlanes(const Plane &p1, const Plane &p2, const Plane &p3,
                                Pnt3f &result);

    // Shared by every light: add into the buffer, no depth test or writes.
    static BlendChunkPtr s_LightBufferBlending;
    static DepthChunkPtr s_LightRenderingNoDepthTest;

  protected:
    // The texture-unit rule: the sampler gets the next unit, and the texture
    // is appended to the material, which puts it on that unit.
    void bindTexture(const char *samplerName, StateChunkPtr texture);

    // Sets a uniform of the light's own program and, unless only the shadow
    // test reads it, of the shared shadow-free one. A parameter keeps the
    // location it was first found at, so each program has a parameter chunk
    // of its own and meets only uniforms it uses.
    template <class ValueT>
    void setUniform(const char *name, const ValueT &value)
    {
        setUniformIn(parameterChunk, name, value);
        if(sharedParameters != NullFC && !ShaderManager::isShadowUniform(name))
            setUniformIn(sharedParameters, name, value);
    }

    // A light class's shared culling chunk, culling the given faces: made
    // on first use and kept in slot until the last light goes.
    static PolygonChunkPtr sharedCullingChunk(PolygonChunkPtr &slot, GLenum cullFace);

    // Keeps a class-wide chunk, which holds one reference for the slot,
    // until the last light goes; then releases it and empties the slot.
    static void holdShared(FieldContainerPtrBase &slot);

    // Creates the parameter chunk and the material with the light's chunks
    // in their fixed order around a new shader chunk, which it returns.
    SHLChunkPtr createShaderMaterial(StateChunkPtr culling);

    // The volume: geometry drawn with the material, under a node with core
    // placement when given, else the geometry's own node.
    void createVolume(GeometryPtr geometry, NodeCorePtr placement);

    // The light's programs from the shader generator.
    static void setPrograms(SHLChunkPtr shader, ShaderManager::LightType type,
                            UInt16 numGBufferTextures, UInt16 numSplits);

    // Lights of a kind that cast no shadow share one program without the
    // shadow test: one program for many volumes, no switches between them.
    // A light casting shadows draws with its own chunk, whose text is set.
    // selectProgram picks by the shadow flag; call it after each update of
    // the flag.
    void shareProgram(SHLChunkPtr own, ShaderManager::LightType type,
                      UInt16 numGBufferTextures, UInt16 numSplits);
    void selectProgram(void);
    void createSharedProgram(ShaderManager::LightType type,
                             UInt16 numGBufferTextures, UInt16 numSplits);

    static void setLightCamera(MatrixCameraPtr camera, const Matrix &view,
                               const Matrix &projection, Real32 nearDist, Real32 farDist);

    // The caster rule: a global intensity below 1 overrides every light.
    void updateShadowFlags(LightPtr light, Real32 globalShadowIntensity);

    // A light camera's depth range around the scene's, widened a little so
    // that surfaces at either end are not clipped (a floor at the far plane
    // would vanish from the map and be lit through), and never thinner than
    // a tenth of near or 0.1: the moments normalise depth by far - near,
    // which must not magnify rounding errors into shadow where the scene is
    // flat towards the light. The near distance stays at least minNear, the
    // far one, padding aside, at most maxFar.
    static void padDepthRange(Real32 &nearDist, Real32 &farDist,
                              Real32 minNear, Real32 maxFar);

    // Unit length, or v itself when it is too short to normalise.
    static Vec3f normalizedOrAsIs(const Vec3f &v);

    // Hides the volume of a switched-off light from the light pass.
    void showVolume(bool on);

    // For point and spot lights after the shadow flags are current: true
    // when the light joins the batch this frame, its volume then hidden.
    bool joinBatch(bool on);

    bool                 enabled;
    bool                 initialized;
    bool                 batchingOffered = false;
    bool                 batched         = false;
    BatchRecord          batchRecord;
    NodePtr              volumeRoot;
    ChunkMaterialPtr     material;
    SHLParameterChunkPtr parameterChunk;
    bool                 castShadows;
    Real32               shadowIntensity;
    UInt16               nextTextureUnit;

  private:
    static void releaseShared(void);

    template <class ValueT>
    static void setUniformIn(SHLParameterChunkPtr chunk, const char *name, const ValueT &value)
    {
        beginEditCP(chunk, ShaderParameterChunk::ParametersFieldMask);
        chunk->setUniformParameter(name, value);
        endEditCP(chunk, ShaderParameterChunk::ParametersFieldMask);
    }

    SHLParameterChunkPtr sharedParameters;
    SHLParameterChunkPtr activeParameters;

    SHLChunkPtr  ownProgram;
    SHLChunkPtr  activeProgram;
    SHLChunkPtr *sharedProgram;

    static UInt32                               s_numLights;
    static std::map<UInt32, SHLChunkPtr>        s_sharedPrograms;
    static std::vector<FieldContainerPtrBase *> s_sharedSlots;

    IDeferredLight(const IDeferredLight &) = delete;
    IDeferredLight &operator =(const IDeferredLight &) = delete;
};

OSG_END_NAMESPACE

#endif
