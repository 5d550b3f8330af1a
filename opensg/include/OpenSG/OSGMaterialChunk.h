#ifndef _OSGMATERIALCHUNK_H_
#define _OSGMATERIALCHUNK_H_

#include <OpenSG/OSGStateChunk.h>
#include <OpenSG/OSGSFBaseTypes.h>

namespace osg
{

OSG_FC_PTR_DECL(MaterialChunk, StateChunkPtr)

// Fixed-function material; GLSL reads it as gl_FrontMaterial, so it is set
// whether lit or not.
class MaterialChunk : public StateChunk
{
    OSG_FC_DECL(MaterialChunk, StateChunk)

  public:
    enum
    {
        DiffuseFieldId           = Inherited::NextFieldId,
        AmbientFieldId           = DiffuseFieldId       + 1,
        SpecularFieldId          = AmbientFieldId       + 1,
        EmissionFieldId          = SpecularFieldId      + 1,
        ShininessFieldId         = EmissionFieldId      + 1,
        LitFieldId               = ShininessFieldId     + 1,
        ColorMaterialFieldId     = LitFieldId           + 1,
        BackMaterialFieldId      = ColorMaterialFieldId + 1,
        BackDiffuseFieldId       = BackMaterialFieldId  + 1,
        BackAmbientFieldId       = BackDiffuseFieldId   + 1,
        BackSpecularFieldId      = BackAmbientFieldId   + 1,
        BackEmissionFieldId      = BackSpecularFieldId  + 1,
        BackShininessFieldId     = BackEmissionFieldId  + 1,
        BackColorMaterialFieldId = BackShininessFieldId + 1,
        NextFieldId              = BackColorMaterialFieldId + 1
    };
    OSG_FIELD_MASK(Diffuse)
    OSG_FIELD_MASK(Ambient)
    OSG_FIELD_MASK(Specular)
    OSG_FIELD_MASK(Emission)
    OSG_FIELD_MASK(Shininess)
    OSG_FIELD_MASK(Lit)
    OSG_FIELD_MASK(ColorMaterial)
    OSG_FIELD_MASK(BackMaterial)
    OSG_FIELD_MASK(BackDiffuse)
    OSG_FIELD_MASK(BackAmbient)
    OSG_FIELD_MASK(BackSpecular)
    OSG_FIELD_MASK(BackEmission)
    OSG_FIELD_MASK(BackShininess)
    OSG_FIELD_MASK(BackColorMaterial)

    OSG_SFIELD(SFColor4f, Diffuse)
    OSG_SFIELD(SFColor4f, Ambient)
    OSG_SFIELD(SFColor4f, Specular)
    OSG_SFIELD(SFColor4f, Emission)
    OSG_SFIELD(SFReal32,  Shininess)
    OSG_SFIELD(SFBool,    Lit)
    OSG_SFIELD(SFGLenum,  ColorMaterial)
    OSG_SFIELD(SFBool,    BackMaterial)
    OSG_SFIELD(SFColor4f, BackDiffuse)
    OSG_SFIELD(SFColor4f, BackAmbient)
    OSG_SFIELD(SFColor4f, BackSpecular)
    OSG_SFIELD(SFColor4f, BackEmission)
    OSG_SFIELD(SFReal32,  BackShininess)
    OSG_SFIELD(SFGLenum,  BackColorMaterial)

  public:
    virtual const StateChunkClass *getClass(void) const override { return &_class; }
    static  UInt32                 getStaticClassId(void) { return _class.getId(); }
    static  const StateChunkClass *getStaticClass  (void) { return &_class; }

    virtual void activate  (DrawActionBase *action, UInt32 index = 0) override;
    virtual void deactivate(DrawActionBase *action, UInt32 index = 0) override;

    virtual bool isTransparent(void) const override;

    static void initMethod(void) {}

  protected:
    MaterialChunk(void);
    MaterialChunk(const MaterialChunk &source);
    virtual ~MaterialChunk(void);

  private:
    static StateChunkClass _class;
};

typedef RefPtr<MaterialChunkPtr> MaterialChunkRefPtr;

} // namespace osg

#endif
