#ifndef _OSGSHADERCHUNK_H_
#define _OSGSHADERCHUNK_H_

#include <OpenSG/OSGShaderParameterChunk.h>

#include <istream>

namespace osg
{

OSG_FC_PTR_DECL(ShaderChunk, ShaderParameterChunkPtr)

class ShaderChunk : public ShaderParameterChunk
{
    OSG_FC_ABSTRACT_DECL(ShaderChunk, ShaderParameterChunk)

  public:
    enum
    {
        VertexProgramFieldId   = Inherited::NextFieldId,
        FragmentProgramFieldId = VertexProgramFieldId   + 1,
        GeometryProgramFieldId = FragmentProgramFieldId + 1,
        NextFieldId            = GeometryProgramFieldId + 1
    };
    OSG_FIELD_MASK(VertexProgram)
    OSG_FIELD_MASK(FragmentProgram)
    OSG_FIELD_MASK(GeometryProgram)

    OSG_SFIELD(SFString, VertexProgram)
    OSG_SFIELD(SFString, FragmentProgram)
    OSG_SFIELD(SFString, GeometryProgram)

  public:
    // Replace the program text; false with a warning if nothing was read.
    bool readVertexProgram  (const char *file);
    bool readVertexProgram  (std::istream &stream);
    bool readFragmentProgram(const char *file);
    bool readFragmentProgram(std::istream &stream);

    static void initMethod(void) {}

  protected:
    ShaderChunk(void);
    ShaderChunk(const ShaderChunk &source);
    virtual ~ShaderChunk(void);
};

typedef RefPtr<ShaderChunkPtr> ShaderChunkRefPtr;

} // namespace osg

#endif
