#ifndef _LUMORA_DEFERREDDOFPOSTPROCESSOR_H_
#define _LUMORA_DEFERREDDOFPOSTPROCESSOR_H_

#include <Lumora/IDeferredPostProcessor.h>

OSG_BEGIN_NAMESPACE

// Depth of field: the depth becomes a blurriness map (0.5 in focus, towards
// 0 in front of the focal plane, above 0.5 behind it), and each pixel gathers
// a disc of taps that grows with its blurriness, mixing the sharp image with
// a blurred quarter-size copy.
class DeferredDoFPostProcessor : public IDeferredPostProcessor
{
  public:
    DeferredDoFPostProcessor(void);
    virtual ~DeferredDoFPostProcessor(void);

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

    // Linear eye depth of the focal plane; takes effect at the next update.
    void   setFocalDepth(Real32 depth) { focalDepth = depth; }
    Real32 getFocalDepth(void) const   { return focalDepth;  }

    // How far behind the focal plane, as a share of the distance to the far
    // plane, the blur keeps growing; takes effect at the next update.
    void   setBlurCutoff(Real32 cutoff) { blurCutoff = cutoff; }
    Real32 getBlurCutoff(void) const    { return blurCutoff;   }

    SHLChunkPtr   getBlurinessShader (void) const { return blurinessShader;  }
    SHLChunkPtr   getFinalShader     (void) const { return finalShader;      }
    RenderTarget &getBlurinessTarget (void)       { return blurinessTarget;  }
    RenderTarget &getDownscaledTarget(void)       { return downscaledTarget; }
    RenderTarget &getBlurredTarget   (void)       { return blurredTarget;    }

    static const char *s_strBlurinessFragmentShader;
    static const char *s_strFinalFragmentShader;

  private:
    void setPixelSizes(int left, int bottom, int right, int top);

    Real32           focalDepth;
    Real32           blurCutoff;
    SHLChunkPtr      finalShader;
    SHLChunkPtr      blurinessShader;
    ChunkMaterialPtr blurinessMaterial;
    ChunkMaterialPtr finalMaterial;
    RenderTarget     blurinessTarget;
    RenderTarget     downscaledTarget;
    RenderTarget     blurTempTarget;
    RenderTarget     blurredTarget;
};

OSG_END_NAMESPACE

#endif
