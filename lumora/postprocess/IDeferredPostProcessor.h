#ifndef _LUMORA_IDEFERREDPOSTPROCESSOR_H_
#define _LUMORA_IDEFERREDPOSTPROCESSOR_H_

#include <OpenSG/OSGConfig.h>
#include <OpenSG/OSGBaseTypes.h>
#include <OpenSG/OSGChunkMaterial.h>
#include <OpenSG/OSGMatrix.h>
#include <OpenSG/OSGRenderAction.h>
#include <OpenSG/OSGSHLChunk.h>
#include <OpenSG/OSGTextureChunk.h>
#include <OpenSG/OSGVector.h>
#include <OpenSG/OSGWindow.h>

#include <initializer_list>

#include <Lumora/OSGRenderTarget.h>

OSG_BEGIN_NAMESPACE

// A screen-space effect of the deferred viewport's chain: it reads the image
// it is given (and the G-buffer as it needs), renders full-screen passes into
// targets of its own and hands back its output texture, which the next
// effect reads.
//
// Per frame: initialize once (lazily, the first frame it is switched on),
// resize on window size changes, then update and perform.
class IDeferredPostProcessor
{
  public:
    IDeferredPostProcessor(void);
    virtual ~IDeferredPostProcessor(void);

    // The rectangle is inclusive; only its size matters to the targets.
    virtual void initialize(WindowPtr     window,
                            int           left,
                            int           bottom,
                            int           right,
                            int           top,
                            RenderTarget &gbuffer,
                            UInt16        gbufferTextureCount) = 0;

    virtual void resize(int left, int bottom, int right, int top) = 0;

    virtual void update(const Matrix &viewing,
                        const Matrix &projection,
                        const Vec2f  &camNearFar) = 0;

    // The result is texture 0 of the effect's own target, overwritten by
    // the next perform.
    virtual TextureChunkPtr perform(TextureChunkPtr input) = 0;

    RenderTarget &getRenderTarget(void)       { return renderTarget; }
    RenderAction *getRenderAction(void) const { return renderAction; }

    // The full-screen pass every effect but the motion blur draws with.
    static const char *s_strVertexShader;

    // Read by the viewport to initialise lazily and resize only what exists.
    bool initialized;

  protected:
    // The sizes a pass's target can have: the viewport's, or a quarter of it
    // (truncated, at least one pixel) for the reduced passes of the blurs.
    enum TargetSize
    {
        FullSize,
        QuarterSize
    };

    // What a target holds: an image (half-float RGB), or a factor in 0 ... 1
    // (8-bit luminance: it is blurred or scaled anyway).
    enum TargetFormat
    {
        ImageFormat,
        FactorFormat
    };

    // Creates the render action for window and initialises renderTarget at
    // the rectangle's size with the image texture every effect passes on.
    void initializeBase(WindowPtr window, int left, int bottom, int right, int top);

    // Each target is a framebuffer of its own, linearly filtered, whose
    // origin is its own corner wherever the viewport sits in the window.
    static void initializeTargets(std::initializer_list<RenderTarget *> targets,
                                  WindowPtr window, TargetSize size, TargetFormat format,
                                  int left, int bottom, int right, int top);
    static void resizeTargets(std::initializer_list<RenderTarget *> targets, TargetSize size,
                              int left, int bottom, int right, int top);

    static void getTargetSize(TargetSize size, int left, int bottom, int right, int top,
                              int &width, int &height);

    // One pixel of a target of the given size, in texture coordinates.
    static Vec2f getPixelSize(TargetSize size, int left, int bottom, int right, int top);

    // A quarter of a size, truncated, but never less than one pixel: a
    // target of no pixels cannot be drawn into.
    static int quarter(int size) { return size / 4 > 0 ? size / 4 : 1; }

    // A program of the shared vertex text and the given fragment text, its
    // samplers bound to units 0, 1, ... in the order given.
    static SHLChunkPtr createShader(const char *fragmentProgram,
                                    std::initializer_list<const char *> samplers);

    // A material holding the shader and then the textures, which take
    // units 0, 1, ... in that order.
    static ChunkMaterialPtr createMaterial(StateChunkPtr shader,
                                           std::initializer_list<TextureChunkPtr> textures);

    template <class ValueT>
    static void setUniform(SHLChunkPtr shader, const char *name, const ValueT &value)
    {
        beginEditCP(shader, ShaderChunk::ParametersFieldMask);
        shader->setUniformParameter(name, value);
        endEditCP(shader, ShaderChunk::ParametersFieldMask);
    }

    // Gives up this object's reference to each container that was created.
    static void release(std::initializer_list<FieldContainerPtr> containers);

    // Renders material full-screen into target with input added for the
    // pass and removed after it.
    void renderPass(RenderTarget &target, ChunkMaterialPtr material, TextureChunkPtr input);

    RenderTarget  renderTarget;
    RenderAction *renderAction;

  private:
    IDeferredPostProcessor(const IDeferredPostProcessor &) = delete;
    IDeferredPostProcessor &operator =(const IDeferredPostProcessor &) = delete;
};

OSG_END_NAMESPACE

#endif
