#ifndef _LUMORA_DEFERREDHDRPOSTPROCESSOR_H_
#define _LUMORA_DEFERREDHDRPOSTPROCESSOR_H_

#include <Lumora/IDeferredPostProcessor.h>

OSG_BEGIN_NAMESPACE

// Maps the linear, unclamped lit image into displayable range with an
// exponential exposure curve and adds a bloom: what is bright after exposure,
// extracted at a quarter of the size, blurred twice and added on top.
// Adaptation is not computed; the bright pass assumes a fixed luminance.
class DeferredHDRPostProcessor : public IDeferredPostProcessor
{
  public:
    DeferredHDRPostProcessor(void);
    virtual ~DeferredHDRPostProcessor(void);

    virtual void initialize(WindowPtr     window,
                            int           left,
                            int           bottom,
                            int           right,
                            int           top,
                            RenderTarget &gbuffer,
                            UInt16        gbufferTextureCount) override;

    virtual void resize(int left, int bottom, int right, int top) override;

    virtual void update(const Matrix &viewing,
                        const Matrix &projection,
                        const Vec2f  &camNearFar) override;

    virtual TextureChunkPtr perform(TextureChunkPtr input) override;

    RenderTarget &getDownscaledTarget(void) { return downscaledTarget; }
    RenderTarget &getBrightPassTarget(void) { return brightPassTarget; }
    RenderTarget &getBloomTarget     (void) { return bloomTarget;      }
    RenderTarget &getBlurTarget      (void) { return blurTarget;       }

    ChunkMaterialPtr getFinalPassMaterial(void) const { return finalPassMaterial; }

    static const char *s_strBrightPassFragmentShader;
    static const char *s_strFinalPassFragmentShader;

    // Written directly by the viewport; both reach the programs at the next
    // update.
    Real32 exposure;
    Real32 brightPassThreshold;

  private:
    RenderTarget     downscaledTarget;
    // Also the scratch target of the second blur.
    RenderTarget     brightPassTarget;
    RenderTarget     bloomTarget;
    RenderTarget     blurTarget;
    SHLChunkPtr      brightPassShader;
    SHLChunkPtr      finalPassShader;
    ChunkMaterialPtr brightPassMaterial;
    ChunkMaterialPtr finalPassMaterial;
};

OSG_END_NAMESPACE

#endif
