#ifndef _LUMORA_DEFERREDPOINTLIGHT_H_
#define _LUMORA_DEFERREDPOINTLIGHT_H_

#include <OpenSG/OSGCubeTextureChunk.h>
#include <OpenSG/OSGMFMathTypes.h>
#include <OpenSG/OSGPolygonChunk.h>
#include <OpenSG/OSGSHLChunk.h>
#include <OpenSG/OSGTransform.h>

#include <Lumora/IDeferredLight.h>

OSG_BEGIN_NAMESPACE

// An OpenSG PointLight in the light pass: a sphere scaled to the light's
// range, drawn from the inside so that it covers the same pixels wherever
// the camera is. Shadows come from six cube-face variance maps; the shader
// finds a pixel's face through a cube texture holding the face numbers.
class DeferredPointLight : public IDeferredLight
{
  public:
    DeferredPointLight(void);
    virtual ~DeferredPointLight(void);

    virtual void initialize(RenderTarget &gbuffer, UInt16 numGBufferTextures) override;

    virtual void update(const Matrix &viewing,
                        const Matrix &projection,
                        const Vec2f  &camNearFar,
                        LightPtr      light,
                        Real32        globalShadowIntensity) override;

    virtual UInt16        getNumShadowmaps(void)         override;
    // index must be below 6; faces are -Z, +Z, -Y, +Y, -X, +X.
    virtual RenderTarget *getShadowmap    (UInt16 index) override;

    virtual bool updateLightCamera(UInt16           index,
                                   FrustumVolume   &cameraFrustum,
                                   DynamicVolume   &sceneVolume,
                                   MatrixCameraPtr  lightCamera) override;

    const Pnt3f    &getLightPosition   (void) const { return lightPosition;   }
    Real32          getLightRange      (void) const { return lightRange;      }
    TransformPtr    getVolumeTransform (void) const { return volumeTransform; }
    SHLChunkPtr     getShaderChunk     (void) const { return shaderChunk;     }
    const MFVec2f  &getLightNearFars   (void) const { return lightNearFars;   }
    const MFMatrix &getLightViews      (void) const { return lightViews;      }
    const MFMatrix &getLightProjections(void) const { return lightProjections; }

    static PolygonChunkPtr     s_CullingOptions;
    static CubeTextureChunkPtr s_IndirectonCubeTex;

  protected:
    Pnt3f        lightPosition;
    Real32       lightRange;
    bool         indirectionBound;
    RenderTarget shadowMaps[6];
    bool         shadowMapBound[6];
    MFMatrix     lightViews;
    MFMatrix     lightProjections;
    MFVec2f      lightNearFars;
    SHLChunkPtr  shaderChunk;
    TransformPtr volumeTransform;
};

OSG_END_NAMESPACE

#endif
