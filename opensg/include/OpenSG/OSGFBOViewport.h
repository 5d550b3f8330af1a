#ifndef _OSGFBOVIEWPORT_H_
#define _OSGFBOVIEWPORT_H_

#include <OpenSG/OSGViewport.h>
#include <OpenSG/OSGTextureChunk.h>
#include <OpenSG/OSGGLEXT.h>

#include <vector>

namespace osg
{

OSG_FC_PTR_DECL(FBOViewport, ViewportPtr)

class Window;

class FBOViewport : public Viewport
{
    OSG_FC_DECL(FBOViewport, Viewport)

  public:
    enum
    {
        EnabledFieldId                 = Inherited::NextFieldId,
        ExcludeNodesFieldId            = EnabledFieldId            + 1,
        RenderNodesFieldId             = ExcludeNodesFieldId       + 1,
        TexturesFieldId                = RenderNodesFieldId        + 1,
        FboOnFieldId                   = TexturesFieldId           + 1,
        StorageWidthFieldId            = FboOnFieldId              + 1,
        StorageHeightFieldId           = StorageWidthFieldId       + 1,
        GenCubemapsFieldId             = StorageHeightFieldId      + 1,
        GenDepthmapsFieldId            = GenCubemapsFieldId        + 1,
        FrameBufferIndexFieldId        = GenDepthmapsFieldId       + 1,
        DepthBufferIndexFieldId        = FrameBufferIndexFieldId   + 1,
        StencilBufferIndexFieldId      = DepthBufferIndexFieldId   + 1,
        DirtyFieldId                   = StencilBufferIndexFieldId + 1,
        ReadBufferFieldId              = DirtyFieldId              + 1,
        IgnoreCameraDecoratorsFieldId  = ReadBufferFieldId         + 1,
        FboOffIgnoreStorageSizeFieldId = IgnoreCameraDecoratorsFieldId + 1,
        ZOffsetFieldId                 = FboOffIgnoreStorageSizeFieldId + 1,
        NextFieldId                    = ZOffsetFieldId            + 1
    };
    OSG_FIELD_MASK(Enabled)
    OSG_FIELD_MASK(ExcludeNodes)
    OSG_FIELD_MASK(RenderNodes)
    OSG_FIELD_MASK(Textures)
    OSG_FIELD_MASK(FboOn)
    OSG_FIELD_MASK(StorageWidth)
    OSG_FIELD_MASK(StorageHeight)
    OSG_FIELD_MASK(GenCubemaps)
    OSG_FIELD_MASK(GenDepthmaps)
    OSG_FIELD_MASK(FrameBufferIndex)
    OSG_FIELD_MASK(DepthBufferIndex)
    OSG_FIELD_MASK(StencilBufferIndex)
    OSG_FIELD_MASK(Dirty)
    OSG_FIELD_MASK(ReadBuffer)
    OSG_FIELD_MASK(IgnoreCameraDecorators)
    OSG_FIELD_MASK(FboOffIgnoreStorageSize)
    OSG_FIELD_MASK(ZOffset)

    OSG_SFIELD(SFBool,              Enabled)
    OSG_MFIELD(MFNodePtr,           ExcludeNodes)
    OSG_MFIELD(MFNodePtr,           RenderNodes)
    OSG_MFIELD(MFTextureChunkPtr,   Textures)
    OSG_SFIELD(SFBool,              FboOn)
    OSG_SFIELD(SFInt32,             StorageWidth)
    OSG_SFIELD(SFInt32,             StorageHeight)
    OSG_SFIELD(SFBool,              GenCubemaps)
    OSG_SFIELD(SFBool,              GenDepthmaps)
    OSG_SFIELD(SFBool,              Dirty)
    OSG_SFIELD(SFBool,              ReadBuffer)
    OSG_SFIELD(SFBool,              IgnoreCameraDecorators)
    OSG_SFIELD(SFBool,              FboOffIgnoreStorageSize)
    OSG_MFIELD(MFInt32,             ZOffset)

  protected:
    OSG_SFIELD(SFUInt32,            FrameBufferIndex)
    OSG_SFIELD(SFUInt32,            DepthBufferIndex)
    OSG_SFIELD(SFUInt32,            StencilBufferIndex)

  public:
    enum RenderBufferAttachmentType
    {
        NONE           = 0,
        FBO_DEPTH_16   = 1,
        FBO_DEPTH_24   = 2,
        FBO_DEPTH_32   = 4,
        FBO_STENCIL_1  = 8,
        FBO_STENCIL_4  = 16,
        FBO_STENCIL_8  = 32,
        FBO_STENCIL_16 = 64
    };

    virtual void render(RenderActionBase *action) override;

    bool  initialize(Window *win, Int32 format = NONE);
    void  setTarget (Window *win, UInt32 id, GLenum attachment,
                     GLenum target, GLint zoffset);
    void  bind      (Window *win);
    void  stop      (Window *win);
    bool  checkFrameBufferStatus(Window *win);
    Int32 getMaxBuffers(void);

    virtual void changed(BitVector whichField, UInt32 origin) override;
    virtual void dump(UInt32 uiIndent = 0, const BitVector bvFlags = 0) const override;

    static void initMethod(void) {}

  protected:
    FBOViewport(void);
    FBOViewport(const FBOViewport &source);
    virtual ~FBOViewport(void);

    virtual void onDestroy(void) override;

  private:
    void renderWithFBO    (RenderActionBase *action, Window *win);
    void renderWithoutFBO (RenderActionBase *action, Window *win);
    void renderContents   (RenderActionBase *action);
    void setExcludedActive(bool active);
    void keepGLName       (Window *win, UInt32 &objectId, bool framebuffer, GLuint name);

    // What was bound before bind(), restored by stop().
    GLint               _prevFramebuffer;
    std::vector<GLenum> _prevDrawBuffers;
    GLint               _prevReadBuffer;

    // Window GL-object ids of the framebuffer and the two renderbuffers, so
    // that they go with the viewport in the window's context.
    UInt32 _glFramebufferObject;
    UInt32 _glDepthObject;
    UInt32 _glStencilObject;
};

typedef RefPtr<FBOViewportPtr> FBOViewportRefPtr;

} // namespace osg

#endif
