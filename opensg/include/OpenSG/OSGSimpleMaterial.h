#ifndef _OSGSIMPLEMATERIAL_H_
#define _OSGSIMPLEMATERIAL_H_

#include <OpenSG/OSGChunkMaterial.h>
#include <OpenSG/OSGMaterialChunk.h>
#include <OpenSG/OSGBlendChunk.h>
#include <OpenSG/OSGSFBaseTypes.h>

namespace osg
{

OSG_FC_PTR_DECL(SimpleMaterial, ChunkMaterialPtr)

// Fixed-function colours; its state is an internal MaterialChunk, an
// internal BlendChunk while transparent, then the user's chunks.
class SimpleMaterial : public ChunkMaterial
{
    OSG_FC_DECL(SimpleMaterial, ChunkMaterial)

  public:
    enum
    {
        AmbientFieldId       = Inherited::NextFieldId,
        DiffuseFieldId       = AmbientFieldId      + 1,
        SpecularFieldId      = DiffuseFieldId      + 1,
        ShininessFieldId     = SpecularFieldId     + 1,
        EmissionFieldId      = ShininessFieldId    + 1,
        TransparencyFieldId  = EmissionFieldId     + 1,
        LitFieldId           = TransparencyFieldId + 1,
        ColorMaterialFieldId = LitFieldId          + 1,
        NextFieldId          = ColorMaterialFieldId + 1
    };
    OSG_FIELD_MASK(Ambient)
    OSG_FIELD_MASK(Diffuse)
    OSG_FIELD_MASK(Specular)
    OSG_FIELD_MASK(Shininess)
    OSG_FIELD_MASK(Emission)
    OSG_FIELD_MASK(Transparency)
    OSG_FIELD_MASK(Lit)
    OSG_FIELD_MASK(ColorMaterial)

    OSG_SFIELD(SFColor3f, Ambient)
    OSG_SFIELD(SFColor3f, Diffuse)
    OSG_SFIELD(SFColor3f, Specular)
    OSG_SFIELD(SFReal32,  Shininess)
    OSG_SFIELD(SFColor3f, Emission)
    OSG_SFIELD(SFReal32,  Transparency)
    OSG_SFIELD(SFBool,    Lit)
    OSG_SFIELD(SFGLenum,  ColorMaterial)

  public:
    virtual StatePtr makeState    (void) override;
    virtual void     rebuildState (void) override;
    virtual bool     isTransparent(void) const override;

    virtual void dump(UInt32 uiIndent = 0, const BitVector bvFlags = 0) const override;

    static void initMethod(void) {}

  protected:
    SimpleMaterial(void);
    SimpleMaterial(const SimpleMaterial &source);
    virtual ~SimpleMaterial(void);

    virtual void onDestroy(void) override;

    // Brings the internal chunks up to date with the fields.
    virtual void prepareLocalChunks(void);
    // Adds the internal chunks to state; the user chunks follow them.
    virtual void addLocalChunks(StatePtr state);

    MaterialChunkPtr _materialChunk;
    BlendChunkPtr    _blendChunk;
};

typedef RefPtr<SimpleMaterialPtr> SimpleMaterialRefPtr;

} // namespace osg

#endif
