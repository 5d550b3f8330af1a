#ifndef _LUMORA_DEFERREDAAPOSTPROCESSOR_H_
#define _LUMORA_DEFERREDAAPOSTPROCESSOR_H_

#include <Lumora/IDeferredPostProcessor.h>

OSG_BEGIN_NAMESPACE

// Edge anti-aliasing for an image that cannot be multisampled: where the
// G-buffer's depth or normals break along the lines through a pixel, the
// pixel becomes the average of four samples half a pixel away diagonally,
// in proportion to the number of breaking lines.
class DeferredAAPostProcessor : public IDeferredPostProcessor
{
  public:
    DeferredAAPostProcessor(void);
    virtual ~DeferredAAPostProcessor(void);

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

    SHLChunkPtr      getFinalShader  (void) const { return finalShader;   }
    ChunkMaterialPtr getFinalMaterial(void) const { return finalMaterial; }

    static const char *s_strFragmentShader;

  private:
    SHLChunkPtr      finalShader;
    ChunkMaterialPtr finalMaterial;
};

OSG_END_NAMESPACE

#endif
