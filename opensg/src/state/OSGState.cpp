#include <OpenSG/OSGState.h>

#include <algorithm>

namespace osg
{

OSG_FC_IMPL(State, "FieldContainer")

State::State(void) :
    Inherited(),
    _mfChunks()
{
}

State::State(const State &source) :
    Inherited(source),
    _mfChunks(source._mfChunks)
{
}

State::~State(void)
{
}

// A copy holds the same chunks and needs its own references.
void State::onCreate(const State *)
{
    for(UInt32 i = 0; i < _mfChunks.size(); ++i)
        addRefCP(_mfChunks[i]);
}

void State::onDestroy(void)
{
    clearChunks();
    Inherited::onDestroy();
}

void State::setSlot(UInt32 id, StateChunkPtr chunk)
{
    if(id >= _mfChunks.size())
        _mfChunks.resize(id + 1, NullFC);

    if(_mfChunks[id] == chunk)
        return;

    addRefCP(chunk);
    subRefCP(_mfChunks[id]);
    _mfChunks[id] = chunk;
}

bool State::addChunk(StateChunkPtr chunk, Int32 index)
{
    if(chunk == NullFC || chunk->getClass() == NULL)
    {
        SWARNING << "State::addChunk: no chunk or chunk without class" << std::endl;
        return true;
    }

    const UInt32 classId  = chunk->getClassId();
    const Int32  numSlots = chunk->getClass()->getNumSlots();

    if(index >= 0)
    {
        if(index >= numSlots)
        {
            SWARNING << "State::addChunk: index " << index << " beyond the "
                     << numSlots << " slots of class "
                     << chunk->getClass()->getName() << std::endl;
            return true;
        }
        setSlot(classId + index, chunk);
        return false;
    }

    if(index != AutoSlot && index != AutoSlotReplace)
    {
        SWARNING << "State::addChunk: invalid index " << index << std::endl;
        return true;
    }

    for(Int32 i = 0; i < numSlots; ++i)
    {
        if(getChunk(classId + i) == NullFC)
        {
            setSlot(classId + i, chunk);
            return false;
        }
    }

    if(index == AutoSlot)
    {
        SWARNING << "State::addChunk: all " << numSlots << " slots of class "
                 << chunk->getClass()->getName() << " are used" << std::endl;
        return true;
    }

    setSlot(classId + numSlots - 1, chunk);
    return false;
}

bool State::subChunk(StateChunkPtr chunk)
{
    if(chunk == NullFC || chunk->getClass() == NULL)
        return true;

    const UInt32 classId  = chunk->getClassId();
    const Int32  numSlots = chunk->getClass()->getNumSlots();

    for(Int32 i = 0; i < numSlots; ++i)
    {
        if(getChunk(classId + i) == chunk)
        {
            setSlot(classId + i, NullFC);
            return false;
        }
    }

    SWARNING << "State::subChunk: chunk is not in the state" << std::endl;
    return true;
}

bool State::subChunk(UInt32 classid, Int32 index)
{
    const Int32 numSlots = StateChunkClass::getNumSlots(classid);
    if(index < 0 || index >= numSlots)
    {
        SWARNING << "State::subChunk: index " << index << " out of range" << std::endl;
        return true;
    }
    if(getChunk(classid + index) == NullFC)
        return true;

    setSlot(classid + index, NullFC);
    return false;
}

void State::clearChunks(void)
{
    MFStateChunkPtr chunks;
    chunks.swap(_mfChunks);
    for(UInt32 i = 0; i < chunks.size(); ++i)
        subRefCP(chunks[i]);
}

StateChunkPtr State::getChunk(UInt32 chunkId)
{
    return chunkId < _mfChunks.size() ? _mfChunks[chunkId] : StateChunkPtr();
}

bool State::chunkPresent(UInt32 chunkId)
{
    return getChunk(chunkId) != NullFC;
}

bool State::chunkPresent(StateChunkPtr chunk)
{
    if(chunk == NullFC || chunk->getClass() == NULL)
        return false;

    const UInt32 classId  = chunk->getClassId();
    const Int32  numSlots = chunk->getClass()->getNumSlots();
    for(Int32 i = 0; i < numSlots; ++i)
    {
        if(chunkPresent(classId + i))
            return true;
    }
    return false;
}

namespace
{

// Ignored chunks take part in nothing, as if their slot were empty.
StateChunk *activeChunk(const MFStateChunkPtr &chunks, UInt32 i)
{
    if(i >= chunks.size() || chunks[i] == NullFC || chunks[i]->getIgnore())
        return NULL;
    return getCPtr(chunks[i]);
}

} // namespace

void State::activate(DrawActionBase *action)
{
    for(UInt32 i = 0; i < _mfChunks.size(); ++i)
    {
        StateChunk *chunk = activeChunk(_mfChunks, i);
        if(chunk != NULL)
            chunk->activate(action, i - chunk->getClassId());
    }
}

void State::changeFrom(DrawActionBase *action, State *old)
{
    if(old == NULL)
    {
        activate(action);
        return;
    }

    const UInt32 count = std::max(_mfChunks.size(), old->_mfChunks.size());
    for(UInt32 i = 0; i < count; ++i)
    {
        StateChunk *chunk    = activeChunk(_mfChunks, i);
        StateChunk *oldChunk = activeChunk(old->_mfChunks, i);

        if(chunk != NULL)
        {
            const UInt32 slot = i - chunk->getClassId();
            if(oldChunk != NULL)
                chunk->changeFrom(action, oldChunk, slot);
            else
                chunk->activate(action, slot);
        }
        else if(oldChunk != NULL)
        {
            oldChunk->deactivate(action, i - oldChunk->getClassId());
        }
    }
}

void State::deactivate(DrawActionBase *action)
{
    for(UInt32 i = 0; i < _mfChunks.size(); ++i)
    {
        StateChunk *chunk = activeChunk(_mfChunks, i);
        if(chunk != NULL)
            chunk->deactivate(action, i - chunk->getClassId());
    }
}

bool State::operator <(const State &other) const
{
    return this < &other;
}

bool State::operator ==(const State &other) const
{
    return _mfChunks.getValues() == other._mfChunks.getValues();
}

bool State::operator !=(const State &other) const
{
    return !(*this == other);
}

void State::dump(UInt32 uiIndent, const BitVector bvFlags) const
{
    indentLog(uiIndent, PLOG);
    PLOG << "State (" << this << ")" << std::endl;
    for(UInt32 i = 0; i < _mfChunks.size(); ++i)
    {
        if(_mfChunks[i] != NullFC)
            _mfChunks[i]->dump(uiIndent + 2, bvFlags);
    }
}

} // namespace osg
