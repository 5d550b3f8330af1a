#ifndef _OSGCHUNKMATERIAL_H_
#define _OSGCHUNKMATERIAL_H_

#include <OpenSG/OSGMaterial.h>
#include <OpenSG/OSGStateChunk.h>
#include <OpenSG/OSGState.h>

namespace osg
{

OSG_FC_PTR_DECL(ChunkMaterial, MaterialPtr)

class ChunkMaterial : public Material
{
    OSG_FC_DECL(ChunkMaterial, Material)

  public:
    enum
    {
        ChunksFieldId = Inherited::NextFieldId,
        SlotsFieldId  = ChunksFieldId + 1,
        NextFieldId   = SlotsFieldId + 1
    };
    OSG_FIELD_MASK(Chunks)
    OSG_FIELD_MASK(Slots)

    OSG_MFIELD(MFStateChunkPtr, Chunks)
    OSG_MFIELD(MFInt32,         Slots)

  public:
    // Returns true; the chunk is referenced.
    bool addChunk(StateChunkPtr chunk, Int32 slot = State::AutoSlotReplace);
    // Returns false on success.
    bool subChunk(StateChunkPtr chunk, Int32 slot = State::AutoSlotReplace);

    Int32         find(StateChunkPtr chunk);
    StateChunkPtr find(const FieldContainerType &type,
                       Int32 slot = State::AutoSlotReplace);

    void clearChunks(void);

    virtual void draw(DrawFunctor &func, DrawActionBase *action) override;
    virtual void draw(Geometry *geo, DrawActionBase *action) override;

    virtual StatePtr makeState    (void) override;
    virtual void     rebuildState (void) override;
    virtual bool     isTransparent(void) const override;

    virtual void dump(UInt32 uiIndent = 0, const BitVector bvFlags = 0) const override;

    static void initMethod(void) {}

    void onCreate(const ChunkMaterial *source = NULL);

  protected:
    ChunkMaterial(void);
    ChunkMaterial(const ChunkMaterial &source);
    virtual ~ChunkMaterial(void);

    virtual void onDestroy(void) override;

    // Adds the user chunks with their slots to state.
    void addChunks(StatePtr state);
    // Whether any user chunk is transparent.
    bool chunksTransparent(void) const;
};

typedef RefPtr<ChunkMaterialPtr> ChunkMaterialRefPtr;

} // namespace osg

#endif
