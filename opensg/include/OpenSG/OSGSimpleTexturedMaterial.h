#ifndef _OSGSIMPLETEXTUREDMATERIAL_H_
#define _OSGSIMPLETEXTUREDMATERIAL_H_

#include <OpenSG/OSGSimpleMaterial.h>
#include <OpenSG/OSGTextureChunk.h>
#include <OpenSG/OSGImage.h>

namespace osg
{

OSG_FC_PTR_DECL(SimpleTexturedMaterial, SimpleMaterialPtr)

// A SimpleMaterial with one texture on unit 0.
class SimpleTexturedMaterial : public SimpleMaterial
{
    OSG_FC_DECL(SimpleTexturedMaterial, SimpleMaterial)

  public:
    enum
    {
        ImageFieldId     = Inherited::NextFieldId,
        MinFilterFieldId = ImageFieldId     + 1,
        MagFilterFieldId = MinFilterFieldId + 1,
        EnvModeFieldId   = MagFilterFieldId + 1,
        EnvMapFieldId    = EnvModeFieldId   + 1,
        NextFieldId      = EnvMapFieldId    + 1
    };
    OSG_FIELD_MASK(Image)
    OSG_FIELD_MASK(MinFilter)
    OSG_FIELD_MASK(MagFilter)
    OSG_FIELD_MASK(EnvMode)
    OSG_FIELD_MASK(EnvMap)

    OSG_SFIELD_NOSET(SFImagePtr, Image)
    OSG_SFIELD(SFGLenum, MinFilter)
    OSG_SFIELD(SFGLenum, MagFilter)
    OSG_SFIELD(SFGLenum, EnvMode)
    OSG_SFIELD(SFBool,   EnvMap)

  public:
    // References the image.
    void setImage(const ImagePtr &pImage);
    // Call after changing the image's pixels so the texture is refreshed.
    void imageChanged(void);

    virtual bool isTransparent(void) const override;

    static void initMethod(void) {}

    void onCreate(const SimpleTexturedMaterial *source = NULL);

  protected:
    SimpleTexturedMaterial(void);
    SimpleTexturedMaterial(const SimpleTexturedMaterial &source);
    virtual ~SimpleTexturedMaterial(void);

    virtual void onDestroy(void) override;

    virtual void prepareLocalChunks(void) override;
    virtual void addLocalChunks(StatePtr state) override;

    TextureChunkPtr _textureChunk;
};

typedef RefPtr<SimpleTexturedMaterialPtr> SimpleTexturedMaterialRefPtr;

} // namespace osg

#endif
