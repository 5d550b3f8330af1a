#ifndef _LUMORA_DEFERREDSSAOPOSTPROCESSOR_H_
#define _LUMORA_DEFERREDSSAOPOSTPROCESSOR_H_

#include <Lumora/IDeferredPostProcessor.h>

OSG_BEGIN_NAMESPACE

// Screen-space ambient occlusion from the G-buffer's depth and normals:
// 32 randomly rotated samples per pixel estimate how much of the hemisphere
// above the surface nearer geometry hides, and a separable bilateral blur
// smooths that factor, without crossing creases, before it darkens the
// scene.
class DeferredSSAOPostProcessor : public IDeferredPostProcessor
{
  public:
    DeferredSSAOPostProcessor(void);
    virtual ~DeferredSSAOPostProcessor(void);

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

    SHLChunkPtr     getSSAOShader      (void) const { return ssaoShader;       }
    SHLChunkPtr     getBlurHShader     (void) const { return blurHShader;      }
    SHLChunkPtr     getBlurVFinalShader(void) const { return blurVFinalShader; }
    TextureChunkPtr getNoiseTexture    (void) const { return noiseTexture;     }
    RenderTarget   &getSSAOTarget      (void)       { return ssaoTarget;       }
    RenderTarget   &getBlurHTarget     (void)       { return blurHTarget;      }

    static const char *s_strSSAOFragmentShader;
    static const char *s_strBlurHFragmentShader;
    static const char *s_strBlurVFinalFragmentShader;

    // Both reach the occlusion program at the next update.
    Real32 attenuation;
    Real32 scale;

  private:
    void createNoiseAndKernel(void);
    void setSizeUniforms(int left, int bottom, int right, int top);

    SHLChunkPtr      ssaoShader;
    SHLChunkPtr      blurHShader;
    SHLChunkPtr      blurVFinalShader;
    ChunkMaterialPtr ssaoMaterial;
    ChunkMaterialPtr blurHMaterial;
    ChunkMaterialPtr blurVFinalMaterial;
    RenderTarget     ssaoTarget;
    RenderTarget     blurHTarget;
    TextureChunkPtr  noiseTexture;
};

OSG_END_NAMESPACE

#endif
