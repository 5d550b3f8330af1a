#ifndef _OSGDEPTHCHUNK_H_
#define _OSGDEPTHCHUNK_H_

#include <OpenSG/OSGStateChunk.h>

namespace osg
{

OSG_FC_PTR_DECL(DepthChunk, StateChunkPtr)

// Deactivation restores what Window sets up: depth test on, GL_LEQUAL,
// range [0, 1], depth writes on.
class DepthChunk : public StateChunk
{
    OSG_FC_DECL(DepthChunk, StateChunk)

  public:
    enum
    {
        EnableFieldId   = Inherited::NextFieldId,
        FuncFieldId     = EnableFieldId + 1,
        NearFieldId     = FuncFieldId   + 1,
        FarFieldId      = NearFieldId   + 1,
        ReadOnlyFieldId = FarFieldId    + 1,
        NextFieldId     = ReadOnlyFieldId + 1
    };
    OSG_FIELD_MASK(Enable)
    OSG_FIELD_MASK(Func)
    OSG_FIELD_MASK(Near)
    OSG_FIELD_MASK(Far)
    OSG_FIELD_MASK(ReadOnly)

    OSG_SFIELD(SFBool,   Enable)
    OSG_SFIELD(SFGLenum, Func)
    OSG_SFIELD(SFReal32, Near)
    OSG_SFIELD(SFReal32, Far)
    OSG_SFIELD(SFBool,   ReadOnly)

  public:
    virtual const StateChunkClass *getClass(void) const override { return &_class; }
    static  UInt32                 getStaticClassId(void) { return _class.getId(); }
    static  const StateChunkClass *getStaticClass  (void) { return &_class; }

    virtual void activate  (DrawActionBase *action, UInt32 index = 0) override;
    virtual void deactivate(DrawActionBase *action, UInt32 index = 0) override;

    static void initMethod(void) {}

  protected:
    DepthChunk(void);
    DepthChunk(const DepthChunk &source);
    virtual ~DepthChunk(void);

  private:
    static StateChunkClass _class;
};

typedef RefPtr<DepthChunkPtr> DepthChunkRefPtr;

} // namespace osg

#endif
