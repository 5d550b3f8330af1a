#ifndef _OSGTEXTURECHUNK_H_
#define _OSGTEXTURECHUNK_H_

#include <OpenSG/OSGStateChunk.h>
#include <OpenSG/OSGSFBaseTypes.h>
#include <OpenSG/OSGSFVecTypes.h>
#include <OpenSG/OSGImage.h>
#include <OpenSG/OSGGLEXT.h>

namespace osg
{

class Window;

OSG_FC_PTR_DECL(TextureChunk, StateChunkPtr)

// A texture on the unit given by its slot. The GL texture is created at the
// first activate (or validate) in the current context and re-created when
// the image or the format fields change.
class TextureChunk : public StateChunk
{
    OSG_FC_DECL(TextureChunk, StateChunk)

  public:
    enum
    {
        ImageFieldId                = Inherited::NextFieldId,
        InternalFormatFieldId       = ImageFieldId + 1,
        ExternalFormatFieldId       = InternalFormatFieldId + 1,
        ScaleFieldId                = ExternalFormatFieldId + 1,
        FrameFieldId                = ScaleFieldId + 1,
        MinFilterFieldId            = FrameFieldId + 1,
        MagFilterFieldId            = MinFilterFieldId + 1,
        WrapSFieldId                = MagFilterFieldId + 1,
        WrapTFieldId                = WrapSFieldId + 1,
        WrapRFieldId                = WrapTFieldId + 1,
        EnvModeFieldId              = WrapRFieldId + 1,
        EnvColorFieldId             = EnvModeFieldId + 1,
        EnvCombineRGBFieldId        = EnvColorFieldId + 1,
        EnvCombineAlphaFieldId      = EnvCombineRGBFieldId + 1,
        EnvScaleRGBFieldId          = EnvCombineAlphaFieldId + 1,
        EnvScaleAlphaFieldId        = EnvScaleRGBFieldId + 1,
        EnvSource0RGBFieldId        = EnvScaleAlphaFieldId + 1,
        EnvSource1RGBFieldId        = EnvSource0RGBFieldId + 1,
        EnvSource2RGBFieldId        = EnvSource1RGBFieldId + 1,
        EnvSource0AlphaFieldId      = EnvSource2RGBFieldId + 1,
        EnvSource1AlphaFieldId      = EnvSource0AlphaFieldId + 1,
        EnvSource2AlphaFieldId      = EnvSource1AlphaFieldId + 1,
        EnvOperand0RGBFieldId       = EnvSource2AlphaFieldId + 1,
        EnvOperand1RGBFieldId       = EnvOperand0RGBFieldId + 1,
        EnvOperand2RGBFieldId       = EnvOperand1RGBFieldId + 1,
        EnvOperand0AlphaFieldId     = EnvOperand2RGBFieldId + 1,
        EnvOperand1AlphaFieldId     = EnvOperand0AlphaFieldId + 1,
        EnvOperand2AlphaFieldId     = EnvOperand1AlphaFieldId + 1,
        GLIdFieldId                 = EnvOperand2AlphaFieldId + 1,
        IgnoreGLForAspectFieldId    = GLIdFieldId + 1,
        PointSpriteFieldId          = IgnoreGLForAspectFieldId + 1,
        PriorityFieldId             = PointSpriteFieldId + 1,
        ShaderOperationFieldId      = PriorityFieldId + 1,
        ShaderInputFieldId          = ShaderOperationFieldId + 1,
        ShaderOffsetMatrixFieldId   = ShaderInputFieldId + 1,
        ShaderOffsetScaleFieldId    = ShaderOffsetMatrixFieldId + 1,
        ShaderOffsetBiasFieldId     = ShaderOffsetScaleFieldId + 1,
        ShaderRGBADotProductFieldId = ShaderOffsetBiasFieldId + 1,
        ShaderCullModesFieldId      = ShaderRGBADotProductFieldId + 1,
        ShaderConstEyeFieldId       = ShaderCullModesFieldId + 1,
        LodBiasFieldId              = ShaderConstEyeFieldId + 1,
        TargetFieldId               = LodBiasFieldId + 1,
        DirtyLeftFieldId            = TargetFieldId + 1,
        DirtyMinXFieldId            = DirtyLeftFieldId + 1,
        DirtyMaxXFieldId            = DirtyMinXFieldId + 1,
        DirtyMinYFieldId            = DirtyMaxXFieldId + 1,
        DirtyMaxYFieldId            = DirtyMinYFieldId + 1,
        DirtyMinZFieldId            = DirtyMaxYFieldId + 1,
        DirtyMaxZFieldId            = DirtyMinZFieldId + 1,
        AnisotropyFieldId           = DirtyMaxZFieldId + 1,
        BorderColorFieldId          = AnisotropyFieldId + 1,
        BorderWidthFieldId          = BorderColorFieldId + 1,
        NPOTMatrixScaleFieldId      = BorderWidthFieldId + 1,
        SkipMipMapLevelsFieldId     = NPOTMatrixScaleFieldId + 1,
        NextFieldId                 = SkipMipMapLevelsFieldId + 1
    };
    OSG_FIELD_MASK(Image)
    OSG_FIELD_MASK(InternalFormat)
    OSG_FIELD_MASK(ExternalFormat)
    OSG_FIELD_MASK(Scale)
    OSG_FIELD_MASK(Frame)
    OSG_FIELD_MASK(MinFilter)
    OSG_FIELD_MASK(MagFilter)
    OSG_FIELD_MASK(WrapS)
    OSG_FIELD_MASK(WrapT)
    OSG_FIELD_MASK(WrapR)
    OSG_FIELD_MASK(EnvMode)
    OSG_FIELD_MASK(EnvColor)
    OSG_FIELD_MASK(EnvCombineRGB)
    OSG_FIELD_MASK(EnvCombineAlpha)
    OSG_FIELD_MASK(EnvScaleRGB)
    OSG_FIELD_MASK(EnvScaleAlpha)
    OSG_FIELD_MASK(EnvSource0RGB)
    OSG_FIELD_MASK(EnvSource1RGB)
    OSG_FIELD_MASK(EnvSource2RGB)
    OSG_FIELD_MASK(EnvSource0Alpha)
    OSG_FIELD_MASK(EnvSource1Alpha)
    OSG_FIELD_MASK(EnvSource2Alpha)
    OSG_FIELD_MASK(EnvOperand0RGB)
    OSG_FIELD_MASK(EnvOperand1RGB)
    OSG_FIELD_MASK(EnvOperand2RGB)
    OSG_FIELD_MASK(EnvOperand0Alpha)
    OSG_FIELD_MASK(EnvOperand1Alpha)
    OSG_FIELD_MASK(EnvOperand2Alpha)
    OSG_FIELD_MASK(GLId)
    OSG_FIELD_MASK(IgnoreGLForAspect)
    OSG_FIELD_MASK(PointSprite)
    OSG_FIELD_MASK(Priority)
    OSG_FIELD_MASK(ShaderOperation)
    OSG_FIELD_MASK(ShaderInput)
    OSG_FIELD_MASK(ShaderOffsetMatrix)
    OSG_FIELD_MASK(ShaderOffsetScale)
    OSG_FIELD_MASK(ShaderOffsetBias)
    OSG_FIELD_MASK(ShaderRGBADotProduct)
    OSG_FIELD_MASK(ShaderCullModes)
    OSG_FIELD_MASK(ShaderConstEye)
    OSG_FIELD_MASK(LodBias)
    OSG_FIELD_MASK(Target)
    OSG_FIELD_MASK(DirtyLeft)
    OSG_FIELD_MASK(DirtyMinX)
    OSG_FIELD_MASK(DirtyMaxX)
    OSG_FIELD_MASK(DirtyMinY)
    OSG_FIELD_MASK(DirtyMaxY)
    OSG_FIELD_MASK(DirtyMinZ)
    OSG_FIELD_MASK(DirtyMaxZ)
    OSG_FIELD_MASK(Anisotropy)
    OSG_FIELD_MASK(BorderColor)
    OSG_FIELD_MASK(BorderWidth)
    OSG_FIELD_MASK(NPOTMatrixScale)
    OSG_FIELD_MASK(SkipMipMapLevels)

    OSG_SFIELD_NOSET(SFImagePtr, Image)
    OSG_SFIELD(SFGLenum, InternalFormat)
    OSG_SFIELD(SFGLenum, ExternalFormat)
    OSG_SFIELD(SFBool, Scale)
    OSG_SFIELD(SFUInt32, Frame)
    OSG_SFIELD(SFGLenum, MinFilter)
    OSG_SFIELD(SFGLenum, MagFilter)
    OSG_SFIELD(SFGLenum, WrapS)
    OSG_SFIELD(SFGLenum, WrapT)
    OSG_SFIELD(SFGLenum, WrapR)
    OSG_SFIELD(SFGLenum, EnvMode)
    OSG_SFIELD(SFColor4f, EnvColor)
    OSG_SFIELD(SFGLenum, EnvCombineRGB)
    OSG_SFIELD(SFGLenum, EnvCombineAlpha)
    OSG_SFIELD(SFReal32, EnvScaleRGB)
    OSG_SFIELD(SFReal32, EnvScaleAlpha)
    OSG_SFIELD(SFGLenum, EnvSource0RGB)
    OSG_SFIELD(SFGLenum, EnvSource1RGB)
    OSG_SFIELD(SFGLenum, EnvSource2RGB)
    OSG_SFIELD(SFGLenum, EnvSource0Alpha)
    OSG_SFIELD(SFGLenum, EnvSource1Alpha)
    OSG_SFIELD(SFGLenum, EnvSource2Alpha)
    OSG_SFIELD(SFGLenum, EnvOperand0RGB)
    OSG_SFIELD(SFGLenum, EnvOperand1RGB)
    OSG_SFIELD(SFGLenum, EnvOperand2RGB)
    OSG_SFIELD(SFGLenum, EnvOperand0Alpha)
    OSG_SFIELD(SFGLenum, EnvOperand1Alpha)
    OSG_SFIELD(SFGLenum, EnvOperand2Alpha)
    OSG_SFIELD(SFGLenum, GLId)
    OSG_SFIELD(SFInt32, IgnoreGLForAspect)
    OSG_SFIELD(SFBool, PointSprite)
    OSG_SFIELD(SFReal32, Priority)
    OSG_SFIELD(SFGLenum, ShaderOperation)
    OSG_SFIELD(SFGLenum, ShaderInput)
    OSG_MFIELD(MFReal32, ShaderOffsetMatrix)
    OSG_SFIELD(SFReal32, ShaderOffsetScale)
    OSG_SFIELD(SFReal32, ShaderOffsetBias)
    OSG_SFIELD(SFGLenum, ShaderRGBADotProduct)
    OSG_SFIELD(SFUInt8, ShaderCullModes)
    OSG_SFIELD(SFVec3f, ShaderConstEye)
    OSG_SFIELD(SFReal32, LodBias)
    OSG_SFIELD(SFGLenum, Target)
    OSG_SFIELD(SFInt32, DirtyLeft)
    OSG_SFIELD(SFInt32, DirtyMinX)
    OSG_SFIELD(SFInt32, DirtyMaxX)
    OSG_SFIELD(SFInt32, DirtyMinY)
    OSG_SFIELD(SFInt32, DirtyMaxY)
    OSG_SFIELD(SFInt32, DirtyMinZ)
    OSG_SFIELD(SFInt32, DirtyMaxZ)
    OSG_SFIELD(SFReal32, Anisotropy)
    OSG_SFIELD(SFColor4f, BorderColor)
    OSG_SFIELD(SFUInt32, BorderWidth)
    OSG_SFIELD(SFUInt32, NPOTMatrixScale)
    OSG_SFIELD(SFReal32, SkipMipMapLevels)

  public:
    enum NPOTMatrixScaleE
    {
        None_TT         = 0,
        NPotTexScale_TT = 1,
        XFlip_TT        = 2,
        YFlip_TT        = 4,
        ZFlip_TT        = 8
    };

    virtual const StateChunkClass *getClass(void) const override { return &_class; }
    static  UInt32                 getStaticClassId(void) { return _class.getId(); }
    static  const StateChunkClass *getStaticClass  (void) { return &_class; }

    // References the image and registers the chunk as one of its parents.
    void setImage(const ImagePtr &pImage);

    void imageContentChanged(Int32 minx = -1, Int32 maxx = -1,
                             Int32 miny = -1, Int32 maxy = -1,
                             Int32 minz = -1, Int32 maxz = -1);

    static bool hasMultiTexture(Window *win);
    static void activeTexture  (Window *win, UInt16 texture);
    // Makes the unit active; false with a warning if it does not exist.
    static bool activateTexture(Window *win, UInt16 texture);

    virtual void activate  (DrawActionBase *action, UInt32 index = 0) override;
    virtual void changeFrom(DrawActionBase *action, StateChunk *old, UInt32 index = 0) override;
    virtual void deactivate(DrawActionBase *action, UInt32 index = 0) override;

    virtual bool isTransparent(void) const override;

    // Runtime extension for render targets (FBOViewport): creates or
    // re-creates the GL texture in the current context so that it exists
    // with the image's current size and format, and leaves it bound on the
    // active texture unit. win may be NULL.
    void   validate         (Window *win = NULL);
    // The GL texture name, 0 before the first validate/activate.
    GLuint getGLTextureName (void) const { return _glName; }

    // Runtime extension: whether an internal format is a depth format.
    static bool isDepthFormat(GLenum format);
    // The GL target the texture has or will have (Target or derived).
    virtual GLenum getGLTarget(void) const;

    virtual void changed(BitVector whichField, UInt32 origin) override;
    virtual void dump(UInt32 uiIndent = 0, const BitVector bvFlags = 0) const override;

    static void initMethod(void) {}

    void onCreate(const TextureChunk *source = NULL);

  protected:
    TextureChunk(void);
    TextureChunk(const TextureChunk &source);
    virtual ~TextureChunk(void);

    virtual void onDestroy(void) override;

    // Image plus derived formats for one upload.
    struct UploadFormat
    {
        GLenum internalFormat;
        GLenum externalFormat;
        GLenum type;
        bool   passData;
    };
    UploadFormat uploadFormat(Image *image) const;
    bool         mipmapped   (void) const;

    // Specifies all levels of image on a 1D/2D/3D target or a cube face.
    void uploadImage(GLenum target, GLenum imageTarget, Image *image,
                     UInt32 side, bool full);
    // Re-specifies (full) or refreshes the texture; it is bound.
    virtual void uploadAll(GLenum target, bool full);
    void applyParameters(GLenum target);

    static void attachImage(ImagePtr image, FieldContainerPtr parent);
    static void detachImage(ImagePtr image, FieldContainerPtr parent);

    GLuint _glName;
    GLenum _glTarget;       // target the name was created with
    bool   _needsInit;      // re-specify the image
    bool   _needsRefresh;   // re-upload the dirty region
    bool   _needsParams;    // filters, wraps and the like
    bool   _hasMipmaps;     // levels beyond 0 were given or generated
    bool   _windowHandled;  // a window holds the name under GLId and deletes it

    void registerGLObject(void);

  private:
    static StateChunkClass _class;
};

typedef RefPtr<TextureChunkPtr> TextureChunkRefPtr;

} // namespace osg

#endif
