#ifndef _LUMORA_POSTPROCESSINGTOOLS_H_
#define _LUMORA_POSTPROCESSINGTOOLS_H_

#include <OpenSG/OSGConfig.h>
#include <OpenSG/OSGBaseTypes.h>
#include <OpenSG/OSGChunkMaterial.h>
#include <OpenSG/OSGMFVecTypes.h>
#include <OpenSG/OSGRenderActionBase.h>
#include <OpenSG/OSGSHLChunk.h>
#include <OpenSG/OSGTextureChunk.h>

#include <Lumora/OSGRenderTarget.h>

OSG_BEGIN_NAMESPACE

// Shared image reductions and separable Gaussian blurs, drawn as full-screen
// passes into render targets. One instance per process; its programs are
// compiled once with their tap counts fixed.
class PostProcessingTools
{
  public:
    enum ScaleType
    {
        DOWNSCALE_2X2 = 0,
        DOWNSCALE_4X4 = 1
    };

    enum BlurType
    {
        GAUSSIAN_3  = 0,
        GAUSSIAN_5  = 1,
        GAUSSIAN_7  = 2,
        GAUSSIAN_13 = 3
    };

    // Needs an initialised OpenSG on the first call.
    static PostProcessingTools *getInstance(void);

    // Reduces texture into texture 0 of target; the reduction factor is the
    // ratio of their sizes, the type only picks the sample pattern.
    void downscaleTexture(TextureChunkPtr   texture,
                          RenderTarget     *target,
                          ScaleType         type,
                          RenderActionBase *action);

    // Horizontal pass into intermediateTarget, vertical pass into
    // resultTarget; each pass scales by bloomScale.
    void blurTexture(TextureChunkPtr   texture,
                     RenderTarget     *intermediateTarget,
                     RenderTarget     *resultTarget,
                     BlurType          type,
                     RenderActionBase *action,
                     Real32            bloomScale);

    SHLChunkPtr generateDownscaleShader   (int numSamples);
    SHLChunkPtr generateGaussianBlurShader(Real32 mean, Real32 sigma, int numSamples);

    // Per tap (offset, offset, weight), weights summing to 1; offsets are in
    // texels around the centre, half-texel for an even count.
    static MFVec3f getGaussianBlurKernel(UInt8 numSamples, Real32 mean, Real32 sigma);
    static Real32  computeGaussianWeight(Real32 x, Real32 mean, Real32 sigma);

    ChunkMaterialPtr getDownscaleMaterial(void) const { return downscaleMaterial; }
    ChunkMaterialPtr getBlurMaterial     (void) const { return blurMaterial;      }

    static const char *s_strVertexShader;
    static const char *strDownscaleFragmentShader;
    static const char *strBlurFragmentShader;

  private:
    PostProcessingTools(void);
    ~PostProcessingTools(void);

    PostProcessingTools(const PostProcessingTools &) = delete;
    PostProcessingTools &operator =(const PostProcessingTools &) = delete;

    SHLChunkPtr      blurShaders[4];
    SHLChunkPtr      downscaleShaders[2];
    ChunkMaterialPtr downscaleMaterial;
    ChunkMaterialPtr blurMaterial;
};

OSG_END_NAMESPACE

#endif
