#include <OpenSG/OSGSHLParameterChunk.h>

namespace osg
{

OSG_FC_IMPL(SHLParameterChunk, "ShaderParameterChunk")

SHLParameterChunk::SHLParameterChunk(void) :
    Inherited(),
    _sfSHLChunk()
{
}

SHLParameterChunk::SHLParameterChunk(const SHLParameterChunk &source) :
    Inherited(source),
    _sfSHLChunk(source._sfSHLChunk)
{
}

SHLParameterChunk::~SHLParameterChunk(void)
{
}

// A copy feeds the same shader and needs its own reference.
void SHLParameterChunk::onCreate(const SHLParameterChunk *source)
{
    Inherited::onCreate(source);
    addRefCP(getSHLChunk());
}

void SHLParameterChunk::onDestroy(void)
{
    SHLChunkPtr shl = getSHLChunk();
    _sfSHLChunk.setValue(NullFC);
    subRefCP(shl);
    Inherited::onDestroy();
}

void SHLParameterChunk::setSHLChunk(const SHLChunkPtr &value)
{
    if(value == getSHLChunk())
        return;
    SHLChunkPtr old = getSHLChunk();
    addRefCP(value);
    _sfSHLChunk.setValue(value);
    subRefCP(old);
}

void SHLParameterChunk::activate(DrawActionBase *action, UInt32)
{
    SHLChunkPtr shl = getSHLChunk();
    if(shl == NullFC || shl->getProgram() == 0)
        return;
    shl->applyParameters(getParameters(), action, false);
}

// Another material's parameters may have been applied in between.
void SHLParameterChunk::changeFrom(DrawActionBase *action, StateChunk *, UInt32 index)
{
    activate(action, index);
}

void SHLParameterChunk::deactivate(DrawActionBase *, UInt32)
{
}

} // namespace osg
