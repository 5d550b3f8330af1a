#ifndef _LUMORA_DEFERREDEMISSIVELIGHT_H_
#define _LUMORA_DEFERREDEMISSIVELIGHT_H_

#include <OpenSG/OSGPolygonChunk.h>
#include <OpenSG/OSGSHLChunk.h>

#include <Lumora/IDeferredLight.h>

OSG_BEGIN_NAMESPACE

// Adds the G-buffer's emissive colour over the whole viewport. The viewport
// owns exactly one; no OpenSG light stands behind it, so it is never
// updated and casts no shadows.
class DeferredEmissiveLight : public IDeferredLight
{
  public:
    DeferredEmissiveLight(void);
    virtual ~DeferredEmissiveLight(void);

    virtual void initialize(RenderTarget &gbuffer, UInt16 numGBufferTextures) override;

    virtual void update(const Matrix &viewing,
                        const Matrix &projection,
                        const Vec2f  &camNearFar,
                        LightPtr      light,
                        Real32        globalShadowIntensity) override;

    virtual UInt16        getNumShadowmaps(void)         override;
    virtual RenderTarget *getShadowmap    (UInt16 index) override;

    virtual bool updateLightCamera(UInt16           index,
                                   FrustumVolume   &cameraFrustum,
                                   DynamicVolume   &sceneVolume,
                                   MatrixCameraPtr  lightCamera) override;

    // Has no caller; kept for interface compatibility. Returns false.
    virtual bool setLightCamera(UInt16           index,
                                FrustumVolume   &cameraFrustum,
                                DynamicVolume   &sceneVolume,
                                MatrixCameraPtr  lightCamera);

    SHLChunkPtr getShaderChunk(void) const { return shaderChunk; }

    static PolygonChunkPtr s_CullingOptions;

  protected:
    SHLChunkPtr shaderChunk;
};

OSG_END_NAMESPACE

#endif
