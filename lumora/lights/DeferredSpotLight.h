#ifndef _LUMORA_DEFERREDSPOTLIGHT_H_
#define _LUMORA_DEFERREDSPOTLIGHT_H_

#include <OpenSG/OSGPolygonChunk.h>
#include <OpenSG/OSGSHLChunk.h>
#include <OpenSG/OSGTransform.h>

#include <Lumora/IDeferredLight.h>

OSG_BEGIN_NAMESPACE

// An OpenSG SpotLight in the light pass: a 16-sided cone from the light's
// position along its direction, as long as the light's range and 10 %
// wider than the cut-off, drawn from the inside. One perspective variance
// shadow map.
class DeferredSpotLight : public IDeferredLight
{
  public:
    DeferredSpotLight(void);
    virtual ~DeferredSpotLight(void);

    virtual void initialize(RenderTarget &gbuffer, UInt16 numGBufferTextures) override;

    virtual void update(const Matrix &viewing,
                        const Matrix &projection,
                        const Vec2f  &camNearFar,
                        LightPtr      light,
                        Real32        globalShadowIntensity) override;

    virtual UInt16        getNumShadowmaps(void)         override;
    virtual RenderTarget *getShadowmap    (UInt16 index) override;

    // Needs this frame's update first: it reads the inverse view from it.
    virtual bool updateLightCamera(UInt16           index,
                                   FrustumVolume   &cameraFrustum,
                                   DynamicVolume   &sceneVolume,
                                   MatrixCameraPtr  lightCamera) override;

    // Maps the unit cone (apex at y = +0.5, base at y = -0.5) onto a cone
    // with its apex at position, its axis along direction, the given length
    // and a base 10 % wider than the half angle.
    static Matrix getConeTransform(const Vec3f &position,
                                   const Vec3f &direction,
                                   Real32       length,
                                   Real32       angleDegrees);

    const Vec3f  &getLightPosition  (void) const { return lightPosition;   }
    const Vec3f  &getLightDirection (void) const { return lightDirection;  }
    Real32        getCutOffDegrees  (void) const { return cutOffDegrees;   }
    Real32        getLightRange     (void) const { return lightRange;      }
    const Vec2f  &getLightNearFar   (void) const { return lightNearFar;    }
    const Matrix &getLightView      (void) const { return lightView;       }
    const Matrix &getLightProjection(void) const { return lightProjection; }
    TransformPtr  getVolumeTransform(void) const { return volumeTransform; }
    SHLChunkPtr   getShaderChunk    (void) const { return shaderChunk;     }

    static PolygonChunkPtr s_CullingOptions;

  protected:
    Vec3f        lightDirection;
    Vec3f        lightPosition;
    Real32       cutOffDegrees;
    Real32       lightRange;
    SHLChunkPtr  shaderChunk;
    bool         shadowMapAttached;
    RenderTarget shadowMap;
    Matrix       lightView;
    Matrix       lightProjection;
    Vec2f        lightNearFar;
    Matrix       camInvView;
    TransformPtr volumeTransform;
};

OSG_END_NAMESPACE

#endif
