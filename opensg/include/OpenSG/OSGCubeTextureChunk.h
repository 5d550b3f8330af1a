#ifndef _OSGCUBETEXTURECHUNK_H_
#define _OSGCUBETEXTURECHUNK_H_

#include <OpenSG/OSGTextureChunk.h>

namespace osg
{

OSG_FC_PTR_DECL(CubeTextureChunk, TextureChunkPtr)

// A cube map from six images; the inherited Image is the -Z face.
class CubeTextureChunk : public TextureChunk
{
    OSG_FC_DECL(CubeTextureChunk, TextureChunk)

  public:
    enum
    {
        PosZImageFieldId = Inherited::NextFieldId,
        PosXImageFieldId = PosZImageFieldId + 1,
        NegXImageFieldId = PosXImageFieldId + 1,
        PosYImageFieldId = NegXImageFieldId + 1,
        NegYImageFieldId = PosYImageFieldId + 1,
        NextFieldId      = NegYImageFieldId + 1
    };
    OSG_FIELD_MASK(PosZImage)
    OSG_FIELD_MASK(PosXImage)
    OSG_FIELD_MASK(NegXImage)
    OSG_FIELD_MASK(PosYImage)
    OSG_FIELD_MASK(NegYImage)

    OSG_SFIELD_NOSET(SFImagePtr, PosZImage)
    OSG_SFIELD_NOSET(SFImagePtr, PosXImage)
    OSG_SFIELD_NOSET(SFImagePtr, NegXImage)
    OSG_SFIELD_NOSET(SFImagePtr, PosYImage)
    OSG_SFIELD_NOSET(SFImagePtr, NegYImage)

  public:
    // Reference-counted, like setImage.
    void setPosZImage(ImagePtr &value);
    void setPosXImage(ImagePtr &value);
    void setNegXImage(ImagePtr &value);
    void setPosYImage(ImagePtr &value);
    void setNegYImage(ImagePtr &value);

    virtual GLenum getGLTarget(void) const override;

    virtual void dump(UInt32 uiIndent = 0, const BitVector bvFlags = 0) const override;

    static void initMethod(void) {}

    void onCreate(const CubeTextureChunk *source = NULL);

  protected:
    CubeTextureChunk(void);
    CubeTextureChunk(const CubeTextureChunk &source);
    virtual ~CubeTextureChunk(void);

    virtual void onDestroy(void) override;
    virtual void uploadAll(GLenum target, bool full) override;

  private:
    void setFace(SFImagePtr &field, ImagePtr &value);
};

typedef RefPtr<CubeTextureChunkPtr> CubeTextureChunkRefPtr;

} // namespace osg

#endif
