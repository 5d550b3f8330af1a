#include <OpenSG/OSGSHLParameterChunk.h>
#include <OpenSG/OSGLog.h>

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
    if(shl == NullFC)
    {
        SWARNING << "SHLParameterChunk::activate: no SHLChunk to apply the parameters to"
                 << std::endl;
        return;
    }
    if(shl->getProgram() == 0)
        return;
    shl->applyParameters(getParameters(), action, true, false);
}

void SHLParameterChunk::changeFrom(DrawActionBase *action, StateChunk *old, UInt32 index)
{
    if(old != this)
        activate(action, index);
}

void SHLParameterChunk::deactivate(DrawActionBase *, UInt32)
{
}

} // namespace osg
