#ifndef _OSGSTATE_H_
#define _OSGSTATE_H_

#include <OpenSG/OSGFieldContainer.h>
#include <OpenSG/OSGStateChunk.h>
#include <OpenSG/OSGRefPtr.h>

namespace osg
{

class DrawActionBase;

OSG_FC_PTR_DECL(State, FieldContainerPtr)

// The chunks of one draw, indexed by absolute slot (class id + slot);
// empty slots hold NullFC. The state references the chunks it holds.
class State : public FieldContainer
{
    OSG_FC_DECL(State, FieldContainer)

  public:
    enum
    {
        ChunksFieldId = Inherited::NextFieldId,
        NextFieldId   = ChunksFieldId + 1
    };
    OSG_FIELD_MASK(Chunks)

    OSG_MFIELD(MFStateChunkPtr, Chunks)

  public:
    enum { AutoSlot = -1, AutoSlotReplace = -2 };

    void activate  (DrawActionBase *action);
    void changeFrom(DrawActionBase *action, State *old);
    void deactivate(DrawActionBase *action);

    StateChunkPtr getChunk    (UInt32 chunkId);
    bool          chunkPresent(UInt32 chunkId);
    // Whether any slot of the chunk's class is occupied.
    bool          chunkPresent(StateChunkPtr chunk);

    // All three return false on success.
    bool addChunk  (StateChunkPtr chunk, Int32 index = AutoSlotReplace);
    bool subChunk  (StateChunkPtr chunk);
    bool subChunk  (UInt32 classid, Int32 index);
    void clearChunks(void);

    virtual bool operator < (const State &other) const;
    virtual bool operator ==(const State &other) const;
    virtual bool operator !=(const State &other) const;

    virtual void dump(UInt32 uiIndent = 0, const BitVector bvFlags = 0) const override;

    static void initMethod(void) {}

    void onCreate(const State *source = NULL);

  protected:
    State(void);
    State(const State &source);
    virtual ~State(void);

    virtual void onDestroy(void) override;

  private:
    void setSlot(UInt32 id, StateChunkPtr chunk);
};

typedef RefPtr<StatePtr> StateRefPtr;

} // namespace osg

#endif
