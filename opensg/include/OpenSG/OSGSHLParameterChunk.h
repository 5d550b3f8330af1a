#ifndef _OSGSHLPARAMETERCHUNK_H_
#define _OSGSHLPARAMETERCHUNK_H_

#include <OpenSG/OSGShaderParameterChunk.h>
#include <OpenSG/OSGSHLChunk.h>

namespace osg
{

OSG_FC_PTR_DECL(SHLParameterChunk, ShaderParameterChunkPtr)

// Uniforms for the program of another SHLChunk, so that objects can share
// one program and differ in uniforms. Its chunk class follows "SHL", so a
// state activates it after the shader. Uniforms the program lacks are
// skipped silently.
class SHLParameterChunk : public ShaderParameterChunk
{
    OSG_FC_DECL(SHLParameterChunk, ShaderParameterChunk)

  public:
    enum
    {
        SHLChunkFieldId = Inherited::NextFieldId,
        NextFieldId     = SHLChunkFieldId + 1
    };
    OSG_FIELD_MASK(SHLChunk)

    OSG_SFIELD_NOSET(SFSHLChunkPtr, SHLChunk)

  public:
    virtual const StateChunkClass *getClass(void) const override { return &_class; }
    static  UInt32                 getStaticClassId(void) { return _class.getId(); }
    static  const StateChunkClass *getStaticClass  (void) { return &_class; }

    // References the shader chunk.
    void setSHLChunk(const SHLChunkPtr &value);

    virtual void activate  (DrawActionBase *action, UInt32 index = 0) override;
    virtual void changeFrom(DrawActionBase *action, StateChunk *old, UInt32 index = 0) override;
    virtual void deactivate(DrawActionBase *action, UInt32 index = 0) override;

    static void initMethod(void) {}

    void onCreate(const SHLParameterChunk *source = NULL);

  protected:
    SHLParameterChunk(void);
    SHLParameterChunk(const SHLParameterChunk &source);
    virtual ~SHLParameterChunk(void);

    virtual void onDestroy(void) override;

  private:
    static StateChunkClass _class;
};

typedef RefPtr<SHLParameterChunkPtr> SHLParameterChunkRefPtr;

} // namespace osg

#endif
