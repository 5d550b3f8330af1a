#ifndef _OSGBLENDCHUNK_H_
#define _OSGBLENDCHUNK_H_

#include <OpenSG/OSGStateChunk.h>
#include <OpenSG/OSGSFBaseTypes.h>

namespace osg
{

OSG_FC_PTR_DECL(BlendChunk, StateChunkPtr)

class BlendChunk : public StateChunk
{
    OSG_FC_DECL(BlendChunk, StateChunk)

  public:
    enum
    {
        SrcFactorFieldId       = Inherited::NextFieldId,
        DestFactorFieldId      = SrcFactorFieldId  + 1,
        EquationFieldId        = DestFactorFieldId + 1,
        ColorFieldId           = EquationFieldId   + 1,
        AlphaFuncFieldId       = ColorFieldId      + 1,
        AlphaValueFieldId      = AlphaFuncFieldId  + 1,
        AlphaSrcFactorFieldId  = AlphaValueFieldId + 1,
        AlphaDestFactorFieldId = AlphaSrcFactorFieldId + 1,
        NextFieldId            = AlphaDestFactorFieldId + 1
    };
    OSG_FIELD_MASK(SrcFactor)
    OSG_FIELD_MASK(DestFactor)
    OSG_FIELD_MASK(Equation)
    OSG_FIELD_MASK(Color)
    OSG_FIELD_MASK(AlphaFunc)
    OSG_FIELD_MASK(AlphaValue)
    OSG_FIELD_MASK(AlphaSrcFactor)
    OSG_FIELD_MASK(AlphaDestFactor)

    OSG_SFIELD(SFGLenum,  SrcFactor)
    OSG_SFIELD(SFGLenum,  DestFactor)
    OSG_SFIELD(SFGLenum,  Equation)
    OSG_SFIELD(SFColor4f, Color)
    OSG_SFIELD(SFGLenum,  AlphaFunc)
    OSG_SFIELD(SFReal32,  AlphaValue)
    OSG_SFIELD(SFGLenum,  AlphaSrcFactor)
    OSG_SFIELD(SFGLenum,  AlphaDestFactor)

  public:
    virtual const StateChunkClass *getClass(void) const override { return &_class; }
    static  UInt32                 getStaticClassId(void) { return _class.getId(); }
    static  const StateChunkClass *getStaticClass  (void) { return &_class; }

    virtual void activate  (DrawActionBase *action, UInt32 index = 0) override;
    virtual void deactivate(DrawActionBase *action, UInt32 index = 0) override;

    virtual bool isTransparent(void) const override;

    static void initMethod(void) {}

  protected:
    BlendChunk(void);
    BlendChunk(const BlendChunk &source);
    virtual ~BlendChunk(void);

  private:
    static StateChunkClass _class;

    bool blends(void) const;
};

typedef RefPtr<BlendChunkPtr> BlendChunkRefPtr;

} // namespace osg

#endif
