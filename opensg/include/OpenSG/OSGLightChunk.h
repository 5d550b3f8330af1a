#ifndef _OSGLIGHTCHUNK_H_
#define _OSGLIGHTCHUNK_H_

#include <OpenSG/OSGStateChunk.h>
#include <OpenSG/OSGSFSysTypes.h>
#include <OpenSG/OSGSFVecTypes.h>
#include <OpenSG/OSGColor4fFields.h>
#include <OpenSG/OSGVec4fFields.h>

namespace osg
{

OSG_FC_PTR_DECL(LightChunk, StateChunkPtr)

// One GL light: the slot index picks GL_LIGHT0 + index. Position and
// direction pass through the modelview matrix current at activation;
// Cutoff is in degrees, as GL takes it.
class LightChunk : public StateChunk
{
    OSG_FC_DECL(LightChunk, StateChunk)

  public:
    enum
    {
        DiffuseFieldId              = Inherited::NextFieldId,
        AmbientFieldId              = DiffuseFieldId             + 1,
        SpecularFieldId             = AmbientFieldId             + 1,
        PositionFieldId             = SpecularFieldId            + 1,
        DirectionFieldId            = PositionFieldId            + 1,
        ExponentFieldId             = DirectionFieldId           + 1,
        CutoffFieldId               = ExponentFieldId            + 1,
        ConstantAttenuationFieldId  = CutoffFieldId              + 1,
        LinearAttenuationFieldId    = ConstantAttenuationFieldId + 1,
        QuadraticAttenuationFieldId = LinearAttenuationFieldId   + 1,
        NextFieldId                 = QuadraticAttenuationFieldId + 1
    };
    OSG_FIELD_MASK(Diffuse)
    OSG_FIELD_MASK(Ambient)
    OSG_FIELD_MASK(Specular)
    OSG_FIELD_MASK(Position)
    OSG_FIELD_MASK(Direction)
    OSG_FIELD_MASK(Exponent)
    OSG_FIELD_MASK(Cutoff)
    OSG_FIELD_MASK(ConstantAttenuation)
    OSG_FIELD_MASK(LinearAttenuation)
    OSG_FIELD_MASK(QuadraticAttenuation)

    OSG_SFIELD(SFColor4f, Diffuse)
    OSG_SFIELD(SFColor4f, Ambient)
    OSG_SFIELD(SFColor4f, Specular)
    OSG_SFIELD(SFVec4f,   Position)
    OSG_SFIELD(SFVec3f,   Direction)
    OSG_SFIELD(SFReal32,  Exponent)
    OSG_SFIELD(SFReal32,  Cutoff)
    OSG_SFIELD(SFReal32,  ConstantAttenuation)
    OSG_SFIELD(SFReal32,  LinearAttenuation)
    OSG_SFIELD(SFReal32,  QuadraticAttenuation)

  public:
    virtual const StateChunkClass *getClass(void) const override { return &_class; }
    static  UInt32                 getStaticClassId(void) { return _class.getId(); }
    static  const StateChunkClass *getStaticClass  (void) { return &_class; }

    virtual void activate  (DrawActionBase *action, UInt32 index = 0) override;
    virtual void changeFrom(DrawActionBase *action, StateChunk *old, UInt32 index = 0) override;
    virtual void deactivate(DrawActionBase *action, UInt32 index = 0) override;

    static void initMethod(void) {}

  protected:
    LightChunk(void);
    LightChunk(const LightChunk &source);
    virtual ~LightChunk(void);

  private:
    static StateChunkClass _class;
};

typedef RefPtr<LightChunkPtr> LightChunkRefPtr;

} // namespace osg

#endif
