#ifndef _OSGPOLYGONCHUNK_H_
#define _OSGPOLYGONCHUNK_H_

#include <OpenSG/OSGStateChunk.h>

namespace osg
{

OSG_FC_PTR_DECL(PolygonChunk, StateChunkPtr)

class PolygonChunk : public StateChunk
{
    OSG_FC_DECL(PolygonChunk, StateChunk)

  public:
    enum
    {
        CullFaceFieldId     = Inherited::NextFieldId,
        FrontFaceFieldId    = CullFaceFieldId     + 1,
        FrontModeFieldId    = FrontFaceFieldId    + 1,
        BackModeFieldId     = FrontModeFieldId    + 1,
        SmoothFieldId       = BackModeFieldId     + 1,
        OffsetFactorFieldId = SmoothFieldId       + 1,
        OffsetBiasFieldId   = OffsetFactorFieldId + 1,
        OffsetPointFieldId  = OffsetBiasFieldId   + 1,
        OffsetLineFieldId   = OffsetPointFieldId  + 1,
        OffsetFillFieldId   = OffsetLineFieldId   + 1,
        StippleFieldId      = OffsetFillFieldId   + 1,
        NextFieldId         = StippleFieldId      + 1
    };
    OSG_FIELD_MASK(CullFace)
    OSG_FIELD_MASK(FrontFace)
    OSG_FIELD_MASK(FrontMode)
    OSG_FIELD_MASK(BackMode)
    OSG_FIELD_MASK(Smooth)
    OSG_FIELD_MASK(OffsetFactor)
    OSG_FIELD_MASK(OffsetBias)
    OSG_FIELD_MASK(OffsetPoint)
    OSG_FIELD_MASK(OffsetLine)
    OSG_FIELD_MASK(OffsetFill)
    OSG_FIELD_MASK(Stipple)

    OSG_SFIELD(SFGLenum, CullFace)
    OSG_SFIELD(SFGLenum, FrontFace)
    OSG_SFIELD(SFGLenum, FrontMode)
    OSG_SFIELD(SFGLenum, BackMode)
    OSG_SFIELD(SFBool,   Smooth)
    OSG_SFIELD(SFReal32, OffsetFactor)
    OSG_SFIELD(SFReal32, OffsetBias)
    OSG_SFIELD(SFBool,   OffsetPoint)
    OSG_SFIELD(SFBool,   OffsetLine)
    OSG_SFIELD(SFBool,   OffsetFill)
    OSG_MFIELD(MFInt32,  Stipple)

  public:
    virtual const StateChunkClass *getClass(void) const override { return &_class; }
    static  UInt32                 getStaticClassId(void) { return _class.getId(); }
    static  const StateChunkClass *getStaticClass  (void) { return &_class; }

    virtual void activate  (DrawActionBase *action, UInt32 index = 0) override;
    virtual void deactivate(DrawActionBase *action, UInt32 index = 0) override;

    static void initMethod(void) {}

  protected:
    PolygonChunk(void);
    PolygonChunk(const PolygonChunk &source);
    virtual ~PolygonChunk(void);

  private:
    static StateChunkClass _class;
};

typedef RefPtr<PolygonChunkPtr> PolygonChunkRefPtr;

} // namespace osg

#endif
