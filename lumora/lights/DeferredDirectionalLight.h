#ifndef _LUMORA_DEFERREDDIRECTIONALLIGHT_H_
#define _LUMORA_DEFERREDDIRECTIONALLIGHT_H_

#include <OpenSG/OSGMFBaseTypes.h>
#include <OpenSG/OSGMFMathTypes.h>
#include <OpenSG/OSGPolygonChunk.h>
#include <OpenSG/OSGSHLChunk.h>

#include <Lumora/IDeferredLight.h>

OSG_BEGIN_NAMESPACE

// An OpenSG DirectionalLight in the light pass: a full-screen quad. Its
// shadows are three cascaded variance maps over depth splits of the
// viewer's frustum, each fitted by an orthographic light camera.
class DeferredDirectionalLight : public IDeferredLight
{
  public:
    DeferredDirectionalLight(void);
    virtual ~DeferredDirectionalLight(void);

    virtual void initialize(RenderTarget &gbuffer, UInt16 numGBufferTextures) override;

    virtual void update(const Matrix &viewing,
                        const Matrix &projection,
                        const Vec2f  &camNearFar,
                        LightPtr      light,
                        Real32        globalShadowIntensity) override;

    virtual UInt16        getNumShadowmaps(void)         override;
    virtual RenderTarget *getShadowmap    (UInt16 index) override;

    // Call with index 0 first in a frame (it fits the splits and the light
    // view) and index 2 last (it publishes the uniforms).
    virtual bool updateLightCamera(UInt16           index,
                                   FrustumVolume   &cameraFrustum,
                                   DynamicVolume   &sceneVolume,
                                   MatrixCameraPtr  lightCamera) override;

    // Blend of a logarithmic and a uniform division of [near, far].
    void updateSplitDistances(Real32 near, Real32 far);
    void updateSplitFrusta   (FrustumVolume &cameraFrustum);

    Real32               getSplitDistance   (UInt16 i) const { return splitDistances[i]; }
    const FrustumVolume &getSplitFrustum    (UInt16 i) const { return splitFrusta[i];    }
    const Vec3f         &getLightDirection  (void) const     { return lightDirection;    }
    const Matrix        &getLightView       (void) const     { return lightView;         }
    const MFMatrix      &getLightProjections(void) const     { return lightProjections;  }
    const MFVec2f       &getLightNearFars   (void) const     { return lightNearFars;     }
    SHLChunkPtr          getShaderChunk     (void) const     { return shaderChunk;       }

    static PolygonChunkPtr s_CullingOptions;

  protected:
    Real32        splitLambda;
    Vec3f         lightDirection;
    SHLChunkPtr   shaderChunk;
    RenderTarget  shadowMaps[3];
    Real32        splitDistances[4];
    FrustumVolume splitFrusta[3];
    bool          shadowMapsAttached;
    Matrix        lightView;
    MFMatrix      lightProjections;
    MFVec2f       lightNearFars;
    Matrix        camView;
    Vec2f         viewerNearFar;
};

OSG_END_NAMESPACE

#endif
