#ifndef _LUMORA_RENDERTARGET_H_
#define _LUMORA_RENDERTARGET_H_

#include <OpenSG/OSGConfig.h>
#include <OpenSG/OSGFBOViewport.h>
#include <OpenSG/OSGSolidBackground.h>
#include <OpenSG/OSGPolygonForeground.h>
#include <OpenSG/OSGOrthographicCamera.h>
#include <OpenSG/OSGChunkMaterial.h>
#include <OpenSG/OSGTextureChunk.h>
#include <OpenSG/OSGImage.h>
#include <OpenSG/OSGRenderActionBase.h>
#include <OpenSG/OSGWindow.h>

OSG_BEGIN_NAMESPACE

// An off-screen target: a framebuffer-object viewport with its textures,
// able to render a scene or one full-screen quad with a material.
class RenderTarget
{
  public:
    RenderTarget(void);
    ~RenderTarget(void);

    void initialize(WindowPtr window, int left, int bottom, int right, int top);
    bool isInitialized(void) const;
    void resize(int left, int bottom, int right, int top);

    void setBgClear   (Color4f color, Real32 depth, bool clearColor, bool clearDepth);
    void setClearDepth(bool clearDepth);

    void            addTargetTexture(TextureChunkPtr texture);
    TextureChunkPtr addTargetTexture(UInt32             internalFormat,
                                     UInt32             externalFormat,
                                     UInt32             filter,
                                     Image::PixelFormat pixelFormat,
                                     Image::Type        type,
                                     Real32             anisotropy,
                                     UInt8              mipmapCount);

    TextureChunkPtr getTargetTexture(UInt8 index);
    FBOViewportPtr  getFBOViewport  (void);

    UInt16 getWidth (void) const { return width;  }
    UInt16 getHeight(void) const { return height; }

    void renderScene         (NodePtr root, CameraPtr camera,
                              RenderActionBase *action, BackgroundPtr background);
    void renderFullscreenPass(ChunkMaterialPtr material, RenderActionBase *action);

  private:
    RenderTarget(const RenderTarget &) = delete;
    RenderTarget &operator =(const RenderTarget &) = delete;

    bool checkInitialized(const char *operation) const;

    FBOViewportPtr        fboViewport;
    SolidBackgroundPtr    background;
    UInt16                width;
    UInt16                height;
    bool                  initialized;
    PolygonForegroundPtr  fullscreenForeground;
    OrthographicCameraPtr fullscreenCamera;
    NodePtr               fullscreenRoot;
};

OSG_END_NAMESPACE

#endif
