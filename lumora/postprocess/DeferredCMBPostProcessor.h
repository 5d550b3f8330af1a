#ifndef _LUMORA_DEFERREDCMBPOSTPROCESSOR_H_
#define _LUMORA_DEFERREDCMBPOSTPROCESSOR_H_

#include <Lumora/IDeferredPostProcessor.h>

#include <OpenSG/OSGCamera.h>
#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGQuaternion.h>

OSG_BEGIN_NAMESPACE

// Camera motion blur: smears the image along the screen-space motion that
// the camera's rotation causes. A sphere around the camera, between its near
// and far planes, is projected with this frame's view-projection and with an
// estimate of the one of 40 ms earlier; at each fragment the difference of
// the two is the blur direction. The blur runs three times in a row.
class DeferredCMBPostProcessor : public IDeferredPostProcessor
{
  public:
    // Milliseconds from an arbitrary, fixed start.
    typedef Real32 (*Clock)(void);

    DeferredCMBPostProcessor(void);
    virtual ~DeferredCMBPostProcessor(void);

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

    // Takes effect at the next update.
    void setBlurScale(Real32 scale);

    // GLUT's elapsed time once GLUT runs, else a monotonic clock.
    static Real32 getElapsedTime(void);

    // Replaces the clock of every instance, for programs that set the time
    // themselves (tests); NULL restores the default.
    static void setClock(Clock clock);

    SHLChunkPtr getShader    (void) const { return shader;     }
    NodePtr     getSphereNode(void) const { return sphereNode; }

    // Not the shared full-screen program: the sphere computes its own
    // positions.
    static const char *s_strVertexShader;
    static const char *s_strFragmentShader;

    Real32 blurScale;

  private:
    // Draws the sphere into target with source as the image to blur.
    void renderBlurPass(RenderTarget &target, TextureChunkPtr source);

    NodePtr          sphereNode;
    CameraPtr        camera;
    Quaternion       previousRotation;
    ChunkMaterialPtr material;
    SHLChunkPtr      shader;
    RenderTarget     pingPongTarget;
};

OSG_END_NAMESPACE

#endif
