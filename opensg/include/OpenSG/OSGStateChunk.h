#ifndef _OSGSTATECHUNK_H_
#define _OSGSTATECHUNK_H_

#include <OpenSG/OSGAttachment.h>
#include <OpenSG/OSGSFSysTypes.h>
#include <OpenSG/OSGRefPtr.h>
#include <OpenSG/OSGGL.h>

// Marks an unset GL enum in chunk fields (BlendChunk alpha factors).
#ifndef OSG_GL_UNUSED
#define OSG_GL_UNUSED 0xffff
#endif

namespace osg
{

class DrawActionBase;

// Slots of the "Texture" and "TexGen" chunk classes.
const UInt32 osgMaxTexImages = 16;
const UInt32 osgMaxTexCoords = 8;

// A kind of state with a number of slots (texture units, lights). Classes
// get consecutive absolute ids in registration order; State keeps its
// chunks indexed by those ids and activates them in that order.
class StateChunkClass
{
  public:
    StateChunkClass(const Char8 *name, UInt32 numslots = 1);

    UInt32       getId      (void) const { return _classId; }
    const Char8 *getName    (void) const;
    Int32        getNumSlots(void) const;

    // By absolute id (any slot of a class); NULL / -1 if unknown.
    static const Char8 *getName    (UInt32 index);
    static Int32        getNumSlots(UInt32 index);

    // One past the last absolute id in use.
    static UInt32 getUsedSlots(void);

  private:
    UInt32 _classId;
};

OSG_FC_PTR_DECL(StateChunk, AttachmentPtr)

class StateChunk : public Attachment
{
    OSG_FC_ABSTRACT_DECL(StateChunk, Attachment)

  public:
    enum
    {
        IgnoreFieldId = Inherited::NextFieldId,
        NextFieldId   = IgnoreFieldId + 1
    };
    OSG_FIELD_MASK(Ignore)

    OSG_SFIELD(SFBool, Ignore)

  public:
    UInt32                         getClassId(void) const;
    virtual const StateChunkClass *getClass  (void) const;

    // The base has no class: NULL and 0xffffffff.
    static UInt32                 getStaticClassId(void);
    static const StateChunkClass *getStaticClass  (void);

    virtual void update    (DrawActionBase *action);
    virtual void activate  (DrawActionBase *action, UInt32 index = 0);
    virtual void changeFrom(DrawActionBase *action, StateChunk *old, UInt32 index = 0);
    virtual void deactivate(DrawActionBase *action, UInt32 index = 0);

    virtual bool   isTransparent(void) const;
    virtual Real32 switchCost   (StateChunk *chunk);

    virtual bool operator < (const StateChunk &other) const;
    virtual bool operator ==(const StateChunk &other) const;
    virtual bool operator !=(const StateChunk &other) const;

    virtual void dump(UInt32 uiIndent = 0, const BitVector bvFlags = 0) const override;

    static void initMethod(void) {}

  protected:
    StateChunk(void);
    StateChunk(const StateChunk &source);
    virtual ~StateChunk(void);
};

typedef RefPtr<StateChunkPtr> StateChunkRefPtr;

} // namespace osg

#endif
