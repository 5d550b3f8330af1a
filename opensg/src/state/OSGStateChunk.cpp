#include <OpenSG/OSGStateChunk.h>
#include <OpenSG/OSGBlendChunk.h>
#include <OpenSG/OSGDepthChunk.h>
#include <OpenSG/OSGPolygonChunk.h>
#include <OpenSG/OSGMaterialChunk.h>
#include <OpenSG/OSGLightChunk.h>
#include <OpenSG/OSGTextureChunk.h>
#include <OpenSG/OSGSHLChunk.h>
#include <OpenSG/OSGSHLParameterChunk.h>

#include <string>
#include <vector>

namespace osg
{

namespace
{

struct ChunkClassEntry
{
    std::string name;
    UInt32      firstId;
    UInt32      numSlots;
};

// Function-local so that chunk classes defined in any translation unit can
// register during static initialisation.
std::vector<ChunkClassEntry> &chunkClasses(void)
{
    static std::vector<ChunkClassEntry> classes;
    return classes;
}

// Absolute id -> index into chunkClasses().
std::vector<UInt32> &chunkSlotOwners(void)
{
    static std::vector<UInt32> owners;
    return owners;
}

} // namespace

StateChunkClass::StateChunkClass(const Char8 *name, UInt32 numslots) :
    _classId(UInt32(chunkSlotOwners().size()))
{
    if(numslots == 0)
        numslots = 1;

    chunkClasses().push_back(ChunkClassEntry{name != NULL ? name : "", _classId, numslots});
    chunkSlotOwners().resize(_classId + numslots, UInt32(chunkClasses().size() - 1));
}

const Char8 *StateChunkClass::getName(void) const
{
    return getName(_classId);
}

Int32 StateChunkClass::getNumSlots(void) const
{
    return getNumSlots(_classId);
}

const Char8 *StateChunkClass::getName(UInt32 index)
{
    if(index >= chunkSlotOwners().size())
        return NULL;
    return chunkClasses()[chunkSlotOwners()[index]].name.c_str();
}

Int32 StateChunkClass::getNumSlots(UInt32 index)
{
    if(index >= chunkSlotOwners().size())
        return -1;
    return Int32(chunkClasses()[chunkSlotOwners()[index]].numSlots);
}

UInt32 StateChunkClass::getUsedSlots(void)
{
    return UInt32(chunkSlotOwners().size());
}

// The runtime's chunk classes, defined together because their order is the
// order in which a State activates them: a parameter chunk must follow the
// shader whose program it feeds.
StateChunkClass BlendChunk::_class       ("Blend");
StateChunkClass DepthChunk::_class       ("Depth");
StateChunkClass PolygonChunk::_class     ("Polygon");
StateChunkClass MaterialChunk::_class    ("Material");
StateChunkClass LightChunk::_class       ("Light", 8);
StateChunkClass TextureChunk::_class     ("Texture", osgMaxTexImages);
StateChunkClass SHLChunk::_class         ("SHL");
StateChunkClass SHLParameterChunk::_class("SHLParameter");

OSG_FC_ABSTRACT_IMPL(StateChunk, "Attachment")

StateChunk::StateChunk(void) :
    Inherited(),
    _sfIgnore(false)
{
}

StateChunk::StateChunk(const StateChunk &source) :
    Inherited(source),
    _sfIgnore(source._sfIgnore)
{
}

StateChunk::~StateChunk(void)
{
}

UInt32 StateChunk::getClassId(void) const
{
    const StateChunkClass *cls = getClass();
    return cls != NULL ? cls->getId() : 0xffffffff;
}

const StateChunkClass *StateChunk::getClass(void) const
{
    return NULL;
}

UInt32 StateChunk::getStaticClassId(void)
{
    return 0xffffffff;
}

const StateChunkClass *StateChunk::getStaticClass(void)
{
    return NULL;
}

void StateChunk::update(DrawActionBase *)
{
}

void StateChunk::activate(DrawActionBase *, UInt32)
{
}

// Chunks whose settings do not depend on each other switch by undoing the
// old one and applying the new one.
void StateChunk::changeFrom(DrawActionBase *action, StateChunk *old, UInt32 index)
{
    if(old == this)
        return;
    if(old != NULL)
        old->deactivate(action, index);
    activate(action, index);
}

void StateChunk::deactivate(DrawActionBase *, UInt32)
{
}

bool StateChunk::isTransparent(void) const
{
    return false;
}

Real32 StateChunk::switchCost(StateChunk *)
{
    return 0;
}

bool StateChunk::operator <(const StateChunk &other) const
{
    return this < &other;
}

bool StateChunk::operator ==(const StateChunk &other) const
{
    return this == &other;
}

bool StateChunk::operator !=(const StateChunk &other) const
{
    return !(*this == other);
}

void StateChunk::dump(UInt32 uiIndent, const BitVector) const
{
    indentLog(uiIndent, PLOG);
    const StateChunkClass *cls = getClass();
    PLOG << getType().getName() << " (" << this << ") class "
         << (cls != NULL ? cls->getName() : "none")
         << (getIgnore() ? " ignored" : "") << std::endl;
}

} // namespace osg
