#include <OpenSG/OSGChunkMaterial.h>
#include <OpenSG/OSGGeometry.h>

namespace osg
{

OSG_FC_IMPL(ChunkMaterial, "Material")

ChunkMaterial::ChunkMaterial(void) :
    Inherited(),
    _mfChunks(),
    _mfSlots ()
{
}

ChunkMaterial::ChunkMaterial(const ChunkMaterial &source) :
    Inherited(source),
    _mfChunks(source._mfChunks),
    _mfSlots (source._mfSlots)
{
}

ChunkMaterial::~ChunkMaterial(void)
{
}

// A copy holds the same chunks and needs its own references.
void ChunkMaterial::onCreate(const ChunkMaterial *)
{
    for(UInt32 i = 0; i < _mfChunks.size(); ++i)
        addRefCP(_mfChunks[i]);
}

void ChunkMaterial::onDestroy(void)
{
    clearChunks();
    Inherited::onDestroy();
}

bool ChunkMaterial::addChunk(StateChunkPtr chunk, Int32 slot)
{
    if(chunk == NullFC)
    {
        SWARNING << "ChunkMaterial::addChunk: no chunk" << std::endl;
        return false;
    }

    if(slot != State::AutoSlotReplace)
    {
        while(_mfSlots.size() < _mfChunks.size())
            _mfSlots.push_back(State::AutoSlotReplace);
        _mfSlots.push_back(slot);
    }

    addRefCP(chunk);
    _mfChunks.push_back(chunk);
    return true;
}

bool ChunkMaterial::subChunk(StateChunkPtr chunk, Int32 slot)
{
    for(UInt32 i = 0; i < _mfChunks.size(); ++i)
    {
        if(_mfChunks[i] != chunk)
            continue;

        const Int32 chunkSlot = i < _mfSlots.size() ? _mfSlots[i]
                                                    : Int32(State::AutoSlotReplace);
        if(slot != State::AutoSlotReplace && slot != chunkSlot)
            continue;

        _mfChunks.erase(_mfChunks.begin() + i);
        if(i < _mfSlots.size())
            _mfSlots.erase(_mfSlots.begin() + i);
        subRefCP(chunk);
        return false;
    }

    SWARNING << "ChunkMaterial::subChunk: chunk " << chunk << " slot " << slot
             << " not found" << std::endl;
    return true;
}

Int32 ChunkMaterial::find(StateChunkPtr chunk)
{
    for(UInt32 i = 0; i < _mfChunks.size(); ++i)
    {
        if(_mfChunks[i] == chunk)
            return Int32(i);
    }
    return -1;
}

StateChunkPtr ChunkMaterial::find(const FieldContainerType &type, Int32 slot)
{
    Int32 seen = 0;
    for(UInt32 i = 0; i < _mfChunks.size(); ++i)
    {
        if(_mfChunks[i] == NullFC || _mfChunks[i]->getType() != type)
            continue;
        if(slot == State::AutoSlotReplace || seen == slot)
            return _mfChunks[i];
        ++seen;
    }
    return NullFC;
}

void ChunkMaterial::clearChunks(void)
{
    MFStateChunkPtr chunks;
    chunks.swap(_mfChunks);
    for(UInt32 i = 0; i < chunks.size(); ++i)
        subRefCP(chunks[i]);
}

void ChunkMaterial::addChunks(StatePtr state)
{
    for(UInt32 i = 0; i < _mfChunks.size(); ++i)
    {
        const Int32 slot = i < _mfSlots.size() ? _mfSlots[i]
                                               : Int32(State::AutoSlotReplace);
        state->addChunk(_mfChunks[i], slot);
    }
}

StatePtr ChunkMaterial::makeState(void)
{
    StatePtr state = State::create();
    addChunks(state);
    return state;
}

void ChunkMaterial::rebuildState(void)
{
    if(_pState == NullFC)
    {
        _pState = State::create();
        addRefCP(_pState);
    }
    else
        _pState->clearChunks();

    addChunks(_pState);
}

bool ChunkMaterial::chunksTransparent(void) const
{
    for(UInt32 i = 0; i < _mfChunks.size(); ++i)
    {
        if(_mfChunks[i] != NullFC && _mfChunks[i]->isTransparent())
            return true;
    }
    return false;
}

bool ChunkMaterial::isTransparent(void) const
{
    if(getTransparencyMode() == TransparencyForceTransparent)
        return true;
    if(getTransparencyMode() == TransparencyForceOpaque)
        return false;
    return chunksTransparent();
}

// Drawing outside the render action uses a state of its own, so the cached
// one may be rebuilt meanwhile.
void ChunkMaterial::draw(DrawFunctor &func, DrawActionBase *action)
{
    StatePtr state = makeState();
    addRefCP(state);
    state->activate(action);
    func.call(action);
    state->deactivate(action);
    subRefCP(state);
}

void ChunkMaterial::draw(Geometry *geo, DrawActionBase *action)
{
    if(geo == NULL)
        return;

    StatePtr state = makeState();
    addRefCP(state);
    state->activate(action);
    geo->drawPrimitives(action);
    state->deactivate(action);
    subRefCP(state);
}

void ChunkMaterial::dump(UInt32 uiIndent, const BitVector bvFlags) const
{
    Inherited::dump(uiIndent, bvFlags);
    for(UInt32 i = 0; i < _mfChunks.size(); ++i)
    {
        if(_mfChunks[i] != NullFC)
            _mfChunks[i]->dump(uiIndent + 2, bvFlags);
    }
}

} // namespace osg
